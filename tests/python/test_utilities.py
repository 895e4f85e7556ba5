"""Flips, fields, packed samples, lines resampled, the SIS and queries against the C functions."""

import ctypes

import capi
import numpy as np
import pytest
import quorvane
from test_conversions import random_array

AXES = {"horizontal": 1, "vertical": 2, "both": 3}
SHAPES = [((4, 5), np.uint8, 0), ((3, 7), np.uint16, 5), ((6, 5, 3), np.uint8, 4), ((5, 4, 3), np.uint16, 6)]


def u32(value):
    return ctypes.c_uint32(value)


def status_of(name, *arguments):
    entry = getattr(capi.LIBRARY, name)
    entry.restype = ctypes.c_uint32
    return entry(*arguments)


@pytest.mark.parametrize("axis", AXES)
@pytest.mark.parametrize("shape,dtype,code", SHAPES)
def test_flip(axis, shape, dtype, code):
    frame = random_array(shape, dtype, 1)
    right = frame.copy()
    assert status_of("QVN_Flip", capi.address(right), u32(shape[1]), u32(shape[0]), u32(AXES[axis]),
                     u32(code)) == 0
    kept = frame.copy()
    np.testing.assert_array_equal(quorvane.flip(frame, axis), right)
    np.testing.assert_array_equal(frame, kept)
    np.testing.assert_array_equal(quorvane.flip(frame, axis, code=code), right)
    np.testing.assert_array_equal(quorvane.flip(frame[::-1][::-1], axis, out=np.empty_like(frame)), right)
    assert quorvane.flip(frame, axis, out=frame) is frame
    np.testing.assert_array_equal(frame, right)


