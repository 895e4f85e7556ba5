#!/usr/bin/env python3
"""TIFF files, the queries, completion, and what the help says."""

import re
import shutil
import subprocess
import unittest

from support import ToolTest, read_png, read_tiff


class Tiff(ToolTest):
    def test_it_holds_what_a_png_holds(self):
        self.run_tool("chart", "a.raw", "--format", "raw16be", "--size", "37x50")
        self.run_tool("chart", "b.raw", "--format", "raw16be", "--size", "38x50")
        for name, size, targets in (("a.raw", "37x50", ("bgr", "bgra", "y8")), ("b.raw", "38x50", ("bgr16", "y16"))):
            for target in targets:
                method = "transform-ex"
                arguments = ("convert", name, "--from", "raw16be", "--size", size, "--method", method, "--to", target)
                self.run_tool(*arguments, "a.png")
                self.run_tool(*arguments, "a.tif")
                self.run_tool(*arguments, "a.TIFF")
                data = self.run_tool(*arguments, "-", "--out-format", "tiff")
                self.assertEqual(read_tiff(data), read_png(self.read("a.png")), target)
                self.assertEqual(self.read("a.tif"), data)
                self.assertEqual(self.read("a.TIFF"), data)

    def test_planes_charts_and_sheets(self):
        self.run_tool("chart", "c.tiff", "--format", "rgb16be", "--size", "31x17")
        self.run_tool("chart", "c.png", "--format", "rgb16be", "--size", "31x17")
        self.assertEqual(read_tiff(self.read("c.tiff")), read_png(self.read("c.png")))
        self.run_tool("chart", "c.raw", "--format", "rgb8", "--size", "31x17")
        for suffix in ("tiff", "png"):
            self.run_tool("convert", "c.raw", "p." + suffix, "--from", "rgb8", "--size", "31x17", "--to", "planes")
        for letter in "rgb":
            self.assertEqual(read_tiff(self.read("p_%s.tiff" % letter)), read_png(self.read("p_%s.png" % letter)))
        self.run_tool("sheet", "c.raw", "s.tif", "--from", "rgb8", "--size", "31x17")
        self.run_tool("sheet", "c.raw", "s.png", "--from", "rgb8", "--size", "31x17")
        self.assertEqual(read_tiff(self.read("s.tif")), read_png(self.read("s.png")))

    def test_many_strips(self):
        self.run_tool("chart", "c.tiff", "--format", "rgb8", "--size", "1500x700")
        self.run_tool("chart", "c.png", "--format", "rgb8", "--size", "1500x700")
        self.assertEqual(read_tiff(self.read("c.tiff")), read_png(self.read("c.png")))


class Queries(ToolTest):
    def test_status(self):
        self.assertEqual(self.run_tool("status", "0x88000002", 0, "0X8800001a", 4294967295).decode().splitlines(), [
            "0x88000002  Parameter 1 is invalid", "0x00000000  No error", "0x8800001A  Out of memory",
            "0xFFFFFFFF  " + self.run_tool("status", "0xffffffff").decode().strip()[12:]])
        for code in ("", "x", "0x", "4294967296", "0x100000000", "-1", "1.5"):
            self.refuse("status", "--", code, says=["32 bits", "'%s'" % code])

    def test_bits(self):
        self.assertEqual(self.run_tool("bits", 0, 1, "0x85").decode(), "0  8\n1  12\n133  36\n")
        self.refuse("bits", 0, 131, says=["131", "Parameter 1"])

    def test_lines_of_a_resampled_frame(self):
        self.run_tool("chart", "a.raw", "--format", "y8", "--size", "24x16")
        arguments = ("resample", "a.raw", "-", "--from", "y8", "--size", "24x16", "--rate", 1, "--to-rate", 2)
        for method in ("nearest", "linear"):
            whole = self.run_tool(*arguments, "--method", method)
            self.assertEqual(len(whole), 48 * 16)
            for top, count in ((0, 1), (3, 5), (15, 1), (0, 16)):
                found = self.run_tool(*arguments, "--method", method, "--lines", "%d,%d" % (top, count))
                self.assertEqual(found, whole[48 * top:48 * (top + count)])
        for lines in ("0", "16,1", "0,17", "15,2", "0,0", "a,1", "-1,2"):
            self.refuse(*arguments, "--lines=" + lines, says=["--lines"])

    def test_help_tells_the_statuses(self):
        text = " ".join(self.run_tool("--help").decode().split())
        for part in ("Exit statuses: 0,", "2, one sentence", "129, 130 and 143"):
            self.assertIn(part, text)


