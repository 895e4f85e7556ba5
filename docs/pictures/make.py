#!/usr/bin/env python3
"""Makes methods.png: the chart, sampled as a mosaic and converted back, and a part of it enlarged by each method.

    docs/pictures/make.py QVN       the path of the built tool

The picture is cut from the tool's contact sheet, whose cells hold a label, the whole picture, and its enlarged part.
"""

import pathlib
import subprocess
import sys
import tempfile

SIZE = "384x256"
METHODS = 5  # the colour methods come first on the sheet
COLUMN, LINE = 404, 588  # from cell to cell
GAP, TITLE, LABEL, PICTURE, BETWEEN = 20, 44, 46, 256, 10
DARK = b"\x22\x22\x22"


def parts(pixels, width):
    """Blocks of lines, all COLUMN wide and LABEL + PICTURE high: the chart, then an enlarged part a method."""
    def lines(cell, top, count):
        x, y = GAP + COLUMN * (cell % 3), LINE * (cell // 3) + top
        return [pixels[3 * (width * row + x):3 * (width * row + x + COLUMN)] for row in range(y, y + count)]

    yield lines(0, 0, LABEL) + lines(0, TITLE + LABEL, PICTURE)
    for cell in range(METHODS):
        yield lines(cell, TITLE, LABEL) + lines(cell, TITLE + LABEL + PICTURE + BETWEEN, PICTURE)


def join(blocks):
    """Three blocks a line."""
    dark_line = DARK * (GAP + 3 * COLUMN)
    for first in range(0, len(blocks), 3):
        yield from [dark_line] * (GAP // 2)
        for row in zip(*blocks[first:first + 3]):
            yield DARK * GAP + b"".join(part.ljust(3 * COLUMN, b"\x22") for part in row)
    yield from [dark_line] * GAP


def main():
    qvn = sys.argv[1]
    target = str(pathlib.Path(__file__).parent / "methods.png")
    with tempfile.TemporaryDirectory() as place:
        chart, sheet, joined = (f"{place}/{name}" for name in ("chart.raw", "sheet.ppm", "joined.ppm"))
        subprocess.run([qvn, "chart", chart, "--size", SIZE, "--noise", "0"], check=True)
        subprocess.run([qvn, "sheet", chart, sheet, "--from", "raw8", "--size", SIZE], check=True)
        data = pathlib.Path(sheet).read_bytes()
        width, height = (int(word) for word in data.split(None, 3)[1:3])
        rows = list(join(list(parts(data[len(data) - 3 * width * height:], width))))
        head = b"P6\n%d %d\n255\n" % (len(rows[0]) // 3, len(rows))
        pathlib.Path(joined).write_bytes(head + b"".join(rows))
        subprocess.run([qvn, "convert", joined, target, "--from", "rgb8", "--to", "bgr"], check=True)


if __name__ == "__main__":
    main()
