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

// Of a colour whose exact luma is whole: whether the doubles end below it.
inline bool is_below_whole(uint8_t r, uint8_t g, uint8_t b) {
  const int whole = (72 * g + 21 * r + 7 * b) / 100;
  return luma_doubles<double>(r, g, b) < whole;
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

// A hundred times the exact luma of a vector of packed pixels R G B: words of the lower half of each 16-byte
// block, and of the upper half. At most 25500.
struct HundredfoldLuma {
  SignedWords low, high;
};

namespace places {
// Four pixels of three bytes, from byte `First` of a block on, four bytes apart. The fourth ones are any.
//
//     r0 g0 b0 r1 g1 b1 r2 g2 b2 r3 g3 b3 . . . .    ->    r0 g0 b0 . r1 g1 b1 . r2 g2 b2 . r3 g3 b3 .
template <int First>
constexpr int four_apart(int i) {
  return i / 16 * 16 + First + i % 16 / 4 * 3 + (i % 4 == 3 ? 2 : i % 4);
}
}  // namespace places

// Of pixels 4 * Quarter to 4 * Quarter + 3 of each 16. The last quarter's bytes end their load, since nothing
// behind the pixels may be read.
template <int Quarter>
inline SignedDoubleWords hundredfold_of_quarters(const uint8_t* packed) {
  constexpr int kFirst = Quarter == 3 ? 4 : 0;
  const Bytes spaced = shuffle<places::four_apart<kFirst>>(load_blocks<48>(packed + 12 * Quarter - kFirst));
  const SignedWords pairs =
      multiply_add_pairs(spaced, constant<SignedBytes, places::weight_in_four<21, 72, 7>>());
  return multiply_add_pairs(pairs, SignedWords{} + int16_t{1});
}

inline HundredfoldLuma hundredfold_luma(const uint8_t* packed) {
  if constexpr (kBytePermutes) {
    return {narrow_to_words(hundredfold_of_quarters<0>(packed), hundredfold_of_quarters<1>(packed)),
            narrow_to_words(hundredfold_of_quarters<2>(packed), hundredfold_of_quarters<3>(packed))};
  } else {
    const auto [r, g, b] = load_split3(packed);
    const auto weighted = [](Bytes red, Bytes green, Bytes blue) {
      return as<SignedWords>(as<Words>(green) * factor<Words>(72) + as<Words>(red) * factor<Words>(21) +
                             as<Words>(blue) * factor<Words>(7));
    };
    constexpr Bytes kZero{};
    return {weighted(interleave_low(r, kZero), interleave_low(g, kZero), interleave_low(b, kZero)),
            weighted(interleave_high(r, kZero), interleave_high(g, kZero), interleave_high(b, kZero))};
  }
}

// The doubles can only end below the floor of the exact luma where it is whole. (17 % of the whole ones do,
// by the roundings of all three products.) Bit i of `whole` is pixel i's.
struct ExactLuma {
  Bytes floor;
  uint64_t whole;

  explicit ExactLuma(const HundredfoldLuma& hundredfold) {
    // 5243 / 2^19 is 0.01 and 0.0000003 more: the floor is right up to 43698.
    const auto hundredth = [](SignedWords v) { return multiply_high(v, SignedWords{} + int16_t{5243}) >> 3; };
    const SignedWords low = hundredth(hundredfold.low), high = hundredth(hundredfold.high);
    const SignedWords hundred = factor<SignedWords>(100);
    const Bytes rest = narrow_to_bytes(hundredfold.low - low * hundred, hundredfold.high - high * hundred);
    floor = narrow_to_bytes(low, high);
    whole = top_bits(as<Bytes>(rest == 0));
  }
};

}  // namespace qvn
