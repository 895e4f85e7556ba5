"""Every row of the table of conversions against its C function, byte for byte."""

import ctypes
import mmap
import zlib

import capi
import numpy as np
import pytest
import quorvane

REPACKED = {"raw12p": "raw12packed", "raw12csi2": "raw12packed", "y12p": "y12packed", "y12csi2": "y12packed",
            "yuyv": "uyvy"}
MOSAICS = ("raw8", "raw12packed", "raw12p", "raw12csi2", "raw16be", "raw16le", "raw16")


def random_array(shape, dtype, seed):
    bytes_ = int(np.prod(shape)) * np.dtype(dtype).itemsize
    drawn = np.random.default_rng(seed).integers(0, 256, bytes_, np.uint8)
    return drawn.view(dtype).reshape(shape)


def seed_of(*words):
    return zlib.crc32(" ".join(map(str, words)).encode())


def sizes_of(row):
    if row.source.startswith("iraw8"):
        return [(8, 8), (34, 16)]
    if "yuv422" in row.method or "lcaa" in row.method:
        return [(8, 8), (34, 16)]
    if row.method == "plain-by-eights":
        return [(8, 3), (40, 12)]
    if row.source in MOSAICS:
        return [(8, 8), (34, 15), (10, 9)]
    group = capi.GROUPS[row.source][0]
    return [(4 * group, 3), (36, 10), (17 if group == 1 and row.target != "uyvy" else 20, 7)]


def right_picture(row, function, frame, initial, width, height, pattern=0, **options):
    """What the function makes, on top of `initial`."""
    picture, source = initial.copy(), frame.copy()
    words = source.reshape(-1).view(np.uint8)
    order = row.source
    if row.source in REPACKED:
        words = capi.as_packed(source, row.source)
    elif row.source.endswith("16") and "Ex" in function:
        order = row.source + "le"
    elif row.source[-2:] in ("le", "16") and frame.dtype == "<u2" and "Ex" not in function:
        words = source.reshape(-1).byteswap().view(np.uint8)
    status = capi.call(function, row.target, picture, words, width, height, source=order, pattern=pattern,
                       **options)
    assert status == 0
    return picture


def all_rows():
    rows = quorvane.conversions()
    big = [row for row in rows if row.source in ("raw16be", "y16be")]
    return (
        rows
        + [row._replace(source=name) for row in rows for name, read_as in REPACKED.items() if row.source == read_as]
        + [row._replace(source=row.source[:-2]) for row in big]
        + [row._replace(source=row.source[:-2] + "le") for row in big if "Ex" not in row.function]
    )


@pytest.mark.parametrize("row", all_rows(), ids=lambda row: "-".join(row[:3]))
def test_bytes_are_those_of_the_function(row):
    patterns = range(4) if row.source in MOSAICS else [0]
    for width, height in sizes_of(row):
        for pattern in patterns:
            seed = seed_of(*row, width, height, pattern)
            frame = random_array(capi.frame_shape(row.source, width, height), capi.frame_dtype(row.source), seed)
            kept = frame.copy()
            shape, dtype = capi.picture_shape(row.target, width, height), capi.picture_dtype(row.target)
            initial = random_array(shape, dtype, seed + 1)
            right = right_picture(row, row.function, frame, initial, width, height, pattern)

            out = initial.copy()
            arguments = dict(source=row.source, pattern=capi.PATTERNS[pattern], method=row.method,
                             target=row.target)
            made = quorvane.convert(frame, **arguments, out=out)
            assert made is out
            np.testing.assert_array_equal(out, right)
            np.testing.assert_array_equal(frame, kept)

            # A new array: what the function left alone is 0.
            other = right_picture(row, row.function, frame, ~initial, width, height, pattern)
            new = quorvane.convert(frame, **arguments)
            bytes_ = [array.reshape(-1).view(np.uint8) for array in (right, other, new)]
            left_alone = bytes_[0] != bytes_[1]
            np.testing.assert_array_equal(bytes_[2], np.where(left_alone, 0, bytes_[0]))
            assert new.shape == shape and new.dtype == dtype and new.flags.c_contiguous


