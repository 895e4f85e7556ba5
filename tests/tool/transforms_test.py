#!/usr/bin/env python3
"""Every target of every method that offers several, as a picture and as the library's own bytes."""

import random
import struct
import sys
import unittest

import conversion_reference as reference
import cygm_reference
import transform_reference as transform
from support import ToolTest, read_png

SEED = 20240701
PATTERNS = ("rggb", "grbg", "gbrg", "bggr")
FOUR = ("bgr", "bgra", "y8", "y8-709")
SEVEN = FOUR + ("bgr16", "y16", "y16-709")


class Transforms(ToolTest):
    def setUp(self):
        super().setUp()
        self.numbers = random.Random(SEED)

    def noise(self, count):
        return bytes(self.numbers.randrange(256) for _ in range(count))

    def check(self, data, source, size, method, target, expected, *options):
        """The picture, and the bytes that it is made of."""
        with self.subTest(source=source, size=size, method=method, target=target, options=options, seed=SEED):
            arguments = ("--from", source, "--size", "%dx%d" % size, "--method", method, "--to", target, *options)
            found = self.run_tool("convert", "-", "-", "--out-format", "raw", *arguments, data=bytes(data))
            self.assertEqual(found, transform.library_bytes(target, expected, sys.byteorder))
            picture = read_png(self.run_tool("convert", "-", "-", "--out-format", "png", *arguments,
                                             data=bytes(data)))
            if target != "uyvy":
                channels = {"bgr": 3, "bgra": 4, "bgr16": 3}.get(target, 1)
                depth = 16 if "16" in target else 8
                self.assertEqual((picture.channels, picture.depth), (channels, depth))
                self.assertEqual(picture.samples, expected)

    def test_raw8(self):
        for method, sizes in (("transform", ((2, 2), (4, 3), (34, 5))),
                              ("transform-3x3", ((4, 3), (18, 6))), ("transform-yuv422", ((2, 2), (34, 4))),
                              ("transform-lcaa", ((4, 4), (34, 4))), ("transform-lcaav", ((4, 6), (34, 8)))):
            for size in sizes:
                for pattern in PATTERNS:
                    data = self.noise(size[0] * size[1])
                    pixels = transform.RAW8[method](reference.Mosaic(data, *size, pattern))
                    for target in FOUR + (("uyvy",) if method == "transform" else ()):
                        self.check(data, "raw8", size, method, target, transform.to_target(target, pixels),
                                   "--pattern", pattern)

    def test_the_last_column_but_one(self):
        # G R / B G, twice: the window is R 20, G (10 + 40) / 2, B 30; red and blue change places in column 0.
        found = self.run_tool("convert", "-", "-", "--from", "raw8", "--size", "2x2", "--pattern", "grbg", "--method",
                              "transform", "--out-format", "ppm", data=bytes([10, 20, 30, 40]))
        self.assertEqual(list(found[-12:]), [30, 25, 20, 20, 25, 30] * 2)

    def test_raw12packed(self):
        for size in ((2, 2), (4, 3), (34, 5)):
            for pattern in PATTERNS:
                samples = [self.numbers.randrange(4096) for _ in range(size[0] * size[1])]
                tops = [sample >> 4 for sample in samples]
                pixels = reference.demosaic_2x2(reference.Mosaic(tops, *size, pattern))
                for target in FOUR:
                    self.check(transform.pack12(samples), "raw12packed", size, "transform", target,
                               transform.to_target(target, pixels), "--pattern", pattern)

    def test_raw16be(self):
        for size in ((2, 2), (3, 3), (17, 5)):
            for pattern in PATTERNS:
                data = self.noise(2 * size[0] * size[1])
                pixels = transform.black_last_column(
                    reference.demosaic_2x2(reference.Mosaic(data[::2], *size, pattern)), size[0])
                for target in FOUR:
                    # The first grey target gives what the other one does.
                    weights = "y8-709" if target == "y8" else target
                    self.check(data, "raw16be", size, "transform", target,
                               transform.to_target(weights, pixels), "--pattern", pattern)

    def forms(self):
        yield (), 16, True
        yield ("--align", "msb"), 16, False
        yield ("--bits", "12", "--align", "msb"), 12, False
        for bits in (10, 12, 13, 14, 15, 16):
            yield ("--bits", bits), bits, True

    def test_raw16_of_any_form(self):
        for source, order in (("raw16be", ">"), ("raw16le", "<")):
            for i, (options, bits, low) in enumerate(self.forms()):
                size, pattern = ((5, 3), (18, 4))[i % 2], PATTERNS[i % 4]
                words = [self.numbers.randrange(65536) for _ in range(size[0] * size[1])]
                data = struct.pack("%s%dH" % (order, len(words)), *words)
                levels = [transform.level_up(word, bits, low) for word in words]
                for target in SEVEN:
                    samples = levels if "16" in target else [level >> 8 for level in levels]
                    pixels = transform.black_last_column(
                        reference.demosaic_2x2(reference.Mosaic(samples, *size, pattern)), size[0])
                    self.check(data, source, size, "transform-ex", target,
                               transform.to_target(target, pixels), "--pattern", pattern, *options)

    def test_grey(self):
        data = self.noise(60)
        pixels = [(value,) * 3 for value in data]
        for target in FOUR:
            self.check(data, "y8", (20, 3), "transform", target, transform.to_target(target, pixels))
            self.check(data[:9], "y8", (9, 1), "transform", target, transform.to_target(target, pixels[:9]))
        # Its chroma is 0 and not 128.
        self.check(data, "y8", (20, 3), "transform", "uyvy",
                   [part for value in data for part in (0, value)])

        samples = [self.numbers.randrange(4096) for _ in range(36)]
        pixels = [(sample >> 4,) * 3 for sample in samples]
        for target in FOUR:
            self.check(transform.pack12(samples), "y12packed", (12, 3), "transform", target,
                       transform.to_target(target, pixels))

    def test_grey_of_16_bits(self):
        words = [self.numbers.randrange(65536) for _ in range(58)] + [0xFF00, 0xFFFF, 0, 0xFEC0, 0x10C0]
        pushed = [reference.grey16(word, 16, True)[::-1] for word in words]
        for target in FOUR:
            self.check(struct.pack(">63H", *words), "y16be", (9, 7), "transform", target,
                       transform.to_target(target, pushed))
        for source, order in (("y16be", ">"), ("y16le", "<")):
            for options, bits, low in self.forms():
                levels = [transform.level_up(word, bits, low) for word in words]
                for target in SEVEN:
                    values = levels if "16" in target else [level >> 8 for level in levels]
                    self.check(struct.pack(order + "63H", *words), source, (9, 7), "transform-ex", target,
                               transform.to_target(target, [(value,) * 3 for value in values]), *options)

    def test_yuv_and_rgb(self):
        for source, layout in reference.LAYOUTS.items():
            data = self.noise(36 * len(layout) // layout.count("Y"))
            pixels = [reference.yuv_to_rgb(*pixel) for pixel in reference.yuv_pixels(layout, data)]
            for target in FOUR:
                self.check(data, source, (12, 3), "transform", target, transform.to_target(target, pixels))
        data = self.noise(4 * 33)
        for source, step in (("rgb8", 3), ("rgba8", 4)):
            pixels = [tuple(data[i:i + 3]) for i in range(0, step * 33, step)]
            for target in FOUR:
                expected = transform.to_target(target, pixels)
                if (source, target) == ("rgba8", "bgra"):
                    expected = list(data)
                self.check(data[:step * 33], source, (11, 3), "transform", target, expected)

    def test_cygm(self):
        for source, method, make, uyvy in (
                ("iraw8-cygm", "transform", cygm_reference.transform_2x2, True),
                ("iraw8-cygm", "transform-3x3", cygm_reference.to_bgr_3x3, False),
                ("iraw8-cygm-binned", "transform-bin", cygm_reference.binned, True)):
            for size in ((4, 4), (4, 8), (18, 12)):
                data = self.noise(size[0] * size[1])
                pixels = make(cygm_reference.Frame(data, *size))
                for target in FOUR + (("uyvy",) if uyvy else ()):
                    self.check(data, source, size, method, target, transform.to_target(target, pixels))


class Pictures(ToolTest):
    """What the tool itself makes of the library's bytes."""

    def test_studio_yuv_as_a_picture(self):
        numbers = random.Random(SEED)
        data = bytes(numbers.randrange(256) for _ in range(34 * 6))
        arguments = ("convert", "-", "-", "--from", "raw8", "--size", "34x6", "--method", "transform", "--to", "uyvy")
        groups = self.run_tool(*arguments, "--out-format", "raw", data=data)
        picture = read_png(self.run_tool(*arguments, "--out-format", "png", data=data))
        self.assertEqual((picture.channels, picture.depth), (3, 8))
        clipped = 0
        for i in range(34 * 6):
            u, v = (255 / 224 * (groups[i // 2 * 4 + part] - 128) for part in (0, 2))
            y = 255 / 219 * (groups[i // 2 * 4 + 1 + i % 2 * 2] - 16)
            expected = (y + 1.402 * v, y - 0.344136 * u - 0.714136 * v, y + 1.772 * u)
            for found, value in zip(picture.samples[3 * i:3 * i + 3], expected):
                clipped += not 0 <= value <= 255
                self.assertLessEqual(abs(found - reference.clamp(value)), 0.51)
        self.assertGreater(clipped, 10)

    def test_there_and_back(self):
        """Grey keeps its level but for rounding; 16 is black and 235 is white."""
        for level in (0, 1, 77, 128, 254, 255):
            picture = read_png(self.run_tool("convert", "-", "-", "--out-format", "png", "--from", "raw8", "--size",
                                             "4x4", "--method", "transform", "--to", "uyvy", data=bytes([level] * 16)))
            for sample in picture.samples:
                self.assertLessEqual(abs(sample - level), 1)

    def test_opacity(self):
        data = bytes(range(0, 240, 3))
        self.write("a.raw", data)
        options = ("--from", "rgba8", "--size", "5x4", "--to", "bgra")
        self.run_tool("convert", "a.raw", "a.png", *options)
        picture = read_png(self.read("a.png"))
        self.assertEqual((picture.channels, picture.samples), (4, list(data)))
        self.run_tool("convert", "a.raw", "a.ppm", *options)
        self.assertEqual(self.read("a.ppm")[-60:], bytes(data[i] for i in range(80) if i % 4 != 3))
        self.refuse("convert", "a.raw", "a.pgm", *options, says=["PGM", "1 channel", "found 4"])

    def test_raw_suffixes(self):
        self.run_tool("chart", "rgb.raw", "--format", "rgb8", "--size", "8x6", "--noise", 0)
        options = ("--from", "rgb8", "--size", "8x6")
        for name in ("a.raw", "a.bin", "A.RAW"):
            self.run_tool("convert", "rgb.raw", name, *options)
            pixels = self.read(name)
            self.assertEqual(pixels, transform.library_bytes("bgr", list(self.read("rgb.raw"))))
        self.run_tool("convert", "rgb.raw", "b.raw", *options, "--to", "planes")
        planes = self.read("b.raw")
        self.assertEqual(planes, b"".join(self.read("rgb.raw")[channel::3] for channel in range(3)))
        self.refuse("convert", "rgb.raw", "c.dat", *options, says=["'c.dat'", "--out-format"])


if __name__ == "__main__":
    unittest.main()