def test_flip_by_the_elements_of_a_code():
    for code in range(11):
        frame = random_array((4, 12), np.uint8, code)
        element = {0: 1, 9: 1, 4: 3, 6: 6, 8: 6}.get(code, 2)
        right = frame.copy()
        assert status_of("QVN_Flip", capi.address(right), u32(12 // element), u32(4), u32(3), u32(code)) == 0
        np.testing.assert_array_equal(quorvane.flip(frame, "both", code=code), right)


def test_flip_of_any_element_on_the_vertical_axis():
    frame = random_array((5, 6, 4), np.uint8, 1)
    np.testing.assert_array_equal(quorvane.flip(frame, "vertical"), frame[::-1])
    with pytest.raises(ValueError, match="1, 2, 3 or 6 bytes, found 4"):
        quorvane.flip(frame)
    with pytest.raises(ValueError, match="unknown axis"):
        quorvane.flip(frame, "upwards")
    with pytest.raises(quorvane.Error) as caught:
        quorvane.flip(frame[:1, :, 0])
    assert caught.value.status == 0x88000004
    with pytest.raises(ValueError, match="expected shape"):
        quorvane.flip(frame[0, 0])
    with pytest.raises(quorvane.Error):
        quorvane.flip(frame[..., 0], code=132)


@pytest.mark.parametrize("width,height", [(6, 8), (5, 6), (4, 7)])
def test_weave(width, height):
    fields = random_array((height, width), np.uint8, 2)
    right = np.zeros_like(fields)
    assert status_of("QVN_InterlacedToProgressive", capi.address(right), capi.address(fields), u32(width),
                     u32(height)) == 0
    np.testing.assert_array_equal(quorvane.weave(fields), right)
    np.testing.assert_array_equal(quorvane.weave(fields, out=np.zeros_like(fields)), right)
    in_place, given = fields.copy(), fields.copy()
    assert status_of("QVN_InterlacedToProgressive", capi.address(in_place), capi.address(in_place), u32(width),
                     u32(height)) == 0
    assert quorvane.weave(given, out=given) is given
    np.testing.assert_array_equal(given, in_place)


@pytest.mark.parametrize("width,height", [(6, 4), (2, 1), (5, 3)])
def test_unpack12(width, height):
    packed = random_array((width * height + 1) // 2 * 3, np.uint8, 3)
    for bits, name, dtype in ((8, "QVN_Packed12BitTo8Bit", np.uint8), (16, "QVN_Packed12BitTo16Bit", ">u2")):
        right = np.zeros(width * height + 1, dtype)
        assert status_of(name, capi.address(right), capi.address(packed), u32(width), u32(height)) == 0
        right = right[:width * height].reshape(height, width)
        made = quorvane.unpack12(packed, bits, size=(width, height))
        assert made.dtype == np.dtype(dtype)
        np.testing.assert_array_equal(made, right)
        out = np.zeros((height, width), dtype)
        assert quorvane.unpack12(packed.tobytes(), bits, size=(width, height), out=out) is out
        np.testing.assert_array_equal(out, right)
        if width % 2 == 0:
            np.testing.assert_array_equal(quorvane.unpack12(packed.reshape(height, -1), bits), right)
    # Which is what the conversions for words of either order take.
    if width % 2 == 0:
        deep = quorvane.unpack12(packed.reshape(height, -1))
        np.testing.assert_array_equal(deep >> 8, quorvane.unpack12(packed.reshape(height, -1), 8))


def test_unpack12_checks():
    with pytest.raises(TypeError, match="uint8, found uint16"):
        quorvane.unpack12(np.zeros(3, np.uint16))
    with pytest.raises(ValueError, match="8 or 16 bits"):
        quorvane.unpack12(np.zeros((1, 3), np.uint8), 12)
    with pytest.raises(ValueError, match="multiple of 3"):
        quorvane.unpack12(np.zeros((1, 4), np.uint8))
    with pytest.raises(ValueError, match="expected 3 bytes for 2x1, found 4"):
        quorvane.unpack12(np.zeros(4, np.uint8), size=(2, 1))


@pytest.mark.parametrize("element", [1, 2, 3, 4, 6])
@pytest.mark.parametrize("method", ["nearest", "linear"])
@pytest.mark.parametrize("source_rate,rate", [(1.0, 2.0), (3.0, 2.0), (1.0, 1.0), (1.7, 0.9)])
def test_resample(element, method, source_rate, rate):
    lines = random_array((3, 20, element), np.uint8, element)
    length = ctypes.c_int32()
    floats = [ctypes.c_float(source_rate), ctypes.c_float(rate)]
    status_of("QVN_GetResampledScanlineLength", ctypes.byref(length), ctypes.c_int32(20), *floats)
    assert quorvane.resampled_length(20, source_rate, rate) == length.value
    if method == "linear" and rate > source_rate:
        length.value = 20  # linear stops at the length of its output only
    ints = [ctypes.c_int32(value) for value in (length.value, length.value, 20, 20, 3)]
    right = np.zeros((3, length.value, element), np.uint8)
    assert status_of("QVN_ResampleScanlinesEx", capi.address(right), capi.address(lines), *ints, *floats,
                     u32(element), u32(1 if method == "linear" else 0)) == 1
    made = quorvane.resample(lines, source_rate, rate, length=length.value, method=method)
    np.testing.assert_array_equal(made, right)
    out = np.zeros_like(right)
    assert quorvane.resample(lines, source_rate, rate, length=length.value, method=method, out=out) is out
    np.testing.assert_array_equal(out, right)


def test_resample_checks():
    lines = np.zeros((2, 8), np.uint8)
    assert quorvane.resample(lines, 1, 2).shape == (2, 16)
    with pytest.raises(ValueError, match="unknown method"):
        quorvane.resample(lines, 1, 2, method="cubic")
    with pytest.raises(quorvane.Error, match="rates above 0"):
        quorvane.resample(lines, 0, 2, length=4)
    with pytest.raises(quorvane.Error, match="1 to 6 bytes"):
        quorvane.resample(lines.astype(np.uint64), 1, 2)
    with pytest.raises(ValueError, match="at least one element"):
        quorvane.resample(lines, 1, 2, length=0)


def test_sis():
    frame = random_array((16, 20), np.uint8, 1)
    for position in (0, 3, -100):
        for kind, bytes_ in ((1, 12), (2, 52)):
            block = np.zeros(bytes_, np.uint8)
            assert status_of("QVN_GetSIS", capi.address(block), capi.address(frame), u32(20), u32(16), u32(0),
                             ctypes.c_int32(position), u32(kind)) == 0
            assert quorvane.sis(frame, (20, 16), 0, position, large=kind == 2) == block.tobytes()
    with pytest.raises(quorvane.Error, match="position in the frame"):
        quorvane.sis(frame, (20, 16), 0, 16)
    with pytest.raises(quorvane.Error, match="frame of 640 bytes, found 320"):
        quorvane.sis(frame, (20, 16), 5, 0)


def test_queries():
    for code in range(150):
        bits = ctypes.c_uint32()
        status = status_of("QVN_GetBitsPerPixel", u32(code), ctypes.byref(bits))
        if status == 0:
            assert quorvane.bits_per_pixel(code) == bits.value
        else:
            with pytest.raises(quorvane.Error) as caught:
                quorvane.bits_per_pixel(code)
            assert caught.value.status == status
    text = ctypes.create_string_buffer(256)
    for status in (0, 0x88000002, 0x8800001A, 1):
        status_of("QVN_GetErrorInfo", u32(status), text, u32(255))
        assert quorvane.status_text(status) == text.value.decode()
    assert quorvane.version() == 0x02010200
    flags = (ctypes.c_uint8 * 12)()
    assert status_of("QVN_GetTechnoInfo", flags) == 0
    assert quorvane.techno_info() == tuple(flags)
