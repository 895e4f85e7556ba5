"""Drawings of the functions that rearrange frames, and those that the written pages keep."""

from canvas import LINE, Canvas, bayer, put_mosaic

LETTERS = [["a", "b", "c", "d"], ["e", "f", "g", "h"], ["i", "j", "k", "l"]]


def put_letters(canvas, x, y, rows, words):
    for row, letters in enumerate(rows):
        for column, letter in enumerate(letters):
            shade = 255 - 12 * (ord(letter) - ord("a")) if letter.islower() else 255
            canvas.box(x + column * LINE, y + row * LINE, LINE, LINE, f"rgb({shade},{shade},255)", letter)
    canvas.text(x + len(rows[0]) * LINE / 2, y + len(rows) * LINE + 16, words, 11, fill="#555")
    return x + len(rows[0]) * LINE + 24


def draw_flip(canvas):
    x = put_letters(canvas, 0, 0, LETTERS, "the frame")
    x = put_letters(canvas, x, 0, [line[::-1] for line in LETTERS], "axis 1")
    x = put_letters(canvas, x, 0, LETTERS[::-1], "axis 2")
    put_letters(canvas, x, 0, [line[::-1] for line in LETTERS[::-1]], "axis 3")
    words = "a letter is an element of 1, 2, 3 or 6 bytes, which keep their order"
    canvas.text(0, 3 * LINE + 38, words, 11, "start", "#555")


def draw_flip_vertical(canvas):
    x = put_letters(canvas, 0, 0, LETTERS, "the frame")
    put_letters(canvas, x, 0, LETTERS[::-1], "after the call")


def draw_weave(canvas):
    lines = ["1", "3", "5", "0", "2", "4"]
    canvas.text(60, 12, "stored", 12, weight="bold")
    canvas.text(260, 12, "woven", 12, weight="bold")
    for row, number in enumerate(lines):
        fill = "#dbe8c8" if row < 3 else "#f6dcc0"
        canvas.box(0, 20 + row * LINE + (6 if row >= 3 else 0), 120, LINE, fill, "line " + number)
    canvas.arrow(130, 20 + 3 * LINE, 190, 20 + 3 * LINE)
    for row in range(6):
        canvas.box(200, 20 + row * LINE, 120, LINE, "#f6dcc0" if row % 2 == 0 else "#dbe8c8", f"line {row}")
    canvas.text(0, 20 + 6 * LINE + 26, "the field that lies second in memory has the top line", 11, "start", "#555")


def draw_resample(canvas):
    canvas.text(0, 12, "srcRate 3, dstRate 4: output element i lies at 0.75 * i of the source line", 12, "start",
                weight="bold")
    for i in range(7):
        canvas.box(60 + i * 48, 22, 48, LINE, "#dbe8c8", f"{i}")
    canvas.text(54, 39, "source", 11, "end", "#555")
    for i in range(9):
        x = 60 + i * 36
        canvas.line(x + 18, 90, 60 + 0.75 * i * 48 + 24, 48, "#888")
        canvas.box(x, 90, 36, LINE, "#f6dcc0", f"{i}")
    canvas.text(54, 107, "output", 11, "end", "#555")
    canvas.text(0, 136, "nearest takes the element at the position + 0.5, truncated; linear blends two", 11,
                "start", "#555")


def draw_length(canvas):
    canvas.text(0, 12, "641 elements at srcRate 2, dstRate 3", 12, "start", weight="bold")
    steps = (("641 * 3 / 2", "in floating point"), ("961", "truncated"), ("964", "to a multiple of 4"))
    for i, (words, note) in enumerate(steps):
        canvas.box(i * 160, 24, 120, LINE, "#dbe8c8", words)
        canvas.text(i * 160 + 60, 24 + LINE + 15, note, 11, fill="#555")
        if i < 2:
            canvas.arrow(i * 160 + 124, 37, i * 160 + 156, 37)


def draw_sis(canvas):
    for row in range(4):
        canvas.box(0, row * LINE, 260, LINE, "#ffffff", stroke="#999")
    canvas.box(0, 2 * LINE, 90, LINE, "#f6dcc0", "12 or 52 bytes")
    canvas.text(268, 2 * LINE + 17, "position 2: from the start of line 2", 11, "start", "#555")
    canvas.box(150, 3 * LINE, 90, LINE, "#dbe8c8", "12 or 52 bytes")
    canvas.text(268, 3 * LINE + 17, "position below 0: pixels counted back from the end", 11, "start", "#555")


DRAWN = {"QVN_Flip": draw_flip, "QVN_FlipVertical": draw_flip_vertical, "QVN_InterlacedToProgressive": draw_weave,
           "QVN_ResampleScanlines": draw_resample, "QVN_ResampleScanlinesEx": draw_resample,
           "QVN_GetResampledScanlineLength": draw_length, "QVN_GetSIS": draw_sis}


# Pictures of the written pages.

def patterns():
    """The four pattern codes."""
    canvas = Canvas()
    for code, (name, shift) in enumerate((("RGGB", (0, 0)), ("GBRG", (1, 0)), ("GRBG", (0, 1)), ("BGGR", (1, 1)))):
        x = code * 160
        canvas.text(x + 2 * LINE, 14, f"code {code}", 14, weight="bold")
        canvas.text(x + 2 * LINE, 30, name, 12)
        put_mosaic(canvas, x, 38, 4, 4, lambda row, column: bayer(row + shift[0], column + shift[1]), (0, 0, 2, 2))
    return canvas.svg("The four pattern codes: 0 R G over G B, 1 G B over R G, 2 G R over B G, 3 B G over G R")


def packings():
    """Three ways to put two samples of 12 bits into three bytes."""
    canvas = Canvas()
    even, odd = "#9fd89f", "#f28b82"
    y = 0
    for name, parts in (
            ("raw12packed: 12Packed, and the form that the functions take",
             (("even 11..4", even, 2), ("odd 3..0", odd, 1), ("even 3..0", even, 1), ("odd 11..4", odd, 2))),
            ("raw12p: 12p, bits in a row from the lowest",
             (("even 7..0", even, 2), ("odd 3..0", odd, 1), ("even 11..8", even, 1), ("odd 11..4", odd, 2))),
            ("raw12csi2: MIPI CSI-2",
             (("even 11..4", even, 2), ("odd 11..4", odd, 2), ("odd 3..0", odd, 1), ("even 3..0", even, 1)))):
        canvas.text(0, y + 12, name, 12, "start", weight="bold")
        x = 0
        for words, fill, nibbles in parts:
            canvas.box(x, y + 20, nibbles * 80, LINE, fill, words)
            x += nibbles * 80
        for byte in range(3):
            canvas.box(byte * 160, y + 20, 160, LINE, "none", thick=2, stroke="#000")
            canvas.text(byte * 160 + 80, y + 20 + LINE + 14, f"byte {byte}, bit 7 at the left", 10, fill="#555")
        y += 20 + LINE + 30
    return canvas.svg("Two samples of 12 bits in three bytes: 12Packed, 12p and CSI-2")
