"""What was loaded."""

from __future__ import annotations

import dataclasses
import re

from . import _native


@dataclasses.dataclass(frozen=True)
class BuildInfo:
    """The library behind the module.

    Attributes
    ----------
    version : str
        The library's product version, "2.1.2.0".
    file : str
        The file that it was loaded from.
    level : str
        The instruction-set level that the system's loader chose: "baseline", "x86-64-v2", "x86-64-v3" or
        "x86-64-v4".
    """

    version: str
    file: str
    level: str


def build_info() -> BuildInfo:
    """Tell version, file and instruction-set level of the library.

    Returns
    -------
    BuildInfo
    """
    word = _native.version()
    parts = [word >> shift & 0xFF for shift in (24, 16, 8, 0)]
    file = _native.library_file()
    chosen = re.search(r"/glibc-hwcaps/([^/]+)/[^/]*$", file)
    return BuildInfo(".".join(map(str, parts)), file, chosen[1] if chosen else "baseline")
