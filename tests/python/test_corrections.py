"""Corrections of every kind against the C functions, and the matrix that the library has not."""

import ctypes
import pickle

import capi
import numpy as np
import pytest
import quorvane
from test_conversions import random_array

MATRIX = [1.5, -0.25, 0.125, -0.5, 1.75, 0.0, 0.25, -1.0, 2.0]
SMALL = [0.5, 0.25, 0.125, 0.125, 0.5, 0.25, 0.25, 0.125, 0.5]
# per corrected function: bits of what a table is asked for, kind of the fixed one, of the table, its entries
RULES = {
    "QVN_Raw8ToBGR_CC": (8, "Int8", 8, np.uint8),
    "QVN_Raw8ToY8_CC": (8, "Int8", 8, np.uint8),
    "QVN_Raw12ToBGR_CC": (8, "Int16", 9, np.uint8),
    "QVN_Raw12ToBGR16_CC": (12, "Int16", 9, np.uint16),
    "QVN_Raw16ToBGR16_CC": (16, "Int16", 9, np.uint16),
    "QVN_Raw16ToY16_CC": (16, "Int16", 9, np.uint16),
}
CORRECTED = [row for row in quorvane.conversions() if row.corrected]


def pairs(function):
    """Corrections with the objects that the C function takes."""
    bits, fixed, kind, entries = RULES[function]
    white = (1 << bits) - 1
    levels = random_array(1 << bits, entries, 4)
    table, alive = capi.table(kind, levels)
    if kind == 8:
        made = quorvane.Correction.table8(levels)
    elif entries is np.uint8:
        made = quorvane.Correction.table16_of_bytes(levels)
    else:
        made = quorvane.Correction.table16(levels)
    make_fixed = quorvane.Correction.fixed_int8 if fixed == "Int8" else quorvane.Correction.fixed_int16
    creator = "QVN_CreateColorCorrectionMatrix_" + fixed
    yield quorvane.Correction.matrix(MATRIX), capi.floats(1, MATRIX)
    yield make_fixed(np.reshape(SMALL, (3, 3))), capi.fixed(creator, SMALL)
    yield quorvane.Correction.gamma(0.45, white), capi.floats(4, gamma=0.45, white=white)
    yield quorvane.Correction.gamma_matrix(0.5, white, SMALL), capi.floats(5, SMALL, 0.5, white)
    yield made, table
    del alive


@pytest.mark.parametrize("row", CORRECTED, ids=lambda row: row.corrected)
def test_bytes_are_those_of_the_function(row):
    width, height = 20, 9
    frame = random_array(capi.frame_shape(row.source, width, height), capi.frame_dtype(row.source), 8)
    kinds = set()
    for correction, made_by_hand in pairs(row.corrected):
        for pattern in range(4):
            right = np.zeros(capi.picture_shape(row.target, width, height), capi.picture_dtype(row.target))
            status = capi.call(row.corrected, row.target, right, frame, width, height, pattern=pattern,
                               correction=made_by_hand)
            assert status == 0
            given = [correction, pickle.loads(pickle.dumps(correction))]
            for one in given:
                made = quorvane.convert(frame, row.source, capi.PATTERNS[pattern], row.method, row.target,
                                        correction=one)
                np.testing.assert_array_equal(made, right)
        kinds.add(correction.kind)
        assert str(correction.kind) in repr(correction)
    assert len(kinds) == 5


def test_a_shift_and_a_correction():
    frame = random_array((8, 16), ">u2", 2)
    for row in CORRECTED:
        if not row.corrected.startswith("QVN_Raw16"):
            continue
        right = np.zeros(capi.picture_shape(row.target, 16, 8), np.uint16)
        assert capi.call(row.corrected, row.target, right, frame, 16, 8, shift=4,
                         correction=capi.floats(1, SMALL)) == 0
        made = quorvane.convert(frame.astype("<u2"), "raw16", target=row.target, shift=4,
                                correction=quorvane.Correction.matrix(SMALL))
        np.testing.assert_array_equal(made, right)


def test_a_correction_chooses_a_method_that_takes_it():
    frame = random_array((8, 16), np.uint8, 2)
    with pytest.raises(ValueError, match="no conversion to 'bgra' takes a correction"):
        quorvane.demosaic(frame, target="bgra", correction=quorvane.Correction.matrix(SMALL))
    with pytest.raises(quorvane.Error, match="kind of correction") as caught:
        quorvane.demosaic(frame, correction=quorvane.Correction.fixed_int16(SMALL))
    assert caught.value.status == 0x80004005
    with pytest.raises(quorvane.Error, match="table of 256 entries"):
        quorvane.demosaic(frame, correction=quorvane.Correction.table8(np.arange(255)))


