#!/usr/bin/env python3
"""Everything that can go wrong: exit status 2, one sentence, no output file, an old one left alone."""

import os
import resource
import signal
import subprocess
import unittest

from support import TOOL, ToolTest, netpbm

RAW8 = ("--from", "raw8", "--size", "8x4")


class Errors(ToolTest):
    def setUp(self):
        super().setUp()
        self.write("frame.raw", range(32))

    def test_too_short_and_too_long(self):
        self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", "--size", "8x5",
                    says=["'frame.raw'", "too short", "expected 40 bytes", "8x5", "found 32"])
        self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", "--size", "8x3",
                    says=["too long", "expected 24 bytes", "found 32"])
        self.refuse("convert", "frame.raw", "a.png", "--from", "raw16be", "--size", "8x4", says=["64", "32"])
        self.write("empty.raw", b"")
        self.refuse("convert", "empty.raw", "a.png", *RAW8, says=["too short", "found 0"])
        self.refuse("convert", "-", "a.png", *RAW8, data=bytes(31),
                    says=["standard input", "short", "found 31"])
        self.refuse("convert", "-", "a.png", *RAW8, data=bytes(33),
                    says=["standard input", "long", "found more"])

    def test_missing_or_unreadable(self):
        self.refuse("convert", "none.raw", "a.png", *RAW8, says=["'none.raw'", "No such file"])
        self.refuse("convert", ".", "a.png", *RAW8, says=["directory"])
        self.refuse("convert", "none.pgm", "a.png", says=["'none.pgm'", "No such file"])
        self.refuse("chart", "a.raw", "--scene", "none.ppm", says=["none.ppm"])

    def test_a_file_that_holds_less_than_it_says(self):
        # Files of the kernel say that they hold a page.
        kernel_file = "/sys/kernel/mm/transparent_hugepage/enabled"
        if not os.path.exists(kernel_file):
            self.skipTest("no such file here")
        self.refuse("convert", kernel_file, "a.png", "--from", "raw8", "--size", "64x64", says=["too short", "4096"])

    def test_help_that_cannot_be_written(self):
        if not os.path.exists("/dev/full"):
            self.skipTest("no /dev/full here")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([TOOL, "--help"], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stderr.count(b"\n"), 1)

    def test_sets_of_pictures_need_a_file_name(self):
        self.write("rgb.raw", range(12))
        (self.folder / "d").mkdir()
        for name in ("d/", "d/..", "d", "", "/dev/null"):
            self.refuse("convert", "rgb.raw", name, "--from", "rgb8", "--size", "2x2", "--to", "planes",
                        "--out-format", "png", says=["file name"])
        self.assertEqual(list((self.folder / "d").iterdir()), [])

    def test_sizes(self):
        for size in ("0x4", "8x0", "0x0"):
            self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", "--size", size,
                        says=["at least 1", size])
            self.refuse("chart", "a.raw", "--size", size, says=["at least 1", size])
        for size in ("8", "8x", "x4", "8x4x2", "8*4", "-8x4", "8x-4", "8.0x4", " 8x4", "8 x4",
                     "99999999999999999999x1"):
            self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", "--size=" + size,
                        says=["WIDTHxHEIGHT", "'%s'" % size])
        for size in ("16385x16384", "4294967296x1", "4294967297x4294967297", "18446744073709551615x2"):
            self.refuse("chart", "a.raw", "--size", size, says=["at most 268435456", size])

    def test_odd_width_where_even_is_needed(self):
        self.write("odd.raw", range(21))
        self.refuse("convert", "odd.raw", "a.png", "--from", "raw8", "--size", "7x3", "--to", "bgr",
                    says=["raw8", "2x2", "bgr", "even", "found 7"])

    def test_too_few_lines_or_columns(self):
        self.write("line.raw", range(8))
        for size in ("8x1", "1x8"):
            for target in ("bgr", "y8", "grey-bgr"):
                self.refuse("convert", "line.raw", "a.png", "--from", "raw8", "--size", size, "--to", target,
                            says=["at least 2x2", size])

    def test_unknown_names(self):
        self.refuse("convert", "frame.raw", "a.png", "--from", "raw9", "--size", "8x4",
                    says=["unknown format 'raw9'", "expected raw8"])
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--pattern", "rgbg",
                    says=["'rgbg'", "expected rggb, grbg, gbrg or bggr"])
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--method", "9x9",
                    says=["'9x9'", "raw8", "expected 2x2"])
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--to", "rgb", says=["'rgb'", "expected bgr"])
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--method", "2x2", "--to", "zzz",
                    says=["'zzz'", "by method 2x2", "expected bgr"])
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--out-format", "jpg",
                    says=["'jpg'", "png, tiff, ppm, pgm or raw"])
        self.refuse("chart", "a.raw", "--format", "raw9", says=["'raw9'"])
        self.refuse("chart", "a.raw", "--pattern", "RGGB", says=["'RGGB'"])
        self.refuse("chart", "a.raw", "--out-format", "tga", says=["'tga'", "raw"])

    def test_names_are_checked_before_the_input_is_read(self):
        self.refuse("convert", "none.raw", "a.png", "--from", "raw9", "--size", "8x4", says=["raw9"])
        self.refuse("convert", "none.raw", "a.png", *RAW8, "--pattern", "x", says=["pattern"])

    def test_formats_without_a_conversion(self):
        self.write("c.ppm", netpbm(b"P6", 4, 4, 255, bytes(48)))
        self.write("c16.ppm", netpbm(b"P6", 4, 4, 65535, bytes(96)))
        listing = self.run_tool("formats").decode()
        for name, source in (("c.ppm", "rgb8"), ("c16.ppm", "rgb16be")):
            rows = listing[listing.index("  %s " % source):].split("\n")[1]
            if "--method" not in rows:
                self.refuse("convert", name, "a.png", says=[source, "qvn formats"])
                self.refuse("sheet", name, "a.png", says=[source])

    def test_nothing_says_what_the_file_holds(self):
        self.refuse("convert", "frame.raw", "a.png", says=["no header", "--size"])
        self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", says=["no header", "--size"])
        self.refuse("convert", "frame.raw", "a.png", "--size", "8x4", says=["no header", "--from"])
        self.refuse("convert", "-", "a.png", data=b"12345", says=["standard input", "--size"])

    def test_bad_netpbm_files(self):
        good = netpbm(b"P5", 4, 3, 255, bytes(12))
        bad = {
            "ascii": (good.replace(b"P5", b"P2"), ["P5 or P6"]),
            "nothing": (b"", ["P5 or P6"]),
            "cut header": (b"P5\n4 3", ["header"]),
            "word": (b"P5\n4 three 255\n" + bytes(12), ["header"]),
            "no width": (netpbm(b"P5", 0, 3, 255, b""), ["at least 1", "0x3"]),
            "too large": (netpbm(b"P5", 999999, 999999, 255, b""), ["at most"]),
            "no range": (netpbm(b"P5", 4, 3, 0, bytes(12)), ["1 to 65535", "found 0"]),
            "wide range": (netpbm(b"P5", 4, 3, 65536, bytes(12)), ["1 to 65535", "65536"]),
            "short": (good[:-1], ["too short", "expected 12", "found 11"]),
            "long": (good + b"x", ["too long", "expected 12", "found 13"]),
            "above": (netpbm(b"P5", 4, 3, 100, bytes(11) + b"e"), ["at most 100", "found 101"]),
            "no space": (b"P5\n4 3 255x" + bytes(12), ["white space"]),
        }
        for name, (data, says) in bad.items():
            with self.subTest(name):
                self.write("bad.pgm", data)
                self.refuse("convert", "bad.pgm", "a.png", says=["'bad.pgm'", *says])

    def test_netpbm_files_that_do_not_fit_the_options(self):
        self.write("a.pgm", netpbm(b"P5", 4, 2, 255, bytes(8)))
        self.write("w.pgm", netpbm(b"P5", 4, 2, 4095, bytes(16)))
        self.write("c.ppm", netpbm(b"P6", 4, 2, 255, bytes(24)))
        self.refuse("convert", "a.pgm", "a.png", "--size", "2x4", says=["expected 2x4", "found 4x2"])
        self.refuse("convert", "a.pgm", "a.png", "--from", "raw16be", says=["16-bit", "found a PGM of 8-bit"])
        self.refuse("convert", "w.pgm", "a.png", "--from", "raw8", says=["8-bit", "found a PGM of 16-bit"])
        self.refuse("convert", "c.ppm", "a.png", "--from", "raw8", says=["a PGM", "found a PPM"])
        self.refuse("chart", "a.raw", "--scene", "a.pgm", says=["a PPM", "found a PGM"])
        self.refuse("chart", "a.raw", "--scene", "c.ppm", "--size", "2x4", says=["2x4", "4x2"])

    def test_outputs_that_cannot_hold_the_picture(self):
        self.refuse("convert", "frame.raw", "a.pgm", *RAW8, "--to", "bgr",
                    says=["PGM", "1 channel", "found 3"])
        self.refuse("convert", "frame.raw", "a.ppm", *RAW8, "--to", "y8",
                    says=["PPM", "3 channels", "found 1"])
        self.refuse("chart", "a.ppm", says=["PPM"])
        for name in ("a.jpg", "a", "png", ".png"):
            self.refuse("convert", "frame.raw", name, *RAW8, says=["'%s'" % name, ".png, .tiff, .ppm or .pgm"])
        self.refuse("convert", "frame.raw", "-", *RAW8, says=["standard output", "--out-format"])

    def test_outputs_that_cannot_be_written(self):
        self.refuse("convert", "frame.raw", "none/a.png", *RAW8, says=["'none/a.png'", "No such file"])
        (self.folder / "dir.png").mkdir()
        self.refuse("convert", "frame.raw", "dir.png", *RAW8, says=["'dir.png'", "directory"])
        self.refuse("chart", "frame.raw/a.raw", says=["'frame.raw/a.raw'", "Not a directory"])
        self.refuse("chart", "", says=["file name"])
        self.refuse("chart", "a" * 300, says=["name too long"])
        self.refuse("chart", "/dev/full", says=["/dev/full", "No space"])

    @unittest.skipIf(os.geteuid() == 0, "nothing is forbidden to root")
    def test_a_folder_that_is_closed(self):
        (self.folder / "closed").mkdir(mode=0o500)
        self.refuse("convert", "frame.raw", "closed/a.png", *RAW8, says=["Permission denied"])

    def test_standard_output_that_is_full(self):
        with open("/dev/full", "wb") as full:
            for arguments in (("convert", "frame.raw", "-", *RAW8, "--out-format", "png"), ("chart", "-"),
                              ("formats",)):
                self.refuse(*arguments, stdout=full, says=["standard output", "No space"])

    def test_a_disk_that_fills_up(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))

        self.write("old.raw", b"precious")
        self.refuse("chart", "new.raw", preexec_fn=limit, says=["'new.raw'", "File too large"])
        self.refuse("chart", "old.raw", preexec_fn=limit, says=["'old.raw'", "File too large"])

    def test_an_old_output_is_left_alone(self):
        self.write("a.png", b"precious")
        self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", "--size", "8x5")
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--method", "none")
        self.refuse("sheet", "frame.raw", "a.png", *RAW8, "--zoom", 99)
        self.refuse("chart", "a.png", "--size", "0x1")
        self.refuse("convert", "none.raw", "a.png", *RAW8)

    def test_command_lines(self):
        self.refuse(says=["subcommand", "convert", "found none"])
        self.refuse("bogus", says=["subcommand", "'bogus'"])
        self.refuse("--bogus", says=["--bogus"])
        self.refuse("convert", says=["IN"])
        self.refuse("convert", "frame.raw", says=["OUT"])
        self.refuse("convert", "frame.raw", "a.png", "b.png", *RAW8, says=["b.png"])
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--bogus", says=["--bogus"])
        self.refuse("convert", "frame.raw", "a.png", "--from", "raw8", "--size", says=["--size"])
        self.refuse("convert", "frame.raw", "a.png", *RAW8, "--from", "raw8", says=["--from"])
        self.refuse("chart", "a.raw", "--seed", "many", says=["seed"])
        self.refuse("chart", "a.raw", "--seed", "-1", says=["seed"])
        self.refuse("sheet", "frame.raw", "a.png", *RAW8, "--zoom", "-1", says=["zoom"])
        self.refuse("sheet", "frame.raw", "a.png", *RAW8, "--zoom", "4294967304", says=["zoom"])
        self.refuse("sheet", "frame.raw", "a.png", *RAW8, "--zoom", "", says=["zoom", "empty"])
        for option in ("--from", "--size", "--pattern", "--method", "--to", "--out-format", "--recipe"):
            self.refuse("convert", "frame.raw", "a.png", option, "", says=[option, "empty"])
        self.refuse("chart", "a.raw", "--noise", "loud", says=["noise"])
        for seed in ("", "0x10", "1.5", "18446744073709551616"):
            self.refuse("chart", "a.raw", "--seed=" + seed, says=["seed"])
        for noise in ("-1", "256", "nan", "inf"):
            self.refuse("chart", "a.raw", "--noise=" + noise, says=["--noise", "0 to 255"])
        self.refuse("formats", "more", says=["more"])
        self.refuse("chart", "a.raw", "formats", says=["formats"])


if __name__ == "__main__":
    unittest.main()
