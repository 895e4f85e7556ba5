"""What is no conversion: flips, fields, packed samples, lines resampled, the SIS, and queries."""

from __future__ import annotations

from typing import Any, Literal

import numpy as np
import numpy.typing as npt

from . import _native
from ._conversions import Array, Buffer, Size, as_array

_AXES = {"horizontal": 1, "vertical": 2, "both": 3}
# Codes of formats whose elements have that many bytes: Mono8, Mono16, RGB8, RGB16.
_CODES = {1: 0, 2: 5, 3: 4, 6: 6}


def _bytes(array: Array) -> npt.NDArray[np.uint8]:
    """The bytes of a contiguous array, without a copy."""
    return array.reshape(-1).view(np.uint8)


def _written(out: Array, shape: tuple[int, ...], dtype: npt.DTypeLike) -> Array:
    wanted = np.dtype(dtype)
    if not isinstance(out, np.ndarray):
        raise TypeError(f"out: expected an array, found {type(out).__name__}")
    if out.dtype != wanted:
        raise TypeError(f"out: expected dtype {wanted}, found {out.dtype}")
    if out.shape != shape:
        raise ValueError(f"out: expected shape {shape}, found {out.shape}")
    if not out.flags.c_contiguous or not out.flags.writeable:
        raise ValueError("out: expected a contiguous array that can be written")
    return out


def _frame(array: Buffer) -> Array:
    given = as_array(array)
    if given.ndim < 2:
        raise ValueError(f"expected shape (height, width) or (height, width, values), found {given.shape}")
    return np.ascontiguousarray(given)


def flip(
    array: Array,
    axis: Literal["horizontal", "vertical", "both"] = "horizontal",
    *,
    code: int | None = None,
    out: Array | None = None,
) -> Array:
    """Mirror a frame.

    Parameters
    ----------
    array : numpy.ndarray
        (height, width) or (height, width, values); at least two lines. Lines are reversed by pixels of 1, 2, 3
        or 6 bytes; "vertical" takes any.
    axis : {"horizontal", "vertical", "both"}
        "horizontal" reverses each line, "vertical" the order of lines.
    code : int, optional
        A pixel format code whose elements are reversed instead of the array's own; see `QVN_Flip`.
    out : numpy.ndarray, optional
        An array of the same shape and dtype; `array` itself flips in place.

    Returns
    -------
    numpy.ndarray
        `out`, or a new array.
    """
    if axis not in _AXES:
        raise ValueError(f"unknown axis {axis!r}, expected horizontal, vertical or both")
    given = as_array(array)
    if given.ndim not in (2, 3):
        raise ValueError(f"expected shape (height, width) or (height, width, values), found {given.shape}")
    height, width = given.shape[:2]
    line = given.dtype.itemsize * int(np.prod(given.shape[1:]))
    element = line // width if width else 1
    if code is None and axis != "vertical" and element not in _CODES:
        raise ValueError(f"expected pixels of 1, 2, 3 or 6 bytes, found {element}")
    if code is not None and axis != "vertical":
        element = {0: 1, 9: 1, 4: 3, 6: 6, 8: 6}.get(code, 1 if code > 10 else 2)
        if line % element:
            raise ValueError(f"expected lines of whole elements of {element} bytes, found {line} bytes")
        width = line // element
    result = np.empty(given.shape, given.dtype) if out is None else _written(out, given.shape, given.dtype)
    if result is not given:
        result[...] = given
    if axis == "vertical":
        _native.flip_vertical(_bytes(result), line, height)
    else:
        chosen = _CODES[element] if code is None else code
        _native.flip(_bytes(result), width, height, _AXES[axis], chosen)
    return result


def weave(array: Array, *, out: Array | None = None) -> Array:
    """Weave two fields, stored one behind the other, to a frame.

    Parameters
    ----------
    array : numpy.ndarray
        (height, width) or (height, width, values): the field of the odd lines, then that of the even ones.
    out : numpy.ndarray, optional
        An array of the same shape and dtype; `array` itself is woven in place.

    Returns
    -------
    numpy.ndarray
        `out`, or a new array. Of an odd height, the last line is left alone, and 0 in a new array.
    """
    frame = _frame(array)
    line = frame.dtype.itemsize * int(np.prod(frame.shape[1:]))
    if out is None:
        result = np.zeros_like(frame) if frame.shape[0] % 2 else np.empty_like(frame)
    else:
        result = _written(out, frame.shape, frame.dtype)
    _native.weave(_bytes(result), _bytes(frame), line, frame.shape[0])
    return result


