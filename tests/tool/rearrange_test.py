#!/usr/bin/env python3
"""flip, weave, unpack, resample and sis: frames in, frames out, and what they refuse."""

import itertools
import random
import unittest

from support import ToolTest, read_netpbm, read_png


def pixels(data, step):
    return [data[i:i + step] for i in range(0, len(data), step)]


def lines(data, count):
    return pixels(data, len(data) // count)


def noise(length, seed=1):
    return random.Random(seed).randbytes(length)


class Flip(ToolTest):
    STEPS = {"y8": 1, "y16be": 2, "y16le": 2, "yuv444": 3, "rgb8": 3, "rgb16be": 6}

    def flipped(self, data, *options):
        return self.run_tool("flip", "-", "-", *options, data=data)

    def test_each_axis(self):
        for (name, step), width, height in itertools.product(self.STEPS.items(), (1, 2, 7, 40), (2, 3, 6)):
            with self.subTest(format=name, size=(width, height)):
                data = noise(width * height * step)
                how = ("--from", name, "--size", "%dx%d" % (width, height), "--axis")
                turned = b"".join(b"".join(reversed(pixels(line, step))) for line in lines(data, height))
                self.assertEqual(self.flipped(data, *how, "horizontal"), turned)
                self.assertEqual(self.flipped(data, *how, "vertical"), b"".join(reversed(lines(data, height))))
                self.assertEqual(self.flipped(data, *how, "both"), b"".join(reversed(lines(turned, height))))

    def test_bayer_order_of_the_result(self):
        def colour(order, x, y):
            return order[y % 2 * 2 + x % 2]
        for order, size in itertools.product(("rggb", "grbg", "gbrg", "bggr"), ((4, 4), (5, 4), (4, 5), (5, 5))):
            for axis in ("horizontal", "vertical", "both"):
                width, height = size
                last_x = width - 1 if axis != "vertical" else 0
                last_y = height - 1 if axis != "horizontal" else 0
                now = "".join(colour(order, abs(last_x - x), abs(last_y - y)) for y in (0, 1) for x in (0, 1))
                done = self.call("flip", "-", "-", "--from", "raw8", "--size", "%dx%d" % size, "--pattern", order,
                                 "--axis", axis, data=bytes(width * height))
                self.assertEqual(done.returncode, 0)
                self.assertEqual(done.stderr.decode(),
                                 "" if now == order else "qvn: the Bayer order is %s now\n" % now)

    def test_files(self):
        self.run_tool("chart", "a.ppm", "--format", "rgb8", "--size", "31x9")
        self.run_tool("flip", "a.ppm", "b.png", "--axis", "both")
        before, after = read_netpbm(self.read("a.ppm")), read_png(self.read("b.png"))
        self.assertEqual(pixels(after.samples, 3), list(reversed(pixels(before.samples, 3))))

    def test_shared_bytes_only_up_and_down(self):
        for name, size, length in (("uyvy", "4x2", 16), ("uyyvyy411", "4x2", 12)):
            data = noise(length)
            self.assertEqual(self.flipped(data, "--from", name, "--size", size, "--axis", "vertical"),
                             data[length // 2:] + data[:length // 2])
            for axis in ("horizontal", "both"):
                self.refuse("flip", "-", "a.raw", "--from", name, "--size", size, "--axis", axis, data=data,
                            says=[name, "vertical axis only"])

    def test_refused(self):
        self.refuse("flip", "-", "a.raw", "--from", "y8", "--size", "4x1", "--axis", "both", data=bytes(4),
                    says=["at least 2 lines", "4x1"])
        self.refuse("flip", "-", "a.raw", "--from", "y8", "--size", "4x2", "--axis", "up", data=bytes(8),
                    says=["--axis", "horizontal, vertical or both", "'up'"])
        self.refuse("flip", "-", "a.raw", "--from", "y8", "--size", "4x2", data=bytes(8), says=["--axis"])


class Weave(ToolTest):
    def test_second_field_comes_first(self):
        for name, step in (("y8", 1), ("y16be", 2), ("rgb8", 3)):
            for width, height in itertools.product((1, 4, 5), (2, 6)):
                data = noise(width * height * step)
                stored = lines(data, height)
                first, second = stored[:height // 2], stored[height // 2:]
                woven = b"".join(line for pair in zip(second, first) for line in pair)
                self.assertEqual(self.run_tool("weave", "-", "-", "--from", name,
                                               "--size", "%dx%d" % (width, height), data=data), woven)

    def test_fields_of_unequal_height(self):
        self.refuse("weave", "-", "a.raw", "--from", "y8", "--size", "4x3", data=bytes(12), says=["4x3", "equal"])


class Unpack(ToolTest):
    def test_both_depths(self):
        for name, eight in (("raw12packed", "raw8"), ("y12packed", "y8")):
            data = bytes([0xAB, 0xCD, 0xEF]) + noise(3 * 99)
            how = ("--from", name, "--size", "20x10")
            top = b"".join(bytes([a, c]) for a, _, c in pixels(data, 3))
            whole = b"".join(bytes([a, b << 4 & 255, c, b & 0xF0]) for a, b, c in pixels(data, 3))
            self.assertEqual(self.run_tool("unpack", "-", "-", *how, "--to-bits", "8", data=data), top)
            self.assertEqual(self.run_tool("unpack", "-", "-", *how, data=data), whole)
            self.write("packed.raw", data)
            self.run_tool("unpack", "packed.raw", "a.pgm", *how, "--to-bits", "8")
            self.assertEqual(bytes(read_netpbm(self.read("a.pgm")).samples), top)
            self.run_tool("unpack", "packed.raw", "a.png", *how)
            self.assertEqual(read_png(self.read("a.png")).depth, 16)

    def test_refused(self):
        self.refuse("unpack", "-", "a.raw", "--from", "raw8", "--size", "4x2", data=bytes(8),
                    says=["three bytes", "raw8"])
        self.refuse("unpack", "-", "a.raw", "--from", "y12packed", "--size", "4x2", "--to-bits", "12", data=bytes(12),
                    says=["--to-bits", "8 or 16", "'12'"])


class Resample(ToolTest):
    def test_nearest(self):
        for name, step in (("y8", 1), ("y16be", 2), ("rgb8", 3), ("rgb16be", 6)):
            data = noise(40 * 3 * step)
            for rate, to_rate, width in (("2", "1", 20), ("1", "2", 80), ("1", "1", 40)):
                out = self.run_tool("resample", "-", "-", "--from", name, "--size", "40x3", "--rate", rate,
                                    "--to-rate", to_rate, data=data)
                expected = b""
                for line in lines(data, 3):
                    source = pixels(line, step)
                    for x in range(width):
                        expected += source[min(int(x * float(rate) / float(to_rate) + 0.5), 39)]
                self.assertEqual(out, expected)

    def test_linear_blends_with_the_pixel_before(self):
        out = self.run_tool("resample", "-", "-", "--from", "y8", "--size", "8x1", "--rate", "1", "--to-rate", "4",
                            "--method", "linear", data=bytes([0, 100, 200, 40, 80, 120, 160, 200]))
        # Places 0.25 and beyond: index 0 is copied; at 0.5 the index is 1, half of it; at 1.25 a quarter of it.
        self.assertEqual(list(out[:8]), [0, 0, 50, 75, 100, 25, 150, 175])
        self.assertEqual(len(out), 32)

    def test_width(self):
        out = self.run_tool("resample", "-", "-", "--from", "y8", "--size", "641x1", "--rate", "1", "--to-rate",
                            "1", data=bytes(641))
        self.assertEqual(len(out), 644)
        out = self.run_tool("resample", "-", "-", "--from", "y8", "--size", "641x1", "--rate", "1", "--to-rate",
                            "1", "--width", "641", data=noise(641))
        self.assertEqual(out, noise(641))

    def test_linear_reads_nothing_behind_the_frame(self):
        out = self.run_tool("resample", "-", "-", "--from", "y8", "--size", "3x2", "--rate", "1", "--to-rate", "1",
                            "--width", "4000", "--method", "linear", data=bytes([1, 2, 3, 4, 5, 6]))
        self.assertEqual(len(out), 8000)
        self.assertEqual(list(out[4000:4005]), [4, 5, 6, 0, 0])

    def test_refused(self):
        how = ("resample", "-", "a.raw", "--size", "4x2", "--from")
        for name, length in (("raw8", 8), ("raw16be", 16), ("uyvy", 16)):
            self.refuse(*how, name, "--rate", "1", "--to-rate", "2", data=bytes(length), says=[name])
        good = ("y8", "--rate", "1", "--to-rate", "1")
        self.refuse(*how, *good, "--method", "cubic", data=bytes(8), says=["nearest or linear", "'cubic'"])
        for width in ("0", "-4", "x", "1.5", "", "99999999999999999999"):
            self.refuse(*how, *good, "--width=" + width, data=bytes(8), says=["--width"])
        for rate in ("0", "-1", "nan", "inf"):
            self.refuse(*how, "y8", "--rate", rate, "--to-rate", "1", data=bytes(8), says=["--rate"])
            self.refuse(*how, "y8", "--rate", "1", "--to-rate", rate, data=bytes(8), says=["--to-rate"])
        self.refuse(*how, "y8", "--rate", "1", "--to-rate", "1e9", data=bytes(8), says=["expected"])


class Sis(ToolTest):
    SIZE = ("--from", "y8", "--size", "64x48")

    def test_lines_and_pixels_from_the_end(self):
        data = noise(64 * 48)
        for position, start in (("0", 0), ("47", 47 * 64), ("-13", 64 * 48 - 13), ("-3072", 0)):
            self.assertEqual(self.run_tool("sis", "-", *self.SIZE, "--position", position, data=data),
                             data[start:start + 12])
        self.assertEqual(self.run_tool("sis", "-", *self.SIZE, "--position", "2", "--kind", "2", data=data),
                         data[128:180])
        self.write("f.raw", data)
        self.run_tool("sis", "f.raw", "block.bin", *self.SIZE, "--position", "1")
        self.assertEqual(self.read("block.bin"), data[64:76])

    def test_depths(self):
        for name, bits in (("y16be", 16), ("rgb8", 24), ("uyvy", 16), ("uyyvyy411", 12), ("rgb16be", 48)):
            data = noise(16 * 8 * bits // 8)
            self.assertEqual(self.run_tool("sis", "-", "--from", name, "--size", "16x8", "--position", "3", data=data),
                             data[3 * 16 * bits // 8:][:12])

    def test_refused(self):
        def refuse(says, *options):
            self.refuse("sis", "-", "a.bin", *self.SIZE, *options, data=bytes(64 * 48), says=says)
        for position in ("48", "-12", "-1", "-4000"):
            refuse(["position", position], "--position", position)
        refuse(["--kind", "1 to 2", "'3'"], "--position", "0", "--kind", "3")
        refuse(["--position", "'x'"], "--position", "x")
        refuse(["--position"])
        self.refuse("sis", "-", "a.bin", "--from", "uyyvyy411", "--size", "4x20", "--position", "-79",
                    data=bytes(120), says=["begins with a byte", "-79"])


if __name__ == "__main__":
    unittest.main()
