// From a cell's brightness and its two colour differences to red, green and blue:
//
//     channel = ClampShift10((luma << 10) + RedDiff * a + BlueDiff * b)
//
// with luma in 0..255, differences in -127..127 and weights a and b with 10 fraction bits. The products of a
// channel sum to 127 * 6924 at most, 20 bits and a sign, which needs 32-bit lanes; shifted back they fit a
// word. Luma is whole, so that it may be added behind the shift, which rounds down.
#pragma once

#include <algorithm>

#include "pixel/products.h"
#include "pixel/rgb.h"

namespace qvn {

struct CygmWeights {
  int16_t red_diff, blue_diff;
};

struct CygmMatrix {
  CygmWeights r, g, b;
};

// For binned frames, and for mosaic frames. Neither is a multiple of the other.
inline constexpr CygmMatrix CygmBinMatrix = {{4811, 2113}, {-2206, -2161}, {-1261, 5586}};
inline constexpr CygmMatrix CygmFullMatrix = {{2165, 344}, {-917, -1078}, {-959, 4645}};

inline constexpr int kFractionBits = 10;

constexpr uint32_t ClampShift10(int32_t value) {
  return static_cast<uint32_t>(std::clamp(value >> kFractionBits, 0, 255));
}

// Of a cell, or of a vector of them.
template <class T>
struct ColourDifferences {
  T luma, red_diff, blue_diff;
};

inline Rgb<uint32_t> colours_of(const CygmMatrix& matrix, ColourDifferences<int32_t> cell) {
  const auto channel = [cell](CygmWeights weights) {
    return ClampShift10((cell.luma << kFractionBits) + cell.red_diff * weights.red_diff +
                        cell.blue_diff * weights.blue_diff);
  };
  return {channel(matrix.r), channel(matrix.g), channel(matrix.b)};
}

// One channel of a vector of cells, not clamped. The differences come as pairs, red and blue in turn, of the
// lower and of the upper half of each 16-byte block.
inline SignedWords weighted_cells(CygmWeights weights, SignedWords luma, SignedWords low, SignedWords high) {
  const auto red = static_cast<uint16_t>(weights.red_diff), blue = static_cast<uint16_t>(weights.blue_diff);
  const SignedWords pair = as<SignedWords>(DoubleWords{} + (uint32_t{blue} << 16 | red));
  return luma + narrow_to_words(multiply_add_pairs(low, pair) >> kFractionBits,
                                multiply_add_pairs(high, pair) >> kFractionBits);
}

inline Rgb<SignedWords> colours_of(const CygmMatrix& matrix, const ColourDifferences<SignedWords>& cells) {
  const SignedWords low = interleave_low(cells.red_diff, cells.blue_diff);
  const SignedWords high = interleave_high(cells.red_diff, cells.blue_diff);
  return {weighted_cells(matrix.r, cells.luma, low, high), weighted_cells(matrix.g, cells.luma, low, high),
          weighted_cells(matrix.b, cells.luma, low, high)};
}

}  // namespace qvn
