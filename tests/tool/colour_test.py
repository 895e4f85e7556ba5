#!/usr/bin/env python3
"""YUV, grey and RGB frames against their formulas, and charts in these formats."""

import random
import struct
import unittest

import conversion_reference as reference
import scene_reference
from support import ToolTest, netpbm, read_netpbm, read_png

SEED = 20240612


def bytes_of(layout, pixels):
    return pixels * len(layout) // layout.count("Y")


class Colour(ToolTest):
    def setUp(self):
        super().setUp()
        self.numbers = random.Random(SEED)

    def noise(self, count):
        return bytes(self.numbers.choice((self.numbers.randrange(256), 0, 127, 128, 255))
                     for _ in range(count))

    def convert(self, data, source, size, target, *options):
        kind = "pgm" if target == "y8" else "ppm"
        return read_netpbm(self.run_tool(
            "convert", "-", "-", "--out-format", kind, "--from", source, "--size", "%dx%d" % size,
            "--to", target, *options, data=bytes(data))).samples

    def planes(self, data, source, size, target):
        self.run_tool("convert", "-", "out.pgm", "--from", source, "--size", "%dx%d" % size,
                      "--to", target, data=bytes(data))
        letters = "rgby" if target == "planes-y" else "rgb"
        self.assertEqual(sorted(self.contents()), sorted("out_%s.pgm" % letter for letter in letters))
        found = [read_netpbm(self.read("out_%s.pgm" % letter)) for letter in letters]
        for letter, picture in zip(letters, found):
            self.assertEqual((picture.width, picture.height, picture.channels), (*size, 1))
            (self.folder / ("out_%s.pgm" % letter)).unlink()
        return [picture.samples for picture in found]

    def test_yuv(self):
        for source, layout in reference.LAYOUTS.items():
            by_terms = source == "uyvy"
            for size in ((4, 1), (1, 4), (2, 2), (12, 3), (3, 4), (68, 5)):
                data = self.noise(bytes_of(layout, size[0] * size[1]))
                pixels = reference.yuv_pixels(layout, data)
                with self.subTest(source=source, size=size, seed=SEED):
                    expected = [reference.yuv_to_rgb(*pixel) for pixel in pixels]
                    self.assertEqual(self.convert(data, source, size, "bgr"), reference.flat(expected))
                    make = reference.yuv_to_rgb if by_terms else reference.yuv_to_rgb_by_sums
                    expected = list(map(list, zip(*(make(*pixel) for pixel in pixels))))
                    self.assertEqual(self.planes(data, source, size, "planes"), expected)
                    luma = [pixel[0] for pixel in pixels]
                    self.assertEqual(self.planes(data, source, size, "planes-y"), expected + [luma])

    def test_yuv_by_hand(self):
        # U 0 and V 0: blue -226, green 44 + 91, red -179. 255 and 255: 224, -43 - 90, 178.
        data = [0, 10, 0, 128, 100, 128, 255, 255, 255]
        self.assertEqual(self.convert(data, "yuv444", (3, 1), "bgr"),
                         [0, 145, 0, 100, 100, 100, 255, 122, 255])
        # Red and blue of one sum: 179 - 178.0794 is 0.92, cut to 0, where the terms alone give 1.
        data = [128, 179, 1, 179]
        self.assertEqual(self.convert(data, "uyvy", (2, 1), "bgr")[0], 1)
        self.assertEqual(self.planes([128, 179, 1], "yuv444", (1, 1), "planes")[0], [0])

    def test_single_pixels_and_partial_groups(self):
        self.assertEqual(self.convert([128, 9, 128], "yuv444", (1, 1), "bgr"), [9, 9, 9])
        # Groups run on from line to line.
        self.assertEqual(len(self.convert(self.noise(12), "uyvy", (3, 2), "bgr")), 18)
        for source, size, says in (("uyvy", "3x3", "multiple of 2"), ("uyvy", "1x1", "multiple of 2"),
                                   ("uyyvyy411", "3x2", "multiple of 4"),
                                   ("uyyvyy411", "5x5", "multiple of 4")):
            self.write("frame.raw", bytes(64))
            wrong = ("--size", size)
            for command in ("convert", "sheet"):
                self.refuse(command, "frame.raw", "a.png", "--from", source, *wrong,
                            says=[source, says, "found " + size])
            self.refuse("chart", "a.raw", "--format", source, *wrong, says=[source, says, "found " + size])

    def test_grey(self):
        data = self.noise(70)
        self.assertEqual(self.convert(data, "y8", (10, 7), "bgr"), reference.flat((y,) * 3 for y in data))
        self.write("grey.pgm", netpbm(b"P5", 10, 7, 255, data))
        self.run_tool("convert", "grey.pgm", "a.png", "--from", "y8")
        self.assertEqual(read_png(self.read("a.png")).samples[::3], list(data))

    def test_grey_of_16_bits(self):
        words = [self.numbers.randrange(65536) for _ in range(58)] + [0xFF00, 0xFFFF, 0, 0xFEC0, 0x10C0]
        for source, order in (("y16be", ">"), ("y16le", "<")):
            data = struct.pack(order + "63H", *words)
            for options, bits, low in (((), 16, True), (("--bits", 12), 12, True),
                                       (("--bits", "8"), 8, True), (("--bits", "9"), 9, True),
                                       (("--bits", "10", "--align", "lsb"), 10, True),
                                       (("--align", "lsb"), 16, True), (("--align", "msb"), 16, False),
                                       (("--bits", "12", "--align", "msb"), 12, False)):
                with self.subTest(source=source, options=options, seed=SEED):
                    expected = [reference.grey16(word, bits, low) for word in words]
                    self.assertEqual(self.convert(data, source, (9, 7), "bgr", *options),
                                     reference.flat(pixel[::-1] for pixel in expected))
                    self.assertEqual(self.convert(data, source, (9, 7), "y8", *options),
                                     [red for _, _, red in expected])

    def test_grey_of_16_bits_in_a_pgm(self):
        words = [0x10C0, 0x0FF8, 0xFFFF, 0]
        self.write("wide.pgm", netpbm(b"P5", 4, 1, 65535, struct.pack(">4H", *words)))
        self.run_tool("convert", "wide.pgm", "a.pgm", "--from", "y16be")
        self.assertEqual(read_netpbm(self.read("a.pgm")).samples, [0x11, 0x10, 0xFF, 0])
        self.run_tool("convert", "wide.pgm", "a.pgm", "--from", "y16be", "--bits", 12)
        # 0x10C0 has bits above the twelve, which count for nothing: 0x0C, and bit 3 is clear.
        self.assertEqual(read_netpbm(self.read("a.pgm")).samples, [0x0C, 0xFF, 0xFF, 0])
        # A file whose highest value is 4095 is spread to 16 bits already: 4095 is white, 0x800 is 0x8008.
        self.write("twelve.pgm", netpbm(b"P5", 4, 1, 4095, struct.pack(">4H", 4095, 0x800, 0, 0)))
        self.run_tool("convert", "twelve.pgm", "a.pgm", "--from", "y16be")
        self.assertEqual(read_netpbm(self.read("a.pgm")).samples, [255, 128, 0, 0])
        self.refuse("convert", "twelve.pgm", "a.pgm", "--from", "y16be", "--bits", 12,
                    says=["'twelve.pgm'", "--bits"])
        self.refuse("convert", "wide.pgm", "a.pgm", "--from", "y16le", says=["headerless", "y16le"])

    def test_bits_and_align_are_checked(self):
        self.write("frame.raw", bytes(64))
        y16 = ("--from", "y16le", "--size", "8x4")
        for bits in ("7", "17", "0", "-12", "12.0", "x", " 12", "4294967308"):
            self.refuse("convert", "frame.raw", "a.png", *y16, "--bits=" + bits,
                        says=["--bits", "8 to 16", "'%s'" % bits])
            self.refuse("chart", "a.raw", "--format", "y16be", "--bits=" + bits, says=["--bits", "8 to 16"])
        self.refuse("convert", "frame.raw", "a.png", *y16, "--align", "top", says=["msb or lsb", "'top'"])
        for source, size in (("raw8", "8x8"), ("y8", "8x8"), ("uyvy", "8x4")):
            for option in (("--bits", "12"), ("--align", "msb")):
                self.refuse("convert", "frame.raw", "a.png", "--from", source, "--size", size, *option,
                            says=[option[0], "raw16be, raw16le, y16be or y16le", "found " + source])
                self.refuse("chart", "a.raw", "--format", source, *option, says=[option[0], source])
        self.write("grey.pgm", netpbm(b"P5", 4, 2, 65535, bytes(16)))
        for option in (("--bits", "12"), ("--align", "msb")):
            self.refuse("convert", "grey.pgm", "a.png", *option, says=[option[0], "QVN_Raw16ToBGR", "raw16be"])
            self.refuse("convert", "grey.pgm", "a.png", "--from", "y16be", "--method", "transform", *option,
                        says=[option[0], "QVN_Y16ImageTransform,", "y16be"])

    def test_rgb(self):
        data = self.noise(3 * 90) + bytes([255, 255, 255, 10, 10, 10, 37, 37, 37])
        size = (31, 3)
        pixels = list(zip(data[::3], data[1::3], data[2::3]))
        self.assertEqual(self.convert(data, "rgb8", size, "bgr"), list(data))
        grey = self.convert(data, "rgb8", size, "y8")
        self.assertEqual(grey, [reference.luma_double(*pixel) for pixel in pixels])
        self.assertEqual(grey[90:92], [254, 9])
        planes = [list(data[channel::3]) for channel in range(3)]
        self.assertEqual(self.planes(data, "rgb8", size, "planes"), planes)
        luma = [reference.luma_single(*pixel) for pixel in pixels]
        self.assertEqual((luma[90], luma[92]), (255, 36))
        self.assertEqual(self.planes(data, "rgb8", size, "planes-y"), planes + [luma])
        self.write("a.ppm", netpbm(b"P6", *size, 255, data))
        self.run_tool("convert", "a.ppm", "b.ppm")
        self.assertEqual(self.read("b.ppm"), self.read("a.ppm"))


