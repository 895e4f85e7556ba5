#!/usr/bin/env python3
"""The contact sheet: as large as its cells, with the crop where it was asked for."""

import unittest

from support import ToolTest, netpbm, read_netpbm, read_png


class Sheet(ToolTest):
    def test_one_cell_for_each_conversion(self):
        self.run_tool("chart", "frame.pgm", "--size", "768x512")
        self.run_tool("sheet", "frame.pgm", "sheet.png")
        # Those functions are left out that only repeat what others show.
        cells = sum(source == "raw8" and not method.startswith("transform")
                    for source, method, _ in self.listed())
        self.assertEqual(cells, 7)
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

    def test_every_format_has_a_sheet(self):
        """Functions that offer several targets are shown only where there are no others."""
        rows = list(self.listed())
        for source in dict.fromkeys(source for source, _, _ in rows):
            single = [row for row in rows if row[0] == source and not row[1].startswith("transform")]
            cells = sum({"planes": 3, "planes-y": 4}.get(row[2], 1)
                        for row in single or [row for row in rows if row[0] == source])
            self.run_tool("chart", "frame.raw", "--format", source, "--size", "24x16")
            self.run_tool("sheet", "frame.raw", "sheet.ppm", "--from", source, "--size", "24x16")
            sheet = read_netpbm(self.read("sheet.ppm"))
            # Labels 46, the picture as it is, a gap of 10, the same eight times enlarged, a gap of 20.
            self.assertEqual(sheet.height, 44 + (76 + 9 * 16) * ((cells + 2) // 3), source)

    def test_12_bits_are_as_bright_as_8(self):
        self.run_tool("chart", "frame.raw", "--format", "raw12packed", "--size", "24x16")
        self.run_tool("sheet", "frame.raw", "sheet.ppm", "--from", "raw12packed", "--size", "24x16")
        sheet = read_netpbm(self.read("sheet.ppm"))
        for y in range(15):
            for x in range(23):
                pair = sheet.pixel(20 + x, 90 + y), sheet.pixel(424 + x, 90 + y)
                self.assertTrue(all(abs(a - b) <= 1 for a, b in zip(*pair)), pair)

    def test_bits_leave_out_what_does_not_know_them(self):
        for options, cells in (((), 3), (("--bits", 12), 7), (("--align", "msb"), 7)):
            self.run_tool("chart", "frame.raw", "--format", "raw16be", "--size", "24x16", *options)
            self.run_tool("sheet", "frame.raw", "sheet.ppm", "--from", "raw16be", "--size", "24x16", *options)
            sheet = read_netpbm(self.read("sheet.ppm"))
            self.assertEqual(sheet.height, 44 + (76 + 9 * 16) * ((cells + 2) // 3))
        self.refuse("sheet", "frame.raw", "a.png", "--from", "raw16be", "--size", "24x16", "--bits", 11,
                    says=["10, 12, 13, 14, 15 or 16", "found 11"])

    def test_the_four_orders_side_by_side(self):
        self.run_tool("chart", "frame.raw", "--size", "96x64", "--pattern", "gbrg")
        self.run_tool("sheet", "frame.raw", "sheet.ppm", "--from", "raw8", "--size", "96x64", "--show", "patterns")
        sheet = read_netpbm(self.read("sheet.ppm"))
        self.assertEqual(sheet.width, 20 + 404 * 4)
        for cell, pattern in enumerate(("rggb", "grbg", "gbrg", "bggr")):
            self.run_tool("convert", "frame.raw", "one.ppm", "--from", "raw8", "--size", "96x64", "--pattern", pattern)
            one = read_netpbm(self.read("one.ppm"))
            for y in range(64):
                for x in range(96):
                    self.assertEqual(sheet.pixel(20 + 404 * cell + x, 90 + y), one.pixel(x, y))

    def test_all_functions(self):
        for source, mosaic in (("raw12packed", True), ("rgb8", False)):
            self.run_tool("chart", "frame.raw", "--format", source, "--size", "24x16")
            self.run_tool("sheet", "frame.raw", "sheet.ppm", "--from", source, "--size", "24x16", "--show", "all")
            sheet = read_netpbm(self.read("sheet.ppm"))
            rows = [row for row in self.listed() if row[0] == source]
            cells = sum({"planes": 3, "planes-y": 4}.get(row[2], 1) for row in rows)
            lines = cells if mosaic else (cells + 2) // 3
            self.assertEqual(sheet.height, 44 + (76 + 9 * 16) * lines)
            self.assertEqual(sheet.width, 20 + 404 * (4 if mosaic else 3))

    def test_refusals(self):
        self.run_tool("chart", "frame.pgm", "--size", "96x64")
        for crop in ("96,0", "0,64", "1", "1,", ",1", "a,b", "1,2,3", "-1,2"):
            self.refuse("sheet", "frame.pgm", "a.png", "--crop=" + crop,
                        says=["--crop", "inside 96x64", crop])
        self.refuse("sheet", "frame.pgm", "a.png", "--show", "orders", says=["methods, patterns or all", "'orders'"])
        self.write("grey.raw", bytes(16))
        self.refuse("sheet", "grey.raw", "a.png", "--from", "y8", "--size", "4x4", "--show", "patterns", says=["y8"])
        for zoom in (0, 65, "8.5", "x"):
            self.refuse("sheet", "frame.pgm", "a.png", "--zoom", zoom, says=["expected 1 to 64", str(zoom)])
        self.refuse("sheet", "frame.pgm", "a.pgm", says=["PGM", "3"])
        self.refuse("sheet", "frame.pgm", "a.jpg", says=[".png"])
        self.write("line.pgm", netpbm(b"P5", 9, 1, 255, bytes(9)))
        self.refuse("sheet", "line.pgm", "a.png", says=["no method", "9x1"])


if __name__ == "__main__":
    unittest.main()
