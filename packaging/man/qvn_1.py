"""Writes the manual page of the command-line tool from what the tool says of itself, so that the two agree.

    qvn_1.py QVN VERSION > qvn.1
"""

import re
import subprocess
import sys

EXAMPLES = [
    ("A picture of a headerless frame", "qvn convert --from raw8 --size 1920x1080 frame.raw picture.png"),
    ("Which pattern and which method: a sheet with all of them", "qvn sheet --from raw8 --size 1920x1080 frame.raw sheet.png"),
    ("A test frame, converted in a pipe", "qvn chart - | qvn convert --from raw8 --size 768x512 - chart.png"),
]


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def help_of(qvn, *subcommand):
    done = subprocess.run([qvn, *subcommand, "--help"], capture_output=True, text=True, check=True)
    return done.stdout.splitlines()


def page_of(lines):
    """Options and their descriptions as tagged paragraphs, all else as text."""
    for line in lines:
        item = re.match(r"^ {2,}(\S.*?)(?: {2,}(\S.*))?$", line)
        heading = re.match(r"^(?:\[Option Group: (.*)\]|([A-Z][\w ]*):)$", line.strip())
        if heading and heading.group(1):
            yield f".PP\n.I {escaped(heading.group(1))}"
        elif heading:
            continue
        elif item and item.group(2):
            yield f".TP\n.B {escaped(item.group(1))}\n{escaped(item.group(2))}"
        elif line.strip():
            yield f".PP\n{escaped(line.strip())}"


def main():
    qvn, version = sys.argv[1:]
    top = help_of(qvn)
    about = top[0]
    names = [m.group(1) for m in (re.match(r"^  ([a-z][\w-]*) {2,}\S", line) for line in top) if m]
    print(f'.TH QVN 1 "" "quorvane {version}" "User Commands"')
    print(".SH NAME\nqvn \\- convert frames of industrial cameras to pictures")
    print(".SH SYNOPSIS\n.B qvn\n.I SUBCOMMAND\n[\\fIOPTIONS\\fR]")
    print(f".SH DESCRIPTION\n{escaped(about)}.")
    print(".SH SUBCOMMANDS")
    for name in names:
        lines = help_of(qvn, name)
        usage = next((line for line in lines if line.startswith("Usage: ")), "")
        print(f".SS {escaped(usage.removeprefix('Usage: ') or name)}")
        print("\n".join(page_of([line for line in lines if line != usage and "-h,--help" not in line])))
    print(".SH EXIT STATUS\n0 for success. 2 for a command that cannot be carried out; one sentence on standard")
    print("error says what was expected and what was found, and no half file is left behind.")
    print(".SH EXAMPLES")
    for text, command in EXAMPLES:
        print(f"{text}:\n.PP\n.RS\n.nf\n{escaped(command)}\n.fi\n.RE\n.PP")
    print(".SH SEE ALSO\n.BR quorvane (7)")


if __name__ == "__main__":
    main()
