"""The guard that counts instructions: what it takes for slower. QVN_SOURCE in the environment names the project."""

import os
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(os.environ["QVN_SOURCE"]) / "tests" / "speed"))

import instructions

BEFORE = {("baseline", "A"): 1000, ("baseline", "B"): 1000}


class InstructionsTest(unittest.TestCase):
    def judged(self, **counts):
        return instructions.compare(BEFORE, {("baseline", name): count for name, count in counts.items()})

    def test_within_the_slack(self):
        self.assertEqual(self.judged(A=1029, B=971), ([], 0))

    def test_slower_fails(self):
        lines, failures = self.judged(A=1031, B=1000)
        self.assertEqual((lines, failures), (["baseline A: 1031 instructions, 1000 in the file, +3.1 %"], 1))

    def test_faster_is_told(self):
        lines, failures = self.judged(A=500)
        self.assertEqual((len(lines), failures), (1, 0))

    def test_a_kernel_that_the_file_lacks_fails(self):
        self.assertEqual(self.judged(C=1)[1], 1)

    def test_file_and_other_compilers(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "counts.txt"
            instructions.write_counts(path, "GNU 12", BEFORE)
            self.assertEqual(instructions.read_counts(path), ("GNU 12", BEFORE))
            for compiler, tool, status in (("GNU 13", "valgrind", 77), ("GNU 12", None, 77)):
                with mock.patch.object(sys, "argv", ["", str(path), "program", compiler, "baseline=library"]), \
                        mock.patch("shutil.which", return_value=tool), mock.patch("builtins.print") as told:
                    self.assertEqual(instructions.main(), status)
                    self.assertIn("left out", told.call_args[0][0])


if __name__ == "__main__":
    unittest.main()
