"""grab against Aravis' fake camera over the loopback; its pictures beside those that the tool makes of the frames."""

import os
import pathlib
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "tool"))
from support import ToolTest, read_netpbm  # noqa: E402

ADDRESS = "127.0.0.1"
# Of the formats that the fake camera has: the tool's words for them.
FORMATS = {
    "BayerRG8": ("raw8", "--pattern", "rggb"),
    "BayerGR8": ("raw8", "--pattern", "grbg"),
    "Mono8": ("y8",),
    "Mono16": ("y16le",),
    "RGB8": ("rgb8",),
}


class GrabTest(ToolTest):
    def setUp(self):
        super().setUp()
        self.camera = subprocess.Popen([os.environ["QVN_FAKE_CAMERA"], "-i", ADDRESS], stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
        self.addCleanup(self.end_camera)

    def end_camera(self):
        self.camera.terminate()
        self.camera.wait(timeout=20)

    def grab(self, *arguments):
        return subprocess.run([os.environ["QVN_GRAB"], *map(str, arguments)], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, cwd=self.folder, timeout=60, check=False)

    def test_pictures_are_those_of_the_tool(self):
        for pixel_format, words in FORMATS.items():
            with self.subTest(pixel_format=pixel_format):
                done = self.grab("frame", 3, ADDRESS, pixel_format)
                self.assertEqual((done.returncode, done.stderr), (0, b""))
                lines = done.stdout.decode().split("\n")
                self.assertEqual(len(lines), 4)
                for i in range(3):
                    name, form, width, height = lines[i].split()
                    self.assertEqual((name, form), (f"frame{i}.ppm", words[0]))
                    self.run_tool("convert", f"frame{i}.raw", "tool.ppm", "--from", *words, "--size",
                                  f"{width}x{height}", "--to", "bgr")
                    ours = read_netpbm(self.read(name))
                    self.assertEqual(ours, read_netpbm(self.read("tool.ppm")))
                    self.assertGreater(len(set(ours.samples)), 30)  # a scene, not a blank
                self.assertNotEqual(self.read("frame0.raw"), self.read("frame2.raw"))  # which moves

    def test_refusals(self):
        for arguments in ((), ("a", 1, ADDRESS, "Mono8", "more")):
            self.assertEqual(self.grab(*arguments).returncode, 2)
        done = self.grab("frame", 1, "127.0.0.77")
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.startswith(b"grab: "))
        done = self.grab("missing/frame", 1, ADDRESS, "Mono8")
        self.assertEqual((done.returncode, done.stderr), (1, b"grab: cannot write missing/frame0.ppm\n"))


if __name__ == "__main__":
    unittest.main()
