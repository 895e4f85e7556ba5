"""convert() and its kin."""

from __future__ import annotations

from typing import Any, Literal, NamedTuple, Union

import numpy as np
import numpy.typing as npt

from . import _native
from ._native import ClampedMatrix, Correction

Array = npt.NDArray[Any]
Buffer = Union[Array, bytes, bytearray, memoryview]
Pattern = Literal["rggb", "gbrg", "grbg", "bggr"]
Size = tuple[int, int]


class Conversion(NamedTuple):
    """A row of the table of conversions."""

    source: str
    method: str
    target: str
    function: str
    """The function of the library that does it; quorvane.h describes it."""
    corrected: str | None
    """The function that does it with a `Correction`, if there is one."""


def conversions() -> list[Conversion]:
    """List every conversion.

    Of one source and target, the first method is the default; of one method, the first target.
    """
    return [Conversion(*row) for row in _native.conversions()]


def sources() -> dict[str, str]:
    """List the names of sources with their layout in memory.

    "raw16" and "y16" stand beside them for arrays of words whose dtype tells their order.
    """
    return _native.sources()


def as_array(array: Buffer) -> Array:
    """Bytes-like objects as the arrays that they could be; nothing else is converted."""
    if isinstance(array, np.ndarray):
        return array
    if isinstance(array, (bytes, bytearray, memoryview)):
        return np.frombuffer(array, np.uint8)
    raise TypeError(f"expected a numpy array or bytes, found {type(array).__name__}")


def convert(
    array: Buffer,
    source: str,
    pattern: Pattern = "rggb",
    method: str | None = None,
    target: str | None = None,
    *,
    size: Size | None = None,
    out: Array | None = None,
    bands: int = 1,
    opaque: bool = False,
    correction: Correction | None = None,
    matrix: ClampedMatrix | None = None,
    shift: int = 0,
    bits: int | None = None,
    alignment: Literal["low", "top"] | None = None,
    overwrite: bool = False,
) -> Array:
    """Convert a frame to a picture.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        The frame. Samples of a byte come as uint8 in shape (height, width), samples of two bytes as uint16 in
        that shape, YUV 4:4:4 and RGB as (height, width, 3), RGBA as (height, width, 4), UYVY as
        (height, width, 2), packed formats as uint8 in shape (height, bytes of a line). Bytes in one axis, or
        in lines that the shape does not explain, need `size`. A frame that does not lie in whole lines in
        memory is copied; padding between lines costs no copy.
    source : str
        What the array holds; `sources()` lists the names. "raw16" and "y16" are words in the order of the
        array's dtype.
    pattern : {"rggb", "gbrg", "grbg", "bggr"}
        The first two samples of a mosaic's first line, then of its second one.
    method, target : str, optional
        What is made, and how; `conversions()` lists the names. Left out, they are the source's first that
        serve what else is asked for.
    size : (int, int), optional
        Width and height in pixels, in this order.
    out : numpy.ndarray, optional
        Where the picture is written: an array of its shape and dtype, whose lines may be padded. Bytes that
        a function leaves alone stay as they are.
    bands : int
        Cuts the frame into so many bands with a thread each, where the function permits it. The bytes stay
        those of one call.
    opaque : bool
        Sets every fourth byte of target "bgra" to 255. Without it they are those of `out`, or 0 in a new
        array; those of "rgba8" are the source's in both.
    correction : Correction, optional
        A correction of the library, between the mosaic and the picture.
    matrix : ClampedMatrix, optional
        A matrix on the finished picture.
    shift : int
        How many low bits of a 16-bit mosaic's samples do not count, for the targets with 16 bits.
    bits : int, optional
        How many bits of a sample of two bytes count: 16 if left out.
    alignment : {"low", "top"}, optional
        Where fewer bits than 16 lie in their two bytes: from bit 0 on ("low", the default), or up to bit 15.
    overwrite : bool
        Lets the methods that work in their source ("yuv422", "lcaa", "lcaav" and their transforms) do so in
        `array`. Without it they work in a copy.

    Returns
    -------
    numpy.ndarray
        `out`, or a new array. "bgr", "grey-bgr" and "bgr16": (height, width, 3), blue first; "bgra":
        (height, width, 4); "y8", "y8-709", "y16", "y16-709": (height, width); "uyvy": (height, width, 2);
        "planes" and "planes-y": (3 or 4, height, width), red, green, blue and luma. uint16 for the targets
        with 16 in their names, else uint8.

    Raises
    ------
    TypeError
        For an array of another dtype than the source or the target has.
    ValueError
        For shapes, sizes and names that do not fit.
    Error
        A ValueError, for what the library or its checks refuse.

    Notes
    -----
    The interpreter's lock is released while the frame is converted.
    """
    return _native.convert(
        as_array(array),
        source,
        pattern,
        method,
        target,
        size,
        out,
        bands,
        opaque,
        correction,
        matrix,
        shift,
        bits,
        alignment,
        overwrite,
    )


