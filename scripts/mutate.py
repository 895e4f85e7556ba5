#!/usr/bin/env python3
"""Mutation of src/: changes one place of one file, builds, runs the tests, and counts the changes that no test sees.

    scripts/mutate.py [--count N] [--minutes M] [--seed S] [--march LEVEL] [--tests BUILD] [--quick]
                      [--again LOG] [--work FOLDER] [--list] [FILE...]

Files are those below src/, all but the Windows and the load parts by default. A copy of the sources is built in
FOLDER (default: a temporary one, which goes away), once as a whole and then object by object; the change and what
depends on it alone are compiled anew. A change that does not compile, or whose object is the same to the byte, is
no mutation. Tests stop at the first failure; an endless loop counts as seen.

Survivors are printed as "FILE:LINE: OLD -> NEW". One that changes nothing that a caller can see belongs into
scripts/mutate_equivalent.txt, with its reason, and is counted apart.
"""

import argparse
import hashlib
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
EQUIVALENT = ROOT / "scripts/mutate_equivalent.txt"
LEFT_OUT = re.compile(r"platform_|/README|quorvane.rc")

# What is changed to what. Comparisons and signs stand between spaces in the formatted sources, so that template
# brackets, pointers and references stay.
OPERATORS = {
    " < ": [" <= ", " >= "], " <= ": [" < ", " > "], " > ": [" >= ", " <= "], " >= ": [" > ", " < "],
    " == ": [" != "], " != ": [" == "], " + ": [" - "], " - ": [" + "], " * ": [" + "], " / ": [" * "],
    " % ": [" * "], " << ": [" >> "], " >> ": [" << "], " & ": [" | "], " | ": [" & "], " ^ ": [" | "],
    " && ": [" || "], " || ": [" && "], " += ": [" -= "], " -= ": [" += "], "++": ["--"],
    "std::min": ["std::max"], "std::max": ["std::min"], "true": ["false"], "false": ["true"],
}
OPERATOR = re.compile("|".join(sorted(map(re.escape, OPERATORS), key=len, reverse=True)))
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+)(?=[Uu]?\b)(?![\w.]*[.])")
ARGUMENTS = re.compile(r"(?<=\()(\w+), (\w+)(?=[,)])")
STATEMENT = re.compile(r"^(\s+)((?:\w|[.\[\]*>:()-])+(?: [+*|&^-]?= .*|\(.*\)|\+\+);)$")
NOT_CODE = re.compile(r"^\s*(//|#|template\b|using\b|static_assert\b|\[\[)|kLaneBytes ==|constexpr bool k\w+ =")


def mutations_of(line):
    """Pairs of a changed line and what was changed."""
    if NOT_CODE.search(line) or "static_assert" in line or "operator" in line:
        return
    code = re.sub(r'"[^"]*"', lambda text: "#" * len(text.group()), line.split("  //")[0])
    for found in OPERATOR.finditer(code):
        for new in OPERATORS[found.group()]:
            yield line[:found.start()] + new + line[found.end():], f"{found.group().strip()} -> {new.strip()}"
    for found in NUMBER.finditer(code):
        value = int(found.group(1), 0)
        for new in {value + 1, value - 1} - {-1}:
            yield line[:found.start(1)] + str(new) + line[found.end(1):], f"{found.group(1)} -> {new}"
    for found in ARGUMENTS.finditer(code):
        if found.group(1) != found.group(2):
            swapped = f"{found.group(2)}, {found.group(1)}"
            yield line[:found.start()] + swapped + line[found.end():], f"{found.group()} -> {swapped}"
    if STATEMENT.match(code) and not code.strip().startswith(("return", "const", "auto")):
        yield re.match(r"\s*", line).group() + ";", f"{line.strip()} -> removed"


def all_mutations(files):
    for path in files:
        for number, line in enumerate(path.read_text().splitlines()):
            for changed, what in mutations_of(line):
                yield path.relative_to(ROOT), number, line, changed, what


def suites_of(room):
    """A filter for the test suites in the folder of tests that has the room's name."""
    suites = {name for file in (ROOT / "tests" / room).glob("*.cpp")
              for name in re.findall(r"^TEST(?:_[FP])?\((\w+),", file.read_text(), re.MULTILINE)}
    return ":".join(f"*{name}*" for name in sorted(suites)) or "*"


