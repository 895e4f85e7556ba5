#!/usr/bin/env python3
"""Colour corrections: the library's, by its formulas, with the notes that warn of them; the tool's own."""

import random
import struct
import unittest

import conversion_reference as reference
import correction_reference as correction
import transform_reference as transform
from support import ToolTest, netpbm, read_png

SEED = 20240704
PATTERNS = ("rggb", "grbg", "gbrg", "bggr")
# Its rows add up to 1; negative entries and large ones make it leave the range at both ends.
MATRIX = (1.62, -0.5, -0.12, -0.31, 1.43, -0.12, 0.0625, -0.75, 1.6875)
IDENTITY = (1, 0, 0, 0, 1, 0, 0, 0, 1)


def words_of(entries):
    return ",".join(map(str, entries))


class Correcting(ToolTest):
    def setUp(self):
        super().setUp()
        self.numbers = random.Random(SEED)

    def samples(self, count, top):
        return [self.numbers.choice((self.numbers.randrange(top + 1), 0, top)) for _ in range(count)]

    def convert(self, source, size, pattern, target, data, *options):
        """The picture and the note."""
        self.write("in.raw", data)
        done = self.call("convert", "in.raw", "out.png", "--from", source, "--size", "%dx%d" % size,
                         "--pattern", pattern, "--to", target, *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn(done.stderr.count(b"\n"), (0, 1))
        return read_png(self.read("out.png")).samples, done.stderr.decode()

    def table(self, levels):
        return self.write("table.txt", "\n".join(map(str, levels)).encode())


class ByTheLibrary(Correcting):
    def each_frame(self, top, sizes=((4, 2), (6, 3), (34, 4))):
        for size in sizes:
            for pattern in PATTERNS:
                samples = self.samples(size[0] * size[1], top)
                yield size, pattern, samples, reference.Mosaic(samples, *size, pattern)

    def rules_of_8_bits(self):
        levels = [self.numbers.randrange(256) for _ in range(256)]
        yield ("--matrix", words_of(MATRIX)), correction.matrix_float(MATRIX, 8), "wrap"
        yield ("--matrix", words_of(IDENTITY)), lambda *pixel: pixel, "wrap"
        yield ("--gamma", 2), correction.gamma(2, 255, 8), ""
        yield ("--gamma", "0.45"), correction.gamma(0.45, 255, 8), ""
        yield (("--gamma", 2, "--matrix", words_of(MATRIX)), correction.gamma_then_matrix(2, 255, MATRIX, 8),
               "wrap")
        yield ("--table", self.table(levels)), correction.table(levels), ""

    def test_raw8(self):
        for options, rule, note in self.rules_of_8_bits():
            self.check_8_bits("raw8", options, rule, note)
        for matrix in (MATRIX, IDENTITY):
            self.check_8_bits("raw8", ("--matrix-fixed", words_of(matrix)), correction.matrix_fixed_8(matrix),
                              "0 to 31")

    def test_raw12_to_8_bits(self):
        for options, rule, note in self.rules_of_8_bits():
            self.check_8_bits("raw12packed", options, rule, note)
        for matrix in (MATRIX, IDENTITY, (2, 0, 0, 0, 2, 0, 0, 0, -2)):
            self.check_8_bits("raw12packed", ("--matrix-fixed", words_of(matrix)),
                              correction.matrix_fixed_16(matrix, 8), "wraps at 256")

    def check_8_bits(self, source, options, rule, note):
        deep = source == "raw12packed"
        for size, pattern, samples, mosaic in self.each_frame(4095 if deep else 255):
            with self.subTest(source=source, size=size, pattern=pattern, options=options, seed=SEED):
                if deep:
                    mosaic = reference.Mosaic([sample >> 4 for sample in samples], *size, pattern)
                pixels = correction.every_pixel_once(mosaic, rule)
                data = transform.pack12(samples) if deep else samples
                found, said = self.convert(source, size, pattern, "bgr", data, *options)
                self.assertEqual(found, reference.flat(pixels))
                self.assertEqual(bool(said), bool(note))
                self.assertIn(note, said)
                if not deep:
                    found, _ = self.convert(source, size, pattern, "y8", data, *options)
                    self.assertEqual(found, [transform.luma_601(*pixel) for pixel in pixels])

    def test_by_hand(self):
        # Red 171 times 1.5 is 256.5, of which 0 stays; -1.5 of a black and a blue of 1 is 255.
        cell = [171, 0, 0, 1]
        matrix = words_of((1.5, 0, 0, 0, 1, 0, 0, 0, -1.5))
        found, said = self.convert("raw8", (2, 2), "rggb", "bgr", cell, "--matrix", matrix)
        self.assertEqual(found, [0, 0, 255] * 4)
        self.assertTrue(said.startswith("qvn: ") and "--matrix-clamped" in said, said)
        found, _ = self.convert("raw8", (2, 2), "rggb", "bgr", cell, "--matrix-clamped", matrix)
        self.assertEqual(found, [255, 0, 0] * 4)
        # 200 * 1024 leaves 8192 in 16 bits, which is 8.
        found, said = self.convert("raw8", (2, 2), "rggb", "bgr", [200] * 4, "--matrix-fixed", words_of(IDENTITY))
        self.assertEqual(found, [8] * 12)
        self.assertIn("0 to 31", said)

    def test_raw12_to_16_bits(self):
        levels = [self.numbers.randrange(65536) for _ in range(4096)]
        for options, rule, note in (
                (("--matrix", words_of(MATRIX)), correction.matrix_float(MATRIX, 16), "wrap"),
                (("--matrix-fixed", words_of(MATRIX)), correction.matrix_fixed_16(MATRIX, 16), ""),
                (("--matrix-fixed", "20,0,0,0,1,0,0,0,1"),
                 correction.matrix_fixed_16((20, 0, 0, 0, 1, 0, 0, 0, 1), 16), ""),
                (("--gamma", 2), correction.gamma(2, 4095, 16), ""),
                (("--gamma", "0.5", "--matrix", words_of(MATRIX)),
                 correction.gamma_then_matrix(0.5, 4095, MATRIX, 16), "wrap"),
                (("--table", self.table(levels)), correction.table(levels), "")):
            for size, pattern, samples, mosaic in self.each_frame(4095):
                with self.subTest(size=size, pattern=pattern, options=options, seed=SEED):
                    pixels = correction.every_pixel_once(mosaic, rule)
                    found, said = self.convert("raw12packed", size, pattern, "bgr16", transform.pack12(samples),
                                               *options)
                    self.assertEqual(found, reference.flat(transform.last_line_half_written(pixels, size[0])))
                    self.assertEqual(bool(said), bool(note))
                    self.assertIn(note, said)

    def rules_of_16_bits(self, shift):
        top = 65535 >> shift
        levels = [self.numbers.randrange(top + 1) for _ in range(top + 1)]
        yield (("--matrix", words_of(MATRIX)), correction.matrix_float(MATRIX, 16),
               correction.keep_by_float(MATRIX), "wrap")
        yield (("--matrix-fixed", words_of(MATRIX)), correction.matrix_fixed_16(MATRIX, 16),
               correction.keep_by_fixed(MATRIX), "")
        yield (("--gamma", 2), correction.gamma(2, top, 16), correction.keep_by_level(correction.power(2, top, 16)),
               "")
        yield (("--gamma", "0.5", "--matrix", words_of(MATRIX)),
               correction.gamma_then_matrix(0.5, top, MATRIX, 16),
               correction.keep_by_gamma_then_matrix(0.5, top, MATRIX), "wrap")
        yield ("--table", self.table(levels)), correction.table(levels), correction.keep_by_level(
            levels.__getitem__), ""

    def test_raw16(self):
        for shift in (0, 3, 8):
            for options, rule, keep, note in self.rules_of_16_bits(shift):
                for size, pattern, samples, mosaic in self.each_frame(65535, ((4, 2), (18, 3))):
                    data = struct.pack(">%dH" % len(samples), *samples)
                    with self.subTest(shift=shift, size=size, pattern=pattern, options=options, seed=SEED):
                        arguments = ("raw16be", size, pattern)
                        chosen = (data, "--shift", shift, *options)
                        found, said = self.convert(*arguments, "bgr16", *chosen)
                        self.assertEqual(found, reference.flat(correction.corrected_bgr16(mosaic, shift, rule)))
                        self.assertIn("one colour of every second pixel twice", said)
                        self.assertIn(note, said)
                        found, said = self.convert(*arguments, "y16", *chosen)
                        self.assertEqual(found, correction.corrected_y16(mosaic, shift, rule, keep))
                        self.assertEqual("two colours of every second pixel" in said, shift > 0)
                        self.assertIn(note, said)

    def test_shifts_that_leave_nothing(self):
        data = struct.pack(">8H", *self.samples(8, 65535))
        for shift in (9, 15, 16):
            self.table([1] * max(65536 >> shift, 2))
            found, _ = self.convert("raw16be", (4, 2), "rggb", "bgr16", data, "--shift", shift, "--table",
                                    "table.txt")
            self.assertEqual(found, [1] * 24)

    def test_tables_are_checked(self):
        """One that is too short, or that leads out of itself, would end the process."""
        self.write("in.raw", bytes(64))
        for source, target, extra, count, top in (
                ("raw8", "bgr", (), 256, 255), ("raw8", "y8", (), 256, 255), ("raw12packed", "bgr", (), 256, 255),
                ("raw12packed", "bgr16", (), 4096, 65535), ("raw16be", "bgr16", (), 65536, 65535),
                ("raw16be", "bgr16", ("--shift", 4), 4096, 4095), ("raw16be", "y16", ("--shift", 6), 1024, 1023)):
            size = {"raw8": "8x8", "raw12packed": "6x7", "raw16be": "8x4"}[source]
            self.write("in.raw", bytes({"raw8": 64, "raw12packed": 63, "raw16be": 64}[source]))
            arguments = ("convert", "in.raw", "a.png", "--from", source, "--size", size, "--to", target, *extra,
                         "--table", "table.txt")
            for wrong in (count - 1, count + 1, 0):
                self.table([0] * wrong)
                self.refuse(*arguments, says=["'table.txt'", "%d numbers" % count, "found %d" % wrong])
            if top < 65535:
                self.table([0] * (count - 1) + [top + 1])
                self.refuse(*arguments, says=["'table.txt'", "up to %d" % top, "found %d" % (top + 1)])
            self.table([top] * count)
            self.assertEqual(self.call(*arguments).returncode, 0)
            (self.folder / "a.png").unlink()
        raw8 = ("convert", "in.raw", "a.png", "--from", "raw8", "--size", "8x8", "--table")
        self.write("in.raw", bytes(64))
        for text in ("x", "-1", "1.5", "65536", "0x10", "1,2"):
            self.write("table.txt", b"1 2\n" + text.encode())
            self.refuse(*raw8, "table.txt", says=["table.txt", "whole number from 0 to 65535", "'%s'" % text])
        self.write("table.txt", b" " * (2 << 20))
        self.refuse(*raw8, "table.txt", says=["too long for a table"])
        self.refuse(*raw8, "none.txt", says=["'none.txt'", "No such file"])
        self.write("table.txt", b"\t 7\r\n" * 256)
        self.assertEqual(self.call(*raw8, "table.txt").returncode, 0)

    def test_refusals(self):
        self.write("in.raw", bytes(96))
        self.write("a.png", b"precious")
        identity = words_of(IDENTITY)
        self.write("table.txt", b"0 " * 256)
        raw8 = ("convert", "in.raw", "a.png", "--from", "raw8", "--size", "8x12")
        for name in ("--matrix", "--matrix-fixed", "--matrix-clamped"):
            for bad in ("1", "1,0,0,0,1,0,0,0", identity + ",0", identity + ",", "1,0,0,0,one,0,0,0,1",
                        identity.replace("0", "nan", 1), identity.replace("0", "inf", 1), "1 0 0 0 1 0 0 0 1"):
                self.refuse(*raw8, name + "=" + bad, says=[name, "9 numbers", "'%s'" % bad])
        for bad in ("0", "-1", "x", "1,2", "nan", "inf"):
            self.refuse(*raw8, "--gamma=" + bad, says=["--gamma", "a number", "'%s'" % bad])
        pairs = (("--matrix", identity), ("--matrix-fixed", identity), ("--table", "table.txt"), ("--gamma", 2))
        for i, first in enumerate(pairs):
            for second in pairs[:i]:
                if (second[0], first[0]) != ("--matrix", "--gamma"):
                    self.refuse(*raw8, *first, *second, says=["one correction", "--matrix-fixed"])
        for option in pairs:
            for choice, entry in ((("--method", "3x3"), "QVN_Raw8ToBGR_3x3"),
                                  (("--method", "transform"), "QVN_Raw8ImageTransform"),
                                  (("--to", "grey-bgr"), "QVN_Raw8ToBGR_mono")):
                self.refuse(*raw8, *choice, *option, says=[option[0] + " has no part", entry])
            for source, size, entry in (("raw16be", "8x6", "QVN_Raw16ToBGR"), ("raw16le", "8x6", "TransformEx"),
                                        ("uyvy", "8x6", "QVN_YUV422ToBGR"), ("y8", "8x12", "QVN_Y8ToBGR")):
                self.refuse("convert", "in.raw", "a.png", "--from", source, "--size", size, *option,
                            says=[option[0] + " has no part", entry])
        for target in ("y8", "uyvy"):
            self.refuse(*raw8, "--method", "transform", "--to", target, "--matrix-clamped", identity,
                        says=["--matrix-clamped has no part"])
        self.refuse("convert", "in.raw", "b.raw", "--from", "raw8", "--size", "8x12", "--matrix-clamped", identity,
                    says=["a picture for --stretch or --matrix-clamped"])
        for bad in ("255", "-1", "x", "1.5"):
            self.refuse(*raw8, "--black=" + bad, says=["--black", "0 to 254", "'%s'" % bad])
        for bad in ("1,2", "1,1,-1", "grey", "1,1,1,1", "1,nan,1", "1,inf,1"):
            self.refuse(*raw8, "--wb=" + bad, says=["--wb", "'%s'" % bad])
        self.refuse(*raw8, "--wb", "auto", says=["--wb auto", "light", "red"])
        for source, size in (("uyvy", "8x6"), ("y8", "8x12"), ("iraw8-cygm", "8x12")):
            for option in (("--black", 1), ("--wb", "auto")):
                self.refuse("convert", "in.raw", "a.png", "--from", source, "--size", size, *option,
                            says=[option[0], "Bayer mosaics", "found " + source])
        for name in ("--matrix", "--matrix-fixed", "--gamma", "--table", "--black", "--wb", "--matrix-clamped",
                     "--shift"):
            self.refuse(*raw8, name + "=", says=[name])
            self.refuse(*raw8, name, "", says=[name, "expected a value"])

    def test_the_note_does_not_touch_the_output(self):
        self.write("in.raw", bytes(64))
        done = self.call("convert", "in.raw", "-", "--out-format", "png", "--from", "raw8", "--size", "8x8",
                         "--matrix", words_of(IDENTITY))
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr.count(b"\n"), 1)
        self.assertEqual(read_png(done.stdout).samples, [0] * 192)

    def test_help_says_what_they_do(self):
        text = " ".join(self.run_tool("convert", "--help").decode().split())
        for words in ("No clamp", "0 to 31", "wraps at 256", "twice", "as dark as it is", "256, 4096 or 65536",
                      "stops at black and white"):
            self.assertIn(words, text)


