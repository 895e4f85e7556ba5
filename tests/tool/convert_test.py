#!/usr/bin/env python3
"""Conversions: pixels worked by hand, file formats in and out, pipes, and the four Bayer orders."""

import os
import stat
import struct
import unittest

from support import ToolTest, netpbm, read_netpbm, read_png

# R G R G    10  20  30  41
# G B G B    50  60  70  80
# R G R G    90 100 110 120
TINY = bytes([10, 20, 30, 41, 50, 60, 70, 80, 90, 100, 110, 120])
# Windows of the first line: R 10, G (20 + 50) / 2 = 35, B 60; then R 30, G (20 + 70) / 2 = 45, B 60;
# then R 30, G (41 + 70) / 2 = 55 rounded down, B 80; then the pixel before again.
# The second: R 90, G (50 + 100) / 2 = 75, B 60; R 110, G (70 + 100) / 2 = 85, B 60;
# R 110, G (70 + 120) / 2 = 95, B 80; again. The third line is the second.
TINY_RGB = [(10, 35, 60), (30, 45, 60), (30, 55, 80), (30, 55, 80)] + 2 * [
    (90, 75, 60), (110, 85, 60), (110, 95, 80), (110, 95, 80)]
# (77 R + 150 G + 29 B) / 256 rounded down: 7760, 10800, 12880; 19920, 22960, 25040 over 256.
TINY_LUMA = [30, 42, 50, 50] + 2 * [77, 89, 97, 97]


def flat(pixels):
    return [sample for pixel in pixels for sample in pixel]


class HandWorked(ToolTest):
    def convert(self, name, *options):
        self.run_tool("convert", name, "out.png", *options)
        return read_png(self.read("out.png"))

    def test_raw8_to_bgr(self):
        self.write("tiny.raw", TINY)
        picture = self.convert("tiny.raw", "--from", "raw8", "--size", "4x3",
                               "--pattern", "rggb", "--method", "2x2", "--to", "bgr")
        self.assertEqual((picture.width, picture.height, picture.channels, picture.depth), (4, 3, 3, 8))
        self.assertEqual(picture.samples, flat(TINY_RGB))

    def test_raw8_to_grey(self):
        self.write("tiny.raw", TINY)
        picture = self.convert("tiny.raw", "--from", "raw8", "--size", "4x3", "--to", "y8")
        self.assertEqual((picture.channels, picture.depth), (1, 8))
        self.assertEqual(picture.samples, TINY_LUMA)
        picture = self.convert("tiny.raw", "--from", "raw8", "--size", "4x3", "--to", "grey-bgr")
        self.assertEqual(picture.channels, 3)
        self.assertEqual(picture.samples, flat((luma,) * 3 for luma in TINY_LUMA))

    def test_raw16be_takes_the_first_byte_and_has_a_black_last_column(self):
        self.write("tiny.raw", b"".join(bytes([sample, 255 - sample]) for sample in TINY))
        picture = self.convert("tiny.raw", "--from", "raw16be", "--size", "4x3")
        expected = [(0, 0, 0) if i % 4 == 3 else pixel for i, pixel in enumerate(TINY_RGB)]
        self.assertEqual(picture.samples, flat(expected))

    def test_the_first_sample_of_each_order(self):
        # One cell of 1, 2 / 3, 4. Red, mean of the greens rounded down, blue.
        self.write("cell.raw", [10, 20, 30, 41])
        for pattern, pixel in (("rggb", (10, 25, 41)), ("grbg", (20, 25, 30)), ("gbrg", (30, 25, 20)),
                               ("bggr", (41, 25, 10))):
            picture = self.convert("cell.raw", "--from", "raw8", "--size", "2x2", "--pattern", pattern)
            self.assertEqual(picture.samples, list(pixel) * 4, pattern)

    def test_odd_width_where_the_function_takes_it(self):
        self.write("odd.raw", [10, 20, 30, 50, 60, 70])
        picture = self.convert("odd.raw", "--from", "raw8", "--size", "3x2", "--to", "y8")
        # R 10, G 35, B 60; R 30, G 45, B 60; and again; and the line again.
        self.assertEqual(picture.samples, [30, 42, 42] * 2)


