"""The corrected example makes a PPM of the matrix times the colours that went into the mosaic.

    correction_test.py PROGRAM, with an emulator before it if the program needs one
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


def picture_of(frame):
    with tempfile.TemporaryDirectory() as folder:
        source, picture = pathlib.Path(folder) / "frame.raw", pathlib.Path(folder) / "picture.ppm"
        source.write_bytes(frame)
        subprocess.run([*PROGRAM, source, picture], check=True)
        return picture.read_bytes()


class CorrectionTest(unittest.TestCase):
    def test_picture_has_the_corrected_colours(self):
        # 150 + 25, 25 + 75 + 6.25, 25 + 37.5, each without its fraction
        expected = b"P6 640 480 255\n" + bytes([175, 106, 62]) * (WIDTH * HEIGHT)
        self.assertTrue(picture_of(mosaic(200, 100, 50)) == expected)

    def test_white_stays_white(self):
        expected = b"P6 640 480 255\n" + bytes([255]) * (3 * WIDTH * HEIGHT)
        self.assertTrue(picture_of(mosaic(255, 255, 255)) == expected)


if __name__ == "__main__":
    unittest.main()
