"""What the drawings are made with: boxes, words, arrows, mosaics, in colours that stand for channels everywhere.

Red, green, blue; grey for luma; violet and ochre for the chroma bytes; white for what is not written.
"""

import html

FILL = {"R": "#f28b82", "G": "#9fd89f", "B": "#8ab4f8", "Y": "#d5d5d5", "U": "#c9b3f5", "V": "#f0c674", "A": "#ffffff",
        "C": "#80dedb", "M": "#f3a6dc", "E": "#dbe8c8", "O": "#f6dcc0", "0": "#ffffff", "-": "#ffffff"}
SITES = {**FILL, "Y": "#f3e27a"}  # in a mosaic, Y is yellow
CELL, LINE = 44, 26
FONT = 'font-family="DejaVu Sans, Arial, sans-serif"'


class Canvas:
    def __init__(self):
        self.items, self.width, self.height = [], 0, 0

    def reach(self, x, y):
        self.width, self.height = max(self.width, x), max(self.height, y)

    def text(self, x, y, words, size=12, anchor="middle", fill="#222", weight="normal"):
        self.items.append(f'<text x="{x}" y="{y}" {FONT} font-size="{size}" text-anchor="{anchor}" fill="{fill}" '
                          f'font-weight="{weight}">{html.escape(words)}</text>')
        side = len(words) * size * 0.6
        self.reach(x + {"start": side, "middle": side / 2, "end": 0}[anchor], y + 4)

    def box(self, x, y, width, height, fill, words="", stroke="#555", thick=1, size=12):
        self.items.append(f'<rect x="{x}" y="{y}" width="{width}" height="{height}" fill="{fill}" stroke="{stroke}" '
                          f'stroke-width="{thick}"/>')
        self.reach(x + width, y + height)
        if words:
            dark = fill in ("#000000", "#1a1a1a")
            self.text(x + width / 2, y + height / 2 + size * 0.36, words, size, fill="#fff" if dark else "#222")

    def line(self, x1, y1, x2, y2, stroke="#555", thick=1):
        self.items.append(f'<line x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}" stroke="{stroke}" stroke-width="{thick}"/>')
        self.reach(max(x1, x2), max(y1, y2))

    def arrow(self, x1, y1, x2, y2):
        self.line(x1, y1, x2, y2, "#222", 1.5)
        self.items.append(f'<path d="M {x2} {y2} l -8 -4 l 0 8 z" fill="#222"/>')

    def svg(self, title):
        width, height = round(self.width + 10), round(self.height + 10)
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
                f'viewBox="-5 -5 {width} {height}" role="img"><title>{html.escape(title)}</title>'
                f'<rect x="-5" y="-5" width="{width}" height="{height}" fill="#ffffff"/>{"".join(self.items)}</svg>\n')


def fill_of(label):
    return FILL.get(label[0], "#ffffff")


def put_mosaic(canvas, x, y, rows, columns, colour, mark=None):
    for row in range(rows):
        for column in range(columns):
            letter = colour(row, column)
            canvas.box(x + column * LINE, y + row * LINE, LINE, LINE, SITES[letter], letter)
    if mark:
        top, left, high, wide = mark
        canvas.box(x + left * LINE, y + top * LINE, wide * LINE, high * LINE, "none", stroke="#000", thick=3)
    return y + rows * LINE


def bayer(row, column):
    return "RG"[column % 2] if row % 2 == 0 else "GB"[column % 2]
