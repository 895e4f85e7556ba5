#!/usr/bin/env python3
"""CYGM frames: charts of them, and what the conversions make of colours, greys and random samples."""

import random
import unittest

import conversion_reference as reference
import cygm_reference
import scene_reference
from support import ToolTest, netpbm, read_netpbm, read_png

SEED = 20240703
METHODS = (("iraw8-cygm", "2x2", "bgr", cygm_reference.to_bgr_2x2),
           ("iraw8-cygm", "3x3", "bgr", cygm_reference.to_bgr_3x3),
           ("iraw8-cygm", "mono", "grey-bgr", cygm_reference.mono),
           ("iraw8-cygm-binned", "bin", "bgr", cygm_reference.binned))


def single(value):
    return scene_reference.single(value)


def sites(rgb):
    """What is behind the four filters."""
    red, green, blue = rgb
    return {"c": single(green + blue) / 2, "y": single(red + green) / 2, "m": single(red + blue) / 2, "g": green}


def binned_site(x, line, found):
    """Means of two: blue lines hold magenta and cyan, green and yellow, red ones cyan and green, magenta and
    yellow."""
    pair = (("mc", "gy") if line % 4 in (0, 3) else ("cg", "my"))[x % 2]
    return single(found[pair[0]] + found[pair[1]]) / 2


def chart(source, scene, width, height):
    lines = []
    for y in range(height):
        line = []
        for x in range(width):
            found = sites(scene[3 * (y * width + x):3 * (y * width + x) + 3])
            value = found[cygm_reference.site(x, y)] if source == "iraw8-cygm" else binned_site(x, y, found)
            line.append(scene_reference.quantise([value], 255)[0])
        lines.append(line)
    return bytes(reference.flat(lines[1::2] + lines[::2]))


class Cygm(ToolTest):
    def convert(self, data, source, size, method, *options):
        return read_netpbm(self.run_tool("convert", "-", "-", "--out-format", "ppm", "--from", source, "--size",
                                         "%dx%d" % size, "--method", method, *options, data=bytes(data)))

    def test_random_frames(self):
        numbers = random.Random(SEED)
        for source, method, target, make in METHODS:
            for size in ((4, 4), (4, 8), (6, 12), (34, 16)):
                if method == "2x2" and size[1] < 8:
                    continue
                with self.subTest(method=method, size=size, seed=SEED):
                    data = bytes(numbers.randrange(256) for _ in range(size[0] * size[1]))
                    expected = make(cygm_reference.Frame(data, *size))
                    found = self.convert(data, source, size, method, "--to", target)
                    self.assertEqual(found.samples, reference.flat(expected))

    def test_a_cell_by_hand(self):
        # Everywhere C 100, Y 140, G 60, M 120: red difference (120 + 140 - 60 - 100) / 4 = 25, blue
        # (120 + 100 - 60 - 140) / 4 = 5, luma 105. Over 1024: red 105 * 1024 + 25 * 2165 + 5 * 344 = 163365,
        # green 107520 - 25 * 917 - 5 * 1078 = 79205, blue 107520 - 25 * 959 + 5 * 4645 = 106770.
        values = {"c": 100, "y": 140, "g": 60, "m": 120}
        lines = [[values[cygm_reference.site(x, y)] for x in range(8)] for y in range(8)]
        data = bytes(reference.flat(lines[1::2] + lines[::2]))
        # By 2x2 the last column looks at another line's sites, and the last line is not written.
        for method, width, height in (("2x2", 7, 7), ("3x3", 8, 8), ("transform", 8, 8), ("transform-3x3", 8, 8)):
            picture = self.convert(data, "iraw8-cygm", (8, 8), method)
            for y in range(height):
                for x in range(width):
                    self.assertEqual(picture.pixel(x, y), (159, 77, 104), (method, x, y))
        self.assertEqual(set(self.convert(data, "iraw8-cygm", (8, 8), "mono").samples), {105})

    def test_greys(self):
        for level in (0, 1, 127, 254, 255):
            for source, method, *_ in METHODS:
                picture = self.convert([level] * 96, source, (8, 12), method)
                written = 8 * 11 * 3 if method == "2x2" else 8 * 12 * 3
                self.assertEqual(picture.samples[:written], [level] * written, (method, level))
                self.assertEqual(set(picture.samples[written:]), {0} if method == "2x2" else set())

    def test_charts(self):
        size = (36, 24)
        scene = scene_reference.draw(*size)
        scene_reference.add_noise(scene, 7, 20.0)
        for source in ("iraw8-cygm", "iraw8-cygm-binned"):
            found = self.run_tool("chart", "-", "--format", source, "--size", "36x24", "--seed", 7, "--noise", 20)
            self.assertEqual(found, chart(source, scene, *size))

    def test_grey_scenes_keep_their_brightness(self):
        for level in (0, 90, 255):
            self.write("scene.ppm", netpbm(b"P6", 8, 8, 255, bytes([level] * 192)))
            for source, method, target, _ in METHODS:
                self.run_tool("chart", "a.raw", "--scene", "scene.ppm", "--noise", 0, "--format", source)
                self.run_tool("convert", "a.raw", "a.png", "--from", source, "--size", "8x8", "--method", method)
                self.assertEqual(set(read_png(self.read("a.png")).samples[:8 * 7 * 3]), {level}, (method, level))

    def test_colours_are_told_apart(self):
        """The matrices are made for real filters, so that colours come back only about right."""
        self.run_tool("chart", "scene.ppm", "--format", "rgb8", "--size", "192x128", "--noise", 0)
        scene = read_netpbm(self.read("scene.ppm"))
        places = [(136 + 14 * i, 11 + 14 * j) for j in range(2) for i in range(4)]
        for source, method in (("iraw8-cygm", "2x2"), ("iraw8-cygm", "3x3"), ("iraw8-cygm-binned", "bin")):
            self.run_tool("chart", "a.raw", "--format", source, "--size", "192x128", "--noise", 0)
            picture = self.convert(self.read("a.raw"), source, (192, 128), method)
            for place in places:
                expected, found = scene.pixel(*place), picture.pixel(*place)
                for a, b in ((0, 1), (0, 2), (1, 2)):
                    if abs(expected[a] - expected[b]) > 120:
                        self.assertEqual(expected[a] > expected[b], found[a] > found[b],
                                         (method, place, expected, found))

    def test_sizes(self):
        for source, method, size, says in (
                ("iraw8-cygm", "2x2", "8x4", "at least 4x8"), ("iraw8-cygm", "3x3", "8x6", "multiple of 4"),
                ("iraw8-cygm", "mono", "7x8", "even"), ("iraw8-cygm", "transform", "2x8", "at least 4x4"),
                ("iraw8-cygm-binned", "bin", "8x10", "multiple of 4"),
                ("iraw8-cygm-binned", "transform-bin", "9x8", "even")):
            width, height = map(int, size.split("x"))
            self.write("a.raw", bytes(width * height))
            self.refuse("convert", "a.raw", "a.png", "--from", source, "--size", size, "--method", method,
                        says=[source, method, says, "found "])
        self.write("a.raw", bytes(64))
        self.refuse("convert", "a.raw", "a.png", "--from", "iraw8-cygm", "--size", "8x8", "--wb", "auto",
                    says=["--wb", "Bayer", "iraw8-cygm"])
        self.refuse("convert", "a.raw", "a.png", "--from", "iraw8-cygm", "--size", "8x8", "--matrix",
                    "1,0,0,0,1,0,0,0,1", says=["--matrix", "QVN_IRaw8CYGMToBGR"])


if __name__ == "__main__":
    unittest.main()