def unpack12(
    array: Buffer, bits: Literal[8, 16] = 16, *, size: Size | None = None, out: Array | None = None
) -> Array:
    """Unpack samples of 12 bits, two in three bytes.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        uint8, (height, bytes of a line) with whole groups of three bytes in a line, or any shape with `size`.
    bits : {8, 16}
        8 keeps the top eight bits of each sample; 16 keeps all, at the top of two bytes.
    size : (int, int), optional
        Width and height in samples, in this order.
    out : numpy.ndarray, optional
        An array of the result's shape and dtype.

    Returns
    -------
    numpy.ndarray
        (height, width) of uint8, or of big-endian uint16 (dtype ">u2").
    """
    if bits not in (8, 16):
        raise ValueError(f"expected 8 or 16 bits, found {bits}")
    packed = as_array(array)
    if packed.dtype != np.uint8:
        raise TypeError(f"expected an array of uint8, found {packed.dtype}")
    if size is not None:
        width, height = size
    elif packed.ndim == 2 and packed.shape[1] % 3 == 0:
        height, width = packed.shape[0], packed.shape[1] // 3 * 2
    else:
        raise ValueError(
            f"expected shape (height, multiple of 3), or size=(width, height), found {packed.shape}"
        )
    samples = width * height
    wanted = (samples + 1) // 2 * 3
    if packed.size != wanted:
        raise ValueError(f"expected {wanted} bytes for {width}x{height}, found {packed.size}")
    dtype = np.dtype("u1" if bits == 8 else ">u2")
    result = None if out is None else _written(out, (height, width), dtype)
    if result is None or samples % 2:
        # The function writes samples in pairs.
        pairs = np.empty(samples + samples % 2, dtype)
    else:
        pairs = result.reshape(-1)
    _native.unpack12(_bytes(pairs), _bytes(np.ascontiguousarray(packed)), width, height, bits)
    if result is None:
        return pairs[:samples].reshape(height, width)
    if samples % 2:
        result[...] = pairs[:samples].reshape(height, width)
    return result


def resampled_length(length: int, source_rate: float, rate: float) -> int:
    """Tell how many elements a line has after `resample`.

    Parameters
    ----------
    length : int
        Elements of a source line.
    source_rate, rate : float
        Elements for the same stretch before and after.

    Returns
    -------
    int
    """
    return _native.resampled_length(length, source_rate, rate)


def resample(
    array: Array,
    source_rate: float,
    rate: float,
    *,
    length: int | None = None,
    method: Literal["nearest", "linear"] = "nearest",
    out: Array | None = None,
) -> Array:
    """Stretch or shrink lines.

    Parameters
    ----------
    array : numpy.ndarray
        (lines, elements) or (lines, elements, values), elements of 1 to 6 bytes.
    source_rate, rate : float
        Elements for the same stretch before and after: `rate` twice `source_rate` doubles lines.
    length : int, optional
        Elements of a line afterwards; `resampled_length` if it is left out.
    method : {"nearest", "linear"}
        What `QVN_ResampleScanlinesEx` makes of each.
    out : numpy.ndarray, optional
        An array of the result's shape and dtype.

    Returns
    -------
    numpy.ndarray
        (lines, length) or (lines, length, values).
    """
    if method not in ("nearest", "linear"):
        raise ValueError(f"unknown method {method!r}, expected nearest or linear")
    lines = _frame(array)
    count, source_length = lines.shape[:2]
    element = lines.dtype.itemsize * int(np.prod(lines.shape[2:]))
    if length is None:
        length = resampled_length(source_length, source_rate, rate)
    if length < 1 or source_length < 1:
        raise ValueError(f"expected lines of at least one element, found {source_length} to {length}")
    shape = (count, length, *lines.shape[2:])
    result = np.zeros(shape, lines.dtype) if out is None else _written(out, shape, lines.dtype)
    _native.resample(
        _bytes(result),
        _bytes(lines),
        length,
        source_length,
        count,
        rate,
        source_rate,
        element,
        method == "linear",
    )
    return result


def sis(frame: Buffer, size: Size, code: int, position: int, *, large: bool = False) -> bytes:
    """Copy the block of data that a camera puts into its pixels.

    Parameters
    ----------
    frame : numpy.ndarray or bytes
        The whole frame.
    size : (int, int)
        Width and height in pixels, in this order.
    code : int
        The pixel format code; see `bits_per_pixel`.
    position : int
        From 0: the line that the block starts with. Below 0: the pixel, counted back from the frame's end.
    large : bool
        52 bytes instead of 12.

    Returns
    -------
    bytes
    """
    contiguous = np.ascontiguousarray(as_array(frame))
    return _native.sis(_bytes(contiguous), size[0], size[1], code, position, large)


def bits_per_pixel(code: int) -> int:
    """Tell the bits of a pixel for a pixel format code, as `QVN_GetBitsPerPixel` lists them."""
    return _native.bits_per_pixel(code)


def status_text(status: int) -> str:
    """Tell the library's text for a status."""
    return _native.status_text(status)


def techno_info() -> tuple[Any, ...]:
    """Tell the library's twelve flags."""
    return _native.techno_info()


def version() -> int:
    """Tell the library's version word, 0x02010200."""
    return _native.version()