class Charts(ToolTest):
    def chart(self, source, *options):
        return list(self.run_tool("chart", "-", "--format", source, *options))

    def test_same_bytes_on_every_machine(self):
        for size, noise in (((96, 64), 0.0), ((36, 23), 40.0)):
            scene = scene_reference.draw(*size)
            scene_reference.add_noise(scene, 7, noise)
            options = ("--size", "%dx%d" % size, "--seed", 7, "--noise", noise)
            for source, layout in reference.LAYOUTS.items():
                self.assertEqual(self.chart(source, *options), reference.chart_yuv(layout, scene), source)
            self.assertEqual(self.chart("y8", *options), reference.chart_grey(scene, 255))
            for source, order in (("y16be", ">"), ("y16le", "<")):
                for extra, top, shift in (((), 65535, 0), (("--bits", 12), 4095, 0),
                                          (("--bits", 10, "--align", "msb"), 1023, 6)):
                    words = [level << shift for level in reference.chart_grey(scene, top)]
                    self.assertEqual(self.chart(source, *options, *extra),
                                     list(struct.pack("%s%dH" % (order, len(words)), *words)))

    def test_colours_by_hand(self):
        # White, black, red, blue. Red: Y 76.245, U 128 - 43.03, V 255.5; blue: Y 29.07, U 255.5, V 107.27.
        pixels = bytes([255, 255, 255, 0, 0, 0, 255, 0, 0, 0, 0, 255])
        self.write("scene.ppm", netpbm(b"P6", 4, 1, 255, pixels))
        options = ("--scene", "scene.ppm", "--noise", 0)
        self.assertEqual(self.chart("yuv444", *options),
                         [128, 255, 128, 128, 0, 128, 85, 76, 255, 255, 29, 107])
        # Chroma is the mean: of red and blue U 128 + 42.24, V 128 + 53.38; of all four half as far from 128.
        self.assertEqual(self.chart("uyvy", *options), [128, 255, 128, 0, 170, 76, 181, 29])
        self.assertEqual(self.chart("uyyvyy411", *options), [149, 255, 0, 155, 76, 29])
        self.assertEqual(self.chart("y8", *options), [255, 0, 76, 29])

    def test_there_and_back(self):
        """What is drawn comes back as the scene, but for what rounding and shared chroma cost."""
        self.run_tool("chart", "scene.ppm", "--format", "rgb8", "--size", "192x128", "--noise", 0)
        scene = read_netpbm(self.read("scene.ppm"))
        for source, limit in (("yuv444", 1.0), ("uyvy", 7.0), ("uyyvyy411", 11.0)):
            self.run_tool("chart", "a.raw", "--format", source, "--size", "192x128", "--noise", 0)
            self.run_tool("convert", "a.raw", "a.ppm", "--from", source, "--size", "192x128")
            found = read_netpbm(self.read("a.ppm"))
            apart = [abs(a - b) for a, b in zip(found.samples, scene.samples)]
            self.assertLess(sum(apart) / len(apart), limit, source)
            # Red and green patches.
            for place in ((136, 11), (136, 25)):
                for a, b in zip(found.pixel(*place), scene.pixel(*place)):
                    self.assertLessEqual(abs(a - b), 2)
        for options in ((), ("--bits", 12), ("--bits", 12, "--align", "msb")):
            self.run_tool("chart", "a.raw", "--format", "y16le", "--size", "192x128", *options)
            self.run_tool("convert", "a.raw", "a.pgm", "--from", "y16le", "--size", "192x128", *options)
            self.run_tool("chart", "b.pgm", "--format", "y8", "--size", "192x128")
            pair = [read_netpbm(self.read(name)).samples for name in ("a.pgm", "b.pgm")]
            self.assertLessEqual(max(abs(a - b) for a, b in zip(*pair)), 1)

    def test_files(self):
        self.run_tool("chart", "a.png", "--format", "y16be", "--size", "20x10")
        self.run_tool("chart", "a.pgm", "--format", "y8", "--size", "20x10")
        self.assertEqual((read_png(self.read("a.png")).channels, read_png(self.read("a.png")).depth), (1, 16))
        self.assertEqual(read_netpbm(self.read("a.pgm")).channels, 1)
        self.refuse("chart", "b.png", "--format", "uyvy", says=["uyvy", "expected raw"])
        self.refuse("chart", "b.pgm", "--format", "y16le", says=["y16le", "expected raw"])


if __name__ == "__main__":
    unittest.main()
