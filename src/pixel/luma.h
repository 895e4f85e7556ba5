// The integer luma weights. Each set sums to 256: a weighted byte fits 16 bits without a carry
// (255 * 256 + 128 < 65536) and the result needs no clamp. T is an integer or a vector of 16- or 32-bit
// lanes.
#pragma once

#include "pixel/products.h"
#include "pixel/rgb.h"

namespace qvn {

// First set, the default; rounds down.
template <class T>
constexpr T luma_77_150_29(T r, T g, T b) {
  return (r * 77 + g * 150 + b * 29) >> 8;
}

// Second set; rounds to nearest. 54 * r + 18 * b is taken as 18 * (3 * r + b).
template <class T>
constexpr T luma_54_184_18(T r, T g, T b) {
  return (g * 184 + (r * 3 + b) * 18 + 128) >> 8;
}

// The same of a vector of pixels, as bytes: the sums hold their results in bits 15..8, which is where the odd
// bytes belong.
inline Bytes luma_77_150_29(RgbPairs p) {
  const Words red = factor<Words>(77), green = factor<Words>(150), blue = factor<Words>(29);
  const Words even = p.even.r * red + p.even.g * green + p.even.b * blue;
  const Words odd = p.odd.r * red + p.odd.g * green + p.odd.b * blue;
  return join_top_bytes(even, odd);
}

inline Bytes luma_54_184_18(RgbPairs p) {
  const Words red = factor<Words>(54), green = factor<Words>(184), blue = factor<Words>(18);
  const Words even = p.even.r * red + p.even.g * green + p.even.b * blue + 128;
  const Words odd = p.odd.r * red + p.odd.g * green + p.odd.b * blue + 128;
  return join_top_bytes(even, odd);
}

// And of a vector of pixels that are at hand as bytes. Red and blue have factors that fit a signed byte, so
// that one instruction weighs both.
template <int Red, int Green, int Blue, uint16_t Rounding>
inline Bytes weighted_luma(const Rgb<Bytes>& p) {
  const SignedBytes red_blue = as<SignedBytes>(factor<Words>(Blue << 8 | Red));
  const auto weighted = [&](Bytes rb, Bytes g) {
    const Words sum = as<Words>(multiply_add_pairs(rb, red_blue)) + as<Words>(g) * factor<Words>(Green);
    return as<SignedWords>((sum + Rounding) >> 8);
  };
  return narrow_to_bytes(weighted(interleave_low(p.r, p.b), interleave_low(p.g, Bytes{})),
                         weighted(interleave_high(p.r, p.b), interleave_high(p.g, Bytes{})));
}

namespace places {
// Double word k of 16-byte block j, which two narrowings put there, is number k * blocks + j.
constexpr int collect_from_blocks(int i) {
  constexpr int kBlocks = kLaneBytes / 16;
  return i % kBlocks * 4 + i / kBlocks;
}
// Of channels R G B and a fourth byte that weighs nothing.
template <int Red, int Green, int Blue>
constexpr int weight_in_four(int i) {
  return i % 4 == 0 ? Red : i % 4 == 1 ? Green : i % 4 == 2 ? Blue : 0;
}
}  // namespace places

// And of a vector of pixels R G B A where they lie. Less 128, a channel is a signed byte, and the sum of red
// and green fits a signed word; the whole sum is 128 * 256 less, and fits one, too.
template <int Red, int Green, int Blue, uint16_t Rounding>
inline Bytes weighted_luma_of_fours(const uint8_t* from) {
  static_assert(Red + Green + Blue == 256 && (Red + Green) * 128 <= 32768);
  const Bytes weights = constant<Bytes, places::weight_in_four<Red, Green, Blue>>();
  const auto sums = [=](int i) {
    const Bytes channels = load<Bytes>(from + i * kLaneBytes) ^ 0x80;
    const SignedWords pairs = multiply_add_pairs(weights, as<SignedBytes>(channels));
    return multiply_add_pairs(pairs, SignedWords{} + int16_t{1});
  };
  const auto luma = [](SignedWords sum) {
    return as<SignedWords>((as<Words>(sum) + uint16_t{0x8000 + Rounding}) >> 8);
  };
  const Bytes dealt =
      narrow_to_bytes(luma(narrow_to_words(sums(0), sums(1))), luma(narrow_to_words(sums(2), sums(3))));
  return as<Bytes>(shuffle<places::collect_from_blocks>(as<DoubleWords>(dealt)));
}

inline Bytes luma_77_150_29_of_fours(const uint8_t* from) {
  return weighted_luma_of_fours<77, 150, 29, 0>(from);
}

inline Bytes luma_54_184_18_of_fours(const uint8_t* from) {
  return weighted_luma_of_fours<54, 184, 18, 128>(from);
}

inline Bytes luma_77_150_29(const Rgb<Bytes>& p) {
  if constexpr (!kBytePermutes) return luma_77_150_29(pairs_of_bytes(p));
  return weighted_luma<77, 150, 29, 0>(p);
}

inline Bytes luma_54_184_18(const Rgb<Bytes>& p) {
  if constexpr (!kBytePermutes) return luma_54_184_18(pairs_of_bytes(p));
  return weighted_luma<54, 184, 18, 128>(p);
}

}  // namespace qvn
