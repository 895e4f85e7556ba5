#!/usr/bin/env python3
"""The listing of formats, the version, and the help."""

import os
import re
import unittest

from support import ToolTest


class About(ToolTest):
    def test_formats(self):
        text = self.run_tool("formats").decode()
        for row in (r"--method 2x2 +--to bgr +QVN_Raw8ToBGR +size: even width, at least 2x2",
                    r"--method 2x2 +--to grey-bgr +QVN_Raw8ToBGR_mono +size: at least 2x2",
                    r"--method 2x2 +--to y8 +QVN_Raw8ToY8 +size: at least 2x2",
                    r"--method 3x3 +--to bgr +QVN_Raw8ToBGR_3x3 +size: even width, at least 4x3",
                    r"--method yuv422 +--to bgr +QVN_Raw8ToBGR_IntYUV422 +size: even width and height\n",
                    r"--method lcaa +--to bgr +QVN_Raw8ToBGR_IntLCAA +size: .*at least 12 pixels",
                    r"--method lcaav +--to bgr +QVN_Raw8ToBGR_IntLCAAV +size: .*at least 2x6",
                    r"--method 2x2 +--to bgr +QVN_Raw16ToBGR +size: at least 2x2",
                    r"--method direct +--to planes-y +QVN_YUV411ToRGBYPlanes +size: any",
                    r"--method transform +--to bgr +QVN_Raw8ImageTransform +size: .*\n +--to bgra, y8, y8-709, uyvy\n",
                    r"--method transform-ex +--to bgr16 +QVN_Raw16ImageTransformEx +size: at least 2x2\n"
                    r" +--to y16, y16-709, bgr, bgra, y8, y8-709\n",
                    r"--method 2x2 +--to bgr16 +QVN_Raw12ToBGR16 +size: even width, at least 4x2",
                    r"--method bin +--to bgr +QVN_IRaw8CYGMToBGR_Bin +size: even width, height a multiple of 4",
                    r"\n  raw12packed .*even 11..4, odd 3..0 and even 3..0, odd 11..4",
                    r"\n  raw12p .*even 7..0, odd 3..0 and even 11..8, odd 11..4; .*read as raw12packed\n",
                    r"\n  raw12csi2 .*even 11..4, odd 11..4, odd 3..0 and even 3..0; .*read as raw12packed\n",
                    r"\n  uyvy .*groups of 2 pixels\n", r"\n  uyyvyy411 .*groups of 4 pixels\n",
                    r"\n  y16le .*--bits, --align\n"):
            self.assertRegex(text, row)
        for word in ("raw8", "raw16be", "yuv444", "y8", "y16be", "rgb8", "rggb", "grbg", "gbrg", "bggr",
                     "PNG", "PPM", "PGM", "planes", "raw12csi2", "iraw8-cygm", "y12p", "y12packed", "yuyv", "raw10csi2", "rgba8", "bgra", "y16-709"):
            self.assertIn(word, text)

    def test_every_listed_conversion_runs(self):
        rows = list(self.listed())
        for source, method, target in rows:
            if not (self.folder / (source + ".raw")).exists():
                self.run_tool("chart", source + ".raw", "--format", source, "--size", "24x16")
            self.run_tool("convert", source + ".raw", "out.png", "--from", source, "--size", "24x16",
                          "--method", method, "--to", target)
        self.assertEqual(len(rows), len(set(rows)))
        # Functions of one target, and those that offer several.
        self.assertEqual(len(rows), 37 + 104)

    def test_lines_are_not_too_long(self):
        for line in self.run_tool("formats").decode().splitlines():
            self.assertLessEqual(len(line), 132, line)

    def test_version(self):
        first, library, level, capabilities = self.run_tool("--version").decode().splitlines()
        self.assertEqual(first, "qvn 2.1.2.0 (version word 0x02010200)")
        path = library.removeprefix("library: ")
        self.assertTrue(os.path.isfile(path), path)
        self.assertIn("libquorvane", os.path.basename(path))
        folder = re.search(r"/glibc-hwcaps/([^/]+)/", path)
        self.assertEqual(level, "level: " + (folder[1] if folder else "baseline"))
        self.assertRegex(capabilities, r"^capabilities:( [01]){12}$")

    def test_help(self):
        text = self.run_tool("--help").decode()
        for name in ("chart", "convert", "sheet", "formats"):
            self.assertIn(name, text)
            self.assertIn("Usage", self.run_tool(name, "--help").decode())


if __name__ == "__main__":
    unittest.main()