def demosaic(
    array: Buffer, pattern: Pattern = "rggb", *, source: str | None = None, **options: Any
) -> Array:
    """Convert a Bayer mosaic.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        (height, width) of uint8 or uint16, or another layout with its `source`.
    pattern : {"rggb", "gbrg", "grbg", "bggr"}
        The first two samples of the first line, then of the second one.
    source : str, optional
        "raw8" for uint8 and "raw16" for uint16, if it is left out; "raw12packed", "raw12p" and "raw12csi2"
        must be told.
    **options
        As in `convert`.

    Returns
    -------
    numpy.ndarray
    """
    given = as_array(array)
    return convert(given, source or _by_depth(given, "raw8", "raw16"), pattern, **options)


def cygm(array: Buffer, *, binned: bool = False, **options: Any) -> Array:
    """Convert an interlaced mosaic of cyan, yellow, green and magenta.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        (height, width) of uint8: the field of the odd lines, then that of the even ones.
    binned : bool
        The sensor added its lines in pairs.
    **options
        As in `convert`.

    Returns
    -------
    numpy.ndarray
    """
    return convert(array, "iraw8-cygm-binned" if binned else "iraw8-cygm", **options)


def yuv(array: Buffer, *, source: str | None = None, **options: Any) -> Array:
    """Convert a YUV frame.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        (height, width, 3) of U, Y, V; or (height, width, 2), pixels in pairs of U, Y and V, Y; or another
        shape with its `source`.
    source : str, optional
        "yuv444" and "uyvy" are known by their shape; "yuyv" and "uyyvyy411" must be told.
    **options
        As in `convert`.

    Returns
    -------
    numpy.ndarray
    """
    given = as_array(array)
    return convert(given, source or _by_values(given, {3: "yuv444", 2: "uyvy"}), **options)


def mono(array: Buffer, *, source: str | None = None, **options: Any) -> Array:
    """Convert a grey frame.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        (height, width) of uint8 or uint16, or another layout with its `source`.
    source : str, optional
        "y8" for uint8 and "y16" for uint16, if it is left out; "y12packed", "y12p" and "y12csi2" must be told.
    **options
        As in `convert`.

    Returns
    -------
    numpy.ndarray
    """
    given = as_array(array)
    return convert(given, source or _by_depth(given, "y8", "y16"), **options)


def rgb(array: Buffer, *, source: str | None = None, **options: Any) -> Array:
    """Convert a frame of red, green, blue and perhaps an opacity.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        (height, width, 3) or (height, width, 4) of uint8.
    source : str, optional
        "rgb8" and "rgba8" are known by their shape.
    **options
        As in `convert`.

    Returns
    -------
    numpy.ndarray
    """
    given = as_array(array)
    return convert(given, source or _by_values(given, {3: "rgb8", 4: "rgba8"}), **options)


def planes(array: Buffer, source: str, *, luma: bool = False, **options: Any) -> Array:
    """Convert YUV or RGB to separate planes.

    Parameters
    ----------
    array : numpy.ndarray or bytes
        As in `convert`.
    source : str
        "yuv444", "uyvy", "uyyvyy411" or "rgb8".
    luma : bool
        Makes a fourth plane, of luma.
    **options
        As in `convert`.

    Returns
    -------
    numpy.ndarray
        (3 or 4, height, width): red, green, blue and luma.
    """
    return convert(array, source, target="planes-y" if luma else "planes", **options)


def _by_depth(array: Array, bytes_: str, words: str) -> str:
    if array.dtype.kind == "u" and array.dtype.itemsize in (1, 2):
        return bytes_ if array.dtype.itemsize == 1 else words
    raise TypeError(f"expected an array of uint8 or uint16, found {array.dtype}")


def _by_values(array: Array, names: dict[int, str]) -> str:
    if array.ndim == 3 and array.shape[2] in names:
        return names[array.shape[2]]
    shapes = " or ".join(f"(height, width, {values})" for values in names)
    raise ValueError(f"expected shape {shapes}, or a source, found {array.shape}")