def test_arguments_are_checked():
    make = quorvane.Correction
    for refused in ([1, 2, 3], np.zeros((3, 4))):
        with pytest.raises(ValueError, match="expected shape"):
            make.matrix(refused)
    with pytest.raises(TypeError, match="nine numbers"):
        make.matrix("a matrix")
    with pytest.raises(ValueError, match="levels of 0 to 255, found 256"):
        make.table8(np.arange(257))
    with pytest.raises(ValueError, match="found -1"):
        make.table16([-1, 0])
    with pytest.raises(TypeError, match="whole numbers"):
        make.table8(np.linspace(0, 1, 256))
    with pytest.raises(ValueError, match="one axis"):
        make.table8(np.zeros((2, 128), np.uint8))
    with pytest.raises(ValueError, match="finite"):
        quorvane.ClampedMatrix([float("nan")] * 9)


def clamped(picture, matrix, top, order="bgr"):
    """The matrix in numpy: each sum in double precision, rounded, stopped."""
    step = -1 if order == "bgr" else 1
    samples = picture[..., :3][..., ::step].astype(np.float64)
    m = np.float32(matrix).astype(np.float64).reshape(3, 3)
    sums = np.stack([samples[..., 0] * row[0] + samples[..., 1] * row[1] + samples[..., 2] * row[2] for row in m],
                    axis=-1)
    levels = np.floor(np.clip(sums, 0, top) + 0.5)
    result = picture.copy()
    result[..., :3] = levels[..., ::step].astype(picture.dtype)
    return result


@pytest.mark.parametrize("source,target,top,options", [
    ("raw8", "bgr", 255, {}),
    ("raw8", "bgra", 255, {"opaque": True}),
    ("raw12packed", "bgr16", 4095, {}),
    ("raw16", "bgr16", 65535, {}),
    ("raw16", "bgr16", 4095, {"shift": 4}),
    ("yuv444", "bgr", 255, {}),
])
def test_clamped_matrix(source, target, top, options):
    frame = random_array(capi.frame_shape(source, 20, 8), capi.frame_dtype(source), 6)
    plain = quorvane.convert(frame, source, target=target, **options)
    matrix = quorvane.ClampedMatrix(MATRIX)
    right = clamped(plain, MATRIX, top)
    for one in (matrix, pickle.loads(pickle.dumps(matrix))):
        np.testing.assert_array_equal(quorvane.convert(frame, source, target=target, matrix=one, **options), right)
    np.testing.assert_array_equal(
        quorvane.convert(frame, source, target=target, matrix=matrix, bands=2, **options), right)
    whole = np.zeros((8, 25, plain.shape[2]), plain.dtype)
    quorvane.convert(frame, source, target=target, matrix=matrix, out=whole[:, 2:22], **options)
    np.testing.assert_array_equal(whole[:, 2:22], right)
    assert not whole[:, :2].any() and not whole[:, 22:].any()
    applied = plain.copy()
    matrix.apply(applied, top=top)
    np.testing.assert_array_equal(applied, right)
    applied = plain.copy()
    matrix.apply(applied, top, "rgb")
    np.testing.assert_array_equal(applied, clamped(plain, MATRIX, top, "rgb"))


def test_clamped_matrix_checks_its_picture():
    matrix = quorvane.ClampedMatrix(MATRIX)
    with pytest.raises(TypeError, match="uint8 or uint16, found float64"):
        matrix.apply(np.zeros((2, 2, 3)))
    with pytest.raises(TypeError, match="this machine's order"):
        matrix.apply(np.zeros((2, 2, 3), np.dtype(np.uint16).newbyteorder()))
    with pytest.raises(ValueError, match="shape"):
        matrix.apply(np.zeros((2, 2), np.uint8))
    with pytest.raises(ValueError, match="contiguous"):
        matrix.apply(np.zeros((2, 4, 3), np.uint8)[:, ::2])
    with pytest.raises(ValueError, match="unknown order"):
        matrix.apply(np.zeros((2, 2, 3), np.uint8), order="grb")
    with pytest.raises(ValueError, match="top of at most 255"):
        matrix.apply(np.zeros((2, 2, 3), np.uint8), top=256)
    frame = np.zeros((8, 8), np.uint8)
    with pytest.raises(ValueError, match="colour picture"):
        quorvane.demosaic(frame, target="y8", matrix=matrix)


def test_the_record_sizes_of_this_test():
    assert ctypes.sizeof(capi.Floats) == 52 and ctypes.sizeof(capi.Block) == 20
