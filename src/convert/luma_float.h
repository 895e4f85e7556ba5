// The luma weights in floating point, for one pixel and for a vector of them.
//
// The bits of the result depend on each rounding: the order of the sums is fixed and no product is fused with
// a sum. White is 254 by the doubles and 255 by the singles, and callers compare frames byte for byte.
#pragma once

#include "pixel/luma.h"
#include "pixel/products.h"
#include "pixel/rgb.h"
#include "pixel/split3.h"

namespace qvn {

using Singles = Lanes<float>;
using Doubles = Lanes<double>;
using HalfDoubleWords = typename VectorOf<int32_t, kLaneBytes / 2>::type;

// T is a number or lanes of it.
template <class T>
constexpr T luma_doubles(T r, T g, T b) {
  return (0.72 * g + 0.21 * r) + 0.07 * b;
}

template <class T>
constexpr T luma_singles(T r, T g, T b) {
  return (r * 0.299F + g * 0.587F) + b * 0.114F;
}

inline uint8_t luma_by_doubles(uint8_t r, uint8_t g, uint8_t b) {
  return static_cast<uint8_t>(static_cast<int32_t>(luma_doubles<double>(r, g, b)));
}

inline uint8_t luma_by_singles(uint8_t r, uint8_t g, uint8_t b) {
  return static_cast<uint8_t>(static_cast<int32_t>(luma_singles<float>(r, g, b)));
}

// Byte `Byte` of each four as a number; with every fourth pixel in one vector, nothing has to be shuffled.
template <int Byte>
inline SignedDoubleWords every_fourth(Bytes v) {
  return as<SignedDoubleWords>((as<DoubleWords>(v) >> (8 * Byte)) & 0xFF);
}

template <int Byte>
inline DoubleWords fourth_luma_by_singles(const Rgb<Bytes>& p) {
  const auto singles = [](Bytes channel) {
    return __builtin_convertvector(every_fourth<Byte>(channel), Singles);
  };
  const Singles luma = luma_singles(singles(p.r), singles(p.g), singles(p.b));
  return as<DoubleWords>(__builtin_convertvector(luma, SignedDoubleWords)) << (8 * Byte);
}

inline Bytes luma_by_singles(const Rgb<Bytes>& p) {
  return as<Bytes>(fourth_luma_by_singles<0>(p) | fourth_luma_by_singles<1>(p) |
                   fourth_luma_by_singles<2>(p) | fourth_luma_by_singles<3>(p));
}

// Lanes of one half of a vector as doubles.
template <int Half>
inline Doubles half_as_doubles(SignedDoubleWords v) {
  return [&]<int... I>(std::integer_sequence<int, I...>) {
    constexpr int kFirst = Half * kLaneCount<Doubles>;
    return __builtin_convertvector(HalfDoubleWords(__builtin_shufflevector(v, v, (kFirst + I)...)), Doubles);
  }
  (std::make_integer_sequence<int, kLaneCount<Doubles>>());
}

template <int Half>
inline HalfDoubleWords half_luma_by_doubles(const Rgb<SignedDoubleWords>& p) {
  const Doubles luma =
      luma_doubles(half_as_doubles<Half>(p.r), half_as_doubles<Half>(p.g), half_as_doubles<Half>(p.b));
  return __builtin_convertvector(luma, HalfDoubleWords);
}

template <int Byte>
inline DoubleWords fourth_luma_by_doubles(const Rgb<Bytes>& p) {
  const Rgb<SignedDoubleWords> fourth{every_fourth<Byte>(p.r), every_fourth<Byte>(p.g),
                                      every_fourth<Byte>(p.b)};
  const HalfDoubleWords low = half_luma_by_doubles<0>(fourth), high = half_luma_by_doubles<1>(fourth);
  const auto both = [&]<int... I>(std::integer_sequence<int, I...>) {
    return SignedDoubleWords(__builtin_shufflevector(low, high, I...));
  }
  (std::make_integer_sequence<int, kLaneCount<SignedDoubleWords>>());
  return as<DoubleWords>(both) << (8 * Byte);
}

inline Bytes luma_by_doubles(const Rgb<Bytes>& p) {
  return as<Bytes>(fourth_luma_by_doubles<0>(p) | fourth_luma_by_doubles<1>(p) |
                   fourth_luma_by_doubles<2>(p) | fourth_luma_by_doubles<3>(p));
}

// Two hundred times the exact luma of a vector of packed pixels R G B, at most 51000, as words in the order
// that narrow_to_bytes undoes, but for in_order.
struct TwoHundredfoldLuma {
  Words first, second;

  // With byte permutations kThreesMargin pixels to either side are touched.
  explicit TwoHundredfoldLuma(const uint8_t* packed) {
    if constexpr (kBytePermutes) {
      const auto weights = constant<SignedBytes, places::in_fours<21, 72, 7, 0>>();
      const auto sums = [=](size_t i) {
        const Bytes pixels = load_threes_as_rgbg(packed + 3 * kFoursPixels * i);
        return multiply_add_pairs(multiply_add_pairs(pixels, weights), SignedWords{} + int16_t{2});
      };
      const auto sum0 = sums(0), sum1 = sums(1), sum2 = sums(2), sum3 = sums(3);
      first = narrow_to_unsigned_words(sum0, sum1);
      second = narrow_to_unsigned_words(sum2, sum3);
    } else {
      const auto [r, g, b] = load_split3(packed);
      const auto weighted = [](Bytes red, Bytes green, Bytes blue) {
        return as<Words>(green) * factor<Words>(144) + as<Words>(red) * factor<Words>(42) +
               as<Words>(blue) * factor<Words>(14);
      };
      constexpr Bytes kZero{};
      first = weighted(interleave_low(r, kZero), interleave_low(g, kZero), interleave_low(b, kZero));
      second = weighted(interleave_high(r, kZero), interleave_high(g, kZero), interleave_high(b, kZero));
    }
  }

  static Bytes in_order(Bytes narrowed) { return kBytePermutes ? in_order_of_fours(narrowed) : narrowed; }
};

// The doubles can only end below the floor of the exact luma where it is whole. (17 % of the whole ones do,
// by the roundings of all three products.) Bit i of `whole` is pixel i's.
struct ExactLuma {
  Bytes floor;
  uint64_t whole;

  explicit ExactLuma(const TwoHundredfoldLuma& luma) {
    // 41944 / 2^16 is 0.64 and 0.000015 more: 128 times the luma with less than one more, so that its lower
    // seven bits are 0 where the luma is whole, and nowhere else.
    const Words factor = Words{} + uint16_t{41944};
    const Words first = multiply_high(luma.first, factor), second = multiply_high(luma.second, factor);
    floor = luma.in_order(narrow_to_bytes(as<SignedWords>(first >> 7), as<SignedWords>(second >> 7)));
    const Bytes rest = narrow_to_bytes(as<SignedWords>(first & 127), as<SignedWords>(second & 127));
    whole = top_bits(as<Bytes>(luma.in_order(rest) == 0));
  }
};

}  // namespace qvn
