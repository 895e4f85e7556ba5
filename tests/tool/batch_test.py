#!/usr/bin/env python3
"""Many frames: files into a folder, streams through pipes, recipes and guesses."""

import os
import pty
import select
import subprocess
import unittest

from support import TOOL, ToolTest, netpbm, read_netpbm, read_png

RAW8 = ("--from", "raw8", "--size", "12x8")


class Batch(ToolTest):
    def setUp(self):
        super().setUp()
        (self.folder / "in").mkdir()
        self.names = []
        for i in range(5):
            self.names.append("in/%d.raw" % i)
            self.run_tool("chart", self.names[-1], "--size", "12x8", "--seed", i)

    def convert(self, *arguments):
        return self.run_talking("convert", *self.names, "-o", "out", *RAW8, *arguments)

    def test_every_frame_as_by_itself(self):
        for jobs in ((), ("--jobs", 1), ("-j", 3), ("-j", 100)):
            lines = self.convert(*jobs, "--again")
            self.assertEqual(sorted(line.split("] ")[1] for line in lines[:-1]),
                             ["in/%d.raw -> out/%d.png" % (i, i) for i in range(5)])
            self.assertEqual([line.split("]")[0] for line in lines[:-1]], ["[%d/5" % i for i in range(1, 6)])
            self.assertRegex(lines[-1], r"^5 frames: 5 converted, 0 there already, 0 failed; [\d.]+ frames a second$")
            self.assertEqual(sorted(os.listdir(self.folder / "out")), ["%d.png" % i for i in range(5)])
            for i in range(5):
                self.run_tool("convert", self.names[i], "one.png", *RAW8)
                self.assertEqual(self.read("out/%d.png" % i), self.read("one.png"))

    def test_forms_and_folders(self):
        for form in ("ppm", "tiff", "raw"):
            self.run_talking("convert", *self.names, "--output", "a/b/" + form, *RAW8, "--out-format", form)
            self.assertEqual(sorted(os.listdir(self.folder / "a/b" / form)), ["%d.%s" % (i, form) for i in range(5)])
        self.run_talking("convert", "in/0.raw", "-o", "p", "--from", "rgb8", "--size", "4x8", "--to", "planes-y")
        self.assertEqual(sorted(os.listdir(self.folder / "p")), ["0_b.png", "0_g.png", "0_r.png", "0_y.png"])
        lines = self.run_talking("convert", "in/0.raw", "-o", "p", "--from", "rgb8", "--size", "4x8", "--to", "planes-y")
        self.assertIn("there already", lines[0])

    def test_what_is_there_stays(self):
        self.convert()
        (self.folder / "out/2.png").write_bytes(b"mine")
        (self.folder / "out/3.png").unlink()
        lines = self.convert("-j", 1)
        self.assertIn("5 frames: 1 converted, 4 there already, 0 failed", lines[-1])
        self.assertEqual(lines[2], "[3/5] in/2.raw -> out/2.png, there already")
        self.assertEqual(lines[3], "[4/5] in/3.raw -> out/3.png")
        self.assertEqual(self.read("out/2.png"), b"mine")
        # A frame that is newer than its picture is another frame.
        os.utime(self.folder / "out/2.png", (1000, 1000))
        self.assertIn("1 converted", self.convert()[-1])
        read_png(self.read("out/2.png"))
        self.assertIn("5 converted", self.convert("--again")[-1])

    def test_one_failure_stops_no_other(self):
        self.write("in/1.raw", b"short")
        (self.folder / "in/3.raw").unlink()
        done = self.call("convert", *self.names, "-o", "out", *RAW8, "-j", 2)
        lines = done.stderr.decode().splitlines()
        self.assertEqual(done.returncode, 2)
        self.assertTrue(any("'in/1.raw' is too short" in line for line in lines))
        self.assertTrue(any("'in/3.raw'" in line and "No such file" in line for line in lines))
        self.assertIn("3 converted, 0 there already, 2 failed", lines[-2])
        self.assertEqual(lines[-1], "qvn: expected to convert every frame, found 2 that failed")
        self.assertEqual(sorted(os.listdir(self.folder / "out")), ["0.png", "2.png", "4.png"])
        # What the conversion itself refuses names no file, so its frame is named before it.
        done = self.call("convert", "in/0.raw", "-o", "out", "--from", "raw8", "--size", "1x96", "--again")
        self.assertIn(b"qvn: 'in/0.raw': raw8 by method 2x2", done.stderr)

    def test_refusals(self):
        (self.folder / "in2").mkdir()
        self.write("in2/0.raw", bytes(96))
        self.refuse("convert", "in/0.raw", "in2/0.raw", "-o", "out", *RAW8, says=["'in/0.raw'", "'in2/0.raw'", "0.png"])
        self.refuse("convert", "in/0.raw", "-", "-o", "out", *RAW8, says=["standard input"])
        self.refuse("convert", "in/0.raw", "-o", "in", *RAW8, "--out-format", "raw", says=["'in/0.raw'", "replaced"])
        self.refuse("convert", "in/0.raw", "-o", "in/1.raw", *RAW8, says=["folder", "'in/1.raw'"])
        self.refuse("convert", "-o", "out", *RAW8, says=["IN"])
        for jobs in ("0", "-1", "many", "", "5000"):
            self.refuse("convert", "in/0.raw", "-o", "out", *RAW8, "--jobs=" + jobs, says=["--jobs"])
        self.refuse("convert", "in/0.raw", "a.png", *RAW8, "--jobs", 2, says=["--jobs", "--output"])
        self.refuse("convert", "in/0.raw", "a.png", *RAW8, "--again", says=["--again", "--output"])
        self.refuse("convert", *self.names, *RAW8, says=["--output", "'in/2.raw'"])
        self.refuse("convert", "in/0.raw", "-o", "out", *RAW8, "--out-format", "jpg", says=["'jpg'"])
        self.refuse("convert", "in/0.raw", "-o", "out", *RAW8, "--to", "zzz", says=["'zzz'"])
        self.refuse("convert", "in/0.raw", "-o", "out", *RAW8, "--stream", says=["--stream", "--output"])

    def test_a_bar_on_a_terminal(self):
        master, slave = pty.openpty()
        process = subprocess.Popen([TOOL, "convert", *self.names, "-o", "out", *RAW8], cwd=self.folder, stderr=slave)
        os.close(slave)
        text = b""
        while True:
            try:
                block = os.read(master, 4096)
            except OSError:
                break
            if not block:
                break
            text += block
        os.close(master)
        self.assertEqual(process.wait(timeout=60), 0)
        self.assertIn(b"\r[########################################] 5/5 frames, ", text)
        self.assertNotIn(b"->", text)
        self.assertRegex(text.decode().splitlines()[-1], "^qvn: 5 frames: 5 converted")


