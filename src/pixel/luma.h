// The integer luma weights. Each set sums to 256: a weighted byte fits 16 bits without a carry
// (255 * 256 + 128 < 65536) and the result needs no clamp. T is an integer or a vector of 16- or 32-bit
// lanes.
#pragma once

#include "pixel/fours.h"
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

// And of red and blue where a mosaic has them: what lies beside them weighs nothing, so that no byte has to
// be moved.
template <int Odd, int Red, int Green, int Blue, uint16_t Rounding>
inline Bytes weighted_luma(const SitePairs<Odd>& p) {
  constexpr int kOwn = Odd == 0 ? Red : Blue, kShared = Odd == 0 ? Blue : Red;
  const auto lower = as<SignedBytes>(factor<Words>(kOwn)), upper = as<SignedBytes>(factor<Words>(kOwn << 8));
  const Words green = factor<Words>(Green);
  const auto shared = as<Words>(multiply_add_pairs(p.shared, as<SignedBytes>(factor<Words>(kShared << 8))) +
                                int16_t{Rounding});
  return join_top_bytes(as<Words>(multiply_add_pairs(p.even, lower)) + shared + p.even_green * green,
                        as<Words>(multiply_add_pairs(p.odd, upper)) + shared + p.odd_green * green);
}

template <int Odd>
inline Bytes luma_77_150_29(const SitePairs<Odd>& p) {
  return weighted_luma<Odd, 77, 150, 29, 0>(p);
}

template <int Odd>
inline Bytes luma_54_184_18(const SitePairs<Odd>& p) {
  return weighted_luma<Odd, 54, 184, 18, 128>(p);
}

namespace places {
// Four weights in turn.
template <int First, int Second, int Third, int Fourth>
constexpr int in_fours(int i) {
  return i % 4 == 0 ? First : i % 4 == 1 ? Second : i % 4 == 2 ? Third : Fourth;
}
}  // namespace places

// And of packed pixels R G B, or R G B A, where they lie: `channels(i)` has the pixels of fours.h's vector i
// as R G B G. Green's weight is parted so that each pair of channels weighs 128, and its sum fits a signed
// word.
template <int Red, int Blue, uint16_t Rounding, class Channels>
inline Bytes weighted_luma_of_fours(const Channels& channels) {
  const auto weights = constant<SignedBytes, places::in_fours<Red, 128 - Red, Blue, 128 - Blue>>();
  const auto sums = [&](size_t i) {
    return multiply_add_pairs(multiply_add_pairs(channels(i), weights), SignedWords{} + int16_t{1});
  };
  const auto luma = [](Words sum) { return as<SignedWords>((sum + Rounding) >> 8); };
  // One after another, as memory is read: g++ takes arguments from the last one on, and reading backwards
  // takes up to a fifth longer beyond the second cache.
  const auto first = sums(0), second = sums(1), third = sums(2), fourth = sums(3);
  return in_order_of_fours(narrow_to_bytes(luma(narrow_to_unsigned_words(first, second)),
                                           luma(narrow_to_unsigned_words(third, fourth))));
}

template <class Channels>
inline Bytes luma_77_150_29_of_fours(const Channels& channels) {
  return weighted_luma_of_fours<77, 29, 0>(channels);
}

template <class Channels>
inline Bytes luma_54_184_18_of_fours(const Channels& channels) {
  return weighted_luma_of_fours<54, 18, 128>(channels);
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
