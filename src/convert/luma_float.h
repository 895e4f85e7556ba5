// The luma weights in floating point, for one pixel and for a vector of them.
//
// The bits of the result depend on each rounding: the order of the sums is fixed and no product is fused with
// a sum. White is 254 by the doubles and 255 by the singles, and callers compare frames byte for byte.
#pragma once

#include "pixel/products.h"
#include "pixel/rgb.h"

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

inline bool any(Words lanes) {
  const QuadWords quads = as<QuadWords>(lanes);
  uint64_t bits = 0;
  for (int i = 0; i < kLaneCount<QuadWords>; ++i) bits |= quads[i];
  return bits != 0;
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

inline Bytes luma_by_conversion_to_doubles(const Rgb<Bytes>& p) {
  return as<Bytes>(fourth_luma_by_doubles<0>(p) | fourth_luma_by_doubles<1>(p) |
                   fourth_luma_by_doubles<2>(p) | fourth_luma_by_doubles<3>(p));
}

// A hundred times the exact luma is a whole number, at most 25500, so the doubles can only end below its
// floor where it is a multiple of 100. (17 % of the multiples do, by the roundings of all three products.)
struct WholeLuma {
  Words floor, is_multiple;

  explicit WholeLuma(const Rgb<Words>& p) {
    const Words hundredfold = p.g * factor<Words>(72) + p.r * factor<Words>(21) + p.b * factor<Words>(7);
    // 5243 / 2^19 is 0.01 and 0.0000003 more: the floor is right up to 43698.
    floor = as<Words>(multiply_high(as<SignedWords>(hundredfold), SignedWords{} + int16_t{5243})) >> 3;
    is_multiple = as<Words>(floor * factor<Words>(100) == hundredfold);
  }
};

// One colour in a hundred is a multiple, so most vectors of a picture need no doubles; grey ones all do. Half
// the time of doubles throughout where colours are random, a fifth where they are smooth, a tenth more for
// grey.
inline Bytes luma_by_doubles(const Rgb<Bytes>& p) {
  const WholeLuma even({even_bytes(p.r), even_bytes(p.g), even_bytes(p.b)});
  const WholeLuma odd({odd_bytes(p.r), odd_bytes(p.g), odd_bytes(p.b)});
  if (any(even.is_multiple | odd.is_multiple)) return luma_by_conversion_to_doubles(p);
  return as<Bytes>(even.floor | (odd.floor << 8));
}

}  // namespace qvn
