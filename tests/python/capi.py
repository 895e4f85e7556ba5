"""The C functions through ctypes, called the way quorvane.h describes them: what the module is compared with.

QVN_LIBRARY in the environment names the shared library.
"""

import ctypes
import os

import numpy as np

LIBRARY = ctypes.CDLL(os.environ["QVN_LIBRARY"])
# The same without letting go of the interpreter's lock.
HOLDING = ctypes.PyDLL(os.environ["QVN_LIBRARY"])

# pixels of a group, and its bytes
GROUPS = {
    "raw8": (1, 1), "raw12packed": (2, 3), "raw12p": (2, 3), "raw12csi2": (2, 3), "raw16be": (1, 2),
    "raw16le": (1, 2), "raw16": (1, 2), "iraw8-cygm": (1, 1), "iraw8-cygm-binned": (1, 1), "yuv444": (1, 3),
    "uyvy": (2, 4), "yuyv": (2, 4), "uyyvyy411": (4, 6), "y8": (1, 1), "y12packed": (2, 3), "y12p": (2, 3),
    "y12csi2": (2, 3), "y16be": (1, 2), "y16le": (1, 2), "y16": (1, 2), "rgb8": (1, 3), "rgba8": (1, 4),
}
# TransformTarget
CODES = {"y8": 0, "bgr": 1, "bgra": 2, "y8-709": 3, "uyvy": 4, "y16": 5, "y16-709": 6, "bgr16": 7}
# values of a pixel, and their dtype
PICTURES = {
    "bgr": (3, np.uint8), "bgra": (4, np.uint8), "grey-bgr": (3, np.uint8), "y8": (1, np.uint8),
    "y8-709": (1, np.uint8), "uyvy": (2, np.uint8), "bgr16": (3, np.uint16), "y16": (1, np.uint16),
    "y16-709": (1, np.uint16),
}
PATTERNS = ["rggb", "gbrg", "grbg", "bggr"]


class Block(ctypes.Structure):
    _fields_ = [(name, ctypes.c_uint32) for name in ("reserved", "alignment", "bits", "order", "pattern")]


class Floats(ctypes.Structure):
    _fields_ = [("kind", ctypes.c_uint32), ("reserved", ctypes.c_uint32), ("matrix", ctypes.c_float * 9),
                ("gamma", ctypes.c_float), ("white", ctypes.c_float)]


class Table(ctypes.Structure):
    _fields_ = [("kind", ctypes.c_uint32), ("reserved", ctypes.c_uint32), ("pointer", ctypes.c_void_p),
                ("first", ctypes.c_void_p), ("last", ctypes.c_void_p), ("end", ctypes.c_void_p)]


def address(array):
    return ctypes.c_void_p(array.ctypes.data)


def number(value):
    return ctypes.c_uint32(value)


def frame_shape(source, width, height):
    group, size = GROUPS[source]
    if source in ("raw16", "raw16be", "raw16le", "y16", "y16be", "y16le"):
        return (height, width)
    if size % group == 0:
        values = size // group
        return (height, width) if values == 1 else (height, width, values)
    return (height, width // group * size)


def frame_dtype(source):
    if source in ("raw16be", "y16be"):
        return np.dtype(">u2")
    return np.dtype("<u2") if source in ("raw16le", "y16le", "raw16", "y16") else np.dtype(np.uint8)


def picture_shape(target, width, height):
    if target in ("planes", "planes-y"):
        return (3 if target == "planes" else 4, height, width)
    values = PICTURES[target][0]
    return (height, width) if values == 1 else (height, width, values)


def picture_dtype(target):
    return np.dtype(PICTURES[target][1] if target in PICTURES else np.uint8)


def as_packed(frame, source):
    """12 bits in other packings and luma before chroma by their layouts, as the functions take them."""
    if source == "yuyv":
        return frame.reshape(-1, 2)[:, ::-1].reshape(-1).copy()
    a, b, c = (frame.reshape(-1)[i::3].astype(np.uint32) for i in range(3))
    if source.endswith("12p"):
        even, odd = a | (b & 15) << 8, b >> 4 | c << 4
    else:
        even, odd = a << 4 | c & 15, b << 4 | c >> 4
    packed = np.empty(frame.size, np.uint8)
    packed[0::3], packed[1::3], packed[2::3] = even >> 4, even & 15 | (odd & 15) << 4, odd >> 4
    return packed


def call(function, target, picture, frame, width, height, *, source="", pattern=0, shift=0, correction=None,
         bits=16, alignment=1, library=LIBRARY):
    """Runs the function into `picture`, from `frame`, which it may overwrite. `source` tells the order of words
    where the function asks for it."""
    entry = getattr(library, function)
    entry.restype = ctypes.c_uint32
    name = function.removeprefix("QVN_")
    little = source.endswith("le")
    planes = [ctypes.c_void_p(picture.ctypes.data + i * width * height) for i in range(4)]
    to, of = address(picture), address(frame)
    size = [number(width), number(height)]
    count = number(width * height)
    code = number(CODES.get(target, 0))
    order = number(0 if little else 1)
    block = ctypes.byref(Block(7, alignment, bits, 0 if little else 1, pattern))
    if name.endswith("RGBYPlanes"):
        if target == "planes":
            planes[3] = ctypes.c_void_p(None)
        return entry(*planes, of, *size)
    if name.endswith("RGBPlanes"):
        return entry(*planes[:3], of, *size)
    if name == "Raw16ImageTransformEx":
        return entry(to, of, *size, code, block)
    if name == "Y16ImageTransformEx":
        return entry(to, of, count, code, block)
    if name in ("Y16ToBGREx", "Y16ToY8Ex"):
        return entry(to, of, count, order, number(alignment), number(bits))
    if name.startswith("IRaw8"):
        chosen = [code] if "ImageTransform" in name else []
        phase = [] if name.endswith("_Bin") else [number(0)]
        return entry(to, of, *size, *chosen, *phase)
    if name.startswith("Raw"):
        arguments = [code] if "ImageTransform" in name else []
        arguments.append(number(pattern))
        if name.startswith(("Raw16ToBGR16", "Raw16ToY16")):
            arguments.append(number(shift))
        if name.endswith("_CC"):
            arguments.append(correction)
        return entry(to, of, *size, *arguments)
    return entry(to, of, count, *([code] if "ImageTransform" in name else []))


def fixed(creator, matrix):
    """An object of a creator. It is kept until the process ends."""
    made = ctypes.c_void_p()
    numbers = (ctypes.c_float * 9)(*matrix)
    assert getattr(LIBRARY, creator)(numbers, ctypes.byref(made)) == 0
    return made


def table(kind, levels):
    """The object and what keeps it alive."""
    first = levels.ctypes.data
    last = first + levels.nbytes
    made = Table(kind, 0, None, first, last, last)
    return ctypes.byref(made), (made, levels)


def floats(kind, matrix=(0.0,) * 9, gamma=1.0, white=1.0):
    return ctypes.byref(Floats(kind, 0, (ctypes.c_float * 9)(*matrix), gamma, white))
