#!/usr/bin/env python3
"""The commands of docs/tool.md reach every function of the library: each is run, and the function it names is called."""

import os
import pathlib
import re
import shlex
import unittest

from support import ToolTest

ROOT = pathlib.Path(__file__).resolve().parents[2]
RECORDER = os.environ.get("QVN_CALL_RECORDER", "")
DOCUMENT = (ROOT / "docs" / "tool.md").read_text()
HEADER = (ROOT / "include" / "quorvane" / "quorvane.h").read_text()


class Reach(ToolTest):
    def test_every_function(self):
        functions = re.findall(r"^QVN_API uint32_t (QVN_\w+)\(", HEADER, re.M)
        rows = re.findall(r"^\| `(QVN_\w+)` \| `(qvn [^`]+)` \|$", DOCUMENT, re.M)
        self.assertEqual([name for name, _ in rows], functions)
        self.assertEqual(len(rows), 76)
        formats = re.search(r"for format in ([^;]*);", DOCUMENT)[1].replace("\\\n", " ").split()
        for name in formats:
            self.run_tool("chart", name + "_64x48.raw", "--format", name, "--size", "64x48")
        calls = self.folder / "calls"
        for name, command in rows:
            calls.unlink(missing_ok=True)
            environment = {**os.environ, "QVN_CALLS": str(calls)}
            if RECORDER:
                environment["LD_PRELOAD"] = RECORDER
            done = self.call(*shlex.split(command)[1:], env=environment)
            self.assertEqual(done.returncode, 0, (command, done.stderr))
            if RECORDER:
                self.assertIn(name, calls.read_text().split(), command)

    def test_the_table_of_edges_names_every_function_of_the_tool(self):
        section = DOCUMENT.split("## Edges")[1].split("\n## ")[0]
        told = re.findall(r"`(QVN_\w+)`", section)
        self.assertEqual(len(told), len(set(told)))
        source = (ROOT / "tools" / "edges.cpp").read_text()
        self.assertEqual(set(told), set(re.findall(r'"(QVN_\w+)"', source)))
        # Every function that makes a picture of a mosaic has edges.
        mosaics = [name for name in re.findall(r"^QVN_API uint32_t (QVN_I?Raw\w+)\(", HEADER, re.M)]
        self.assertEqual(set(mosaics), set(told))


if __name__ == "__main__":
    unittest.main()
