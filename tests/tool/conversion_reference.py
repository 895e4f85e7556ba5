"""The conversions of small frames, written from their formulas, pixel by pixel.

Frames are flat lists of bytes. Results are flat lists as a picture holds them, red first.
"""

import math
import struct


def clamp(value, low=0, high=255):
    return min(max(value, low), high)


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def flat(pixels):
    return [sample for pixel in pixels for sample in pixel]


# YUV. Chroma 128 is zero; int() truncates toward zero.

def yuv_to_rgb(y, u, v):
    """Each chroma term is truncated on its own."""
    u, v = u - 128, v - 128
    return (clamp(y + int(1.4022 * v)), clamp(y + int(-0.3457 * u) + int(-0.7144 * v)),
            clamp(y + int(1.771 * u)))


def yuv_to_rgb_by_sums(y, u, v):
    """Red and blue are truncated as sums with the luma, green as the sum of both chroma terms."""
    u, v = u - 128, v - 128
    return (int(clamp(y + v * 1.4022)), clamp(y + int(clamp(u * -0.3457 - v * 0.7144, -128, 127))),
            int(clamp(y + u * 1.771)))


LAYOUTS = {"yuv444": "UYV", "uyvy": "UYVY", "uyyvyy411": "UYYVYY"}


def yuv_pixels(layout, data):
    """(y, u, v) of each pixel."""
    pixels = []
    for start in range(0, len(data), len(layout)):
        group = data[start:start + len(layout)]
        u, v = group[layout.index("U")], group[layout.index("V")]
        pixels += [(group[i], u, v) for i, part in enumerate(layout) if part == "Y"]
    return pixels


# Grey of 16 bits and RGB.

def grey16(word, bits, low):
    """Blue, green, red: the bit below the cut pushes red, the next one blue."""
    shift = bits - 8 if low else 8
    byte = word >> shift & 255
    push_red = shift >= 1 and word >> (shift - 1) & 1
    push_blue = shift >= 2 and word >> (shift - 2) & 1
    if byte == 255:
        return byte, byte, byte
    return byte + bool(push_blue), byte, byte + bool(push_red)


def luma_double(r, g, b):
    return int((0.72 * g + 0.21 * r) + 0.07 * b)


def luma_single(r, g, b):
    red, green, blue = (single(c * single(w)) for c, w in ((r, 0.299), (g, 0.587), (b, 0.114)))
    return int(single(single(red + green) + blue))


# Mosaics.

class Mosaic:
    def __init__(self, data, width, height, pattern):
        self.data, self.width, self.height, self.pattern = data, width, height, pattern

    def at(self, x, y):
        return self.data[y * self.width + x]

    def colour(self, x, y):
        return self.pattern[y % 2 * 2 + x % 2]

    def window(self, x, y):
        """Red, green, blue of the window whose top left sample is (x, y)."""
        found = {"r": [], "g": [], "b": []}
        for down in (0, 1):
            for across in (0, 1):
                found[self.colour(x + across, y + down)].append(self.at(x + across, y + down))
        return found["r"][0], sum(found["g"]) // 2, found["b"][0]

    def bilinear(self, x, y):
        def mean(*places):
            return sum(self.at(x + dx, y + dy) for dx, dy in places) // len(places)

        north, south, west, east = (0, -1), (0, 1), (-1, 0), (1, 0)
        own, aside = self.at(x, y), self.colour(x + 1, y)
        if self.colour(x, y) == "g":
            green = (2 * own + self.at(x - 1, y + 1) + self.at(x + 1, y - 1)) // 4
            on_line, across = mean(west, east), mean(north, south)
            return (on_line, green, across) if aside == "r" else (across, green, on_line)
        green, corners = mean(north, south, west, east), mean((-1, -1), (1, -1), (-1, 1), (1, 1))
        return (own, green, corners) if self.colour(x, y) == "r" else (corners, green, own)


