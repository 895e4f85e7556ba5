"""The example makes a PPM of the colours that went into the mosaic, and refuses a frame that is too short.

    minimal_test.py PROGRAM, with an emulator before it if the program needs one
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv[1:]
del sys.argv[1:]
WIDTH, HEIGHT = 640, 480


def mosaic(red, green, blue):
    """R G over G B, every cell alike."""
    return (bytes([red, green]) * (WIDTH // 2) + bytes([green, blue]) * (WIDTH // 2)) * (HEIGHT // 2)


class MinimalTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.frame = pathlib.Path(folder.name) / "frame.raw"
        self.picture = pathlib.Path(folder.name) / "picture.ppm"

    def run_with(self, frame):
        self.frame.write_bytes(frame)
        return subprocess.run([*PROGRAM, self.frame, self.picture], check=False).returncode

    def test_picture_has_the_colours_of_the_mosaic(self):
        # 10 and 13 are line ends, which some systems translate where a file is text.
        for colours in [(200, 100, 50), (10, 13, 26)]:
            self.assertEqual(self.run_with(mosaic(*colours)), 0)
            expected = b"P6 640 480 255\n" + bytes(colours) * (WIDTH * HEIGHT)
            self.assertTrue(self.picture.read_bytes() == expected)

    def test_a_frame_that_is_too_short_is_refused(self):
        self.assertEqual(self.run_with(mosaic(200, 100, 50)[:-1]), 1)
        self.assertFalse(self.picture.exists())

    def test_a_frame_that_is_not_there_is_refused(self):
        self.assertEqual(subprocess.run([*PROGRAM, self.frame, self.picture], check=False).returncode, 1)


if __name__ == "__main__":
    unittest.main()
