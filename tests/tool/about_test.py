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
                    r"--method yuv422 +--to bgr +QVN_Raw8ToBGR_IntYUV422 +size: even width, even height",
                    r"--method lcaa +--to bgr +QVN_Raw8ToBGR_IntLCAA +size: .*at least 12 pixels",
                    r"--method lcaav +--to bgr +QVN_Raw8ToBGR_IntLCAAV +size: .*at least 2x6",
                    r"--method 2x2 +--to bgr +QVN_Raw16ToBGR +size: at least 2x2",
                    r"--method direct +--to planes-y +QVN_YUV411ToRGBYPlanes +size: any",
                    r"\n  uyvy .*groups of 2 pixels\n", r"\n  uyyvyy411 .*groups of 4 pixels\n",
                    r"\n  y16le .*--bits, --align\n"):
            self.assertRegex(text, row)
        for word in ("raw8", "raw16be", "yuv444", "y8", "y16be", "rgb8", "rggb", "grbg", "gbrg", "bggr",
                     "PNG", "PPM", "PGM", "planes"):
            self.assertIn(word, text)

    def test_every_listed_conversion_runs(self):
        source = None
        count = 0
        for line in self.run_tool("formats").decode().split("\nTargets")[0].splitlines():
            head = re.match(r"  (\S+) ", line)
            row = re.match(r" +--method (\S+) +--to (\S+)", line)
            if head:
                source = head[1]
                self.run_tool("chart", "frame.raw", "--format", source, "--size", "24x16")
            if row:
                self.run_tool("convert", "frame.raw", "out.png", "--from", source, "--size", "24x16",
                              "--method", row[1], "--to", row[2])
                count += 1
        self.assertGreaterEqual(count, 26)

    def test_version(self):
        first, library, level = self.run_tool("--version").decode().splitlines()
        self.assertEqual(first, "qvn 2.1.2.0 (version word 0x02010200)")
        path = library.removeprefix("library: ")
        self.assertTrue(os.path.isfile(path), path)
        self.assertIn("libquorvane", os.path.basename(path))
        folder = re.search(r"/glibc-hwcaps/([^/]+)/", path)
        self.assertEqual(level, "level: " + (folder[1] if folder else "baseline"))

    def test_help(self):
        text = self.run_tool("--help").decode()
        for name in ("chart", "convert", "sheet", "formats"):
            self.assertIn(name, text)
            self.assertIn("Usage", self.run_tool(name, "--help").decode())


if __name__ == "__main__":
    unittest.main()
