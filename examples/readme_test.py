"""README.md tells the truth where a program can check it: its C example is examples/quick.c, it names every
function of the public header and no other, and the files that it points to exist. Links of the other documents
are checked as well.

    readme_test.py PROJECT-DIRECTORY
"""

import pathlib
import re
import sys
import unittest

PROJECT = pathlib.Path(sys.argv.pop())
README = (PROJECT / "README.md").read_text(encoding="utf-8")


def fenced_blocks(text, language):
    return re.findall(r"^```%s\n(.*?)^```$" % language, text, re.MULTILINE | re.DOTALL)


def documents():
    built = {"build", "out"}
    for path in PROJECT.rglob("*.md"):
        first = path.relative_to(PROJECT).parts[0]
        if first not in built and not first.startswith("build"):
            yield path


class ReadmeTest(unittest.TestCase):
    maxDiff = None

    def test_the_c_example_is_the_compiled_one(self):
        blocks = fenced_blocks(README, "c")
        self.assertEqual(len(blocks), 1)
        self.assertEqual(blocks[0], (PROJECT / "examples/quick.c").read_text(encoding="utf-8"))

    def test_every_function_is_named_and_no_other(self):
        header = (PROJECT / "include/quorvane/quorvane.h").read_text(encoding="utf-8")
        declared = set(re.findall(r"^QVN_API uint32_t (QVN_\w+)\(", header, re.MULTILINE))
        named = set(re.findall(r"\bQVN_[A-Z]\w*[a-z0-9]\w*\b", README)) - {"QVN_E_PARAMn", "QVN_OK"}
        self.assertGreater(len(declared), 0)
        self.assertEqual(named, declared)

    def test_links_lead_to_files(self):
        for document in documents():
            text = document.read_text(encoding="utf-8")
            for target in re.findall(r"\]\(([^)#]+)[^)]*\)", text):
                if "://" not in target:
                    with self.subTest(document=str(document.relative_to(PROJECT)), link=target):
                        self.assertTrue((document.parent / target).exists())


if __name__ == "__main__":
    unittest.main()