class Files(ToolTest):
    def setUp(self):
        super().setUp()
        self.write("tiny.raw", TINY)
        self.raw8 = ("--from", "raw8", "--size", "4x3")

    def test_png_ppm_and_pgm_hold_the_same(self):
        for target, names in (("bgr", ("a.png", "a.ppm")), ("y8", ("b.png", "b.pgm"))):
            for name in names:
                self.run_tool("convert", "tiny.raw", name, *self.raw8, "--to", target)
            self.assertEqual(read_png(self.read(names[0])), read_netpbm(self.read(names[1])))
        self.assertEqual(self.read("a.ppm"), netpbm(b"P6", 4, 3, 255, bytes(flat(TINY_RGB))))
        self.assertEqual(self.read("b.pgm"), netpbm(b"P5", 4, 3, 255, bytes(TINY_LUMA)))

    def test_out_format_goes_before_the_suffix(self):
        self.run_tool("convert", "tiny.raw", "a.dat", *self.raw8, "--out-format", "ppm")
        self.run_tool("convert", "tiny.raw", "a.png", *self.raw8, "--out-format", "ppm")
        self.assertEqual(self.read("a.dat"), self.read("a.png"))
        self.assertEqual(self.read("a.dat")[:2], b"P6")

    def test_suffix_in_capitals(self):
        self.run_tool("convert", "tiny.raw", "A.PNG", *self.raw8)
        self.assertEqual(read_png(self.read("A.PNG")).samples, flat(TINY_RGB))

    def test_pgm_brings_size_and_depth(self):
        self.write("tiny.pgm", b"P5 # a comment\n4\n# another\n3 255\n" + TINY)
        self.run_tool("convert", "tiny.pgm", "a.ppm")
        self.assertEqual(read_netpbm(self.read("a.ppm")).samples, flat(TINY_RGB))
        wide = b"".join(struct.pack(">H", sample * 256 + 7) for sample in TINY)
        self.write("wide.pgm", netpbm(b"P5", 4, 3, 65535, wide))
        self.run_tool("convert", "wide.pgm", "b.ppm", "--from", "raw16be", "--size", "4x3")
        picture = read_netpbm(self.read("b.ppm"))
        self.assertEqual([picture.pixel(x, 0) for x in range(4)], TINY_RGB[:3] + [(0, 0, 0)])

    def test_pgm_is_spread_to_the_full_range(self):
        # 4095 is white in twelve bits: 4095 gives 65535; 2048 gives 32776, whose first byte is 128.
        self.write("twelve.pgm", netpbm(b"P5", 2, 2, 4095, struct.pack(">4H", 4095, 2048, 2048, 0)))
        self.run_tool("convert", "twelve.pgm", "a.ppm")
        self.assertEqual(read_netpbm(self.read("a.ppm")).pixel(0, 0), (255, 128, 0))
        self.write("seven.pgm", netpbm(b"P5", 2, 2, 127, bytes([127, 64, 64, 0])))
        self.run_tool("convert", "seven.pgm", "b.ppm")
        # 64 * 255 / 127 = 128.5, to the nearest above.
        self.assertEqual(read_netpbm(self.read("b.ppm")).pixel(0, 0), (255, 129, 0))

    def test_a_headerless_frame_may_begin_like_a_pgm(self):
        self.write("odd.raw", b"P5\n4 3\n2 2")
        self.run_tool("convert", "odd.raw", "a.ppm", "--from", "raw8", "--size", "2x5")

    def test_sixteen_bit_pictures(self):
        self.run_tool("chart", "a.png", "--format", "rgb16be", "--size", "31x17")
        self.run_tool("chart", "a.ppm", "--format", "rgb16be", "--size", "31x17")
        self.run_tool("chart", "b.png", "--format", "raw16be", "--size", "31x17")
        self.run_tool("chart", "b.pgm", "--format", "raw16be", "--size", "31x17")
        for stem, suffix, channels in (("a", "ppm", 3), ("b", "pgm", 1)):
            picture = read_png(self.read(stem + ".png"))
            self.assertEqual((picture.depth, picture.channels), (16, channels))
            self.assertEqual(picture, read_netpbm(self.read("%s.%s" % (stem, suffix))))
            self.assertGreater(max(picture.samples), 255)

    def test_pipes(self):
        self.run_tool("convert", "tiny.raw", "a.png", *self.raw8)
        expected = self.read("a.png")
        png = ("--out-format", "png")
        self.assertEqual(self.run_tool("convert", "-", "-", *self.raw8, *png, data=TINY), expected)
        self.assertEqual(self.run_tool("convert", "tiny.raw", "-", *self.raw8, *png), expected)
        self.assertEqual(self.run_tool("convert", "-", "b.png", *self.raw8, data=TINY), b"")
        self.assertEqual(self.read("b.png"), expected)
        pgm = netpbm(b"P5", 4, 3, 255, TINY)
        self.assertEqual(self.run_tool("convert", "-", "-", *png, data=pgm), expected)

    def test_an_old_file_is_replaced_and_keeps_its_rights(self):
        self.write("a.png", b"old")
        os.chmod(self.folder / "a.png", 0o640)
        self.run_tool("convert", "tiny.raw", "a.png", *self.raw8)
        self.assertEqual(read_png(self.read("a.png")).samples, flat(TINY_RGB))
        self.assertEqual(stat.S_IMODE((self.folder / "a.png").stat().st_mode), 0o640)
        self.assertEqual(sorted(self.contents()), ["a.png", "tiny.raw"])

    def test_a_link_to_a_file_that_is_not_there_yet(self):
        (self.folder / "link.png").symlink_to("new.png")
        self.run_tool("convert", "tiny.raw", "link.png", *self.raw8)
        self.assertTrue((self.folder / "link.png").is_symlink())
        self.assertTrue((self.folder / "new.png").is_file())

    def test_a_link_stays_a_link(self):
        self.write("real.png", b"old")
        (self.folder / "link.png").symlink_to("real.png")
        self.run_tool("convert", "tiny.raw", "link.png", *self.raw8)
        self.assertTrue((self.folder / "link.png").is_symlink())
        self.assertEqual(read_png(self.read("real.png")).samples, flat(TINY_RGB))

    def test_a_device_is_written_to_and_not_replaced(self):
        self.run_tool("convert", "tiny.raw", "/dev/null", *self.raw8, "--out-format", "png")
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/null").st_mode))

    def test_input_and_output_may_be_one_file(self):
        self.write("same.pgm", netpbm(b"P5", 4, 3, 255, TINY))
        self.run_tool("convert", "same.pgm", "same.pgm", "--to", "y8")
        self.assertEqual(read_netpbm(self.read("same.pgm")).samples, TINY_LUMA)


