"""The corrected example makes a PPM of the matrix times the colours that went into the mosaic.

    correction_test.py PROGRAM, with an emulator before it if the program needs one
"""

import subprocess
import sys
import unittest

PROGRAM = sys.argv[1:]
del sys.argv[1:]
WIDTH, HEIGHT = 640, 480


def mosaic(red, green, blue):
    """R G over G B, every cell alike."""
    return (bytes([red, green]) * (WIDTH // 2) + bytes([green, blue]) * (WIDTH // 2)) * (HEIGHT // 2)


class CorrectionTest(unittest.TestCase):
    def test_picture_has_the_corrected_colours(self):
        result = subprocess.run(PROGRAM, input=mosaic(200, 100, 50), stdout=subprocess.PIPE, check=True)
        # 150 + 25, 25 + 75 + 6.25, 25 + 37.5, each without its fraction
        self.assertTrue(result.stdout == b"P6 640 480 255\n" + bytes([175, 106, 62]) * (WIDTH * HEIGHT))

    def test_white_stays_white(self):
        result = subprocess.run(PROGRAM, input=mosaic(255, 255, 255), stdout=subprocess.PIPE, check=True)
        self.assertTrue(result.stdout == b"P6 640 480 255\n" + bytes([255]) * (3 * WIDTH * HEIGHT))


if __name__ == "__main__":
    unittest.main()
