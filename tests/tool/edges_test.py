#!/usr/bin/env python3
"""--edges fill against the kept bytes with the edges replaced, and --threads against one call, for every conversion."""

import unittest

from support import ToolTest

BYTES = {"bgr": 3, "bgra": 4, "grey-bgr": 3, "y8": 1, "y8-709": 1, "uyvy": 2, "bgr16": 6, "y16": 2, "y16-709": 2}
# Columns and lines at left, top, right and bottom that are no function's own.
EDGES = {
    ("raw8", "3x3"): (1, 1, 1, 1), ("raw8", "transform-3x3"): (1, 1, 1, 1),
    ("iraw8-cygm", "2x2"): (0, 0, 1, 4), ("iraw8-cygm", "3x3"): (1, 1, 1, 1),
    ("iraw8-cygm", "transform-3x3"): (1, 1, 1, 1),
    ("iraw8-cygm-binned", "bin"): (0, 0, 1, 2), ("iraw8-cygm-binned", "transform-bin"): (0, 0, 1, 2),
    ("raw16be", "2x2", "bgr16"): (0, 0, 2, 1), ("raw16be", "2x2", "y16"): (0, 0, 2, 1),
}
WHOLE = ("yuv422", "lcaa", "lcaav", "transform-yuv422", "transform-lcaa", "transform-lcaav", "plain-by-eights")


class Case(ToolTest):
    size = (24, 16)

    def frame(self, source, pattern="rggb"):
        name = source + "-" + pattern + ".raw"
        if not (self.folder / name).exists():
            self.run_tool("chart", name, "--format", source, "--size", "%dx%d" % self.size, "--pattern", pattern)
        return name

    def convert(self, source, method, target, *options, pattern="rggb"):
        done = self.call("convert", self.frame(source, pattern), "-", "--from", source, "--size", "%dx%d" % self.size,
                         "--method", method, "--to", target, "--pattern", pattern, "--out-format", "raw", *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout, done.stderr.decode()


class Edges(Case):
    def filled(self, data, unit, columns, rule, halves):
        left, top, right, bottom = rule
        _, height = self.size
        lines = [[data[(y * columns + x) * unit:(y * columns + x + 1) * unit] for x in range(columns)]
                 for y in range(height)]
        if halves:
            seam = height // 2 - 1
            lines[seam][-4:] = lines[seam - 1][-4:]
            lines[-1][-4:] = lines[-2][-4:]
        lines = [[line[left]] * left + line[left:columns - right] + [line[columns - right - 1]] * right
                 for line in lines]
        lines = [lines[top]] * top + lines[top:height - bottom] + [lines[height - bottom - 1]] * bottom
        return b"".join(b"".join(line) for line in lines)

    def test_every_conversion(self):
        changed = set()
        for source, method, target in self.listed():
            mosaic = source.startswith(("raw", "iraw"))
            for pattern in ("rggb", "grbg") if (source, method) == ("raw8", "transform") else ("rggb",):
                kept, _ = self.convert(source, method, target, pattern=pattern)
                found, _ = self.convert(source, method, target, "--edges", "fill", pattern=pattern)
                if target == "y8":
                    same, _ = self.convert(source, method, target, "--edges", "keep", pattern=pattern)
                    self.assertEqual(kept, same)
                if not mosaic:
                    self.assertEqual(found, kept, (source, method, target))
                    continue
                rule = EDGES.get((source, method, target), EDGES.get((source, method), (0, 0, 1, 1)))
                if pattern == "grbg":
                    rule = (0, 0, 2, 1)
                columns = self.size[0]
                unit = BYTES[target]
                if target == "uyvy":
                    columns, unit, rule = columns // 2, 4, tuple((n + 1) // 2 if i % 2 == 0 else n
                                                                 for i, n in enumerate(rule))
                expected = self.filled(kept, unit, columns, rule, method.endswith("lcaa"))
                self.assertEqual(found, expected, (source, method, target, pattern))
                if found != kept:
                    changed.add((source, method))
        # Where the library leaves something else than copies, the picture changes.
        for case in (("raw16be", "2x2"), ("raw16be", "transform"), ("raw16le", "transform-ex"), ("raw8", "transform"),
                     ("raw12packed", "2x2"), ("iraw8-cygm", "2x2"), ("raw8", "lcaa")):
            self.assertIn(case, changed)

    def test_corrected(self):
        kept, _ = self.convert("raw16be", "2x2", "bgr16", "--gamma", "0.5")
        found, _ = self.convert("raw16be", "2x2", "bgr16", "--gamma", "0.5", "--edges", "fill")
        self.assertEqual(found, self.filled(kept, 6, 24, (0, 0, 2, 1), False))

    def test_refusals(self):
        self.write("a.raw", bytes(range(8)))
        self.refuse("convert", "a.raw", "a.png", "--from", "raw8", "--size", "4x2", "--edges", "all",
                    says=["--edges", "keep or fill", "'all'"])
        # A window has its one pixel: nothing is left of it beside the columns with red and blue exchanged.
        self.write("b.raw", bytes(4))
        self.refuse("convert", "b.raw", "a.png", "--from", "raw8", "--size", "2x2", "--method", "transform",
                    "--pattern", "grbg", "--edges", "fill", says=["--edges fill", "inside", "2x2"])