class Copy:
    """A built copy of the sources."""

    def __init__(self, folder, march, jobs, tests, quick):
        self.source, self.build, self.jobs = folder / "source", folder / "build", jobs
        self.tests, self.quick = tests, quick
        top = {".git", "build", "docs"}
        # Files get the time of the copy, so that what an earlier run left is compiled again.
        shutil.copytree(ROOT, self.source, dirs_exist_ok=True, copy_function=shutil.copy,
                        ignore=lambda place, _: top if Path(place) == ROOT else set())
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        flags = f"-O0 -march={march}" if march else "-O0"
        subprocess.run(
            ["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
             f"-DCMAKE_CXX_FLAGS={flags}", "-DQUORVANE_BASELINE_ONLY=ON", "-DQUORVANE_BUILD_TOOLS=OFF",
             "-DQUORVANE_BUILD_BENCH=OFF", *launcher], check=True, stdout=subprocess.DEVNULL)
        if not self.make("quorvane", *([] if tests else ["entry_tests"])) or not self.test(1200):
            sys.exit("the sources do not build or the tests do not pass as they are")

    def make(self, *targets):
        return subprocess.run(["ninja", "-C", self.build, f"-j{self.jobs}", *targets],
                              capture_output=True).returncode == 0

    def library(self):
        """What the objects hold, or None if they do not compile."""
        if not self.make("quorvane"):
            return None
        objects = sorted(self.build.glob("src/CMakeFiles/quorvane_objects_baseline.dir/*/*.o"))
        return hashlib.sha256(b"".join(file.read_bytes() for file in objects)).digest()

    def test(self, seconds, room=None):
        # The functions against the reference first, which is quick and sees most; they call the library that is
        # built already. Then the tests of the room that was changed, and the rest.
        everything = "-*EveryEntry*:*Concurrency*:*Level*"
        return (self.run(seconds, "entry_tests", "--gtest_filter=*EveryEntry*") and (self.quick or
                (room is None or self.run(seconds, "entry_tests", f"--gtest_filter={suites_of(room)}")) and
                (self.tests is not None or
                 self.make("internal_tests_baseline") and self.run(seconds, "internal_tests_baseline")) and
                self.run(seconds, "entry_tests", f"--gtest_filter={everything}")))

    def run(self, seconds, program, *arguments):
        environment = dict(os.environ, GTEST_FAIL_FAST="1", GTEST_BRIEF="1", LD_LIBRARY_PATH=str(self.build / "lib"))
        try:
            return subprocess.run([(self.tests or self.build) / "tests" / program, *arguments], env=environment,
                                  timeout=seconds, cwd=self.build, capture_output=True).returncode == 0
        except subprocess.TimeoutExpired:
            return False


def read_equivalent():
    """Lines of "FILE: LINE'S TEXT | OLD -> NEW  # reason"; texts, since numbers of lines move."""
    lines = EQUIVALENT.read_text().splitlines() if EQUIVALENT.exists() else []
    return {line.split("  #")[0].strip() for line in lines if line.strip() and not line.startswith("#")}


def key_of(path, line, what):
    return f"{path}: {line.strip()} | {what}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="*", type=Path)
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--minutes", type=float, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--seconds", type=float, default=300, help="until a test program counts as endless")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--march", default="", help="x86-64-v3 mutates what runs at that level")
    parser.add_argument("--work", type=Path)
    parser.add_argument("--tests", type=Path, metavar="BUILD",
                        help="take the entry tests of a build that there is, and leave the internal ones out")
    parser.add_argument("--quick", action="store_true",
                        help="run the tests of all functions in one shape alone; survivors want another run")
    parser.add_argument("--again", type=Path, metavar="LOG",
                        help="take the survivors that an earlier run printed, for a run with more tests")
    parser.add_argument("--verbose", action="store_true", help="print the counts after each mutation")
    parser.add_argument("--list", action="store_true", help="print the mutations, run none")
    told = parser.parse_args()

    files = [file.resolve() for file in told.files] or sorted(
        file for suffix in ("cpp", "h") for file in ROOT.glob(f"src/**/*.{suffix}") if not LEFT_OUT.search(str(file)))
    mutations = list(all_mutations(files))
    if told.again:
        printed = {line.strip() for line in told.again.read_text().splitlines()}
        mutations = [m for m in mutations if f"{m[0]}:{m[1] + 1}: {m[4]}" in printed]
    random.Random(told.seed).shuffle(mutations)
    if told.list:
        for path, number, _, _, what in sorted(mutations, key=lambda m: (str(m[0]), m[1])):
            print(f"{path}:{number + 1}: {what}")
        return

    folder = told.work or Path(tempfile.mkdtemp(prefix="qvn-mutate-"))
    folder.mkdir(parents=True, exist_ok=True)
    end = time.monotonic() + told.minutes * 60
    copy = Copy(folder, told.march, told.jobs, told.tests and told.tests.resolve(), told.quick)
    original, equivalent = copy.library(), read_equivalent()
    counts = dict(seen=0, survived=0, equivalent=0, nothing=0)
    for path, number, line, changed, what in mutations[:told.count]:
        if time.monotonic() > end:
            break
        file = copy.source / path
        before = file.read_text()
        lines = before.splitlines()
        if lines[number] != line:
            sys.exit(f"{path} has changed since the copy was made")
        lines[number] = changed
        file.write_text("\n".join(lines) + "\n")
        if copy.library() in (None, original):
            counts["nothing"] += 1
        elif not copy.test(told.seconds, path.parts[1]):
            counts["seen"] += 1
        elif key_of(path, line, what) in equivalent:
            counts["equivalent"] += 1
        else:
            counts["survived"] += 1
            print(f"{path}:{number + 1}: {what}\n    {key_of(path, line, what)}", flush=True)
        file.write_text(before)
        if told.verbose:
            print(counts, flush=True)
    if not told.work:
        shutil.rmtree(folder, ignore_errors=True)
    total = counts["seen"] + counts["survived"]
    share = 100 * counts["survived"] / max(total, 1)
    print(f"{total} mutations, {counts['survived']} survived ({share:.1f} %), {counts['equivalent']} equivalent, "
          f"{counts['nothing']} without effect or not compiling")


if __name__ == "__main__":
    main()