class ByTheTool(Correcting):
    """Black level, white balance, a matrix with saturation."""

    def frames(self):
        """Source, top level, samples, bytes, options."""
        count = 12 * 8
        yield "raw8", 255, "bgr", lambda s: s, ()
        yield "raw12packed", 4095, "bgr16", transform.pack12, ()
        yield "raw16be", 65535, "bgr16", lambda s: struct.pack(">%dH" % count, *s), ()
        ex = ("--method", "transform-ex", "--bits", 12)
        yield "raw16be", 4095, "bgr16", lambda s: struct.pack(">%dH" % count, *s), ex
        yield "raw16le", 4095, "bgr16", lambda s: struct.pack("<%dH" % count, *s), ex
        yield ("raw16le", 4095, "bgr16", lambda s: struct.pack("<%dH" % count, *(v << 4 for v in s)),
               (*ex, "--align", "msb"))

    def test_black_and_white_balance(self):
        """A frame with the corrections gives what a frame of the corrected samples gives."""
        for source, top, target, pack, options in self.frames():
            for pattern in PATTERNS:
                samples = [self.numbers.randrange(top + 1) for _ in range(12 * 8)]
                colours = [pattern[i // 12 % 2 * 2 + i % 12 % 2] for i in range(12 * 8)]
                black = top // 16
                for arguments, level, gains in (
                        (("--black", black), black, dict(r=1, g=1, b=1)),
                        (("--wb", "2,1,1.5"), 0, dict(r=2, g=1, b=1.5)),
                        (("--wb", "0,0.5,4"), 0, dict(r=0, g=0.5, b=4)),
                        (("--wb", "auto"), 0, None), (("--black", black, "--wb", "auto"), black, None)):
                    with self.subTest(source=source, pattern=pattern, arguments=arguments, options=options):
                        expected = correction.balanced(samples, colours, level, gains, top)
                        here = (source, (12, 8), pattern, target)
                        found, said = self.convert(*here, pack(samples), *options, *arguments)
                        self.assertEqual(said, "")
                        self.assertEqual(found, self.convert(*here, pack(expected), *options)[0])

    def test_auto_makes_a_coloured_light_white(self):
        # One grey surface in red light: 160, 100, 40 above black 10.
        levels = {"r": 170, "g": 110, "b": 50}
        frame = [levels["rggb"[y % 2 * 2 + x % 2]] for y in range(4) for x in range(4)]
        found, _ = self.convert("raw8", (4, 4), "rggb", "bgr", frame, "--black", 10, "--wb", "auto")
        self.assertEqual(set(found), {160})

    def test_matrix_clamped(self):
        rule8 = correction.matrix_clamped(MATRIX, 255)
        samples = self.samples(12 * 8, 255)
        data = bytes(samples)
        plain, _ = self.convert("raw8", (12, 8), "rggb", "bgr", data, "--method", "3x3")
        found, said = self.convert("raw8", (12, 8), "rggb", "bgr", data, "--method", "3x3", "--matrix-clamped",
                                   words_of(MATRIX))
        self.assertEqual(said, "")
        self.assertEqual(found, reference.flat(rule8(*plain[i:i + 3]) for i in range(0, len(plain), 3)))
        self.assertTrue({0, 255} <= set(found))
        plain, _ = self.convert("raw8", (12, 8), "rggb", "bgra", data, "--method", "transform")
        found, _ = self.convert("raw8", (12, 8), "rggb", "bgra", data, "--method", "transform", "--matrix-clamped",
                                words_of(MATRIX))
        self.assertEqual(found, reference.flat((*rule8(*plain[i:i + 3]), 255) for i in range(0, len(plain), 4)))
        # Twelve bits stop at 4095, and are spread afterwards.
        samples = self.samples(12 * 8, 4095)
        rule12 = correction.matrix_clamped(MATRIX, 4095)
        here = ("raw12packed", (12, 8), "rggb", "bgr16", transform.pack12(samples))
        plain, _ = self.convert(*here)
        found, _ = self.convert(*here, "--matrix-clamped", words_of(MATRIX))
        expected = reference.flat(rule12(*plain[i:i + 3]) for i in range(0, len(plain), 3))
        self.assertEqual(found, expected)
        found, _ = self.convert(*here, "--matrix-clamped", words_of(MATRIX), "--stretch")
        self.assertEqual(found, [int(value * 65535 / 4095 + 0.5) for value in expected])
        self.write("c.ppm", netpbm(b"P6", 2, 1, 255, bytes([10, 20, 30, 200, 100, 250])))
        self.run_tool("convert", "c.ppm", "c.png", "--matrix-clamped", "0,1,0,0,0,1,2,0,0")
        self.assertEqual(read_png(self.read("c.png")).samples, [20, 30, 20, 100, 250, 255])

    def test_order(self):
        """Black, gains, the library's correction, the matrix of the tool."""
        frame = [110] * 16
        found, _ = self.convert("raw8", (4, 4), "rggb", "bgr", frame, "--black", 10, "--wb", "2,1,1", "--matrix",
                                "0.5,0,0,0,1,0,0,0,1", "--matrix-clamped", "1,1,1,0,1,0,0,0,1")
        # Red (110 - 10) * 2 * 0.5 = 100, then 100 + 100 + 100 stops at 255.
        self.assertEqual(found, [255, 100, 100] * 16)


if __name__ == "__main__":
    unittest.main()
