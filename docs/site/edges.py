"""Drawings of a function's edges, found by calling it: which pixels are computed, copied, black, left alone."""

import ctypes
import random

import drawings
from canvas import Canvas

WIDTH, HEIGHT = 12, 8
MARKS = (0xA5, 0x5A)
NEIGHBOURS = {"above": (-1, 0), "left": (0, -1), "right": (0, 1), "below": (1, 0), "pair": (0, -2), "pairs": (0, -4)}
# Of two equal neighbours, the outer one is the copy.
COPIED = {"above": lambda row, column: row >= HEIGHT // 2, "left": lambda row, column: column >= WIDTH // 2,
          "right": lambda row, column: column == 0, "below": lambda row, column: row == 0,
          "pair": lambda row, column: column >= 2, "pairs": lambda row, column: column >= 4}
PLAIN = {"QVN_Raw8ImageTransform": "QVN_Raw8ToBGR", "QVN_Raw8ImageTransform_3x3": "QVN_Raw8ToBGR_3x3"}
SIGNS = {"above": "\u2191", "left": "\u2190", "right": "\u2192", "below": "\u2193", "pair": "\u2190", "pairs": "\u2190",
         "exchanged": "\u21c4"}
FILLS = {"computed": "#fff4cc", "black": "#1a1a1a", "untouched": "#ffffff", "exchanged": "#f9b4ab"}
COPY = "#bcd6f7"


class Format(ctypes.Structure):
    _fields_ = [(name, ctypes.c_uint32) for name in ("reserved", "alignment", "bitsPerSample", "byteOrder", "pattern")]


def pixel_bytes(name):
    destination = drawings.destination_of(name)
    return {None: 3, "bgr": 3, "grey-bgr": 3, "y8": 1, "y16": 2, "bgr16": 6, "bgr12": 6}[destination]


def run(library, function, source, mark, pattern):
    size = pixel_bytes(function.name)
    destination = (ctypes.c_uint8 * (WIDTH * HEIGHT * size)).from_buffer_copy(bytes([mark]) * (WIDTH * HEIGHT * size))
    frame = (ctypes.c_uint8 * len(source)).from_buffer_copy(source)  # some functions overwrite it
    form = Format(0, 0, 16, 1, pattern)
    words = {"dst": destination, "src": frame, "width": WIDTH, "height": HEIGHT, "pattern": pattern, "target": 1,
             "shift": 0, "phase": 0, "cc": None, "format": ctypes.byref(form)}
    arguments = [words[argument.name] for argument in function.arguments]
    status = getattr(library, function.name)(*(ctypes.c_uint32(a) if isinstance(a, int) else a for a in arguments))
    if status != 0:
        raise RuntimeError(f"{function.name}: status {status & 0xFFFFFFFF:#x}")
    taken = bytes(destination)
    return [taken[i:i + size] for i in range(0, len(taken), size)]


def classes(library, function, plain, pattern):
    """What each pixel is, by its line and column."""
    rows = {}
    random.seed(1)
    sources = [bytes(random.randrange(96, 160) for _ in range(2 * WIDTH * HEIGHT)) for _ in range(16)]
    runs = [[run(library, function, source, mark, pattern) for source in sources] for mark in MARKS]
    expected = [run(library, plain, source, MARKS[0], pattern) for source in sources] if plain else None
    for row in range(HEIGHT):
        for column in range(WIDTH):
            at = row * WIDTH + column
            drawn = [picture[at] for picture in runs[0]]

            def copies(name, at=at, row=row, column=column):
                step = NEIGHBOURS[name]
                y, x = row + step[0], column + step[1]
                return COPIED[name](row, column) and all(picture[at] == picture[y * WIDTH + x] for picture in runs[0])

            if all(set(picture[at]) == {mark} for mark, pictures in zip(MARKS, runs) for picture in pictures):
                kind = "untouched"
            elif not any(any(pixel) for pixel in drawn):
                kind = "black"
            else:
                kind = next((name for name in NEIGHBOURS if copies(name)), "computed")
            if kind == "computed" and expected:
                turned = [picture[at][::-1] for picture in expected]
                if drawn == turned and drawn != [pixel[::-1] for pixel in turned]:
                    kind = "exchanged"
            rows[row, column] = kind
    return rows


def put(canvas, x, rows, words):
    canvas.text(x, 12, words, 12, "start", weight="bold")
    for (row, column), kind in rows.items():
        fill = FILLS.get(kind, COPY)
        canvas.box(x + column * 22, 22 + row * 22, 22, 22, fill, SIGNS.get(kind, ""), stroke="#999", size=11)
    return x + WIDTH * 22 + 30


def draw(library, function, functions):
    """An SVG text, and the kinds of pixels in it; nothing where every pixel is computed."""
    plain = functions.get(PLAIN.get(function.name))
    first = classes(library, function, plain, 0)
    canvas = Canvas()
    x = put(canvas, 0, first, "a frame of 12x8 pixels")
    found = set(first.values())
    if any(argument.name == "pattern" for argument in function.arguments):
        other = classes(library, function, plain, 2)
        if "exchanged" in other.values():
            found |= set(other.values())
            put(canvas, x, other, "the same in pattern code 2")
    if found == {"computed"}:
        return None, found
    y = 22 + HEIGHT * 22 + 14
    x = 0
    legend = [("computed", "#fff4cc", "", "computed")]
    if found & set(NEIGHBOURS):
        legend.append(("copied", COPY, "\u2190", "copied from there"))
    for kind, words in (("black", "black"), ("untouched", "left alone"), ("exchanged", "red and blue exchanged")):
        if kind in found:
            legend.append((kind, FILLS[kind], SIGNS.get(kind, ""), words))
    for _, fill, sign, words in legend:
        canvas.box(x, y, 18, 18, fill, sign, stroke="#999", size=10)
        canvas.text(x + 24, y + 13, words, 11, "start")
        x += 40 + 7 * len(words)
    return canvas.svg(f"{function.name}: which pixels are computed"), found
