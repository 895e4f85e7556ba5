"""What is refused, and that the message says what was found and what is wanted."""

import pickle

import numpy as np
import pytest
import quorvane

RAW8 = np.zeros((8, 16), np.uint8)


@pytest.mark.parametrize("error,message,arguments,options", [
    (TypeError, "expected a numpy array or bytes, found list", ([[1]], "raw8"), {}),
    (TypeError, "raw8: expected an array of uint8, found float64", (np.zeros((8, 16)), "raw8"), {}),
    (TypeError, "raw8: expected an array of uint8, found int8", (RAW8.astype(np.int8), "raw8"), {}),
    (TypeError, "raw8: expected an array of uint8, found uint16", (RAW8.astype(np.uint16), "raw8"), {}),
    (TypeError, "raw16: expected an array of uint16, found uint8, .* source='raw16be' and 'raw16le' do",
     (RAW8, "raw16"), {}),
    (TypeError, "raw16be: expected an array of uint16, found >i2", (RAW8.astype(">i2"), "raw16be"), {}),
    (TypeError, "raw16be: expected an array of >u2, found <u2: source='raw16' takes both",
     (RAW8.astype("<u2"), "raw16be"), {}),
    (TypeError, "y16le: expected an array of <u2, found >u2: source='y16' takes both",
     (RAW8.astype(">u2"), "y16le"), {}),
    (ValueError, "unknown source 'raw9', expected raw16, y16, raw8, raw12packed,", (RAW8, "raw9"), {}),
    (ValueError, "unknown pattern 'rgb', expected rggb, gbrg, grbg or bggr", (RAW8, "raw8", "rgb"), {}),
    (TypeError, "expected a name as a string, found 1", (RAW8, "raw8", 1), {}),
    (ValueError, "raw8: unknown method '4x4', expected 2x2, 3x3, ", (RAW8, "raw8"), {"method": "4x4"}),
    (ValueError, "raw8: unknown target 'bgr16', expected bgr, grey-bgr", (RAW8, "raw8"), {"target": "bgr16"}),
    (ValueError, "unknown alignment 'left', expected low or top", (RAW8.astype("<u2"), "y16"),
     {"alignment": "left"}),
    (ValueError, "raw8: expected no bits", (RAW8, "raw8"), {"bits": 8}),
    (ValueError, "at most 16 bits, found 17", (RAW8.astype("<u2"), "y16"), {"bits": 17}),
    (ValueError, "no conversion to 'y16' takes a shift", (RAW8.astype("<u2"), "y16"),
     {"target": "y16", "shift": 1}),
    (ValueError, "no conversion by '2x2' to 'bgr16' takes fewer than 16 bits", (RAW8.astype("<u2"), "raw16"),
     {"method": "2x2", "target": "bgr16", "bits": 12}),
    (ValueError, r"yuv444: expected shape \(height, width, 3\), or .*size=\(width, height\), found \(8, 16\)",
     (RAW8, "yuv444"), {}),
    (ValueError, r"raw8: expected shape \(height, width\), or .*found \(8, 16, 1, 1\)",
     (RAW8.reshape(8, 16, 1, 1), "raw8"), {}),
    (ValueError, "raw12packed: expected lines of whole groups of 3 bytes, 2 pixels each, found lines of 16 bytes",
     (RAW8, "raw12packed"), {}),
    (ValueError, r"raw8: expected 128 bytes for 16x8, found 127", (RAW8.tobytes()[:-1], "raw8"),
     {"size": (16, 8)}),
    (ValueError, r"raw8: expected 128 bytes for 16x8, found 129", (RAW8.tobytes() + b"0", "raw8"),
     {"size": (16, 8)}),
    (ValueError, r"raw8: expected the shape of a frame of 8x16, found \(8, 16\)", (RAW8, "raw8"),
     {"size": (8, 16)}),
    (quorvane.Error, "QVN_Raw8ToBGR: expected a width that is a multiple of 2, found 15x8",
     (RAW8[:, :15], "raw8"), {}),
    (quorvane.Error, "QVN_Raw8ToBGR: expected a frame of at least 2x2, found 16x1", (RAW8[:1], "raw8"), {}),
    (quorvane.Error, "expected target BGRA", (RAW8, "raw8"), {"opaque": True}),
    (quorvane.Error, "shift of 0 to 16, found 17", (RAW8.astype("<u2"), "raw16"),
     {"target": "bgr16", "shift": 17}),
    (ValueError, "even number of pixels for target 'uyvy', found 5x5", (RAW8[:5, :5], "y8"),
     {"target": "uyvy"}),
    (TypeError, "out for target 'bgr': expected an array, found list", (RAW8, "raw8"), {"out": []}),
    (TypeError, "out for target 'bgr': expected dtype uint8, found uint16", (RAW8, "raw8"),
     {"out": np.zeros((8, 16, 3), np.uint16)}),
    (TypeError, "out for target 'bgr16': expected dtype uint16, found >u2", (RAW8.astype("<u2"), "raw16"),
     {"target": "bgr16", "out": np.zeros((8, 16, 3), ">u2")}),
    (ValueError, r"out for target 'bgr': expected shape \(8, 16, 3\), found \(8, 16, 4\)", (RAW8, "raw8"),
     {"out": np.zeros((8, 16, 4), np.uint8)}),
    (ValueError, "out for target 'bgr': expected an array that can be written", (RAW8, "raw8"),
     {"out": np.broadcast_to(np.uint8(0), (8, 16, 3))}),
    (ValueError, "out for target 'bgr': expected lines without gaps", (RAW8, "raw8"),
     {"out": np.zeros((8, 32, 3), np.uint8)[:, ::2]}),
    (ValueError, "out for target 'bgr': expected lines without gaps", (RAW8, "raw8"),
     {"out": np.zeros((8, 16, 3), np.uint8)[::-1]}),
])
def test_refusals(error, message, arguments, options):
    with pytest.raises(error, match=message):
        quorvane.convert(*arguments, **options)


