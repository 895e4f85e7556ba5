"""Drawings of memory: how the bytes of sources and destinations lie, how windows and fields are placed.

Each drawing is an SVG text.
"""

import re

import rearranged
from canvas import CELL, LINE, SITES, Canvas, bayer, fill_of, put_mosaic

# How a group of pixels lies: (byte labels, numbers of the pixels that the bytes belong to, what it is).
SOURCES = {
    "raw8": (["R", "G", "R", "G"], ["0", "1", "2", "3"], "Raw8, a line of red and green: 1 byte a sample"),
    "raw12": (["R 11..4", "G 3..0 | R 3..0", "G 11..4"], ["0", "1 and 0", "1"],
              "Raw12, a line of red and green: 2 samples in 3 bytes, the middle one's high nibble is the odd sample's"),
    "raw16": (["R 15..8", "R 7..0", "G 15..8", "G 7..0"], ["0", "0", "1", "1"],
              "Raw16, a line of red and green: 2 bytes a sample, the first one is the most significant"),
    "raw16any": (["R", "R", "G", "G"], ["0", "0", "1", "1"],
                 "Raw of 10 to 16 bits: 2 bytes a sample, in the order and at the end that the record says"),
    "y8": (["Y"], ["0"], "mono 8: 1 byte a pixel"),
    "y12": (["Y 11..4", "Y 3..0 | Y 3..0", "Y 11..4"], ["0", "1 and 0", "1"],
            "packed 12: 2 samples in 3 bytes, the middle one's high nibble is the second sample's"),
    "y16": (["Y 15..8", "Y 7..0"], ["0", "0"], "mono 16: 2 bytes a sample, the first one is the most significant"),
    "y16any": (["Y", "Y"], ["0", "0"], "mono of up to 16 bits: 2 bytes a sample, order and alignment as told"),
    "yuv444": (["U", "Y", "V"], ["0", "0", "0"], "YUV 4:4:4: 3 bytes a pixel"),
    "yuv422": (["U", "Y", "V", "Y"], ["0, 1", "0", "0, 1", "1"], "YUV 4:2:2: 4 bytes for 2 pixels"),
    "yuv411": (["U", "Y", "Y", "V", "Y", "Y"], ["0 to 3", "0", "1", "0 to 3", "2", "3"],
               "YUV 4:1:1: 6 bytes for 4 pixels"),
    "rgb8": (["R", "G", "B"], ["0", "0", "0"], "RGB8: 3 bytes a pixel"),
    "rgba8": (["R", "G", "B", "A"], ["0", "0", "0", "0"], "RGBA8: 4 bytes a pixel"),
}
DESTINATIONS = {
    "bgr": (["B", "G", "R"], ["0", "0", "0"], "BGR: 3 bytes a pixel"),
    "grey-bgr": (["Y", "Y", "Y"], ["0", "0", "0"], "grey BGR: the luma three times, 3 bytes a pixel"),
    "bgra": (["B", "G", "R", "A"], ["0", "0", "0", "left alone"], "BGRA: 4 bytes a pixel, the fourth is stepped over"),
    "bgra-alpha": (["B", "G", "R", "A"], ["0", "0", "0", "0"],
                   "BGRA: 4 bytes a pixel, the fourth is the source's opacity"),
    "y8": (["Y"], ["0"], "Y8: 1 byte a pixel"),
    "uyvy": (["U", "Y", "V", "Y"], ["0, 1", "0", "0, 1", "1"], "YUV 4:2:2: 4 bytes for 2 pixels"),
    "y8-as-uyvy": (["0", "Y", "0", "Y"], ["0, 1", "0", "0, 1", "1"],
                   "YUV 4:2:2: 4 bytes for 2 pixels, chroma is 0 and not the neutral 128"),
    "y16": (["Y 15..0"], ["0"], "Y16: a word a pixel, in the host's order"),
    "y16be": (["Y 11..4", "Y 3..0 | 0000"], ["0", "0"],
              "mono 16: 2 bytes a sample, the first one is the most significant"),
    "bgr16": (["B 15..0", "G 15..0", "R 15..0"], ["0", "0", "0"], "BGR16: 3 words a pixel, in the host's order"),
    "bgr12": (["B 0..4095", "G 0..4095", "R 0..4095"], ["0", "0", "0"],
              "BGR16: 3 words a pixel, in the host's order, not scaled"),
}
TARGETS = {0: "y8", 1: "bgr", 2: "bgra", 3: "y8", 4: "uyvy", 5: "y16", 6: "y16", 7: "bgr16"}
WEIGHTS = {0: "weights 77, 150, 29", 3: "weights 54, 184, 18, rounded"}
WEIGHTS |= {5: WEIGHTS[0], 6: WEIGHTS[3]}


