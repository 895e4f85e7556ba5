"""The benchmark program: its rows, its report, and the comparison of two reports.

QVN_BENCH in the environment names the program, QVN_HEADER the public header. No time is judged.
"""

import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

# A constant is stored, or the rows of the creators make and destroy.
WITHOUT_ROW = {"GetVersion", "GetTechnoInfo", "DestroyColorCorrection"}
NUMBERS = {"ns_per_pixel", "best_ns_per_pixel", "bytes_per_second", "memcpy_ratio", "best_memcpy_ratio"}


def bench(*arguments):
    return subprocess.run([os.environ["QVN_BENCH"], *arguments], capture_output=True, text=True)


class EntriesBenchTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def report(self, *arguments):
        path = self.folder / "report.json"
        done = bench("--time", "0", "--json", str(path), *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return json.loads(path.read_text())

    def write(self, name, rows):
        path = self.folder / name
        path.write_text(json.dumps({"context": {}, "rows": rows}))
        return str(path)

    def refused(self, *arguments):
        done = bench(*arguments)
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stderr.count("\n"), 1)
        return done.stderr

    def test_every_function_has_a_row(self):
        header = pathlib.Path(os.environ["QVN_HEADER"]).read_text()
        functions = set(re.findall(r"^QVN_API uint32_t QVN_(\w+)\(", header, re.MULTILINE)) - WITHOUT_ROW
        names = bench("--list").stdout.split()
        self.assertEqual(len(names), len(set(names)))
        # The longest function whose name a row begins with is the one it calls.
        called = {max((f for f in functions if (name + "_").startswith(f + "_")), key=len, default=name)
                  for name in names}
        self.assertEqual(called, functions)

    def test_report_of_all_rows(self):
        report = self.report("--sizes", "64x64,66x64")
        self.assertEqual(report["context"]["run"], "entries")
        for key in ("date", "processor", "caches", "level", "compiler", "flags"):
            self.assertIn(key, report["context"])
        self.assertNotIn("/", report["context"]["compiler"] + report["context"]["level"])
        frames = [row for row in report["rows"] if "width" in row]
        self.assertEqual({(row["width"], row["height"]) for row in frames}, {(64, 64), (66, 64)})
        self.assertEqual(len(frames), 2 * len({row["name"] for row in frames}))
        for row in frames:
            for number in NUMBERS:
                self.assertGreater(row[number], 0, row)
            self.assertLessEqual(row["best_ns_per_pixel"], row["ns_per_pixel"], row)

    def test_bytes_moved(self):
        report = self.report("--sizes", "64x4", "--filter", "^(Raw8ToBGR|Packed12BitTo16Bit)$")
        self.assertEqual([(row["name"], row["bytes_moved"]) for row in report["rows"]],
                         [("Raw8ToBGR", 4 * 256), ("Packed12BitTo16Bit", 384 + 512)])

    def test_calls_are_timed_without_sizes_only(self):
        report = self.report("--filter", "^GetErrorInfo$")
        self.assertEqual([row["name"] for row in report["rows"]], ["GetErrorInfo"])
        self.assertGreater(report["rows"][0]["ns_per_call"], 0)

    def test_sweep_and_threads(self):
        sweep = self.report("--sweep", "--sizes", "64x64")
        self.assertEqual(sweep["context"]["run"], "sweep")
        threads = self.report("--threads", "--sizes", "64x64", "--filter", "^Raw8ToBGR$")
        self.assertEqual(threads["context"]["run"], "threads")
        self.assertEqual({row["name"] for row in threads["rows"]}, {"Raw8ToBGR"})
        for row in threads["rows"]:
            self.assertAlmostEqual(row["speed_up"], 2 * row["one_ns_per_pixel"] / row["two_ns_per_pixel"])

    def test_refusals(self):
        self.assertIn("640x480", self.refused("--sizes", "64", "--time", "0"))
        self.assertIn("640x480", self.refused("--sizes", "64x0", "--time", "0"))
        self.assertIn("Nothing", self.refused("--filter", "Nothing"))
        there = self.write("there.json", [])
        self.assertIn("cannot read", self.refused("--compare", there, str(self.folder / "missing.json")))
        broken = self.folder / "broken.json"
        broken.write_text("{")
        self.assertIn("no report", self.refused("--compare", there, str(broken)))

    def test_comparison(self):
        def row(name, ratio, spread):
            return {"name": name, "width": 64, "height": 64, "memcpy_ratio": ratio, "spread": spread}

        before = self.write("before.json", [
            row("steady", 1, 0), row("slower", 1, 0.02), row("much_slower", 1, 0), row("noisy", 1, 0.4),
            row("faster", 2, 0), row("gone", 1, 0), {"name": "call", "ns_per_call": 10, "spread": 0}])
        after = self.write("after.json", [
            row("steady", 1.04, 0), row("slower", 1.2, 0.02), row("much_slower", 3, 0), row("noisy", 1.2, 0.4),
            row("faster", 1, 0), row("new", 1, 0), {"name": "call", "ns_per_call": 25, "spread": 0}])
        done = bench("--compare", before, after)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        lines = [line.split() for line in done.stdout.splitlines()[1:]]
        self.assertEqual(lines[:-1], [
            ["much_slower", "64x64", "1.000", "3.000", "3.000", "slower"],
            ["call", "10.000", "25.000", "2.500", "slower"],
            ["faster", "64x64", "2.000", "1.000", "0.500", "faster"],
            ["slower", "64x64", "1.000", "1.200", "1.200", "slower"]])
        self.assertEqual(" ".join(lines[-1]), "6 rows in both, 4 changed, 3 slower")


if __name__ == "__main__":
    unittest.main()