class Threads(Case):
    size = (64, 52)

    def test_every_conversion(self):
        for source, method, target in self.listed():
            one, _ = self.convert(source, method, target)
            several, note = self.convert(source, method, target, "--threads", 5)
            self.assertEqual(several, one, (source, method, target))
            whole = method in WHOLE or source.startswith("iraw")
            self.assertEqual("works on a frame as a whole" in note, whole, (source, method, note))

    def test_orders_options_and_corrections(self):
        for pattern in ("rggb", "grbg", "gbrg", "bggr"):
            for source, method, target, *options in (
                    ("raw8", "2x2", "bgr", "--matrix", "1,0.5,0,0,1,0,-0.5,0,1"), ("raw8", "3x3", "bgr"),
                    ("raw8", "2x2", "y8", "--gamma", "0.45"), ("raw8", "2x2", "bgr", "--matrix-fixed",
                                                               "1,0,0,0,1,0,0,0,1"),
                    ("raw12packed", "2x2", "bgr16", "--gamma", "0.45"), ("raw16be", "2x2", "y16", "--shift", 3),
                    ("raw16be", "2x2", "bgr16", "--shift", 4, "--matrix", "1,0,0,0,1,0,0,0.5,1"),
                    ("raw16be", "2x2", "bgr16", "--black", 9, "--wb", "auto", "--edges", "fill"),
                    ("raw16le", "transform-ex", "bgr16", "--bits", 12), ("raw16be", "transform-ex", "y8", "--align",
                                                                         "msb")):
                one, _ = self.convert(source, method, target, *options, pattern=pattern)
                three, _ = self.convert(source, method, target, *options, "--threads", 3, pattern=pattern)
                self.assertEqual(three, one, (source, target, options, pattern))

    def test_small_frames_and_many_threads(self):
        for size in ((2, 2), (4, 3), (6, 5), (4, 9)):
            self.size = size
            for path in self.folder.glob("*.raw"):
                path.unlink()
            for method in ("2x2", "3x3", "transform") if size[1] > 2 and size[0] > 2 else ("2x2", "transform"):
                self.assertEqual(self.convert("raw8", method, "bgr", "--threads", 1024),
                                 self.convert("raw8", method, "bgr"))

    def test_refusals(self):
        self.write("a.raw", bytes(32))
        for threads in ("0", "-2", "two", "", "1025"):
            self.refuse("convert", "a.raw", "a.png", "--from", "raw8", "--size", "8x4", "--threads=" + threads,
                        says=["--threads"])


if __name__ == "__main__":
    unittest.main()