class Stream(ToolTest):
    def frames(self, count):
        for i in range(count):
            self.run_tool("chart", "%d.raw" % i, "--size", "12x8", "--seed", i)
            self.run_tool("convert", "%d.raw" % i, "%d.ppm" % i, *RAW8)
            self.run_tool("convert", "%d.raw" % i, "%d.bin" % i, *RAW8)

    def test_frames_one_after_another(self):
        self.frames(4)
        data = b"".join(self.read("%d.raw" % i) for i in range(4))
        self.write("all.raw", data)
        for form, suffix in (("ppm", "ppm"), ("raw", "bin")):
            expected = b"".join(self.read("%d.%s" % (i, suffix)) for i in range(4))
            done = self.call("convert", "-", "-", *RAW8, "--stream", "--out-format", form, data=data)
            self.assertEqual((done.returncode, done.stdout), (0, expected))
            self.assertRegex(done.stderr.decode(), r"^qvn: 4 frames, [\d.]+ a second\n$")
            self.run_talking("convert", "all.raw", "all." + suffix, *RAW8, "--stream")
            self.assertEqual(self.read("all." + suffix), expected)
        pgm = b"".join(netpbm(b"P5", 12, 8, 255, self.read("%d.raw" % i)) for i in range(4))
        done = self.call("convert", "-", "-", "--stream", "--out-format", "raw", data=pgm)
        self.assertEqual(done.stdout, expected)

    def test_each_frame_comes_out_before_the_next_goes_in(self):
        self.frames(2)
        process = subprocess.Popen([TOOL, "convert", "-", "-", *RAW8, "--stream", "--out-format", "raw"],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        for i in range(2):
            process.stdin.write(self.read("%d.raw" % i))
            process.stdin.flush()
            self.assertTrue(select.select([process.stdout], [], [], 30)[0])
            self.assertEqual(process.stdout.read(288), self.read("%d.bin" % i))
        process.stdin.close()
        self.assertEqual(process.stdout.read(), b"")
        process.stderr.read()
        process.stdout.close()
        process.stderr.close()
        self.assertEqual(process.wait(timeout=30), 0)

    def test_refusals(self):
        stream = (*RAW8, "--stream")
        self.refuse("convert", "-", "a.ppm", *stream, says=["expected a frame", "found none"])
        self.refuse("convert", "-", "a.ppm", *stream, data=bytes(100), says=["too short", "found 4"])
        for form in ("png", "tiff"):
            self.refuse("convert", "-", "-", *stream, "--out-format", form, data=bytes(96), says=["raw, ppm or pgm"])
        self.refuse("convert", "-", "-", "--from", "rgb8", "--size", "4x8", "--stream", "--to", "planes",
                    "--out-format", "pgm", data=bytes(96), says=["one"])
        self.write("two.raw", bytes(192))
        self.refuse("convert", "two.raw", "a.ppm", "--from", "raw8", "--stream", says=["--size"])
        # What came before the trouble is whole.
        done = self.call("convert", "-", "-", *stream, "--out-format", "raw", data=bytes(191))
        self.assertEqual((done.returncode, len(done.stdout)), (2, 288))


class Recipes(ToolTest):
    def recipe(self, *arguments):
        lines = self.run_talking(*arguments, "--show-recipe")
        found = [line for line in lines if line.startswith("--recipe ")]
        self.assertEqual(len(found), 1, lines)
        self.assertRegex(found[0], r"^--recipe [\w.,/+:=%-]+$")
        return found[0].split()[1]

    def test_a_recipe_makes_the_picture_again(self):
        self.run_tool("chart", "a.raw", "--size", "48x32", "--format", "raw16le", "--bits", 12, "--pattern", "gbrg")
        self.run_tool("chart", "b.raw", "--size", "48x32", "--format", "raw12p")
        self.run_tool("chart", "c.raw", "--size", "48x32")
        self.run_tool("chart", "d.pgm", "--size", "48x32", "--format", "raw16be")
        self.write("a table: 1%.txt", " ".join(str(255 - i) for i in range(256)).encode())
        cases = (("a.raw", "--from", "raw16le", "--size", "48x32", "--bits", 12, "--pattern", "gbrg", "--to", "bgr16",
                  "--black", 3, "--wb", "auto", "--stretch"),
                 ("b.raw", "--from", "raw12p", "--size", "48x32", "--to", "bgr16", "--matrix",
                  "1,0,0.25,0,1,0,0,-1e-3,1"),
                 ("c.raw", "--from", "raw8", "--size", "48x32", "--table", "a table: 1%.txt", "--edges", "fill"),
                 ("c.raw", "--from", "raw8", "--size", "48x32", "--gamma", "0.5", "--matrix-clamped",
                  "1.5,-.25,-.25,-.25,1.5,-.25,-.25,-.25,1.5"),
                 ("d.pgm", "--to", "y16", "--shift", 3, "--wb", "auto"))
        for name, *arguments in cases:
            recipe = self.recipe("convert", name, "one.png", *arguments)
            before = self.read("one.png")
            self.run_talking("convert", name, "two.png", "--recipe", recipe)
            self.assertEqual(self.read("two.png"), before, recipe)
            # It is complete: the second picture's own recipe is the same.
            self.assertEqual(self.recipe("convert", name, "two.png", "--recipe", recipe), recipe)

    def test_what_it_says(self):
        self.write("f.raw", bytes(range(32)))
        self.assertEqual(self.recipe("convert", "f.raw", "a.png", "--from", "raw8", "--size", "8x4"),
                         "from=raw8:size=8x4:pattern=rggb:method=2x2:to=bgr")
        self.assertEqual(self.recipe("convert", "f.raw", "a.png", "--from", "y8", "--size", "8x4"),
                         "from=y8:size=8x4:method=direct:to=bgr")
        self.write("f.pgm", netpbm(b"P5", 8, 4, 255, bytes(range(32))))
        self.assertEqual(self.recipe("convert", "f.pgm", "a.png", "--pattern", "bggr"),
                         "from=raw8:pattern=bggr:method=2x2:to=bgr")

    def test_options_go_before_the_recipe(self):
        self.write("f.raw", bytes(range(32)))
        recipe = "from=raw8:size=8x4:pattern=bggr:method=2x2:to=bgr"
        self.assertEqual(self.recipe("convert", "f.raw", "a.png", "--recipe", recipe, "--to", "y8", "--pattern", "rggb"),
                         "from=raw8:size=8x4:pattern=rggb:method=2x2:to=y8")

    def test_refusals(self):
        self.write("f.raw", bytes(range(32)))
        for recipe, says in (("nonsense", "'nonsense'"), ("from", "'from'"), ("from=", "'from='"),
                             ("from=raw8:", "''"), ("colour=red", "unknown key 'colour'"),
                             ("from=raw8:from=y8", "second 'from'"), ("from=raw8:stretch=no", "'stretch=no'"),
                             ("from=ra%", "%"), ("from=ra%7", "%"), ("from=ra%zz", "%"), ("from=raw9", "'raw9'"),
                             ("from=raw8:size=8", "WIDTHxHEIGHT"), ("from=raw8:size=8x4:method=9", "'9'")):
            self.refuse("convert", "f.raw", "a.png", "--recipe", recipe, says=[says])


class Guesses(ToolTest):
    def test_by_length(self):
        for source, size, length in (("raw8", "640x480", 307200), ("raw12packed", "1280x960", 1843200),
                                     ("raw16be", "752x480", 721920), ("uyvy", "1024x768", 1572864)):
            self.write("frame.raw", bytes(length))
            lines = self.run_talking("convert", "frame.raw", "a.ppm", "--from", source)
            self.assertEqual(lines, ["'frame.raw' is taken for %s, by its length of %d bytes; --size says it"
                                     % (size, length)])
            picture = read_netpbm(self.read("a.ppm"))
            self.assertEqual("%dx%d" % (picture.width, picture.height), size)
        lines = self.run_talking("sheet", "frame.raw", "a.ppm", "--from", "uyvy")
        self.assertIn("1024x768", lines[0])

    def test_by_name(self):
        self.write("cam2_17x6_10.raw", bytes(102))
        lines = self.run_talking("convert", "cam2_17x6_10.raw", "a.ppm", "--from", "y8")
        self.assertEqual(lines, ["'cam2_17x6_10.raw' is taken for 17x6, by its name; --size says it"])
        # The name goes before the length.
        self.write("480x640.raw", bytes(307200))
        lines = self.run_talking("convert", "480x640.raw", "a.ppm", "--from", "y8")
        self.assertIn("480x640, by its name", lines[0])
        # A name that does not fit the length tells nothing.
        self.write("99999999999x1_0x5_320x200.raw", bytes(307200))
        lines = self.run_talking("convert", "99999999999x1_0x5_320x200.raw", "a.ppm", "--from", "y8")
        self.assertIn("640x480, by its length", lines[0])

    def test_several(self):
        self.write("frame.raw", bytes(786432))
        lines = self.run_talking("convert", "frame.raw", "a.ppm", "--from", "raw16be")
        self.assertIn("768x512, by its length of 786432 bytes", lines[0])
        self.write("frame.raw", bytes(1024 * 256))
        lines = self.run_talking("convert", "frame.raw", "a.ppm", "--from", "y8")
        self.assertIn("512x512", lines[0])

    def test_none(self):
        self.write("frame.raw", bytes(307201))
        self.refuse("convert", "frame.raw", "a.ppm", "--from", "raw8", says=["--size", "no usual size", "307201"])
        self.write("half_640x480.raw", bytes(153601))
        self.refuse("convert", "half_640x480.raw", "a.ppm", "--from", "raw8", says=["no size in its name", "153601"])
        self.write("frame.raw", bytes(307200))
        self.refuse("convert", "frame.raw", "a.ppm", says=["--from", "--size", "it could be raw8 640x480"])
        self.refuse("convert", "-", "a.ppm", "--from", "raw8", data=bytes(307200), says=["standard input", "--size"])


if __name__ == "__main__":
    unittest.main()
