"""The colour corrections of the library, rule by rule, and those of the tool.

A rule takes red, green and blue and gives them back; `bits` are those of a channel that comes out.
"""

import math

import conversion_reference as reference
import transform_reference as transform
from conversion_reference import clamp, single


def wrap(value, bits):
    """Truncated toward zero; high bits fall off."""
    return math.trunc(value) & ((1 << bits) - 1)


def row_float(row, r, g, b):
    return single(single(single(r * row[0]) + single(g * row[1])) + single(b * row[2]))


def rows_of(matrix):
    matrix = [single(entry) for entry in matrix]
    return matrix[:3], matrix[3:6], matrix[6:]


def matrix_float(matrix, bits):
    rows = rows_of(matrix)
    return lambda r, g, b: tuple(wrap(row_float(row, r, g, b), bits) for row in rows)


def fixed(matrix):
    """Ten fraction bits, truncated."""
    return rows_of([math.trunc(single(single(entry) * 1024)) for entry in matrix])


def signed(value, bits):
    value &= (1 << bits) - 1
    return value - (1 << bits) if value >> (bits - 1) else value


def matrix_fixed_8(matrix):
    """In 16 bits, so that a product keeps six bits of a level."""
    rows = fixed(matrix)

    def correct(r, g, b):
        sums = (signed(int(r * row[0] + g * row[1] + b * row[2]), 16) >> 10 for row in rows)
        return tuple(max(value, 0) for value in sums)
    return correct


def clamp_16(value, bits):
    """Beyond 16 bits it stops, whatever the channel holds."""
    if 0 <= value < 65536:
        return value & ((1 << bits) - 1)
    return 0 if value < 0 else (1 << bits) - 1


def row_fixed(row, r, g, b):
    return signed(int(r * row[0] + g * row[1] + b * row[2]), 32) >> 10


def matrix_fixed_16(matrix, bits):
    rows = fixed(matrix)
    return lambda r, g, b: tuple(clamp_16(row_fixed(row, r, g, b), bits) for row in rows)


def power(exponent, top, bits):
    exponent = single(exponent)

    def level(value):
        lifted = single(single(value / top) ** exponent)
        return wrap(single(lifted * top) + 0.5, bits)
    return level


def gamma(exponent, top, bits):
    level = power(exponent, top, bits)
    return lambda r, g, b: (level(r), level(g), level(b))


def gamma_then_matrix(exponent, top, matrix, bits):
    first, then = gamma(exponent, top, bits), matrix_float(matrix, bits)
    return lambda r, g, b: then(*first(r, g, b))


def table(levels):
    return lambda r, g, b: (levels[r], levels[g], levels[b])


# Frames.


def every_pixel_once(mosaic, rule):
    return [rule(*pixel) for pixel in reference.demosaic_2x2(mosaic)]


def kept_channel(pattern):
    """Of the second pixel of a pair: the one whose site lies in odd columns of the window's first one."""
    return 0 if transform.red_in_odd_columns(pattern) else 2


def corrected_bgr16(mosaic, shift, rule):
    """The second pixel of a pair takes the kept channel from what was made of the first one."""
    kept, lines = kept_channel(mosaic.pattern), []
    for windows in transform.shifted_windows(mosaic, shift):
        line = []
        for x, window in enumerate(windows):
            if x % 2 == 1:
                window = list(window)
                window[kept] = line[-1][kept]
            line.append(rule(*window))
        lines.append(line)
    return transform.with_repeated_ends(lines)


def corrected_y16(mosaic, shift, rule, keep):
    """Without a shift each pixel on its own. With one, only the kept channel of a second pixel is corrected:
    keep(channel, first, value) makes it of what was made of the first pixel and of its own level."""
    kept, lines = kept_channel(mosaic.pattern), []
    for windows in transform.shifted_windows(mosaic, shift):
        line, first = [], None
        for x, window in enumerate(windows):
            if x % 2 == 0 or shift == 0:
                first = rule(*window)
                line.append(transform.luma_of_words(*first))
            else:
                window = list(window)
                window[kept] = keep(kept, first, window[kept])
                line.append(transform.luma_of_words(*window))
        lines.append(line)
    return transform.with_repeated_ends(lines)


def mixed(first, channel, value):
    """The first pixel's channels but for one."""
    return [value if i == channel else level for i, level in enumerate(first)]


def keep_by_float(matrix):
    rows = rows_of(matrix)
    return lambda channel, first, value: wrap(row_float(rows[channel], *mixed(first, channel, value)), 16)


def keep_by_fixed(matrix):
    rows = fixed(matrix)
    return lambda channel, first, value: clamp_16(row_fixed(rows[channel], *mixed(first, channel, value)), 16)


def keep_by_level(level):
    return lambda channel, first, value: level(value)


def keep_by_gamma_then_matrix(exponent, top, matrix):
    level, rows = power(exponent, top, 16), rows_of(matrix)
    return lambda channel, first, value: wrap(
        row_float(rows[channel], *(level(part) for part in mixed(first, channel, value))), 16)


# The tool's own.


def rounded(value, top):
    return clamp(math.floor(value + 0.5), 0, top)


def balanced(samples, colours, black, gains, top):
    """Gains by colour, or None: those that bring the means to the highest of them."""
    lit = [max(sample - black, 0) for sample in samples]
    if gains is None:
        means = {}
        for colour in "rgb":
            chosen = [value for value, name in zip(lit, colours) if name == colour]
            means[colour] = sum(chosen) / len(chosen)
        gains = {colour: max(means.values()) / mean for colour, mean in means.items()}
    return [rounded(value * gains[name], top) for value, name in zip(lit, colours)]


def matrix_clamped(matrix, top):
    rows = rows_of(matrix)
    return lambda r, g, b: tuple(rounded(r * row[0] + g * row[1] + b * row[2], top) for row in rows)
