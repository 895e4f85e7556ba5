#!/usr/bin/env python3
"""The methods for mosaics against their formulas: random frames, all orders, sizes up to some vectors."""

import random
import unittest

import conversion_reference as reference
from support import ToolTest, read_netpbm

SEED = 20240611
PATTERNS = ("rggb", "grbg", "gbrg", "bggr")
SIZES = {
    "2x2": ((2, 2), (4, 3), (18, 5), (70, 9)),
    "3x3": ((4, 3), (4, 4), (6, 5), (18, 7), (36, 4), (70, 9)),
    "yuv422": ((2, 2), (2, 4), (4, 2), (6, 6), (34, 4), (70, 10)),
    "lcaa": ((2, 6), (4, 4), (6, 2), (12, 2), (34, 4), (70, 10)),
    "lcaav": ((2, 6), (2, 8), (4, 6), (6, 6), (34, 8), (70, 10)),
}


class Methods(ToolTest):
    def convert(self, data, size, *options):
        done = self.run_tool("convert", "-", "-", "--out-format", "ppm", "--from", "raw8",
                             "--size", "%dx%d" % size, *options, data=bytes(data))
        return read_netpbm(done).samples

    def test_random_frames(self):
        numbers = random.Random(SEED)
        for method, sizes in SIZES.items():
            for size in sizes:
                for pattern in PATTERNS:
                    with self.subTest(method=method, size=size, pattern=pattern, seed=SEED):
                        data = [numbers.randrange(256) for _ in range(size[0] * size[1])]
                        expected = reference.METHODS[method](reference.Mosaic(data, *size, pattern))
                        found = self.convert(data, size, "--method", method, "--pattern", pattern)
                        self.assertEqual(found, reference.flat(expected))

    def test_grey_stays_grey(self):
        for method in SIZES:
            for value in (0, 1, 127, 254, 255):
                self.assertEqual(self.convert([value] * 240, (20, 12), "--method", method),
                                 [value] * 720, (method, value))

    def test_3x3_of_a_single_sample(self):
        # Lines of 4: a green of 200 at column 2 of line 1, on a blue line. Its own green is half of it; the
        # pixels left and right of it have a quarter; lines and columns at the border repeat their neighbours.
        data = [0] * 16
        data[1 * 4 + 2] = 200
        picture = self.convert(data, (4, 4), "--method", "3x3")
        # Line 1: column 1 is blue, column 2 the green. Line 2: column 1 a green with it to the north-east,
        # column 2 red with it to the north.
        line1 = [(0, 50, 0), (0, 50, 0), (0, 100, 0), (0, 100, 0)]
        line2 = [(0, 50, 0)] * 4
        self.assertEqual(picture, reference.flat(line1 + line1 + line2 + line2))

    def test_the_frame_stays_whole(self):
        """The interpolations destroy their source: what comes behind them in a sheet must not see it."""
        self.run_tool("chart", "frame.raw", "--size", "48x32")
        before = self.read("frame.raw")
        both = []
        for method in ("lcaa", "2x2"):
            self.run_tool("convert", "frame.raw", "a.ppm", "--from", "raw8", "--size", "48x32",
                          "--method", method)
            both.append(self.read("a.ppm"))
        self.run_tool("sheet", "frame.raw", "sheet.ppm", "--from", "raw8", "--size", "48x32")
        sheet = read_netpbm(self.read("sheet.ppm"))
        # The first cell is 2x2, the fourth lcaa; small frames are shown as they are.
        for cell, expected in ((0, both[1]), (3, both[0])):
            left, top = 20 + cell % 3 * 404, 44 + 46 + cell // 3 * (46 + 32 + 10 + 256 + 20)
            expected = read_netpbm(expected)
            self.assertTrue(all(sheet.pixel(left + x, top + y) == expected.pixel(x, y)
                                for y in range(32) for x in range(48)), cell)
        self.assertEqual(self.read("frame.raw"), before)

    def test_sizes_that_a_method_does_not_take(self):
        wrong = {
            "3x3": (("5x4", "even"), ("2x4", "at least 4x3"), ("4x2", "at least 4x3")),
            "yuv422": (("5x4", "even"), ("4x5", "height that is even"), ("4x1", "at least 2x2")),
            "lcaa": (("5x4", "even"), ("6x5", "height that is even"), ("2x4", "at least 12 pixels"),
                     ("4x2", "at least 12 pixels"), ("2x2", "at least 12 pixels")),
            "lcaav": (("5x6", "even"), ("4x7", "height that is even"), ("8x4", "at least 2x6"),
                      ("8x2", "at least 2x6")),
        }
        for method, cases in wrong.items():
            for size, says in cases:
                width, height = map(int, size.split("x"))
                self.write("frame.raw", bytes(width * height))
                self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", "--size", size,
                            "--method", method, says=["raw8 by method " + method, says, "found "])

    def test_a_sheet_leaves_out_what_does_not_take_the_size(self):
        for size, cells in (("8x8", 7), ("8x4", 6), ("8x7", 4), ("7x8", 2)):
            self.run_tool("chart", "frame.raw", "--size", size)
            self.run_tool("sheet", "frame.raw", "sheet.ppm", "--from", "raw8", "--size", size)
            sheet = read_netpbm(self.read("sheet.ppm"))
            height = int(size.split("x")[1])
            # Labels 46, the picture as it is, a gap of 10, the same eight times enlarged, a gap of 20.
            self.assertEqual(sheet.height, 44 + (76 + 9 * height) * ((cells + 2) // 3), size)


if __name__ == "__main__":
    unittest.main()