def demosaic_2x2(mosaic):
    lines = []
    for y in range(mosaic.height - 1):
        line = [mosaic.window(x, y) for x in range(mosaic.width - 1)]
        lines.append(line + line[-1:])
    return [pixel for line in lines + lines[-1:] for pixel in line]


def demosaic_3x3(mosaic):
    lines = []
    for y in range(1, mosaic.height - 1):
        line = [mosaic.bilinear(x, y) for x in range(1, mosaic.width - 1)]
        lines.append(line[:1] + line + line[-1:])
    return [pixel for line in lines[:1] + lines + lines[-1:] for pixel in line]


def to_yuv(r, g, b):
    return ((77 * r + 150 * g + 29 * b) >> 8, ((128 * b - 85 * g - 43 * r) >> 8) + 128,
            ((128 * r - 107 * g - 21 * b) >> 8) + 128)


def chroma_of_pairs(pixels, _):
    return [tuple((pixels[a][c] + pixels[a + 1][c]) // 2 for c in (1, 2)) for a in range(0, len(pixels), 2)]


def chroma_lcaa(pixels, _):
    return [tuple(sum(pixel[c] for pixel in pixels[a:a + 4]) // 4 for c in (1, 2))
            for a in range(0, len(pixels) - 4, 2)]


def chroma_lcaav(pixels, width):
    pairs, lines = len(pixels) // 2, len(pixels) // width
    first_upward = (lines - 1) * width // 2 - 1
    chroma = []
    for q in range(pairs - 2):
        a = 2 * q
        other = a + width if q < first_upward else a - width
        taps = [pixels[max(a - 1, 0)]] + pixels[a:a + 3] + [pixels[other + i] for i in (-1, 0, 1, 2)]
        chroma.append(tuple((sum(tap[c] for tap in taps) + 4) // 8 for c in (1, 2)))
    return chroma + [pixels[2 * q][1:] for q in (pairs - 2, pairs - 1)]


def through_yuv(filter_chroma):
    def demosaic(mosaic):
        frame = [to_yuv(*pixel) for pixel in demosaic_2x2(mosaic)]
        picture = []
        for start in (0, len(frame) // 2):
            half = frame[start:start + len(frame) // 2]
            groups = [(half[2 * q][0], half[2 * q + 1][0], *chroma)
                      for q, chroma in enumerate(filter_chroma(half, mosaic.width))]
            # Pairs that a filter leaves out repeat the one before, luma and all.
            groups += groups[-1:] * (len(half) // 2 - len(groups))
            picture += [yuv_to_rgb(y, u, v) for first, second, u, v in groups for y in (first, second)]
        return picture
    return demosaic


METHODS = {"2x2": demosaic_2x2, "3x3": demosaic_3x3, "yuv422": through_yuv(chroma_of_pairs),
           "lcaa": through_yuv(chroma_lcaa), "lcaav": through_yuv(chroma_lcaav)}


# Charts: BT.601 over the full range, chroma the mean of the group's pixels.

def chart_yuv(layout, scene):
    pixels = []
    for start in range(0, len(scene), 3):
        r, g, b = (clamp(channel, 0.0, 1.0) for channel in scene[start:start + 3])
        y = 0.299 * r + 0.587 * g + 0.114 * b
        pixels.append((y, (b - y) / 1.772, (r - y) / 1.402))
    count, data = layout.count("Y"), []
    for start in range(0, len(pixels), count):
        group = pixels[start:start + count]
        lumas = iter(math.floor(pixel[0] * 255 + 0.5) for pixel in group)
        for part in layout:
            if part == "Y":
                data.append(next(lumas))
            else:
                mean = sum(pixel["YUV".index(part)] for pixel in group) / count
                data.append(math.floor(min(mean * 255 + 128, 255) + 0.5))
    return data


def chart_grey(scene, top):
    channels = [clamp(channel, 0.0, 1.0) for channel in scene]
    return [math.floor((0.299 * r + 0.587 * g + 0.114 * b) * top + 0.5)
            for r, g, b in zip(channels[::3], channels[1::3], channels[2::3])]
