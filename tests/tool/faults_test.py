#!/usr/bin/env python3
"""What the system does to the tool: signals, closed pipes, full disks, no memory. One sentence, a status, no half file."""

import os
import resource
import shutil
import signal
import subprocess
import time
import unittest

from support import TOOL, ToolTest, netpbm

FAILING_MALLOC = os.environ.get("QVN_FAILING_MALLOC", "")
RAW8 = ("--from", "raw8", "--size", "8x4")


class Signals(ToolTest):
    def start(self, *arguments, **options):
        return subprocess.Popen([TOOL, *map(str, arguments)], stderr=subprocess.PIPE, cwd=self.folder, **options)

    def end(self, process, number):
        process.send_signal(number)
        _, text = process.communicate(timeout=60)
        self.assertEqual(process.returncode, -number, text)
        return text

    def wait_for_part(self, process):
        """Until the tool has begun to write."""
        for _ in range(6000):
            if any(path.name.startswith(".qvn-") for path in self.folder.rglob("*")):
                return
            self.assertIsNone(process.poll())
            time.sleep(0.005)
        self.fail("no file was begun")

    def test_waiting_for_input(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            process = self.start("convert", "-", "a.png", *RAW8, stdin=subprocess.PIPE)
            time.sleep(0.2)
            self.assertEqual(self.end(process, number), b"qvn: interrupted\n")
            process.stdin.close()
            self.assertEqual(self.contents(), {})

    def test_an_ignored_signal_stays_ignored(self):
        process = self.start("convert", "-", "a.ppm", *RAW8, stdin=subprocess.PIPE,
                             preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        time.sleep(0.2)
        process.send_signal(signal.SIGHUP)
        _, text = process.communicate(bytes(32), timeout=60)
        self.assertEqual((process.returncode, text), (0, b""))
        self.assertEqual(list(self.contents()), ["a.ppm"])

    def test_a_stream_into_a_file(self):
        process = self.start("convert", "-", "a.ppm", *RAW8, "--stream", stdin=subprocess.PIPE)
        process.stdin.write(bytes(64))
        process.stdin.flush()
        self.wait_for_part(process)
        self.assertEqual(self.end(process, signal.SIGTERM), b"qvn: interrupted\n")
        process.stdin.close()
        self.assertEqual(self.contents(), {})

    def test_in_the_middle_of_a_batch(self):
        (self.folder / "in").mkdir()
        self.run_tool("chart", "in/0.raw", "--size", "800x600")
        names = ["in/%d.raw" % i for i in range(400)]
        for name in names[1:]:
            os.link(self.folder / "in" / "0.raw", self.folder / name)
        for number in (signal.SIGINT, signal.SIGTERM):
            shutil.rmtree(self.folder / "out", ignore_errors=True)
            process = self.start("convert", *names, "-o", "out", "--jobs", 4, "--from", "raw8", "--size", "800x600")
            while not list(self.folder.glob("out/*.png")):
                self.assertIsNone(process.poll())
                time.sleep(0.005)
            text = self.end(process, number)
            self.assertTrue(text.endswith(b"qvn: interrupted\n"), text)
            made = sorted((self.folder / "out").iterdir())
            self.assertTrue(0 < len(made) < len(names))
            for path in made:
                self.assertRegex(path.name, r"^\d+\.png$")
                self.assertEqual(path.read_bytes()[-8:-4], b"IEND")

    def test_closed_pipes(self):
        self.write("frame.raw", bytes(640 * 480))
        for arguments in (("formats",), ("chart", "-"), ("convert", "frame.raw", "-", "--from", "raw8", "--size",
                                                         "640x480", "--out-format", "ppm")):
            reader, writer = os.pipe()
            os.close(reader)
            self.refuse(*arguments, stdout=writer, says=["standard output", "Broken pipe"])
            os.close(writer)

    def test_closed_streams(self):
        """A file that is opened must not become standard error."""
        self.write("frame.raw", bytes(range(32)))
        whole = self.run_tool("convert", "frame.raw", "-", *RAW8, "--out-format", "ppm")
        for closed in ((0,), (1,), (2,), (0, 1, 2)):
            subprocess.run([TOOL, "convert", "frame.raw", "a.ppm", *RAW8, "--show-recipe"], cwd=self.folder, check=True,
                           stderr=subprocess.DEVNULL,
                           preexec_fn=lambda closed=closed: [os.close(number) for number in closed])
            self.assertEqual(self.read("a.ppm"), whole)
        done = subprocess.run([TOOL, "formats"], stderr=subprocess.PIPE, preexec_fn=lambda: os.close(1), check=False)
        self.assertEqual((done.returncode, done.stderr.count(b"\n")), (2, 1))


class Inputs(ToolTest):
    def test_endless_input(self):
        self.refuse("convert", "/dev/zero", "a.png", says=["no header"])
        self.refuse("convert", "/dev/zero", "a.png", "--from", "raw8", says=["no header", "--size"])
        self.refuse("convert", "/dev/zero", "a.png", *RAW8, says=["too long", "expected 32", "found more"])
        self.refuse("convert", "/dev/zero", "a.pgm", says=["no header"])
        for begin in (b"P5 #", b"P5 ", b"P5 1"):
            self.refuse("convert", "-", "a.png", data=begin + b"#1" * 200000, says=["header"])

    def test_a_file_that_is_larger_than_memory(self):
        with open(self.folder / "large.raw", "wb") as large:
            large.truncate(1 << 42)
        self.refuse("convert", "large.raw", "a.png", *RAW8, says=["too long", "expected 32", "4398046511104"])
        self.refuse("convert", "large.raw", "a.png", "--from", "raw8", says=["no usual size"])
        self.refuse("convert", "large.raw", "a.png", says=["no header"])
        with open(self.folder / "large.raw", "r+b") as large:
            large.write(netpbm(b"P5", 8, 4, 255, b""))
        self.refuse("convert", "large.raw", "a.png", says=["too long", "expected 32"])
        os.remove(self.folder / "large.raw")

    def test_a_header_that_promises_more_than_there_is(self):
        self.write("a.ppm", netpbm(b"P6", 16384, 16384, 65535, bytes(100)))
        # Sanitizers need more, and their builds have no failing allocations.
        limit = 200 << 20 if FAILING_MALLOC else resource.RLIM_INFINITY
        self.refuse("convert", "a.ppm", "b.png", says=["too short", "1610612736", "found 100"],
                    preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
        self.write("b.ppm", b"P6 99999999999999999999999999 1 255\n")
        self.refuse("convert", "b.ppm", "b.png", says=["'b.ppm'"])
        self.write("c.ppm", b"P6 4294967297 4294967297 255\n")
        self.refuse("convert", "c.ppm", "b.png", says=["at most 268435456 pixels"])

    def test_what_may_not_be_read_or_written(self):
        self.write("frame.raw", bytes(32))
        self.write("closed.raw", bytes(32))
        os.chmod(self.folder / "closed.raw", 0)
        (self.folder / "shut").mkdir(mode=0o555)
        os.chmod(self.folder, 0o755)
        options = {"user": 65534, "group": 65534} if os.geteuid() == 0 else {}
        for path in self.folder.parents:
            if options and not os.stat(path).st_mode & 0o001:
                self.skipTest("nobody may look into " + str(path))
        if options:
            tool = self.folder / "probe"
            tool.touch()
            if subprocess.run([TOOL, "--version"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False,
                              cwd="/", **options).returncode != 0:
                self.skipTest("nobody may not start the tool here")
        before = {name: os.stat(self.folder / name).st_mtime for name in ("frame.raw", "shut")}
        for arguments, says in ((("closed.raw", "-", "--out-format", "ppm"), ["'closed.raw'", "Permission denied"]),
                                (("frame.raw", "shut/a.png"), ["'shut/a.png'", "Permission denied"])):
            done = subprocess.run([TOOL, "convert", *arguments, *RAW8], cwd=self.folder, capture_output=True,
                                  check=False, **options)
            self.assertEqual((done.returncode, done.stdout, done.stderr.count(b"\n")), (2, b"", 1))
            for part in says:
                self.assertIn(part, done.stderr.decode())
        self.assertEqual(before, {name: os.stat(self.folder / name).st_mtime for name in before})


class Outputs(ToolTest):
    def test_long_names(self):
        for length in (244, 249, 250, 254, 255):
            name = "a" * (length - 4) + ".raw"
            self.run_tool("chart", name, "--size", "8x4")
            self.assertEqual(len(self.read(name)), 32)
            self.run_tool("convert", name, name[:-3] + "ppm", *RAW8)
            os.remove(self.folder / name)
            os.remove(self.folder / (name[:-3] + "ppm"))
        self.refuse("chart", "a" * 256, says=["name too long"])
        self.write("c.raw", bytes(12))
        # A set gets two letters more each: it does not fit, and nothing of it stays.
        self.refuse("convert", "c.raw", "a" * 250 + ".png", "--from", "rgb8", "--size", "2x2", "--to", "planes",
                    says=["name too long"])

    def test_a_full_disk(self):
        if os.geteuid() != 0:
            self.skipTest("only root mounts a small disk")
        disk = self.folder / "disk"
        disk.mkdir()
        done = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", disk], capture_output=True, check=False)
        if done.returncode != 0:
            self.skipTest("no small disk can be mounted here: " + done.stderr.decode().strip())
        try:
            (disk / "old.raw").write_bytes(b"precious")
            for name in ("new.raw", "old.raw"):
                self.refuse("chart", "disk/" + name, "--size", "640x480", says=["'disk/%s'" % name, "No space left"])
            frames = []
            for i in range(4):
                frames.append("%d.raw" % i)
                self.run_tool("chart", frames[-1], "--size", "128x128")
            # 48 kB each: the first one fits.
            done = self.call("convert", *frames, "-o", "disk/out", "-j", 1, "--from", "raw8", "--size", "128x128",
                             "--out-format", "ppm")
            self.assertEqual(done.returncode, 2)
            self.assertEqual(done.stderr.count(b"No space left"), 3)
            self.assertEqual([path.name for path in (disk / "out").iterdir()], ["0.ppm"])
            self.write("c.raw", bytes(3 * 160 * 160))
            self.refuse("convert", "c.raw", "disk/p.pgm", "--from", "rgb8", "--size", "160x160", "--to", "planes",
                        says=["No space left"])
        finally:
            subprocess.run(["umount", disk], check=True)


class Memory(ToolTest):
    @unittest.skipUnless(FAILING_MALLOC, "sanitizers need much memory")
    def test_little_memory(self):
        """From none at all, with which the loader fails, to enough."""
        self.run_tool("chart", "frame.raw", "--size", "2048x1024")
        refused = 0
        for megabytes in (1, 4, 8, 12, 16, 24, 32, 1024):
            limit = megabytes << 20
            before = self.contents()
            done = self.call("convert", "frame.raw", "a.png", "--from", "raw8", "--size", "2048x1024",
                             preexec_fn=lambda limit=limit: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
            if done.returncode == 0:
                self.assertEqual(done.stderr, b"")
                break
            self.assertEqual(self.contents(), before)
            if done.returncode == 2:
                refused += 1
                self.assertEqual(done.stderr.count(b"\n"), 1)
                self.assertIn(b"not enough memory", done.stderr)
            else:
                # The system did not start it.
                self.assertTrue(done.returncode in (127, -signal.SIGSEGV, -signal.SIGKILL), done)
        self.assertEqual(done.returncode, 0)

    @unittest.skipUnless(FAILING_MALLOC, "needs the preloaded library")
    def test_no_memory_from_any_allocation_on(self):
        self.write("frame.raw", bytes(range(32)))
        self.write("rgb.raw", bytes(12))
        for arguments in (("convert", "frame.raw", "a.png", *RAW8, "--wb", "auto", "--black", 1, "--edges", "fill"),
                          ("convert", "rgb.raw", "a.tiff", "--from", "rgb8", "--size", "2x2", "--to", "planes"),
                          ("sheet", "frame.raw", "a.png", *RAW8), ("formats",)):
            before = self.contents()
            at, failures = 1, 0
            while True:
                environment = {**os.environ, "LD_PRELOAD": FAILING_MALLOC, "QVN_FAILS_AT": str(at)}
                done = self.call(*arguments, env=environment)
                if done.returncode == 0:
                    break
                self.assertEqual(done.returncode, 2, (arguments, at, done.stderr))
                self.assertEqual(done.stderr.count(b"\n"), 1, (arguments, at, done.stderr))
                self.assertIn(b"memory", done.stderr, (arguments, at))
                self.assertEqual(self.contents(), before)
                failures += 1
                # Every one at first, then every tenth or so, which one differs from case to case.
                at += 1 if at < 20 else max(1, at // 12)
            self.assertGreater(failures, 20)
            for path in self.folder.glob("a*"):
                path.unlink()

    @unittest.skipUnless(FAILING_MALLOC, "needs the preloaded library")
    def test_no_memory_in_a_batch(self):
        self.write("frame.raw", bytes(range(32)))
        at = 1
        while True:
            environment = {**os.environ, "LD_PRELOAD": FAILING_MALLOC, "QVN_FAILS_AT": str(at)}
            done = self.call("convert", "frame.raw", "-o", "out", "-j", 1, *RAW8, "--again", env=environment)
            if done.returncode == 0:
                break
            self.assertEqual(done.returncode, 2, (at, done.stderr))
            for line in done.stderr.decode().splitlines():
                self.assertRegex(line, r"^(qvn: |\[1/1\] )", at)
            self.assertFalse([name for name in self.contents() if ".qvn-" in name])
            at += max(1, at // 10)
        self.assertGreater(at, 100)


if __name__ == "__main__":
    unittest.main()
