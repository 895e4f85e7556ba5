"""Exact and fast pixel-format conversions for frames from industrial cameras, over numpy arrays.

>>> import numpy as np, quorvane
>>> mosaic = np.zeros((1080, 1920), np.uint8)
>>> picture = quorvane.convert(mosaic, source="raw8", pattern="rggb")
>>> picture.shape
(1080, 1920, 3)

`convert` serves every source; `demosaic`, `cygm`, `yuv`, `mono`, `rgb` and `planes` are the same by family, and
find the source from the array where it tells. `conversions()` lists what there is. Pictures have blue first.

The interpreter's lock is released while a frame is converted: frames on several threads go side by side.
"""

from ._about import BuildInfo, build_info
from ._conversions import (
    Conversion,
    convert,
    conversions,
    cygm,
    demosaic,
    mono,
    planes,
    rgb,
    sources,
    yuv,
)
from ._native import ClampedMatrix, Correction, Error
from ._utilities import (
    bits_per_pixel,
    flip,
    resample,
    resampled_length,
    sis,
    status_text,
    techno_info,
    unpack12,
    version,
    weave,
)

__all__ = [
    "BuildInfo",
    "ClampedMatrix",
    "Conversion",
    "Correction",
    "Error",
    "bits_per_pixel",
    "build_info",
    "conversions",
    "convert",
    "cygm",
    "demosaic",
    "flip",
    "mono",
    "planes",
    "resample",
    "resampled_length",
    "rgb",
    "sis",
    "sources",
    "status_text",
    "techno_info",
    "unpack12",
    "version",
    "weave",
    "yuv",
]
