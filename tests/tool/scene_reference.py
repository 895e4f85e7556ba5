"""The chart's scene, written a second time.

Python's floats are doubles and every operation used here is rounded exactly, so the results are the same on
every machine; what the tool draws must agree with them to the last bit.
"""

import math
import struct

TURN = 6.283185307179586
MASK = (1 << 64) - 1

PATCHES = [
    (0.86, 0.16, 0.15), (0.93, 0.49, 0.13), (0.96, 0.82, 0.18), (0.62, 0.80, 0.22),
    (0.16, 0.60, 0.27), (0.10, 0.60, 0.55), (0.20, 0.74, 0.86), (0.22, 0.47, 0.84),
    (0.17, 0.22, 0.66), (0.45, 0.25, 0.68), (0.80, 0.25, 0.66), (0.90, 0.45, 0.55),
    (0.95, 0.78, 0.66), (0.47, 0.31, 0.24), (0.34, 0.43, 0.22), (0.60, 0.74, 0.88),
]
THREADS = [
    (0.95, 0.95, 0.95), (0.95, 0.15, 0.12), (0.98, 0.80, 0.15), (0.20, 0.85, 0.30),
    (0.20, 0.85, 0.92), (0.25, 0.40, 0.98), (0.95, 0.25, 0.85),
]
PAPER, INK = (0.93,) * 3, (0.06,) * 3


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def clamp(value, low, high):
    return min(max(value, low), high)


def mix(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def cosine(turns):
    t = turns - math.floor(turns)
    t = min(t, 1.0 - t)
    angle = (0.5 - t if t > 0.25 else t) * TURN
    term = total = 1.0
    for n in range(1, 8):
        term *= -(angle * angle) / ((2.0 * n - 1.0) * (2.0 * n))
        total += term
    return -total if t > 0.25 else total


def direction(x, y):
    small, large = sorted((abs(x), abs(y)))
    if large == 0.0:
        return 0.0
    t = small / large
    s = t * t
    turns = t * (0.9998660 + s * (-0.3302995 + s * (0.1801410 + s * (-0.0851330 + s * 0.0208351)))) / TURN
    if abs(y) > abs(x):
        turns = 0.25 - turns
    if x < 0.0:
        turns = 0.5 - turns
    return 1.0 - turns if y < 0.0 else turns


def hue(turns):
    def channel(offset):
        t = turns + offset - math.floor(turns + offset)
        return clamp(abs(t * 6.0 - 3.0) - 1.0, 0.0, 1.0)
    return channel(0.0), channel(2.0 / 3.0), channel(1.0 / 3.0)


def star(box, x, y, behind):
    left, top, width, height = box
    dx, dy = x - (left + width / 2), y - (top + height / 2)
    distance = math.sqrt(dx * dx + dy * dy) / (min(width, height) / 2)
    if distance >= 1.0:
        return behind
    if distance >= 0.90:
        return hue(direction(dx, dy))
    if distance >= 0.86:
        return INK
    return PAPER if cosine(direction(dx, dy) * 36.0) > 0.0 else INK


def plate(box, x, y, behind):
    left, top, width, height = box
    dx, dy = x - (left + width / 2), y - (top + height / 2)
    radius = min(width, height) / 2
    square = dx * dx + dy * dy
    if square >= radius * radius:
        return behind
    return (0.5 + 0.43 * cosine(0.225 * square / radius),) * 3


def patches(box, x, y, behind):
    left, top, width, height = box
    u, v = (x - left) / width * 4.0, (y - top) / height * 4.0
    column, line = math.floor(u), math.floor(v)
    if abs(u - column - 0.5) > 0.5 - 0.04 or abs(v - line - 0.5) > 0.5 - 0.04:
        return behind
    return PATCHES[line * 4 + column]


def fan(box, x, y, _):
    left, top, width, height = box
    dx, dy = x - (left + width / 2), top + height * 1.05 - y
    position = direction(dx, dy) * 180.0
    ray = math.floor(position + 0.5)
    distance = math.sqrt(dx * dx + dy * dy)
    if abs(position - ray) / 180.0 * TURN * distance > 0.75:
        return INK
    return mix(INK, THREADS[ray % 7], clamp(distance / (height * 0.25), 0.0, 1.0))


def sweep(box, x, y, _):
    left, top, width, height = box
    full, v = hue((x - left) / width), (y - top) / height * 2.0
    return mix((1.0,) * 3, full, v) if v < 1.0 else mix(full, (0.0,) * 3, v - 1.0)


def ramps(box, x, y, _):
    left, top, width, height = box
    u = (x - left) / width
    return (u if y < top + height / 2 else math.floor((1.0 - u) * 16.0) / 15.0,) * 3


def panels(width, height):
    gap = min(width, height) * 0.04
    third, rest = (width - 4 * gap) / 3, height - 4 * gap
    upper, middle = rest * 0.52, rest * 0.27
    return [
        (star, (gap, gap, third, upper)),
        (plate, (2 * gap + third, gap, third, upper)),
        (patches, (3 * gap + 2 * third, gap, third, upper)),
        (fan, (gap, 2 * gap + upper, 2 * third + gap, middle)),
        (sweep, (3 * gap + 2 * third, 2 * gap + upper, third, middle)),
        (ramps, (gap, 3 * gap + upper + middle, width - 2 * gap, rest - upper - middle)),
    ]


def draw(width, height):
    """R, G, B of each pixel in one list."""
    layout = panels(float(width), float(height))

    def at(x, y):
        behind = (0.34 - 0.14 * y / height,) * 3
        for paint, box in layout:
            if box[0] <= x < box[0] + box[2] and box[1] <= y < box[1] + box[3]:
                return paint(box, x, y, behind)
        return behind

    places = [(column + 0.5) / 4 for column in range(4)]
    scene = []
    for y in range(height):
        for x in range(width):
            total = (0.0, 0.0, 0.0)
            for down in places:
                for across in places:
                    total = tuple(a + b for a, b in zip(total, at(x + across, y + down)))
            scene += [single(channel / 16) for channel in total]
    return scene


def scramble(value):
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9 & MASK
    value = (value ^ (value >> 27)) * 0x94D049BB133111EB & MASK
    return value ^ (value >> 31)


def add_noise(scene, seed, strength):
    if strength == 0:
        return
    step = 0x9E3779B97F4A7C15
    start = scramble(seed + step & MASK)
    for i, value in enumerate(scene):
        bits = scramble(start + (i + 1) * step & MASK)
        total = sum(float(bits >> 16 * part & 0xFFFF) for part in range(4))
        draw_ = (total / 65535.0 - 2.0) * 1.7320508075688772
        scene[i] = single(value + max(0.25, math.sqrt(value)) * strength / 255.0 * draw_)


def quantise(scene, top):
    return [math.floor(single(single(clamp(value, 0.0, 1.0) * top) + 0.5)) for value in scene]