def put_bytes(canvas, x, y, layout, note=True):
    """A group of bytes with the pixels that they belong to; the y below it."""
    labels, pixels, words = layout
    if note:
        canvas.text(x, y + 12, words, 12, "start", weight="bold")
        y += 20
    for i, label in enumerate(labels):
        wide = len(label) > 9
        width = CELL * 3 if wide else CELL * 2 if len(label) > 2 else CELL
        if "|" in label:
            left, right = label.split(" | ")
            canvas.box(x, y, width / 2, LINE, fill_of(left), left, size=10)
            canvas.box(x + width / 2, y, width / 2, LINE, fill_of(right), right, size=10)
        else:
            canvas.box(x, y, width, LINE, fill_of(label), label)
        canvas.text(x + width / 2, y + LINE + 13, pixels[i], 10, fill="#555")
        x += width
    canvas.text(x + 10, y + LINE + 13, "pixel" if pixels else "", 10, "start", "#555")
    return y + LINE + 20


def cygm(row, column):
    """Lines in display order."""
    if row % 2 == 0:
        return "CY"[column % 2]
    return ("GM" if row % 4 == 1 else "MG")[column % 2]


def binned(_, column):
    return "EO"[column % 2]


def put_window(canvas, y, method):
    """Which samples make a pixel."""
    words, mark, pixel = {
        "2x2": ("each pixel from the window whose top left is its own place", (1, 1, 2, 2), (1, 1)),
        "3x3": ("each pixel from its own sample and its eight neighbours", (0, 0, 3, 3), (1, 1)),
        "yuv": ("each pixel of Y, U, V from a 2x2 window; then chroma shared by two pixels", (1, 1, 2, 2), (1, 1)),
    }[method]
    canvas.text(0, y + 12, "Bayer mosaic of code 0: " + words, 12, "start", weight="bold")
    y += 20
    bottom = put_mosaic(canvas, 0, y, 4, 6, bayer, mark)
    x = 6 * LINE + 14
    canvas.arrow(x, y + 2 * LINE, x + 44, y + 2 * LINE)
    x += 60
    for row in range(4):
        for column in range(6):
            own = (row, column) == pixel
            canvas.box(x + column * LINE, y + row * LINE, LINE, LINE, "#ffe9a8" if own else "#ffffff",
                       stroke="#000" if own else "#999", thick=3 if own else 1)
    return bottom + 16


def put_fields(canvas, y, letter, words, mark):
    """Stored fields at the left, the picture's lines at the right."""
    canvas.text(0, y + 12, words, 12, "start", weight="bold")
    y += 20
    x = 74
    for row in range(8):
        line = 2 * row + 1 if row < 4 else 2 * (row - 4)
        top = y + row * LINE + (8 if row >= 4 else 0)
        canvas.text(x - 6, top + 17, f"F({line})", 11, "end", "#555")
        for column in range(4):
            canvas.box(x + column * LINE, top, LINE, LINE, SITES[letter(line, column)], letter(line, column))
    canvas.text(x + 2 * LINE, y + 8 * LINE + 24, "in memory", 11, fill="#555")
    x += 4 * LINE + 14
    canvas.arrow(x, y + 4 * LINE, x + 44, y + 4 * LINE)
    x += 60
    put_mosaic(canvas, x, y, 8, 4, letter, mark)
    canvas.text(x + 2 * LINE, y + 8 * LINE + 24, "lines of the picture", 11, fill="#555")
    return y + 8 * LINE + 40


