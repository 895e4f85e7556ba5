#!/usr/bin/env python3
"""The script that makes the quickstart's pictures: one for each conversion that the tool lists."""

import pathlib
import subprocess
import unittest

from support import TOOL, ToolTest, read_png

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "pictures.sh"
MOSAICS = ("raw8", "raw12packed", "raw16be", "raw16le")


class Pictures(ToolTest):
    def test_every_conversion(self):
        out = self.folder / "a folder"
        done = subprocess.run([SCRIPT, TOOL, out], capture_output=True, timeout=250, check=True)
        self.assertEqual(done.stderr, b"")
        self.assertEqual(done.stdout.count(b"\n"), 1)
        self.assertIn(str(out / "sheet.png").encode(), done.stdout)

        expected, frames = {"sheet.png", "orders.png"}, set()
        for source, method, target in self.listed():
            mosaic = source in MOSAICS
            frame = source + "_rggb" if mosaic else source
            stem = "%s_%s_%s" % (frame, method, target)
            letters = {"planes": "rgb", "planes-y": "rgby"}.get(target)
            expected |= {"%s_%s.png" % (stem, i) for i in letters} if letters else {stem + ".png"}
            if frame not in frames and mosaic:
                others = [source + "_" + order for order in ("grbg", "gbrg", "bggr")]
                frames |= set(others)
                expected |= {"%s_%s_%s.png" % (other, method, target) for other in others}
            frames.add(frame)
        self.assertGreaterEqual(len(frames), 26)
        self.assertEqual({path.name for path in out.glob("*.png")}, expected)
        self.assertEqual({path.name for path in (out / "frames").iterdir()},
                         {frame + ".raw" for frame in frames})

        for name in ("raw8_rggb_3x3_bgr", "raw8_bggr_2x2_bgr", "uyvy_direct_bgr", "y16le_direct_y8",
                     "raw12packed_gbrg_2x2_bgr", "raw16le_rggb_transform-ex_bgra", "rgba8_transform_bgr",
                     "raw8_rggb_transform_uyvy", "iraw8-cygm_2x2_bgr", "iraw8-cygm-binned_bin_bgr"):
            picture = read_png((out / (name + ".png")).read_bytes())
            self.assertEqual((picture.width, picture.height), (768, 512))
            if picture.channels >= 3:
                # The red patch, in the order that it was made in.
                red, green, blue = picture.pixel(546, 46)[:3]
                # The matrices for complementary filters make it a little darker.
                bright = 170 if "cygm" in name else 190
                self.assertTrue(red > bright and green < 70 and blue < 70, (name, red, green, blue))
        self.assertEqual(read_png((out / "sheet.png").read_bytes()).width, 20 + 404 * 3)

    def test_usage_and_failures(self):
        for arguments in ((), (TOOL,)):
            done = subprocess.run([SCRIPT, *arguments], capture_output=True, timeout=60, check=False)
            self.assertNotEqual(done.returncode, 0)
            self.assertIn(b"usage", done.stderr)
        done = subprocess.run([SCRIPT, "/bin/false", self.folder / "out"], capture_output=True, timeout=60,
                              check=False)
        self.assertNotEqual(done.returncode, 0)
        self.assertEqual(done.stdout, b"")


if __name__ == "__main__":
    unittest.main()
