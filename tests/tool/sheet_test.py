#!/usr/bin/env python3
"""The contact sheet: as large as its cells, with the crop where it was asked for."""

import unittest

from support import ToolTest, netpbm, read_netpbm, read_png


class Sheet(ToolTest):
    def test_one_cell_for_each_conversion(self):
        self.run_tool("chart", "frame.pgm", "--size", "768x512")
        self.run_tool("sheet", "frame.pgm", "sheet.png")
        listing = self.run_tool("formats").decode()
        cells = listing[listing.index("  raw8 "):listing.index("  raw16be ")].count("--method")
        sheet = read_png(self.read("sheet.png"))
        self.assertEqual(sheet.width, 20 + 404 * min(cells, 3))
        # Labels 46, the picture at half its size 256, a gap of 10, the crop 256, a gap of 20.
        self.assertEqual(sheet.height, 44 + 588 * ((cells + 2) // 3))
        # The first cell is in colour, and has colour.
        colours = {sheet.pixel(x, y) for y in range(90, 346, 5) for x in range(20, 404, 5)}
        self.assertTrue(any(max(c) - min(c) > 100 for c in colours))

    def test_crop_shows_single_pixels(self):
        # Black but for one white cell of two by two: its window's pixel is white.
        frame = bytearray(64 * 48)
        for x, y in ((30, 20), (31, 20), (30, 21), (31, 21)):
            frame[y * 64 + x] = 255
        self.write("dot.pgm", netpbm(b"P5", 64, 48, 255, frame))
        self.run_tool("sheet", "dot.pgm", "sheet.ppm", "--crop", "30,20", "--zoom", 8)
        sheet = read_netpbm(self.read("sheet.ppm"))
        # The crop is 48 by 32 pixels: 24 to the left, 16 above; so it starts at column 6, line 4.
        top = 44 + 46 + 48 + 10 + (20 - 4) * 8
        left = 20 + (30 - 6) * 8
        dot = {sheet.pixel(left + i, top + j) for i in range(8) for j in range(8)}
        self.assertEqual(dot, {(255, 255, 255)})
        self.assertNotEqual(sheet.pixel(left - 1, top), (255, 255, 255))
        self.assertEqual(sheet.pixel(left - 24, top), (0, 0, 0))
        self.run_tool("sheet", "dot.pgm", "sheet.ppm")
        found = read_netpbm(self.read("sheet.ppm"))
        crop = {found.pixel(x, y) for y in range(150, 404) for x in range(20, 404)}
        self.assertIn((255, 255, 255), crop)

    def test_small_wide_tall_and_odd_frames(self):
        for size in ("2x2", "1000x2", "2x1000", "33x21"):
            self.run_tool("chart", "frame.raw", "--size", size)
            self.run_tool("sheet", "frame.raw", "sheet.png", "--from", "raw8", "--size", size)
            read_png(self.read("sheet.png"))

    def test_sixteen_bit_frames(self):
        self.run_tool("chart", "frame.pgm", "--size", "96x64", "--format", "raw16be")
        self.assertEqual(self.run_tool("sheet", "frame.pgm", "-", "--out-format", "ppm")[:2], b"P6")

    def test_refusals(self):
        self.run_tool("chart", "frame.pgm", "--size", "96x64")
        for crop in ("96,0", "0,64", "1", "1,", ",1", "a,b", "1,2,3", "-1,2"):
            self.refuse("sheet", "frame.pgm", "a.png", "--crop=" + crop,
                        says=["--crop", "inside 96x64", crop])
        for zoom in (0, 65):
            self.refuse("sheet", "frame.pgm", "a.png", "--zoom", zoom, says=["expected 1 to 64", str(zoom)])
        self.refuse("sheet", "frame.pgm", "a.pgm", says=["PGM", "3"])
        self.refuse("sheet", "frame.pgm", "a.jpg", says=[".png"])
        self.write("line.pgm", netpbm(b"P5", 9, 1, 255, bytes(9)))
        self.refuse("sheet", "line.pgm", "a.png", says=["no method", "9x1"])


if __name__ == "__main__":
    unittest.main()
