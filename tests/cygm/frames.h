/// Frames of complementary mosaics, made from the lines of the picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cygm {

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<Bytes>;

/// The frame as a camera stores it: the odd lines of the picture, then the even ones.
inline Bytes stored(const Lines& lines) {
  Bytes frame;
  for (const std::size_t parity : {1U, 0U}) {
    for (std::size_t n = parity; n < lines.size(); n += 2) {
      frame.insert(frame.end(), lines[n].begin(), lines[n].end());
    }
  }
  return frame;
}

inline Lines flat(std::size_t width, std::size_t height, std::uint8_t value) {
  return Lines(height, Bytes(width, value));
}

/// The colour of each site, by line modulo 4 and column modulo 2.
inline constexpr char kSites[4][3] = {"CY", "GM", "CY", "MG"};

struct Sites {
  std::uint8_t c, y, g, m;
};

/// A mosaic in which all sites of a colour hold the same sample.
inline Lines mosaic(std::size_t width, std::size_t height, const Sites& sites) {
  Lines lines = flat(width, height, 0);
  for (std::size_t n = 0; n < height; ++n) {
    for (std::size_t x = 0; x < width; ++x) {
      const char site = kSites[n % 4][x % 2];
      lines[n][x] = site == 'C' ? sites.c : site == 'Y' ? sites.y : site == 'G' ? sites.g : sites.m;
    }
  }
  return lines;
}

/// Whether F(n) of a binned frame gives the blue difference.
inline bool is_blue_line(std::size_t n) { return n % 4 == 0 || n % 4 == 3; }

/// What the lines of the two kinds hold in even and odd columns.
struct Kinds {
  std::uint8_t blue_even, blue_odd, red_even, red_odd;
};

inline Lines binned(std::size_t width, std::size_t height, const Kinds& kinds) {
  Lines lines = flat(width, height, 0);
  for (std::size_t n = 0; n < height; ++n) {
    for (std::size_t x = 0; x < width; ++x) {
      const bool even = x % 2 == 0;
      lines[n][x] = is_blue_line(n) ? even ? kinds.blue_even : kinds.blue_odd
                    : even          ? kinds.red_even
                                    : kinds.red_odd;
    }
  }
  return lines;
}

}  // namespace cygm