class Orders(ToolTest):
    def test_all_four_orders_of_a_smooth_scene_give_the_same_picture(self):
        """The scene is one colour in each block of 8x8: pixels are equal whose window lies in one block."""
        colours = [(x * 37 % 256, (x * 91 + 40) % 256, (x * 53 + 200) % 256) for x in range(15)]
        width, height = 40, 24
        scene = bytes(flat(colours[y // 8 * 5 + x // 8] for y in range(height) for x in range(width)))
        self.write("scene.ppm", netpbm(b"P6", width, height, 255, scene))
        for source in ("raw8", "raw16be"):
            for pattern in ("rggb", "grbg", "gbrg", "bggr"):
                self.run_tool("chart", "m.raw", "--scene", "scene.ppm", "--format", source,
                              "--pattern", pattern, "--noise", 0)
                self.run_tool("convert", "m.raw", "m.png", "--from", source, "--size", "40x24",
                              "--pattern", pattern)
                picture = read_png(self.read("m.png"))
                for y in range(height - 1):
                    for x in range(width - 1):
                        if x % 8 != 7 and y % 8 != 7:
                            colour = colours[y // 8 * 5 + x // 8]
                            self.assertEqual(picture.pixel(x, y), colour, (source, pattern, x, y))

    def test_all_four_orders_of_the_chart_look_alike(self):
        """Samples lie at other places, so edges differ; the colour patches and the whole's mean must not."""
        pictures = {}
        for pattern in ("rggb", "grbg", "gbrg", "bggr"):
            self.run_tool("chart", "m.pgm", "--size", "192x128", "--pattern", pattern, "--noise", 0)
            self.run_tool("convert", "m.pgm", "m.ppm", "--pattern", pattern)
            pictures[pattern] = read_netpbm(self.read("m.ppm"))
        self.run_tool("chart", "scene.ppm", "--format", "rgb8", "--size", "192x128", "--noise", 0)
        scene = read_netpbm(self.read("scene.ppm"))
        for pattern, picture in pictures.items():
            # The red patch, the yellow one, the green one.
            for x, y in ((136, 11), (164, 11), (136, 25)):
                self.assertEqual(picture.pixel(x, y), scene.pixel(x, y), pattern)
            for channel in range(3):
                means = [sum(p.samples[channel::3]) / (192 * 128) for p in (picture, scene)]
                self.assertAlmostEqual(*means, delta=1.5, msg=pattern)

    def test_a_wrong_order_shows(self):
        self.run_tool("chart", "m.pgm", "--size", "192x128", "--pattern", "rggb", "--noise", 0)
        self.run_tool("convert", "m.pgm", "m.ppm", "--pattern", "bggr")
        red, _, blue = read_netpbm(self.read("m.ppm")).pixel(136, 11)
        self.assertLess(red, blue)


if __name__ == "__main__":
    unittest.main()
