"""The chart maker and its tables, over reports of a few rows. QVN_SOURCE in the environment names the project."""

import importlib.util
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

BENCH = pathlib.Path(os.environ["QVN_SOURCE"]) / "bench"
sys.dont_write_bytecode = True
sys.path.insert(0, str(BENCH))

import report_tables

CONTEXT = {"run": "entries", "date": "2001-02-03", "processor": "Some Processor", "caches": [32768, 2097152],
           "level": "x86-64-v3", "compiler": "GNU 12", "flags": "-O3"}


def row(name, ratio, size=(640, 480), ns=0.5):
    return {"name": name, "width": size[0], "height": size[1], "ns_per_pixel": ns, "memcpy_ratio": ratio,
            "bytes_moved": 4 * size[0] * size[1], "spread": 0}


class TablesTest(unittest.TestCase):
    def test_functions_of_rows(self):
        for name, function in [
                ("Raw8ToBGR", "Raw8ToBGR"), ("Raw8ToBGR_bggr", "Raw8ToBGR"), ("Raw8ToBGR_3x3", "Raw8ToBGR_3x3"),
                ("Raw8ToBGR_3x3_bggr", "Raw8ToBGR_3x3"), ("Raw8ToBGR_mono", "Raw8ToBGR_mono"),
                ("Raw16ToBGR16_shift4", "Raw16ToBGR16"), ("Raw16ToY16_CC_shift4_float", "Raw16ToY16_CC_float"),
                ("Raw8ImageTransform_IntLCAA_Y8Rounded", "Raw8ImageTransform_IntLCAA"),
                ("Raw16ImageTransformEx_be_BGR16", "Raw16ImageTransformEx"),
                ("Y16ToY8Ex_swapped_top", "Y16ToY8Ex"), ("Y16ToBGREx", "Y16ToBGREx"),
                ("Y16ToY8_MMX", "Y16ToY8_MMX"), ("Flip_horizontal_3", "Flip"), ("FlipVertical", "FlipVertical"),
                ("RGB8ToRGBYPlanes_no_luma", "RGB8ToRGBYPlanes"),
                ("IRaw8CYGMImageTransform_Bin_YUV422", "IRaw8CYGMImageTransform_Bin"),
                ("ResampleScanlines_nearest_half_3", "ResampleScanlines_nearest"),
                ("ResampleScanlines_linear_1", "ResampleScanlines_linear"),
                ("ResampleScanlinesEx_nearest_1", "ResampleScanlinesEx"),
                ("InterlacedToProgressive_in_place", "InterlacedToProgressive")]:
            self.assertEqual(report_tables.function_of(name), function, name)

    def test_goals_of_rows(self):
        for name, beyond, cached in [
                ("Raw8ToBGR", 1.3, 3.5), ("Raw16ImageTransformEx_BGR16", 1.3, 3.5), ("Raw8ToBGR_3x3", 2, 6),
                ("IRaw8CYGMToBGR", 2, 6), ("IRaw8CYGMToBGR_3x3", 3, 10), ("Raw8ToBGR_IntLCAAV", 3, 10),
                ("Raw12ToBGR_CC_fixed", 3, 10), ("Raw8ToBGR_CC_gamma_matrix", None, None),
                ("Y16ToY8", 1.2, 3), ("YUV411ToBGR", 1.2, 3), ("Flip_both_1", 1.2, 3),
                ("ResampleScanlines_nearest_1", 1.2, 3), ("ResampleScanlines_linear_1", None, None)]:
            self.assertEqual(report_tables.goal(name)[1], {"4096x3072": beyond, "640x480": cached}, name)

    def test_slowest_selector_stands_for_a_function(self):
        rows = [row("Raw8ToBGR", 2), row("Raw8ToBGR_bggr", 3), row("Raw8ToBGR_scalar", 9), row("Y8ToBGR", 1)]
        self.assertEqual(report_tables.slowest_by_function({"baseline": rows}),
                         [("Raw8ToBGR", {("baseline", "640x480"): 3}), ("Y8ToBGR", {("baseline", "640x480"): 1})])

    def test_table(self):
        text = report_tables.table({"baseline": [row("Raw8ToBGR", 9, ns=1)],
                                    "x86-64-v3": [row("Raw8ToBGR", 3.6), row("Raw8ToBGR", 1.25, (4096, 3072))]})
        self.assertEqual(text.splitlines()[2:],
                         ["| `Raw8ToBGR` | 0.500 · **3.60** |  | 0.500 · 1.25 | 1.000 · 9.00 |"])

    def test_goals(self):
        text = report_tables.goals([row("Raw8ToBGR", 3.6), row("Raw8ToY8", 3.5), row("Y8ToBGR", 6),
                                    row("Raw8ToBGR_CC_gamma", 99)])
        self.assertIn("| 2x2 demosaics | 640x480 | 3.5 | 1 of 2 |", text)
        self.assertTrue(text.endswith("| `Y8ToBGR` | 640x480 | 6.00 | 3 |\n| `Raw8ToBGR` | 640x480 | 3.60 | 3.5 |\n"))
        self.assertNotIn("gamma", text)