class Completion(ToolTest):
    def complete(self, *words):
        """What bash offers behind these words, the last of which is begun."""
        script = self.run_tool("completion", "bash").decode()
        line = " ".join("'%s'" % word for word in words)
        program = "%s\nCOMP_WORDS=(qvn %s)\nCOMP_CWORD=%d\n_qvn\nprintf '%%s\\n' \"${COMPREPLY[@]}\"\n" % (
            script, line, len(words))
        done = subprocess.run(["bash", "-c", program], capture_output=True, cwd=self.folder, check=True)
        self.assertEqual(done.stderr, b"")
        return done.stdout.decode().split()

    @unittest.skipUnless(shutil.which("bash"), "needs bash")
    def test_bash(self):
        self.write("frame.raw", b"")
        self.write("from.txt", b"")
        self.assertEqual(self.complete("con"), ["convert"])
        self.assertIn("completion", self.complete(""))
        self.assertEqual(self.complete("convert", "--fr"), ["--from"])
        self.assertEqual(self.complete("convert", "--from", "raw12"), ["raw12packed", "raw12p", "raw12csi2"])
        self.assertEqual(self.complete("convert", "a", "b", "--pattern", "g"), ["grbg", "gbrg"])
        self.assertEqual(sorted(self.complete("convert", "fr")), ["frame.raw", "from.txt"])
        self.assertEqual(sorted(self.complete("convert", "--table", "fr")), ["frame.raw", "from.txt"])
        self.assertEqual(self.complete("sheet", "--show", ""), ["methods", "patterns", "all"])
        self.assertEqual(self.complete("convert", "-o", "frame"), ["frame.raw"])
        self.assertEqual(self.complete("flip", "--fro"), ["--from"])
        self.assertEqual(self.complete("formats", "--fro"), [])

    @unittest.skipUnless(shutil.which("bash"), "needs bash")
    def test_every_option_is_offered(self):
        for name in ("chart", "convert", "sheet", "flip", "weave", "unpack", "resample", "sis"):
            told = set(re.findall(r"(--[a-z][a-z-]+)", "\n".join(
                line for line in self.run_tool(name, "--help").decode().splitlines()
                if re.match(r"\s+(-\w,)?--", line))))
            told = {option for option in told if re.search(
                r"^\s+(-\w,)?%s( |$)" % option, self.run_tool(name, "--help").decode(), re.M)}
            offered = set(self.complete(name, "-"))
            self.assertEqual({option for option in offered if option.startswith("--")}, told, name)

    def zsh(self, line):
        """What an interactive zsh with the script lists as that which may follow."""
        self.write("start.zsh", b"""
autoload -U compinit && compinit -u -D && source completion.zsh
LISTMAX=10000 LINES=500 COLUMNS=200
list() { zle list-choices; zle -R; print DONE }
zle -N list
bindkey '^I' list
""")
        self.write("completion.zsh", self.run_tool("completion", "zsh"))
        program = """
zmodload zsh/zpty
zpty shell 'PS1= zsh -f -i'
zpty -w shell 'source start.zsh; print REA""DY'
zpty -r -m shell out '*READY*'
zpty -w -n shell "$1"$'\\t'
zpty -r -m shell out '*DONE*'
print -r -- $out
"""
        done = subprocess.run(["zsh", "-f", "-c", program, "zsh", line], capture_output=True, cwd=self.folder,
                              env={"HOME": str(self.folder), "PATH": "/usr/bin:/bin", "TERM": "xterm"}, check=True,
                              timeout=60)
        return re.sub(r"\x1b\[[0-9;?]*[a-zA-Z]", "", done.stdout.decode())

    @unittest.skipUnless(shutil.which("zsh"), "needs zsh")
    def test_zsh(self):
        subcommands = self.zsh("qvn ")
        for name, about in (("convert", "Convert a frame"), ("completion", "Print a completion script")):
            self.assertRegex(subcommands, name + " +-- " + about)
        options = self.zsh("qvn convert --")
        self.assertRegex(options, "--from +-- Source format")
        self.assertRegex(options, "--show-recipe +-- Print the recipe")
        self.assertIn("raw12csi2", self.zsh("qvn convert --from raw12"))
        self.assertRegex(self.zsh("qvn convert a b --pattern=g"), "gbrg +grbg|grbg +gbrg")
        self.write("frame.raw", b"")
        self.assertIn("frame.raw", self.zsh("qvn convert fr"))

    def fish(self, line):
        script = self.run_tool("completion", "fish").decode()
        done = subprocess.run(["fish", "--no-config", "-c", "%s\ncomplete -C '%s'" % (script, line)], capture_output=True,
                              cwd=self.folder, env={"HOME": str(self.folder), "PATH": "/usr/bin:/bin"}, check=True)
        self.assertEqual(done.stderr, b"")
        return done.stdout.decode().splitlines()

    @unittest.skipUnless(shutil.which("fish"), "needs fish")
    def test_fish(self):
        self.assertEqual(self.fish("qvn conv"), ["convert\tConvert a frame to a picture, or many"])
        self.assertIn("--from\tSource format or a camera's name of one, see qvn formats", self.fish("qvn convert --fr"))
        self.assertEqual(self.fish("qvn formats --fr"), [])
        found = [line.split("\t")[0] for line in self.fish("qvn convert --from raw12")]
        self.assertEqual(sorted(found), ["raw12csi2", "raw12p", "raw12packed"])
        self.write("frame.raw", b"")
        self.assertIn("frame.raw", self.fish("qvn convert fr"))
        self.assertIn("frame.raw", self.fish("qvn convert --table fr"))

    def test_refusals(self):
        self.refuse("completion", says=["SHELL"])
        self.refuse("completion", "csh", says=["bash, zsh or fish", "'csh'"])


if __name__ == "__main__":
    unittest.main()
