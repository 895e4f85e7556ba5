"""What gst-inspect-1.0 shows of the plugin is complete: every field, every property and each of its values."""

import os
import re
import subprocess
import unittest

INSPECT = os.environ.get("QVN_GST_INSPECT", "gst-inspect-1.0")

PROPERTIES = {
    "qvndemosaic": {
        "method": ["2x2", "3x3", "yuv422", "lcaa", "lcaav"],
        "samples": ["caps", "8", "12packed", "12p", "12csi2", "16le", "16be"],
        "bits": [], "pitch": [], "matrix": [],
        "matrix-rule": ["clamped", "float", "fixed"],
        "n-threads": [],
    },
    "qvnconvert": {},
}


def inspect(name):
    done = subprocess.run([INSPECT, "--no-colors", name], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          timeout=60, check=False)
    assert (done.returncode, done.stderr) == (0, b""), done.stderr
    return done.stdout.decode()


class InspectTest(unittest.TestCase):
    def test_plugin(self):
        text = inspect("quorvane")
        for field in ("Name", "Description", "Version", "License", "Source module", "Origin URL"):
            self.assertRegex(text, rf"  {field} +\S+")
        for element in PROPERTIES:
            self.assertIn(f"  {element}: ", text)
        self.assertIn("2 features", text)

    def test_elements(self):
        for element in PROPERTIES:
            text = inspect(element)
            for field in ("Long-name", "Klass", "Description", "Author"):
                self.assertRegex(text, rf"  {field} +\S+", element)
            self.assertIn("SRC template: 'src'", text)
            self.assertIn("SINK template: 'sink'", text)

    def test_properties(self):
        for element, expected in PROPERTIES.items():
            shown = inspect(element).split("Element Properties:")[1]
            found = dict(re.findall(r"^  ([a-z0-9-]+) +: (.*)$", shown, re.MULTILINE))
            own = {name: about for name, about in found.items() if name not in ("name", "parent", "qos")}
            self.assertEqual(set(own), set(expected), element)
            for name, about in own.items():
                self.assertGreater(len(about), 15, f"{element}: {name}")
            for name, values in expected.items():
                section = re.split(r"^  [a-z0-9-]+ +: ", shown.split(f"\n  {name} ")[1], flags=re.MULTILINE)[0]
                described = dict(re.findall(r"^ +\(\d+\): (\S+) +- (.+)$", section, re.MULTILINE))
                self.assertEqual(list(described), values, f"{element}: {name}")


if __name__ == "__main__":
    unittest.main()
