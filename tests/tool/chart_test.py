#!/usr/bin/env python3
"""The chart: deterministic, the same scene in every format and order, noise as asked for."""

import struct
import unittest

import scene_reference
from support import ToolTest, netpbm, read_netpbm, read_png


class Chart(ToolTest):
    def chart(self, *options):
        return self.run_tool("chart", "-", *options)

    def test_sizes(self):
        for size, pixels in (("768x512", 768 * 512), ("1x1", 1), ("7x3", 21), ("300x2", 600), ("2x300", 600)):
            self.assertEqual(len(self.chart("--size", size)), pixels)
            self.assertEqual(len(self.chart("--size", size, "--format", "raw16be")), 2 * pixels)
            self.assertEqual(len(self.chart("--size", size, "--format", "rgb8")), 3 * pixels)
        self.assertEqual(self.chart(), self.chart("--size", "768x512", "--pattern", "rggb", "--seed", 1))

    def test_seed_decides(self):
        first = self.chart("--size", "96x64", "--seed", 5)
        self.assertEqual(first, self.chart("--size", "96x64", "--seed", 5))
        self.assertNotEqual(first, self.chart("--size", "96x64", "--seed", 6))
        self.assertNotEqual(first, self.chart("--size", "96x64", "--seed", 5, "--noise", 0))
        quiet = self.chart("--size", "96x64", "--seed", 5, "--noise", 0)
        self.assertEqual(quiet, self.chart("--size", "96x64", "--seed", 6, "--noise", 0))

    def test_same_bytes_on_every_machine(self):
        """The scene is computed from exactly rounded operations alone, so a second writing of it, in a
        language whose numbers behave alike on every machine, must meet each byte."""
        for size, seed, noise in (((96, 64), 1, 0.0), ((61, 83), 12345678901, 2.5)):
            scene = scene_reference.draw(*size)
            scene_reference.add_noise(scene, seed, noise)
            options = ("--size", "%dx%d" % size, "--seed", seed, "--noise", noise)
            for name, top in (("rgb8", 255), ("rgb16be", 65535)):
                expected = scene_reference.quantise(scene, top)
                form = ">%d%s" % (len(expected), "B" if top == 255 else "H")
                found = struct.unpack(form, self.chart("--format", name, *options))
                self.assertEqual(list(found), expected)

    def test_every_order_samples_the_same_scene(self):
        for size, noise in (((96, 64), 0), ((37, 21), 2)):
            options = ("--size", "%dx%d" % size, "--noise", noise)
            scene = self.chart("--format", "rgb8", *options)
            for pattern in ("rggb", "grbg", "gbrg", "bggr"):
                mosaic = self.chart("--pattern", pattern, *options)
                for i, sample in enumerate(mosaic):
                    x, y = i % size[0], i // size[0]
                    channel = "rgb".index(pattern[y % 2 * 2 + x % 2])
                    self.assertEqual(sample, scene[3 * i + channel], (pattern, x, y))

    def test_sixteen_bits_are_the_same_scene_finer(self):
        options = ("--size", "96x64", "--noise", 0)
        for narrow, wide in (("raw8", "raw16be"), ("rgb8", "rgb16be")):
            eight = self.chart("--format", narrow, *options)
            sixteen = self.chart("--format", wide, *options)
            for a, b in zip(eight, struct.unpack(">%dH" % len(eight), sixteen)):
                self.assertLessEqual(abs(a * 257 - b), 129)

    def test_what_is_in_the_scene(self):
        scene = read_netpbm(self.chart("--format", "rgb8", "--out-format", "ppm", "--noise", 0))
        grey = [scene.pixel(x, 420) for x in range(30, 740)]
        self.assertTrue(all(r == g == b for r, g, b in grey))
        self.assertEqual(sorted(grey), grey)
        self.assertLess(grey[0][0], 10)
        self.assertGreater(grey[-1][0], 245)
        steps = {scene.pixel(x, 470) for x in range(30, 740)}
        self.assertGreaterEqual(len(steps), 16)
        # Middle of the zone plate, a red patch, black and white around the star.
        self.assertGreater(scene.pixel(383, 131)[0], 220)
        red, green, blue = scene.pixel(546, 46)
        self.assertTrue(red > 200 and green < 60 and blue < 60)
        around = {scene.pixel(x, 90)[1] for x in range(60, 200)}
        self.assertTrue(min(around) < 20 and max(around) > 230)

    def test_noise_has_the_strength_asked_for(self):
        self.write("white.ppm", netpbm(b"P6", 200, 200, 255, bytes([200]) * (3 * 200 * 200)))
        noisy = self.chart("--scene", "white.ppm", "--noise", 8)
        mean = sum(noisy) / len(noisy)
        spread = (sum((sample - mean) ** 2 for sample in noisy) / len(noisy)) ** 0.5
        self.assertAlmostEqual(mean, 200, delta=0.2)
        self.assertAlmostEqual(spread, 8 * (200 / 255) ** 0.5, delta=0.15)

    def test_a_picture_as_the_scene(self):
        pixels = bytes(range(2, 38))
        self.write("scene.ppm", netpbm(b"P6", 4, 3, 255, pixels))
        self.assertEqual(self.chart("--scene", "scene.ppm", "--noise", 0, "--format", "rgb8"), pixels)
        mosaic = self.chart("--scene", "scene.ppm", "--noise", 0, "--pattern", "bggr", "--size", "4x3")
        # Columns of channels: b g b g / g r g r / b g b g; channel c of pixel i is 2 + 3 * i + c.
        self.assertEqual(list(mosaic), [4, 6, 10, 12, 15, 17, 21, 23, 28, 30, 34, 36])
        wide = struct.pack(">36H", *(257 * value for value in pixels))
        self.write("wide.ppm", netpbm(b"P6", 4, 3, 65535, wide))
        self.assertEqual(self.chart("--scene", "wide.ppm", "--noise", 0, "--format", "rgb16be"), wide)
        self.assertEqual(self.chart("--scene", "wide.ppm", "--noise", 0, "--format", "rgb8"), pixels)

    def test_files(self):
        raw = self.chart("--size", "20x10")
        self.run_tool("chart", "a.raw", "--size", "20x10")
        self.run_tool("chart", "a.bin", "--size", "20x10")
        self.run_tool("chart", "a.pgm", "--size", "20x10")
        self.run_tool("chart", "a.png", "--size", "20x10")
        self.assertEqual(self.read("a.raw"), raw)
        self.assertEqual(self.read("a.bin"), raw)
        self.assertEqual(self.read("a.pgm"), netpbm(b"P5", 20, 10, 255, raw))
        self.assertEqual(read_png(self.read("a.png")).samples, list(raw))


if __name__ == "__main__":
    unittest.main()
