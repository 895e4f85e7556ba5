"""The example makes a PPM of the colours that went into the mosaic, and refuses a frame that is too short.

    minimal_test.py PROGRAM, with an emulator before it if the program needs one
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


def run(frame):
    return subprocess.run(PROGRAM, input=frame, stdout=subprocess.PIPE, check=False)


class MinimalTest(unittest.TestCase):
    def test_picture_has_the_colours_of_the_mosaic(self):
        result = run(mosaic(200, 100, 50))
        self.assertEqual(result.returncode, 0)
        expected = b"P6 640 480 255\n" + bytes([200, 100, 50]) * (WIDTH * HEIGHT)
        self.assertTrue(result.stdout == expected)

    def test_a_frame_that_is_too_short_is_refused(self):
        result = run(mosaic(200, 100, 50)[:-1])
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, b"")


if __name__ == "__main__":
    unittest.main()