def test_buffers_that_overlap():
    frame = np.zeros((9, 16), np.uint8)
    with pytest.raises(quorvane.Error, match="expected buffers that do not overlap"):
        quorvane.convert(frame[:8], "raw8", target="y8", out=frame[1:])


def test_wrong_types_of_arguments():
    with pytest.raises(ValueError, match="expected a number of 0 to 4294967295, found -1"):
        quorvane.convert(RAW8, "raw8", bands=-1)
    with pytest.raises(TypeError, match="expected a Correction, found list"):
        quorvane.convert(RAW8, "raw8", correction=[1])
    with pytest.raises(TypeError, match=r"size: expected \(width, height\)"):
        quorvane.convert(RAW8, "raw8", size=(1, 2, 3))
    for options in ({"size": 3}, {"size": (-1, 2)}, {"bands": -1}, {"shift": -1}, {"correction": [1]},
                    {"matrix": [1]}, {"method": 3}):
        with pytest.raises((TypeError, ValueError)):
            quorvane.convert(RAW8, "raw8", **options)


def test_a_refused_call_writes_nothing():
    out = np.full((8, 15, 3), 7, np.uint8)
    with pytest.raises(quorvane.Error):
        quorvane.convert(RAW8[:, :15], "raw8", out=out)
    assert (out == 7).all()


def test_frames_that_no_memory_holds():
    huge = np.lib.stride_tricks.as_strided(RAW8, (1 << 15, 1 << 14), (0, 0), writeable=False)
    with pytest.raises(ValueError, match="at most 268435456 pixels"):
        quorvane.convert(huge, "y8")
    # Sizes whose products wrap.
    for size in ((1 << 31, 1 << 31), ((1 << 32) - 1, 1), ((1 << 32) - 1, (1 << 32) - 1)):
        with pytest.raises(ValueError, match="at most 268435456 pixels"):
            quorvane.convert(b"", "rgba8", size=size)
    with pytest.raises(ValueError, match="expected a number of 0 to 4294967295"):
        quorvane.convert(b"", "rgba8", size=(1 << 32, 1))


def test_errors_know_their_status_and_can_be_pickled():
    with pytest.raises(quorvane.Error) as caught:
        quorvane.convert(RAW8.astype("<u2"), "y16", target="bgr16", bits=11)
    assert caught.value.status == 0x88000012
    assert quorvane.status_text(caught.value.status) in str(caught.value)
    again = pickle.loads(pickle.dumps(caught.value))
    assert (type(again), str(again), again.status) == (quorvane.Error, str(caught.value), caught.value.status)


def test_objects_that_were_never_made():
    for name, maker in (("correction", quorvane.Correction), ("matrix", quorvane.ClampedMatrix)):
        with pytest.raises(TypeError, match="found one that was never made"):
            quorvane.convert(RAW8, "raw8", **{name: maker.__new__(maker)})


def test_families_say_what_they_take():
    with pytest.raises(TypeError, match="expected an array of uint8 or uint16, found float32"):
        quorvane.demosaic(np.zeros((8, 8), np.float32))
    with pytest.raises(ValueError, match=r"\(height, width, 3\) or \(height, width, 2\), or a source"):
        quorvane.yuv(RAW8)


def test_empty_frames():
    assert quorvane.mono(np.zeros((0, 16), np.uint8)).shape == (0, 16, 3)
    assert quorvane.mono(np.zeros((16, 0), np.uint8)).shape == (16, 0, 3)
    with pytest.raises(quorvane.Error, match="at least 2x2"):
        quorvane.demosaic(np.zeros((0, 16), np.uint8))