@pytest.mark.parametrize("row", quorvane.conversions(), ids=lambda row: "-".join(row[:3]))
def test_small_frames_and_groups_that_are_not_whole(row):
    """Where functions leave most alone."""
    group, bytes_ = capi.GROUPS[row.source]
    taken = 0
    for width, height in [(2, 2), (3, 2), (2, 3), (4, 2), (2, 4), (4, 4), (5, 3), (6, 2), (2, 6), (7, 7), (8, 2),
                          (4, 8), (3, 1), (2, 12), (12, 2), (11, 9)]:
        frame = random_array(width * height // group * bytes_, np.uint8, seed_of(*row, width, height))
        arguments = dict(source=row.source, method=row.method, target=row.target, size=(width, height))
        try:
            new = quorvane.convert(frame, **arguments)
        except ValueError:
            continue
        taken += 1
        pictures = []
        for fill in (0, 255):
            initial = np.full(new.shape, fill * 257 if new.dtype == np.uint16 else fill, new.dtype)
            words = frame.view(capi.frame_dtype(row.source))
            pictures.append(right_picture(row, row.function, words, initial, width, height))
            out = initial.copy()
            quorvane.convert(frame, **arguments, out=out)
            np.testing.assert_array_equal(out, pictures[-1])
        first, second, made = [array.reshape(-1).view(np.uint8) for array in (*pictures, new)]
        np.testing.assert_array_equal(made, np.where(first != second, 0, first))
    assert taken >= 1


@pytest.mark.parametrize("row", all_rows(), ids=lambda row: "-".join(row[:3]))
def test_other_ways_to_hand_over_the_same_frame(row):
    width, height = sizes_of(row)[1]
    frame = random_array(capi.frame_shape(row.source, width, height), capi.frame_dtype(row.source), 3)
    arguments = dict(source=row.source, method=row.method, target=row.target)
    right = quorvane.convert(frame, **arguments)

    def padded(array, lines=0):
        """The same in the middle of lines that are 3 elements longer."""
        shape = list(array.shape)
        shape[lines + 1] += 3
        view = np.zeros(shape, array.dtype)[tuple([slice(None)] * (lines + 1) + [slice(1, -2)])]
        view[...] = array
        return view

    gaps = np.repeat(frame, 2, axis=-1)[..., ::2]
    for given in (padded(frame), gaps, frame[::-1].copy()[::-1], np.asfortranarray(frame)):
        np.testing.assert_array_equal(quorvane.convert(given, **arguments), right)
    read_only = frame.copy()
    read_only.flags.writeable = False
    np.testing.assert_array_equal(quorvane.convert(read_only, **arguments), right)
    np.testing.assert_array_equal(quorvane.convert(frame, **arguments, size=(width, height)), right)
    np.testing.assert_array_equal(quorvane.convert(frame, **arguments, bands=3), right)
    if row.source not in ("raw16", "y16"):
        for flat in (frame.reshape(-1).view(np.uint8), frame.tobytes(), memoryview(bytearray(frame.tobytes()))):
            np.testing.assert_array_equal(
                quorvane.convert(flat, **arguments, size=(width, height)), right)

    # Lines of the picture that are padded; the padding stays.
    lines = 1 if row.target.startswith("planes") else 0
    shape = list(right.shape)
    shape[lines + 1] += 5
    whole = np.full(shape, 77, right.dtype)
    view = whole[tuple([slice(None)] * (lines + 1) + [slice(2, -3)])]
    view[...] = 0
    quorvane.convert(frame, **arguments, out=view)
    np.testing.assert_array_equal(view, right)
    margins = whole[tuple([slice(None)] * (lines + 1) + [[0, 1, -3, -2, -1]])]
    assert (margins == 77).all()


def test_words_of_either_order_are_the_same_numbers():
    values = random_array((16, 24), np.uint16, 5)
    for source in ("raw16", "y16"):
        for row in quorvane.conversions():
            if row.source != source + "be":
                continue
            pictures = [
                quorvane.convert(values.astype(order), source, method=row.method, target=row.target)
                for order in ("<u2", ">u2", "=u2")
            ]
            np.testing.assert_array_equal(pictures[0], pictures[1])
            np.testing.assert_array_equal(pictures[0], pictures[2])


@pytest.mark.parametrize("bits,alignment", [(8, "low"), (10, "low"), (12, "low"), (14, "low"), (16, "low"),
                                            (12, "top")])
def test_bits_and_alignment(bits, alignment):
    width, height = 20, 8
    for row in quorvane.conversions():
        if row.source not in ("raw16be", "raw16le", "y16be", "y16le") or "Ex" not in row.function:
            continue
        if bits == 8 and "Transform" in row.function:
            continue
        frame = random_array((height, width), capi.frame_dtype(row.source), seed_of(bits, *row))
        initial = np.zeros(capi.picture_shape(row.target, width, height), capi.picture_dtype(row.target))
        right = right_picture(row, row.function, frame, initial, width, height, bits=bits,
                              alignment=1 if alignment == "low" else 0)
        made = quorvane.convert(frame, row.source, method=row.method, target=row.target, bits=bits,
                                alignment=alignment)
        np.testing.assert_array_equal(made, right)


@pytest.mark.parametrize("shift", [0, 1, 4, 8, 15, 16])
def test_shift(shift):
    width, height = 20, 8
    for row in quorvane.conversions():
        if row.function not in ("QVN_Raw16ToBGR16", "QVN_Raw16ToY16"):
            continue
        frame = random_array((height, width), ">u2", shift)
        initial = np.zeros(capi.picture_shape(row.target, width, height), np.uint16)
        right = right_picture(row, row.function, frame, initial, width, height, shift=shift)
        made = quorvane.convert(frame, "raw16", target=row.target, shift=shift)
        np.testing.assert_array_equal(made, right)


def test_opaque():
    for row in quorvane.conversions():
        if row.target != "bgra":
            continue
        width, height = sizes_of(row)[1]
        frame = random_array(capi.frame_shape(row.source, width, height), capi.frame_dtype(row.source), 9)
        arguments = dict(source=row.source, method=row.method, target="bgra")
        plain = quorvane.convert(frame, **arguments)
        opaque = quorvane.convert(frame, **arguments, opaque=True)
        np.testing.assert_array_equal(opaque[..., :3], plain[..., :3])
        assert (opaque[..., 3] == 255).all()
        expected = frame[..., 3] if row.source == "rgba8" else 0
        np.testing.assert_array_equal(plain[..., 3], np.broadcast_to(expected, (height, width)))


def test_the_source_is_overwritten_only_when_asked():
    overwriting = {"QVN_Raw8ToBGR_IntYUV422", "QVN_Raw8ToBGR_IntLCAA", "QVN_Raw8ToBGR_IntLCAAV",
                   "QVN_Raw8ImageTransform_IntYUV422", "QVN_Raw8ImageTransform_IntLCAA",
                   "QVN_Raw8ImageTransform_IntLCAAV"}
    seen = set()
    for row in quorvane.conversions():
        if row.source != "raw8":
            continue
        frame = random_array((16, 24), np.uint8, 1)
        given, by_function = frame.copy(), frame.copy()
        picture = quorvane.convert(given, "raw8", method=row.method, target=row.target, overwrite=True)
        left = np.zeros(picture.shape, picture.dtype)
        assert capi.call(row.function, row.target, left, by_function, 24, 16) == 0
        np.testing.assert_array_equal(given, by_function)
        np.testing.assert_array_equal(picture, left)
        if (given != frame).any():
            seen.add(row.function)
        given = frame.copy()
        given.flags.writeable = False
        np.testing.assert_array_equal(
            quorvane.convert(given, "raw8", method=row.method, target=row.target, overwrite=True), picture)
        np.testing.assert_array_equal(given, frame)
    assert seen <= overwriting and len(seen) >= 3


def test_in_place():
    frame = random_array((5, 7, 3), np.uint8, 2)
    right = quorvane.rgb(frame)
    assert quorvane.rgb(frame, out=frame) is frame
    np.testing.assert_array_equal(frame, right)
    with pytest.raises(quorvane.Error, match="overlap"):
        quorvane.convert(frame[:, :6], "rgb8", out=frame[:, 1:])


def test_families():
    raw8, raw16 = random_array((8, 16), np.uint8, 1), random_array((8, 16), np.uint16, 1)
    packed, pixels = random_array((8, 24), np.uint8, 1), random_array((8, 16, 3), np.uint8, 1)
    same = [
        (quorvane.demosaic(raw8, "grbg", method="3x3"), quorvane.convert(raw8, "raw8", "grbg", "3x3")),
        (quorvane.demosaic(raw16, "bggr"), quorvane.convert(raw16, "raw16", "bggr")),
        (quorvane.demosaic(packed, source="raw12p"), quorvane.convert(packed, "raw12p")),
        (quorvane.cygm(raw8), quorvane.convert(raw8, "iraw8-cygm")),
        (quorvane.cygm(raw8, binned=True, target="y8"), quorvane.convert(raw8, "iraw8-cygm-binned", target="y8")),
        (quorvane.yuv(pixels), quorvane.convert(pixels, "yuv444")),
        (quorvane.yuv(pixels[..., :2]), quorvane.convert(pixels[..., :2], "uyvy")),
        (quorvane.yuv(pixels[..., :2], source="yuyv"), quorvane.convert(pixels[..., :2], "yuyv")),
        (quorvane.yuv(packed, source="uyyvyy411"), quorvane.convert(packed, "uyyvyy411")),
        (quorvane.mono(raw8), quorvane.convert(raw8, "y8")),
        (quorvane.mono(raw16, bits=12), quorvane.convert(raw16, "y16", bits=12)),
        (quorvane.mono(packed, source="y12p"), quorvane.convert(packed, "y12p")),
        (quorvane.rgb(pixels, target="y8"), quorvane.convert(pixels, "rgb8", target="y8")),
        (quorvane.rgb(random_array((8, 16, 4), np.uint8, 1)),
         quorvane.convert(random_array((8, 16, 4), np.uint8, 1), "rgba8")),
        (quorvane.planes(pixels, "rgb8"), quorvane.convert(pixels, "rgb8", target="planes")),
        (quorvane.planes(pixels, "yuv444", luma=True), quorvane.convert(pixels, "yuv444", target="planes-y")),
    ]
    for made, right in same:
        np.testing.assert_array_equal(made, right)


def test_every_conversion_of_the_header_is_reached(header_functions):
    reached = {row.function for row in quorvane.conversions()}
    reached |= {row.corrected for row in quorvane.conversions() if row.corrected}
    others = {"GetVersion", "GetTechnoInfo", "GetBitsPerPixel", "GetErrorInfo", "GetSIS",
              "CreateColorCorrectionMatrix_Int8", "CreateColorCorrectionMatrix_Int16", "DestroyColorCorrection",
              "GetResampledScanlineLength", "ResampleScanlines", "ResampleScanlinesEx", "Flip", "FlipVertical",
              "InterlacedToProgressive", "Packed12BitTo8Bit", "Packed12BitTo16Bit"}
    assert reached == set(header_functions) - {"QVN_" + name for name in others}
    assert len(header_functions) == 76


class Guarded:
    """Arrays that end where inaccessible memory begins."""

    def __init__(self):
        self.libc = ctypes.CDLL(None, use_errno=True)
        self.libc.mmap.restype = ctypes.c_void_p
        self.libc.mmap.argtypes = [ctypes.c_void_p, ctypes.c_size_t, ctypes.c_int, ctypes.c_int, ctypes.c_int,
                                   ctypes.c_long]
        self.libc.mprotect.argtypes = [ctypes.c_void_p, ctypes.c_size_t, ctypes.c_int]
        self.libc.munmap.argtypes = [ctypes.c_void_p, ctypes.c_size_t]
        self.blocks = []

    def array(self, shape, dtype):
        bytes_ = int(np.prod(shape)) * np.dtype(dtype).itemsize
        pages = -(-bytes_ // mmap.PAGESIZE) * mmap.PAGESIZE
        start = self.libc.mmap(None, pages + mmap.PAGESIZE, mmap.PROT_READ | mmap.PROT_WRITE,
                               mmap.MAP_PRIVATE | mmap.MAP_ANONYMOUS, -1, 0)
        assert start != ctypes.c_void_p(-1).value
        assert self.libc.mprotect(start + pages, mmap.PAGESIZE, 0) == 0
        self.blocks.append((start, pages + mmap.PAGESIZE))
        memory = (ctypes.c_uint8 * bytes_).from_address(start + pages - bytes_)
        return np.frombuffer(memory, np.uint8).view(dtype).reshape(shape)

    def free(self):
        for start, bytes_ in self.blocks:
            self.libc.munmap(start, bytes_)


@pytest.mark.parametrize("row", all_rows(), ids=lambda row: "-".join(row[:3]))
def test_nothing_is_touched_behind_the_arrays(row):
    guarded = Guarded()
    for width, height in sizes_of(row):
        frame = guarded.array(capi.frame_shape(row.source, width, height), capi.frame_dtype(row.source))
        frame[...] = random_array(frame.shape, frame.dtype, 4)
        arguments = dict(source=row.source, method=row.method, target=row.target)
        right = quorvane.convert(frame, **arguments)
        for bands in (1, 2):
            out = guarded.array(right.shape, right.dtype)
            quorvane.convert(frame, **arguments, out=out, bands=bands)
            np.testing.assert_array_equal(out, right)
        # The last line of a larger picture has no padding behind it.
        lines = 1 if row.target.startswith("planes") else 0
        whole = guarded.array([*right.shape[:lines + 1], right.shape[lines + 1] + 4, *right.shape[lines + 2:]],
                              right.dtype)
        view = whole[tuple([slice(None)] * (lines + 1) + [slice(4, None)])]
        quorvane.convert(frame, **arguments, out=view)
        np.testing.assert_array_equal(view, right)
    del frame, out, whole, view
    guarded.free()
