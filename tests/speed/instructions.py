#!/usr/bin/env python3
"""Counts the instructions of a few kernels under callgrind, and compares them with a file of counts.

    instructions.py COUNTS PROGRAM COMPILER LEVEL=LIBRARY... [--update]

Counts repeat exactly for one compiler, whatever else the machine does, so that a slower inner loop shows up
where no time could be trusted. More than SLACK above the file fails; where the file was made with another
compiler, or valgrind is missing, the test is left out (exit status 77) with a line that says so.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SLACK = 0.03
SKIPPED = 77


def run(command, library):
    """What it prints; the library goes before the one that the loader would take."""
    done = subprocess.run(command, env=dict(os.environ, LD_PRELOAD=library), capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit("%s fails:\n%s" % (command[0], done.stderr))
    return done.stdout


def count(program, library):
    """Instructions of each kernel, by name, those of what it calls included."""
    calls = [line.split() for line in run([program], library).splitlines()]
    # Callgrind takes no short pattern for the functions to dump after.
    functions = sorted({function for function, _ in calls})
    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "counts"
        run(["valgrind", "--tool=callgrind", "--callgrind-out-file=%s" % out, "--toggle-collect=QVN_*",
             *("--dump-after=" + function for function in functions), program], library)
        totals = {}
        for number, (function, name) in enumerate(calls, 1):
            text = pathlib.Path("%s.%d" % (out, number)).read_text()
            assert "--dump-after=%s\n" % function in text, "%s is not call %d" % (function, number)
            totals[name] = int(re.search(r"^totals: (\d+)", text, re.MULTILINE).group(1))
        return totals


def read_counts(path):
    """The compiler, and instructions by level and kernel."""
    compiler, counts = None, {}
    for line in path.read_text().splitlines() if path.exists() else []:
        words = line.split()
        if line.startswith("# compiler: "):
            compiler = line[len("# compiler: "):]
        elif words and not line.startswith("#"):
            counts[words[0], words[1]] = int(words[2])
    return compiler, counts


def write_counts(path, compiler, counts):
    lines = ["# Instructions of one call on a frame of 320 x 48 (kernels.cpp), by callgrind: level, kernel, count.",
             "# Written by the build's target update_instructions; compared by the test speed.instructions.",
             "# compiler: " + compiler]
    lines += ["%-9s  %-26s  %9d" % (level, name, number) for (level, name), number in counts.items()]
    path.write_text("\n".join(lines) + "\n")


def compare(before, after):
    """Lines about what differs by more than the slack, and how many of them fail."""
    lines, failures = [], 0
    for key, number in after.items():
        if key not in before:
            lines.append("%s %s: not in the file; run the target update_instructions" % key)
            failures += 1
            continue
        change = number / before[key] - 1
        if abs(change) > SLACK:
            slower = change > 0
            failures += slower
            lines.append("%s %s: %d instructions, %d in the file, %+.1f %%%s" %
                         (*key, number, before[key], 100 * change, "" if slower else ": the file can be updated"))
    return lines, failures


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("counts", type=pathlib.Path)
    parser.add_argument("program")
    parser.add_argument("compiler", help="of the library")
    parser.add_argument("libraries", nargs="+", metavar="LEVEL=LIBRARY")
    parser.add_argument("--update", action="store_true", help="write the file instead of comparing with it")
    options = parser.parse_args()
    if shutil.which("valgrind") is None:
        print("left out: valgrind is not installed")
        return SKIPPED
    compiler, before = read_counts(options.counts)
    if not options.update and compiler != options.compiler:
        print("left out: the counts are of %s, the library is of %s" % (compiler, options.compiler))
        return SKIPPED
    after = {}
    for level, library in (pair.split("=", 1) for pair in options.libraries):
        for name, number in count(options.program, library).items():
            after[level, name] = number
    if options.update:
        write_counts(options.counts, options.compiler, after)
        print("%d counts in %s" % (len(after), options.counts))
        return 0
    lines, failures = compare(before, after)
    print("\n".join(lines + ["%d counts, %d of them more than %g %% above the file" %
                             (len(after), failures, 100 * SLACK)]))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
