#!/usr/bin/env python3
"""Frames as cameras and drivers send them: their packings, their names, padded lines, bytes around a frame."""

import random
import unittest

from support import ToolTest

SEED = 20261121


def pack_bits(samples, bits):
    """One behind the other from bit 0 on."""
    number = sum(sample << bits * i for i, sample in enumerate(samples))
    return number.to_bytes(len(samples) * bits // 8, "little")


def pack_csi2(samples, bits):
    """Groups of as many samples as have whole bytes of lower bits: upper eight bits of each, then the lower ones."""
    low = bits - 8
    group = 8 // low
    data = bytearray()
    for i in range(0, len(samples), group):
        part = samples[i:i + group]
        data += bytes(sample >> low for sample in part)
        data.append(sum((sample & (1 << low) - 1) << low * k for k, sample in enumerate(part)))
    return bytes(data)


def pack_12packed(samples):
    data = bytearray()
    for even, odd in zip(samples[0::2], samples[1::2]):
        data += bytes([even >> 4, even & 15 | (odd & 15) << 4, odd >> 4])
    return bytes(data)


def words(samples):
    return b"".join(sample.to_bytes(2, "little") for sample in samples)


def swapped(data):
    return bytes(data[i ^ 1] for i in range(len(data)))


class Camera(ToolTest):
    def setUp(self):
        super().setUp()
        self.numbers = random.Random(SEED)

    def samples(self, bits, count=12 * 6):
        return [self.numbers.randrange(1 << bits) for _ in range(count)]

    def convert(self, data, source, *options, size="12x6"):
        return self.run_tool("convert", "-", "-", "--out-format", "raw", "--from", source, "--size", size, *options,
                             data=bytes(data))


class Packings(Camera):
    def test_ten_bits(self):
        samples = self.samples(10)
        for packed, plain in (("raw10", "raw16le"), ("y10", "y16le")):
            for extra in ((), ("--to", "bgr"), ("--to", "y8"), ("--method", "transform-ex", "--to", "y16")):
                right = self.convert(words(samples), plain, "--bits", 10, *extra)
                self.assertEqual(self.convert(pack_bits(samples, 10), packed + "p", *extra), right)
                self.assertEqual(self.convert(pack_csi2(samples, 10), packed + "csi2", *extra), right)

    def test_twelve_bits_of_grey(self):
        samples = self.samples(12)
        for target in ("y8", "bgr", "bgra", "y8-709"):
            right = self.convert(pack_12packed(samples), "y12packed", "--to", target)
            self.assertEqual(self.convert(pack_bits(samples, 12), "y12p", "--to", target), right)
            self.assertEqual(self.convert(pack_csi2(samples, 12), "y12csi2", "--to", target), right)

    def test_luma_first(self):
        data = bytes(self.samples(8, 144))
        for options in ((), ("--to", "planes-y"), ("--method", "transform", "--to", "y8")):
            self.assertEqual(self.convert(swapped(data), "yuyv", *options), self.convert(data, "uyvy", *options))

    def test_by_hand(self):
        self.assertEqual(pack_bits([0x3FF, 0, 0x155, 1], 10), bytes([0xFF, 0x03, 0x50, 0x55, 0x00]))
        self.assertEqual(pack_csi2([0x3FD, 0, 0x155, 3], 10), bytes([0xFF, 0, 0x55, 0, 0b11010001]))
        self.assertEqual(pack_bits([0xABC, 0xDEF], 12), bytes([0xBC, 0xFA, 0xDE]))
        self.assertEqual(pack_csi2([0xABC, 0xDEF], 12), bytes([0xAB, 0xDE, 0xFC]))

    def test_charts(self):
        def chart(name, *options):
            return self.run_tool("chart", "-", "--format", name, "--size", "12x8", "--noise", 5, *options)

        for start, plain in (("raw", "raw16le"), ("y", "y16le")):
            for bits in (10, 12):
                data = chart(plain, "--bits", bits)
                levels = [data[i] | data[i + 1] << 8 for i in range(0, len(data), 2)]
                self.assertEqual(chart("%s%dp" % (start, bits)), pack_bits(levels, bits))
                self.assertEqual(chart("%s%dcsi2" % (start, bits)), pack_csi2(levels, bits))
            self.assertEqual(chart(start + "12packed"), pack_12packed(levels))
        self.assertEqual(chart("yuyv"), swapped(chart("uyvy")))

    def test_groups(self):
        for source, size, count in (("raw10p", "6x3", 18), ("y10csi2", "2x1", 2), ("yuyv", "3x3", 9), ("y12p", "3x1", 3)):
            self.refuse("convert", "-", "out.png", "--from", source, "--size", size, data=bytes(999),
                        says=[source, "multiple of", "= %d" % count])

    def test_what_bits_says_is_known(self):
        self.refuse("convert", "-", "out.png", "--from", "raw10p", "--size", "12x6", "--bits", 10, data=bytes(90),
                    says=["--bits is for 16-bit samples", "found raw10p"])
        self.refuse("convert", "-", "out.png", "--from", "y10p", "--size", "12x6", "--method", "plain",
                    data=bytes(90), says=["plain"])


class Rearranged(Camera):
    """Frames that are brought to another format stay in it, which is said."""

    def check(self, command, source, data, read_as, right, *options, bits=()):
        self.write("a.raw", data)
        done = self.call(command, "a.raw", "b.raw", "--from", source, "--size", "12x6", *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("the frame is %s now, as %s is read" % (" ".join((read_as, *bits)), source), done.stderr.decode())
        self.write("c.raw", right)
        done = self.call(command, "c.raw", "d.raw", "--from", read_as, "--size", "12x6", *options, *bits)
        self.assertNotIn(b"now, as", done.stderr)
        self.assertEqual(self.read("b.raw"), self.read("d.raw"))

    def test_flip_and_weave(self):
        tens, twelves, bytes_ = self.samples(10), self.samples(12), bytes(self.samples(8, 144))
        for command, options in (("flip", ("--axis", "vertical")), ("weave", ())):
            self.check(command, "yuyv", swapped(bytes_), "uyvy", bytes_, *options)
            self.check(command, "raw12p", pack_bits(twelves, 12), "raw12packed", pack_12packed(twelves), *options)
            self.check(command, "y10csi2", pack_csi2(tens, 10), "y16le", words(tens), *options, bits=("--bits", "10"))
        self.check("flip", "raw10p", pack_bits(tens, 10), "raw16le", words(tens), "--axis", "both", bits=("--bits", "10"))

    def test_unpack(self):
        twelves = self.samples(12)
        for source, pack in (("raw12p", pack_bits), ("y12p", pack_bits), ("y12csi2", pack_csi2)):
            self.write("a.raw", pack(twelves, 12))
            self.run_tool("unpack", "a.raw", "b.raw", "--from", source, "--size", "12x6")
            self.assertEqual(self.read("b.raw"), b"".join((sample << 4).to_bytes(2, "big") for sample in twelves))

    def test_resample(self):
        tens = self.samples(10)
        self.check("resample", "y10p", pack_bits(tens, 10), "y16le", words(tens), "--rate", 1, "--to-rate", 2,
                   bits=("--bits", "10"))


class Names(Camera):
    def test_mosaics(self):
        for camera, driver, pattern in (("RG", "RGGB", "rggb"), ("GR", "GRBG", "grbg"), ("GB", "GBRG", "gbrg"),
                                        ("BG", "BGGR", "bggr")):
            for name, source, bits in (("Bayer%s8" % camera, "raw8", 8), ("S%s8" % driver, "raw8", 8),
                                       ("Bayer%s10" % camera, "raw16le", 10), ("S%s12" % driver, "raw16le", 12),
                                       ("Bayer%s14" % camera, "raw16le", 14), ("Bayer%s16" % camera, "raw16le", 16),
                                       ("Bayer%s10p" % camera, "raw10p", 10), ("S%s10P" % driver, "raw10csi2", 10),
                                       ("Bayer%s12p" % camera, "raw12p", 12), ("S%s12P" % driver, "raw12csi2", 12),
                                       ("Bayer%s12Packed" % camera, "raw12packed", 12)):
                data = bytes(self.samples(8, 144 if source == "raw16le" else 72 * bits // 8))
                told = ("--bits", bits) if source == "raw16le" else ()
                self.assertEqual(self.convert(data, name), self.convert(data, source, "--pattern", pattern, *told),
                                 name)

    def test_others(self):
        for name, source, size, bits in (
                ("Mono8", "y8", 72, None), ("GREY", "y8", 72, None), ("Mono10", "y16le", 144, 10),
                ("Y12", "y16le", 144, 12), ("Mono14", "y16le", 144, 14), ("Mono16", "y16le", 144, None),
                ("Y16_BE", "y16be", 144, None), ("Mono10p", "y10p", 90, None), ("Y10P", "y10csi2", 90, None),
                ("Mono12p", "y12p", 108, None), ("Mono12Packed", "y12packed", 108, None), ("Y12P", "y12csi2", 108, None),
                ("YUV8_UYV", "yuv444", 216, None), ("UYVY", "uyvy", 144, None), ("YUYV", "yuyv", 144, None),
                ("YUV422_8", "yuyv", 144, None), ("YUV411_8_UYYVYY", "uyyvyy411", 108, None), ("RGB8", "rgb8", 216, None),
                ("RGB24", "rgb8", 216, None), ("RGBa8", "rgba8", 288, None)):
            data = bytes(self.samples(8, size))
            told = ("--bits", bits) if bits else ()
            self.assertEqual(self.convert(data, name), self.convert(data, source, *told), name)

    def test_what_is_told_goes_before(self):
        data = bytes(self.samples(8, 144))
        self.assertEqual(self.convert(data, "BayerGB10", "--pattern", "bggr", "--bits", 12),
                         self.convert(data, "raw16le", "--pattern", "bggr", "--bits", 12))

    def test_in_recipes_batches_charts_and_sheets(self):
        self.run_tool("chart", "a.raw", "--format", "BayerGB12p", "--size", "24x16")
        self.run_tool("chart", "b.raw", "--format", "raw12p", "--pattern", "gbrg", "--size", "24x16")
        self.assertEqual(self.read("a.raw"), self.read("b.raw"))
        done = self.call("convert", "a.raw", "a.png", "--from", "BayerGB12p", "--size", "24x16", "--show-recipe")
        recipe = done.stderr.decode().split()[-1]
        self.assertIn("from=raw12p", recipe)
        self.assertIn("pattern=gbrg", recipe)
        self.run_tool("convert", "b.raw", "b.png", "--recipe", recipe)
        self.assertEqual(self.read("a.png"), self.read("b.png"))
        done = self.call("convert", "a.raw", "-o", "out", "--from", "BayerGB12p", "--size", "24x16")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.read("out/a.png"), self.read("a.png"))
        self.run_tool("sheet", "a.raw", "s.png", "--from", "BayerGB12p", "--size", "24x16")
        self.run_tool("sheet", "a.raw", "t.png", "--from", "raw12p", "--pattern", "gbrg", "--size", "24x16")
        self.assertEqual(self.read("s.png"), self.read("t.png"))

    def test_listed_and_refused(self):
        text = self.run_tool("formats").decode()
        for row in (r"\n  BayerRG12p +raw12p --pattern rggb\n", r"\n  SRGGB10P +raw10csi2 --pattern rggb\n",
                    r"\n  Mono10, Y10 +y16le --bits 10\n", r"\n  YUV422_8, YUYV +yuyv\n"):
            self.assertRegex(text, row)
        self.refuse("convert", "a.raw", "a.png", "--from", "BayerRG9", "--size", "24x16",
                    says=["unknown format 'BayerRG9'", "camera's name"])
        self.refuse("convert", "-", "a.png", "--from", "BayerRG8", "--bits", 8, "--size", "2x2", data=bytes(4),
                    says=["--bits is for 16-bit samples"])


class Padding(Camera):
    def padded(self, data, line, pitch, last=True):
        lines = [data[i:i + line] + bytes([0xEE]) * (pitch - line) for i in range(0, len(data), line)]
        if not last:
            lines[-1] = lines[-1][:line]
        return b"".join(lines)

    def test_lines(self):
        for source, line, bits in (("raw8", 12, 8), ("raw12p", 18, 8), ("raw10csi2", 15, 8), ("rgb8", 36, 8),
                                   ("uyvy", 24, 8), ("y16le", 24, 8)):
            data = bytes(self.samples(bits, line * 6))
            right = self.convert(data, source)
            for pitch in (line, line + 1, 64, 4096):
                for last in (True, False):
                    self.assertEqual(
                        self.convert(self.padded(data, line, pitch, last), source, "--pitch", pitch), right)

    def test_around(self):
        data = bytes(self.samples(8))
        right = self.convert(data, "raw8")
        self.assertEqual(self.convert(bytes(100) + data, "raw8", "--skip", 100), right)
        self.assertEqual(self.convert(bytes(100) + data + bytes(7), "raw8", "--skip", "100,7"), right)
        self.assertEqual(self.convert(data + bytes(7), "raw8", "--skip", "0,7"), right)
        whole = bytes(3) + self.padded(data, 12, 16) + bytes(5)
        self.assertEqual(self.convert(whole, "raw8", "--skip", "3,5", "--pitch", 16), right)
        large = 3 << 20
        self.assertEqual(self.convert(bytes(large) + data, "raw8", "--skip", large), right)

    def test_one_line(self):
        data = bytes(self.samples(8, 12))
        for extra in (b"", bytes(4)):
            self.assertEqual(self.convert(data + extra, "y8", "--pitch", 16, size="12x1"),
                             self.convert(data, "y8", size="12x1"))

    def test_streams(self):
        frames = [bytes(self.samples(8)) for _ in range(3)]
        right = b"".join(self.convert(frame, "raw8") for frame in frames)
        for last in (True, False):
            parts = [bytes(9) + self.padded(frame, 12, 20) for frame in frames]
            if not last:
                parts[-1] = parts[-1][:-8]
            done = self.call("convert", "-", "-", "--stream", "--out-format", "raw", "--from", "raw8", "--size",
                             "12x6", "--skip", 9, "--pitch", 20, data=b"".join(parts))
            self.assertEqual((done.returncode, done.stdout), (0, right), done.stderr)

    def test_size_is_guessed_without_what_is_around(self):
        self.run_tool("chart", "plain.raw", "--format", "y8", "--size", "640x480")
        self.write("frame.raw", bytes(64) + self.read("plain.raw") + bytes(8))
        done = self.call("convert", "frame.raw", "frame.png", "--from", "y8", "--skip", "64,8")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn(b"taken for 640x480", done.stderr)
        self.run_tool("convert", "plain.raw", "plain.png", "--from", "y8", "--size", "640x480")
        self.assertEqual(self.read("frame.png"), self.read("plain.png"))
        self.refuse("convert", "frame.raw", "x.png", "--from", "y8", "--pitch", 640, says=["expected --size"])
        self.refuse("convert", "frame.raw", "x.png", "--from", "y8", "--skip", 307272, says=["expected --size"])

    def test_recipes(self):
        data = bytes(self.samples(8))
        self.write("a.raw", bytes(2) + self.padded(data, 12, 16))
        done = self.call("convert", "a.raw", "a.png", "--from", "raw8", "--size", "12x6", "--pitch", 16, "--skip", 2,
                         "--show-recipe")
        recipe = done.stderr.decode().split()[-1]
        self.run_tool("convert", "a.raw", "b.png", "--recipe", recipe)
        self.assertEqual(self.read("a.png"), self.read("b.png"))

    def test_refusals(self):
        def refuse(data, *options, says):
            self.refuse("convert", "-", "x.png", "--from", "raw8", "--size", "12x6", *options, data=bytes(data), says=says)

        refuse(96, "--pitch", 11, says=["--pitch", "from 12", "found '11'"])
        for pitch in ("-1", "a", "16.0", "1e3", "99999999999999999999"):
            refuse(96, "--pitch=" + pitch, says=["--pitch", pitch])
        for skip in ("-1", "a", ",", "1,", ",1", "1,2,3", "4,-4"):
            refuse(96, "--skip=" + skip, says=["--skip"])
        refuse(91, "--pitch", 16, says=["too short", "expected 92 bytes for raw8 at 12x6 with lines of 16", "found 91"])
        refuse(97, "--pitch", 16, says=["too long", "expected 96 bytes"])
        refuse(75, "--skip", "3,1", says=["too short", "expected 76 bytes", "3 before and 1 behind", "found 75"])
        refuse(2, "--skip", "3", says=["too short", "found 2"])
        refuse(77, "--skip", "3,1", says=["too long", "expected 76 bytes"])
        # What is behind a frame stands behind its last line's padding.
        refuse(3 + 92 + 1, "--skip", "3,1", "--pitch", 16, says=["too short"])
        self.refuse("convert", "-", "x.png", "--from", "raw12p", "--size", "3x2", "--pitch", 8, data=bytes(16),
                    says=["multiple of 2", "3x1"])
        self.run_tool("chart", "a.pgm", "--size", "12x6")
        for option in ("--pitch", "--skip"):
            self.refuse("convert", "a.pgm", "x.png", option, 16, says=["a.pgm", "neither --pitch nor --skip"])


if __name__ == "__main__":
    unittest.main()
