#!/usr/bin/env python3
"""Mosaics of 12 and 16 bits: packings, full depth, shifts; the charts of formats that have no other test."""

import random
import struct
import unittest

import conversion_reference as reference
import scene_reference
import transform_reference as transform
from support import ToolTest, netpbm, read_netpbm, read_png

SEED = 20240702
PATTERNS = ("rggb", "grbg", "gbrg", "bggr")
PACKINGS = {"raw12packed": transform.pack12, "raw12p": transform.pack12p, "raw12csi2": transform.pack12csi2}


class Deep(ToolTest):
    def setUp(self):
        super().setUp()
        self.numbers = random.Random(SEED)

    def convert(self, data, source, size, *options):
        return read_png(self.run_tool("convert", "-", "-", "--out-format", "png", "--from", source, "--size",
                                      "%dx%d" % size, *options, data=bytes(data)))

    def test_packed_by_hand(self):
        # 0xAB, 0xCD, 0xEF hold 0xABD and 0xEFC; a line of them above one of 0x123 and 0x456, red first.
        self.write("a.raw", [0xAB, 0xCD, 0xEF, 0x12, 0x63, 0x45])
        self.run_tool("convert", "a.raw", "a.png", "--from", "raw12packed", "--size", "2x2")
        self.assertEqual(read_png(self.read("a.png")).samples, [0xAB, (0xEF + 0x12) // 2, 0x45] * 4)
        for name, data in (("raw12p", [0xBD, 0xCA, 0xEF, 0x23, 0x61, 0x45]),
                           ("raw12csi2", [0xAB, 0xEF, 0xCD, 0x12, 0x45, 0x63])):
            self.write("b.raw", data)
            self.run_tool("convert", "b.raw", "b.png", "--from", name, "--size", "2x2")
            self.assertEqual(self.read("b.png"), self.read("a.png"), name)

    def test_packed(self):
        for size in ((2, 2), (4, 2), (18, 5), (70, 3)):
            for pattern in PATTERNS:
                samples = [self.numbers.randrange(4096) for _ in range(size[0] * size[1])]
                whole = reference.demosaic_2x2(reference.Mosaic(samples, *size, pattern))
                tops = reference.demosaic_2x2(reference.Mosaic([s >> 4 for s in samples], *size, pattern))
                for source, pack in PACKINGS.items():
                    with self.subTest(source=source, size=size, pattern=pattern, seed=SEED):
                        options = (pack(samples), source, size, "--pattern", pattern)
                        self.assertEqual(self.convert(*options).samples, reference.flat(tops))
                        if size[0] >= 4:
                            picture = self.convert(*options, "--to", "bgr16")
                            self.assertEqual((picture.channels, picture.depth), (3, 16))
                            expected = transform.last_line_half_written(whole, size[0])
                            self.assertEqual(picture.samples, reference.flat(expected))

    def test_packings_and_the_tool_s_own_corrections(self):
        samples = [self.numbers.randrange(4096) for _ in range(48)]
        options = ("--black", 100, "--wb", "auto", "--to", "bgr16", "--stretch")
        pictures = [self.convert(pack(samples), source, (8, 6), *options) for source, pack in PACKINGS.items()]
        self.assertEqual(pictures[0], pictures[1])
        self.assertEqual(pictures[0], pictures[2])

    def test_16_bits_and_shifts(self):
        for shift in (None, 0, 1, 4, 7, 8, 9, 16):
            for size in ((4, 2), (6, 3), (34, 4)):
                pattern = self.numbers.choice(PATTERNS)
                words = [self.numbers.randrange(65536) for _ in range(size[0] * size[1])]
                data = struct.pack(">%dH" % len(words), *words)
                lines = transform.shifted_windows(reference.Mosaic(words, *size, pattern), shift or 0)
                pixels = transform.with_repeated_ends(lines)
                options = ("--pattern", pattern, *(() if shift is None else ("--shift", shift)))
                with self.subTest(shift=shift, size=size, pattern=pattern, seed=SEED):
                    self.assertEqual(self.convert(data, "raw16be", size, "--to", "bgr16", *options).samples,
                                     reference.flat(pixels))
                    picture = self.convert(data, "raw16be", size, "--to", "y16", *options)
                    self.assertEqual((picture.channels, picture.depth), (1, 16))
                    self.assertEqual(picture.samples, [transform.luma_of_words(*pixel) for pixel in pixels])

    def test_the_carry_of_greens(self):
        # Greens of 1 and 3 with a shift of 1: 4, shifted 2, halved 1.
        picture = self.convert(struct.pack(">8H", 0, 1, 0, 1, 3, 0, 3, 0), "raw16be", (4, 2), "--to", "bgr16",
                               "--shift", 1)
        self.assertEqual(picture.samples, [0, 1, 0] * 8)

    def test_stretch(self):
        samples = [0, 4095, 2048, 1, 4095, 0, 77, 4000] * 2
        plain = self.convert(transform.pack12(samples), "raw12packed", (4, 4), "--to", "bgr16")
        wide = self.convert(transform.pack12(samples), "raw12packed", (4, 4), "--to", "bgr16", "--stretch")
        self.assertLessEqual(max(plain.samples), 4095)
        self.assertEqual(wide.samples, [int(value * 65535 / 4095 + 0.5) for value in plain.samples])
        words = struct.pack(">16H", *(16 * sample for sample in samples))
        for shift, top in ((4, 4095), (6, 1023)):
            plain = self.convert(words, "raw16be", (4, 4), "--to", "bgr16", "--shift", shift)
            wide = self.convert(words, "raw16be", (4, 4), "--to", "bgr16", "--shift", shift, "--stretch")
            self.assertEqual(wide.samples, [int(value * 65535 / top + 0.5) for value in plain.samples])

    def test_twelve_bits_in_every_container_look_alike(self):
        """The same scene, the same levels: all but the columns and lines that each function ends its own way."""
        size, options = "32x16", ("--size", "32x16", "--noise", 0)
        pictures = {}
        for source, bits, extra in (("raw12packed", (), ()), ("raw12p", (), ()), ("raw12csi2", (), ()),
                                    ("raw16le", ("--bits", 12), ()), ("raw16be", ("--bits", 12), ()),
                                    ("raw16be", ("--bits", 12, "--align", "msb"), ("--shift", 4))):
            self.run_tool("chart", "a.raw", "--format", source, *options, *bits)
            method = ("--method", "transform-ex", *bits) if bits and not extra else ()
            self.run_tool("convert", "a.raw", "a.png", "--from", source, "--size", size, "--to", "bgr16", *method,
                          *extra)
            picture = read_png(self.read("a.png"))
            levels = [[tuple(sample >> 4 if method else sample for sample in picture.pixel(x, y))
                       for x in range(30)] for y in range(15)]
            pictures[source, bits] = levels
        first, *others = pictures.values()
        for other in others:
            for y in range(15):
                for x in range(30):
                    # transform-ex means greens that are sixteen times as large, and cuts less away.
                    self.assertTrue(all(abs(a - b) <= (1 if c == 1 else 0)
                                        for c, (a, b) in enumerate(zip(first[y][x], other[y][x]))), (x, y))

    def test_refusals(self):
        self.write("a.raw", bytes(96))
        raw16, raw12 = ("--from", "raw16be", "--size", "8x6"), ("--from", "raw12packed", "--size", "8x8")
        for shift in ("17", "-1", "x", "1.5", "4294967296"):
            self.refuse("convert", "a.raw", "a.png", *raw16, "--to", "bgr16", "--shift=" + shift,
                        says=["--shift", "0 to 16", "'%s'" % shift])
        self.refuse("convert", "a.raw", "a.png", *raw16, "--shift", 4, says=["--shift", "QVN_Raw16ToBGR,"])
        self.refuse("convert", "a.raw", "a.png", *raw16, "--method", "transform-ex", "--shift", 4,
                    says=["--shift", "QVN_Raw16ImageTransformEx"])
        self.refuse("convert", "a.raw", "a.png", *raw12, "--to", "bgr16", "--shift", 4,
                    says=["--shift", "QVN_Raw12ToBGR16"])
        for options in (("--bits", 12), ("--align", "lsb"), ("--align", "msb")):
            self.refuse("convert", "a.raw", "a.png", *raw16, *options, says=["--bits or --align", "QVN_Raw16ToBGR"])
            self.refuse("convert", "a.raw", "a.png", *raw12, *options, says=[options[0], "found raw12packed"])
        for source in ("raw16be", "raw16le", "y16be", "y16le"):
            for bits in (8, 9, 11):
                arguments = ("--from", source, "--size", "8x6", "--method", "transform-ex", "--bits", bits)
                self.refuse("convert", "a.raw", "a.png", *arguments,
                            says=["--bits", "10, 12, 13, 14, 15 or 16", "found %d" % bits])
                self.run_tool("convert", "a.raw", "ok.png", *arguments, "--align", "msb")
                (self.folder / "ok.png").unlink()
        self.refuse("convert", "a.raw", "a.png", *raw16, "--stretch", says=["--stretch", "QVN_Raw16ToBGR"])
        self.refuse("convert", "a.raw", "b.raw", *raw16, "--to", "bgr16", "--stretch", says=["--stretch", "a picture"])
        for source, size, says in (("raw12packed", "9x7", "multiple of 2"), ("raw12packed", "9x8", "even"),
                                   ("y12packed", "3x3", "multiple of 2"), ("raw12p", "7x5", "multiple of 2"),
                                   ("raw12csi2", "4x1", "at least 2x2")):
            width, height = map(int, size.split("x"))
            self.write("b.raw", bytes(width * height * 3 // 2))
            self.refuse("convert", "b.raw", "a.png", "--from", source, "--size", size, says=[says])
        self.refuse("convert", "a.raw", "a.png", "--from", "raw16be", "--size", "2x24", "--to", "bgr16",
                    says=["at least 4x2"])
        self.refuse("convert", "a.raw", "a.png", "--from", "raw12packed", "--size", "2x32", "--to", "bgr16",
                    says=["at least 4x2"])


class Charts(ToolTest):
    def chart(self, source, *options):
        return list(self.run_tool("chart", "-", "--format", source, *options))

    def test_same_bytes_on_every_machine(self):
        size = (48, 32)
        scene = scene_reference.draw(*size)
        scene_reference.add_noise(scene, 7, 20.0)
        options = ("--size", "%dx%d" % size, "--seed", 7, "--noise", 20)

        def mosaic(pattern, top):
            levels = scene_reference.quantise(scene, top)
            return [levels[3 * i + "rgb".index(pattern[i // size[0] % 2 * 2 + i % size[0] % 2])]
                    for i in range(size[0] * size[1])]

        for pattern in PATTERNS:
            for source, pack in PACKINGS.items():
                self.assertEqual(self.chart(source, *options, "--pattern", pattern), pack(mosaic(pattern, 4095)))
            for source, order in (("raw16be", ">"), ("raw16le", "<")):
                for extra, top, shift in (((), 65535, 0), (("--bits", 14), 16383, 0),
                                          (("--bits", 10, "--align", "msb"), 1023, 6)):
                    words = [level << shift for level in mosaic(pattern, top)]
                    self.assertEqual(self.chart(source, *options, *extra, "--pattern", pattern),
                                     list(struct.pack("%s%dH" % (order, len(words)), *words)))
        self.assertEqual(self.chart("y12packed", *options), transform.pack12(reference.chart_grey(scene, 4095)))
        rgb = scene_reference.quantise(scene, 255)
        self.assertEqual(self.chart("rgba8", *options),
                         [part for i in range(0, len(rgb), 3) for part in (*rgb[i:i + 3], 255)])

    def test_sizes(self):
        for source in (*PACKINGS, "y12packed"):
            self.assertEqual(len(self.chart(source, "--size", "6x3")), 27)
            self.refuse("chart", "a.raw", "--format", source, "--size", "5x3", says=[source, "multiple of 2"])
            self.refuse("chart", "a.png", "--format", source, "--size", "6x4", says=[source, "expected raw"])
        for source in ("raw8", "raw12packed", "iraw8-cygm", "rgba8"):
            self.refuse("chart", "a.raw", "--format", source, "--bits", 12, says=["--bits", "found " + source])

    def test_pgm(self):
        self.run_tool("chart", "a.pgm", "--format", "raw16be", "--size", "20x10")
        self.run_tool("chart", "a.raw", "--format", "raw16be", "--size", "20x10")
        self.run_tool("convert", "a.pgm", "a.ppm", "--to", "bgr16")
        self.run_tool("convert", "a.raw", "b.ppm", "--to", "bgr16", "--from", "raw16be", "--size", "20x10")
        self.assertEqual(self.read("a.ppm"), self.read("b.ppm"))
        self.assertEqual(read_netpbm(self.read("a.ppm")).depth, 16)
        self.write("w.pgm", netpbm(b"P5", 20, 10, 65535, self.read("a.raw")))
        self.run_tool("convert", "w.pgm", "c.ppm", "--method", "transform-ex", "--bits", 16, "--to", "bgr16")
        self.assertEqual(read_netpbm(self.read("c.ppm")).pixel(3, 3), read_netpbm(self.read("a.ppm")).pixel(3, 3))


if __name__ == "__main__":
    unittest.main()
