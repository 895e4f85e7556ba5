"""CYGM frames, written from their formulas: two stored fields, that of the odd lines first."""

from conversion_reference import clamp

BINNED = ((4811, 2113), (-2206, -2161), (-1261, 5586))
FULL = ((2165, 344), (-917, -1078), (-959, 4645))


class Frame:
    def __init__(self, data, width, height):
        self.data, self.width, self.height = data, width, height

    def at(self, x, line):
        """Beside a line lies the next one of its field."""
        field = len(self.data) // 2 if line % 2 == 0 else 0
        return self.data[field + line // 2 * self.width + x]


def site(x, line):
    if line % 2 == 0:
        return "cy"[x % 2]
    return ("gm" if line % 4 == 1 else "mg")[x % 2]


def picture_of(luma, red_difference, blue_difference, matrix):
    values = (1024 * luma + red_difference * a + blue_difference * b for a, b in matrix)
    return tuple(clamp(value, 0, 255 * 1024) >> 10 for value in values)


def full(samples, divisor):
    """Of (weighted sample, site) pairs; int() truncates toward zero."""
    total = sum(sample for sample, _ in samples)
    red = sum(sample if colour in "my" else -sample for sample, colour in samples)
    blue = sum(sample if colour in "mc" else -sample for sample, colour in samples)
    return picture_of(total // divisor, int(red / divisor), int(blue / divisor), FULL)


def cell(frame, x, y):
    """Beyond the last column the site counts as one of an even column, which it is where it lies."""
    return full([(frame.at(x + i, y + j), site(x + i, y + j)) for j in (0, 1) for i in (0, 1)], 4)


def neighbourhood(frame, x, y):
    return full([((1, 2, 1)[i] * (1, 2, 1)[j] * frame.at(x + i - 1, y + j - 1), site(x + i - 1, y + j - 1))
                 for j in range(3) for i in range(3)], 16)


def binned_pixel(frame, x, y):
    even, odd = (x, x + 1) if x % 2 == 0 else (x + 1, x)
    lines = (y, y + 2) if y % 4 in (0, 3) else (y + 2, y)
    (blue_even, blue_odd), (red_even, red_odd) = ((frame.at(even, n), frame.at(odd, n)) for n in lines)
    luma = (blue_even + blue_odd + red_even + red_odd) >> 2
    return picture_of(luma, int((red_odd - red_even) / 2), int((blue_even - blue_odd) / 2), BINNED)


def flat(lines):
    return [pixel for line in lines for pixel in line]


def to_bgr_2x2(frame):
    """The last lines repeat the last one of a whole block of four; the very last is not written."""
    lines = [[cell(frame, x, y) for x in range(frame.width)] for y in range(frame.height - 4)]
    return flat(lines + lines[-1:] * 3 + [[(0, 0, 0)] * frame.width])


def transform_2x2(frame):
    lines = [[cell(frame, min(x, frame.width - 2), y) for x in range(frame.width)]
             for y in range(frame.height - 1)]
    return flat(lines + lines[-1:])


def to_bgr_3x3(frame):
    return [neighbourhood(frame, clamp(x, 1, frame.width - 2), clamp(y, 1, frame.height - 2))
            for y in range(frame.height) for x in range(frame.width)]


def binned(frame):
    return [binned_pixel(frame, min(x, frame.width - 2), min(y, frame.height - 3))
            for y in range(frame.height) for x in range(frame.width)]


def mono(frame):
    def mean(x, y):
        return sum(frame.at(x + i, y + j) for j in (0, 1) for i in (0, 1)) >> 2

    return [(mean(min(x, frame.width - 2), min(y, frame.height - 2)),) * 3
            for y in range(frame.height) for x in range(frame.width)]