def source_of(name):
    for pattern, source in (
            (r"IRaw8CYGM.*_Bin$", "cygm-binned"), (r"IRaw8CYGM", "cygm"), (r"Raw8", "raw8"), (r"Raw12", "raw12"),
            (r"Raw16ImageTransformEx", "raw16any"), (r"Raw16", "raw16"), (r"YUV444", "yuv444"), (r"YUV422", "yuv422"),
            (r"YUV411", "yuv411"), (r"RGBA8", "rgba8"), (r"RGB8", "rgb8"), (r"Y8", "y8"), (r"Y12|Packed12", "y12"),
            (r"Y16\w*Ex$", "y16any"), (r"Y16", "y16")):
        if re.match(r"QVN_(" + pattern + ")", name):
            return source
    return None


def targets_of(function):
    found = re.search(r"[Tt]argets\s+(\d)\s+to\s+(\d)(?:\s+and\s+(\d)\s+to\s+(\d))?", function.body)
    if not found:
        return []
    ranges = [int(number) for number in found.groups() if number]
    return [n for first, last in zip(ranges[::2], ranges[1::2]) for n in range(first, last + 1)]


def destination_of(name):
    for ending, destination in (
            (r"Raw12ToBGR16(_CC)?", "bgr12"), (r"\w+ToBGR16(_CC)?", "bgr16"), (r"\w+ToBGR_mono|\w+ToMono", "grey-bgr"),
            (r"\w+ToBGR\w*", "bgr"), (r"\w+ToY16(_CC)?", "y16"), (r"\w+ToY8\w*", "y8"),
            (r"Packed12BitTo8Bit", "y8"), (r"Packed12BitTo16Bit", "y16be")):
        if re.fullmatch("QVN_(" + ending + ")", name):
            return destination
    return None


def put_planes(canvas, y, luma):
    planes = ["R", "G", "B"] + (["Y"] if luma else [])
    canvas.text(0, y + 12, "planes: width * height bytes each, blocks of their own", 12, "start", weight="bold")
    x = 0
    for letter in planes:
        for i in range(4):
            canvas.box(x + i * LINE, y + 20, LINE, LINE, fill_of(letter), letter)
        canvas.text(x + 2 * LINE, y + 20 + LINE + 14, "dst" + letter, 11, fill="#555")
        x += 4 * LINE + 20
    return y + 20 + LINE + 24


def window_of(name):
    if "IRaw8" in name or not re.match(r"QVN_Raw", name):
        return None
    return "3x3" if "3x3" in name else "yuv" if "_Int" in name else "2x2"


CYGM_CELLS = {"3x3": (1, 1, 3, 3), "2x2": (1, 1, 2, 2)}


def layout(function):
    """What lies in memory before and after the call; None for functions without frames."""
    name = function.name
    canvas = Canvas()
    if name in rearranged.DRAWN:
        rearranged.DRAWN[name](canvas)
        return canvas.svg(f"{name}: what it does to a frame")
    source = source_of(name)
    if source is None or name.startswith("QVN_Get") or "ColorCorrection" in name:
        return None
    if source == "cygm":
        cell = CYGM_CELLS["3x3" if "3x3" in name else "2x2"]
        y = put_fields(canvas, 0, cygm, "two stored fields, lines of the picture, the samples of a pixel", cell)
    elif source == "cygm-binned":
        y = put_fields(canvas, 0, binned, "two stored fields; lines 0, 3, 4, 7 tell of blue, 1, 2, 5, 6 of red", None)
    else:
        y = put_bytes(canvas, 0, 0, SOURCES[source])
    if window_of(name):
        y = put_window(canvas, y + 4, window_of(name))
    y += 6
    if "Planes" in name:
        put_planes(canvas, y, "RGBY" in name)
    elif targets_of(function):
        seen = {}
        for target in targets_of(function):
            kind = TARGETS[target]
            kind = {("rgba8", "bgra"): "bgra-alpha", ("y8", "uyvy"): "y8-as-uyvy"}.get((source, kind), kind)
            seen.setdefault(kind, []).append(target)
        for kind, numbers in seen.items():
            labels, pixels, words = DESTINATIONS[kind]
            told = [f"{n} ({WEIGHTS[n]})" if n in WEIGHTS and not re.match(r"y\d", source) else str(n) for n in numbers]
            prefix = "target " if len(numbers) == 1 else "targets "
            y = put_bytes(canvas, 0, y, (labels, pixels, f"{prefix}{' and '.join(told)}, {words}"))
    else:
        put_bytes(canvas, 0, y, DESTINATIONS[destination_of(name)])
    return canvas.svg(f"{name}: bytes of the source and of the destination")
