#!/usr/bin/env python3
"""Planes as files: their names, and that the whole set appears or nothing does."""

import os
import resource
import signal
import stat
import unittest

from support import ToolTest, read_netpbm, read_png

FAILING_RENAME = os.environ.get("QVN_FAILING_RENAME", "")
UYVY = ("--from", "uyvy", "--size", "64x48", "--to", "planes")


class Planes(ToolTest):
    def setUp(self):
        super().setUp()
        self.run_tool("chart", "frame.raw", "--format", "uyvy", "--size", "64x48")

    def names(self):
        return sorted(set(self.contents()) - {"frame.raw"})

    def test_names(self):
        (self.folder / "dir.d").mkdir()
        for out, options, found in (
                ("a.png", (), ["a_b.png", "a_g.png", "a_r.png"]),
                ("dir.d/a.b.PGM", (), ["dir.d/a.b_b.PGM", "dir.d/a.b_g.PGM", "dir.d/a.b_r.PGM"]),
                ("dir.d/a", ("--out-format", "pgm"), ["dir.d/a_b", "dir.d/a_g", "dir.d/a_r"])):
            self.run_tool("convert", "frame.raw", out, *UYVY, *options)
            self.assertEqual([name for name in self.names() if name != "dir.d"], found)
            for name in found:
                (self.folder / name).unlink()
        self.run_tool("convert", "frame.raw", "a.png", *UYVY[:-1], "planes-y")
        self.assertEqual(self.names(), ["a_b.png", "a_g.png", "a_r.png", "a_y.png", "dir.d"])

    def test_png_and_pgm_hold_the_same(self):
        for out in ("a.png", "a.pgm"):
            self.run_tool("convert", "frame.raw", out, *UYVY)
        for letter in "rgb":
            self.assertEqual(read_png(self.read("a_%s.png" % letter)),
                             read_netpbm(self.read("a_%s.pgm" % letter)))

    def test_old_files_are_replaced(self):
        for letter in "rgb":
            self.write("a_%s.pgm" % letter, b"old")
        os.chmod(self.folder / "a_g.pgm", 0o640)
        self.run_tool("convert", "frame.raw", "a.pgm", *UYVY)
        self.assertEqual(self.names(), ["a_b.pgm", "a_g.pgm", "a_r.pgm"])
        for letter in "rgb":
            self.assertEqual(read_netpbm(self.read("a_%s.pgm" % letter)).width, 64)
        self.assertEqual(stat.S_IMODE((self.folder / "a_g.pgm").stat().st_mode), 0o640)

    def test_names_that_are_refused(self):
        self.refuse("convert", "frame.raw", "-", *UYVY, "--out-format", "png",
                    says=["standard output", "3 of them"])
        self.refuse("convert", "frame.raw", "-", *UYVY[:-1], "planes-y", "--out-format", "png",
                    says=["4 of them"])
        self.refuse("convert", "frame.raw", "a.ppm", *UYVY, says=["PPM", "found 1"])
        self.refuse("convert", "frame.raw", "a.jpg", *UYVY, says=[".png"])
        self.refuse("convert", "frame.raw", "none/a.png", *UYVY, says=["'none/a_r.png'", "No such file"])

    def test_no_half_set(self):
        """Trouble with any one of the files leaves what was there, old planes included."""
        for bad in "rgb":
            with self.subTest(bad):
                for letter in "rgb":
                    if letter != bad:
                        self.write("%s_%s.png" % (bad, letter), b"precious")
                (self.folder / ("%s_%s.png" % (bad, bad))).mkdir()
                self.refuse("convert", "frame.raw", bad + ".png", *UYVY,
                            says=["%s_%s.png" % (bad, bad), "directory"])
                (self.folder / ("new_%s.png" % bad)).mkdir()
                self.refuse("convert", "frame.raw", "new.png", *UYVY, says=["directory"])
                (self.folder / ("new_%s.png" % bad)).rmdir()

    def test_no_half_set_in_place_of_a_pipe(self):
        os.mkfifo(self.folder / "a_b.png")
        done = self.call("convert", "frame.raw", "a.png", *UYVY)
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"pipe", done.stderr)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["a_b.png", "frame.raw"])

    def test_no_half_set_on_a_disk_that_fills_up(self):
        """The red plane of this frame takes less room than the green one."""
        colours = b"P6\n128 64\n255\n" + bytes(value for i in range(128 * 64)
                                               for value in (0, i * 7919 % 251, 0))
        self.write("scene.ppm", colours)
        sizes = {}
        self.run_tool("convert", "scene.ppm", "fit.png", "--from", "rgb8", "--to", "planes")
        for letter in "rgb":
            sizes[letter] = len(self.read("fit_%s.png" % letter))
        self.assertLess(sizes["r"], sizes["g"])

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (sizes["r"], sizes["r"]))

        self.write("a_r.png", b"precious")
        self.refuse("convert", "scene.ppm", "a.png", "--from", "rgb8", "--to", "planes", preexec_fn=limit,
                    says=["'a_g.png'", "File too large"])

    @unittest.skipUnless(FAILING_RENAME, "needs the preloaded library")
    def test_no_half_set_when_a_file_cannot_take_its_place(self):
        # Each old file moves aside before the new one comes: six moves in all, or three without old files.
        for old, moves in ((True, 6), (False, 3)):
            for move in range(1, moves + 2):
                for letter in "rgb":
                    if old:
                        self.write("a_%s.png" % letter, b"precious " + letter.encode())
                    else:
                        (self.folder / ("a_%s.png" % letter)).unlink(missing_ok=True)
                environment = {**os.environ, "LD_PRELOAD": FAILING_RENAME, "QVN_FAILS_AT": str(move),
                               "ASAN_OPTIONS": "verify_asan_link_order=0"}
                arguments = ("convert", "frame.raw", "a.png", *UYVY)
                with self.subTest(old=old, move=move):
                    if move <= moves:
                        self.refuse(*arguments, env=environment, says=["'a_", "Input/output error"])
                    else:
                        self.assertEqual(self.call(*arguments, env=environment).returncode, 0)
                        self.assertEqual(self.names(), ["a_b.png", "a_g.png", "a_r.png"])

    def test_a_sheet_has_a_cell_for_each(self):
        self.run_tool("sheet", "frame.raw", "sheet.png", "--from", "uyvy", "--size", "64x48")
        sheet = read_png(self.read("sheet.png"))
        # One colour picture, three planes, four planes: eight cells in three lines.
        self.assertEqual((sheet.width, sheet.height), (20 + 404 * 3, 44 + 3 * (46 + 48 + 10 + 256 + 20)))


if __name__ == "__main__":
    unittest.main()
