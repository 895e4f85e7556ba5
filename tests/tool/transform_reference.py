"""Mosaics of more than 8 bits and the functions that offer several targets, written from their formulas.

Pictures are lists of pixels, red first, as in conversion_reference.
"""

import conversion_reference as reference

# Targets. Weights of two standards; the second one rounds.


def luma_601(r, g, b):
    return (77 * r + 150 * g + 29 * b) >> 8


def luma_709(r, g, b):
    return (184 * g + 18 * (3 * r + b) + 128) >> 8


def studio(pixels):
    """U, Y, V, Y of each pair; a pair's chroma is the mean of its two, cut."""
    data = []
    for pair in zip(pixels[::2], pixels[1::2]):
        lumas = [((129 * g + 25 * b + 66 * r + 128) >> 8) + 16 for r, g, b in pair]
        us = [((112 * b - 74 * g - 38 * r + 128) >> 8) + 128 for r, g, b in pair]
        vs = [((112 * r - 94 * g - 18 * b + 128) >> 8) + 128 for r, g, b in pair]
        data += [sum(us) >> 1, lumas[0], sum(vs) >> 1, lumas[1]]
    return data


def to_target(target, pixels):
    """The samples of the picture that shows it; the bytes themselves for uyvy."""
    if target == "uyvy":
        return studio(pixels)
    if target in ("bgr", "bgr16"):
        return reference.flat(pixels)
    if target == "bgra":
        return reference.flat((*pixel, 255) for pixel in pixels)
    weigh = luma_709 if target.endswith("709") else luma_601
    return [weigh(*pixel) for pixel in pixels]


def library_bytes(target, samples, order="little"):
    """What the library itself writes: blue first, words in the machine's order."""
    channels = {"bgr": 3, "bgra": 4, "bgr16": 3, "planes": 1}.get(target, 1)
    if channels > 1:
        samples = [samples[start + i] for start in range(0, len(samples), channels)
                   for i in (2, 1, 0, 3)[:channels]]
    if target in ("bgr16", "y16", "y16-709"):
        return b"".join(sample.to_bytes(2, order) for sample in samples)
    return bytes(samples)


# Two samples of 12 bits in three bytes.


def pack12(samples):
    return reference.flat((even >> 4, (even & 15) | (odd & 15) << 4, odd >> 4)
                          for even, odd in zip(samples[::2], samples[1::2]))


def pack12p(samples):
    return reference.flat((even & 255, even >> 8 | (odd & 15) << 4, odd >> 4)
                          for even, odd in zip(samples[::2], samples[1::2]))


def pack12csi2(samples):
    return reference.flat((even >> 4, odd >> 4, (even & 15) | (odd & 15) << 4)
                          for even, odd in zip(samples[::2], samples[1::2]))


# Mosaics.


def last_line_half_written(pixels, width):
    """The last line gets as many bytes as one of 8 bits a channel has; the rest of the buffer stays black."""
    return pixels[:-(width // 2)] + [(0, 0, 0)] * (width // 2)


def black_last_column(pixels, width):
    return [(0, 0, 0) if i % width == width - 1 else pixel for i, pixel in enumerate(pixels)]


def shifted_windows(mosaic, shift):
    """Windows of the lines but for the last one, the last two columns too; low bytes of greens are added
    before they lose bits. The window of a sum beyond its sensor is never looked at."""
    def green(x, y):
        pair = [mosaic.at(x + i, y + j) for j in (0, 1) for i in (0, 1) if mosaic.colour(x + i, y + j) == "g"]
        low, high = sum(v & 255 for v in pair), sum(v >> 8 for v in pair)
        return ((low >> shift) + (high << (8 - shift)) >> 1) & 65535

    lines = []
    for y in range(mosaic.height - 1):
        line = []
        for x in range(mosaic.width - 2):
            red, _, blue = mosaic.window(x, y)
            line.append((red >> shift, green(x, y), blue >> shift) if shift <= 8 else (0, 0, 0))
        lines.append(line)
    return lines


def with_repeated_ends(lines):
    """The last two columns repeat the one before them, the last line the one above."""
    lines = [line + line[-1:] * 2 for line in lines]
    return [pixel for line in lines + lines[-1:] for pixel in line]


def luma_of_words(r, g, b):
    """Blue weighs less than elsewhere."""
    return (77 * r + 150 * g + 21 * b) >> 8


def red_in_odd_columns(pattern):
    return pattern.index("r") % 2 == 1


def transform_2x2(mosaic):
    """As 2x2, but red and blue change places in the last column but one of half of the orders."""
    pixels = reference.demosaic_2x2(mosaic)
    if red_in_odd_columns(mosaic.pattern):
        for i in range(mosaic.width - 2, len(pixels), mosaic.width):
            pixels[i] = pixels[i][::-1]
    return pixels


def transform_3x3(mosaic):
    """As 3x3, but red and blue change places in the greens of red lines of half of the orders."""
    if not red_in_odd_columns(mosaic.pattern):
        return reference.demosaic_3x3(mosaic)

    class Exchanging(reference.Mosaic):
        def bilinear(self, x, y):
            pixel = super().bilinear(x, y)
            exchanged = self.colour(x, y) == "g" and self.colour(x + 1, y) == "r"
            return pixel[::-1] if exchanged else pixel

    return reference.demosaic_3x3(Exchanging(mosaic.data, mosaic.width, mosaic.height, mosaic.pattern))


RAW8 = {"transform": transform_2x2, "transform-3x3": transform_3x3,
        **{"transform-" + name: reference.METHODS[name] for name in ("yuv422", "lcaa", "lcaav")}}


def level_up(word, bits, low):
    """The sample's top bit becomes the word's; what lies above it falls off."""
    return word << (16 - bits) & 65535 if low else word