class ChartsTest(unittest.TestCase):
    def setUp(self):
        # Debian's matplotlib belongs to Debian's Python.
        self.python = sys.executable
        if importlib.util.find_spec("matplotlib") is None:
            self.python = "/usr/bin/python3"
            if not os.path.exists(self.python) or subprocess.run(
                    [self.python, "-c", "import matplotlib"], capture_output=True).returncode != 0:
                self.skipTest("matplotlib is not installed")
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        squares = [(64, 64), (640, 480), (1920, 1080), (4096, 3072)]
        rows = [row(name, 2, size) for name in ("Raw8ToBGR", "Y8ToBGR") for size in squares]
        reports = {
            "baseline": rows, "x86-64-v3": rows + [{"name": "GetSIS_12", "ns_per_call": 5, "spread": 0}],
            "sweep": rows,
            "threads": [dict(entry, speed_up=1.9) for entry in rows],
            "peers": [dict(entry, peers=[{"name": "OpenCV-bilinear", "ns_per_pixel": 1.0}], ratio=0.5,
                           fastest="OpenCV-bilinear") for entry in rows]}
        for name, some in reports.items():
            (self.folder / (name + ".json")).write_text(json.dumps({"context": CONTEXT, "rows": some}))
        self.document = self.folder / "document.md"
        self.document.write_text("# Title\n" + "".join(
            "<!-- %s -->\nold\n<!-- /%s -->\n" % (name, name) for name in ("run", "table", "calls", "goals", "peers")))

    def draw(self, pictures):
        subprocess.run([self.python, str(BENCH / "charts.py"), str(self.folder), str(self.folder / pictures),
                        str(self.document)], check=True, env=dict(os.environ, PYTHONDONTWRITEBYTECODE="1"))
        return {path.name: path.read_bytes() for path in (self.folder / pictures).iterdir()}

    def test_pictures_and_document(self):
        first = self.draw("first")
        text = self.document.read_text()
        self.assertEqual(set(first), {"entries.svg", "peers.svg", "sizes.svg", "threads.svg"})
        for name, data in first.items():
            self.assertLess(len(data), 80000, name)
            words = xml.etree.ElementTree.fromstring(data).itertext()
            self.assertIn("Raw8ToBGR", [word.strip() for word in words], name)
        self.assertNotIn("old", text)
        self.assertIn("| `Raw8ToBGR` | 640x480 | 0.500 | OpenCV-bilinear 1.000 | 0.50 |", text)
        self.assertIn("| caches | L1 32 KiB, L2 2 MiB |", text)
        self.assertIn("| `GetSIS_12` | 5.0 |", text)
        self.assertEqual(self.draw("again"), first)
        self.assertEqual(self.document.read_text(), text)


if __name__ == "__main__":
    unittest.main()
