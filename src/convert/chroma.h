// What a pixel's chroma adds to its luma: the two sets of YUV arithmetic, each as the tables give it for one
// pixel and, without tables, for a vector of them. Both are equal for every Y, U and V, which the tests run
// through.
//
// Vectors take luma as words and chroma as words of 4 * (chroma - 128), and give colours as words that are
// still to be clamped to a byte.
#pragma once

#include "convert/yuv_tables.h"
#include "pixel/products.h"
#include "pixel/rgb.h"

namespace qvn {

using Singles = Lanes<float>;

// (4 * c * factor) >> 16 with these factors is the floor of c times the constant, for all c = -128 .. 127.
// Only 0 gives a whole number, so below it truncation toward zero is the floor and one.
inline constexpr int16_t kFactorBlueFromU = 29015;   // 1.771 * 65536 / 4
inline constexpr int16_t kFactorRedFromV = 22974;    // 1.4022
inline constexpr int16_t kFactorGreenFromU = 5664;   // 0.3457
inline constexpr int16_t kFactorGreenFromV = 11710;  // 0.7144

namespace places {
template <int Even, int Odd>
constexpr int alternate(int i) {
  return i % 2 == 0 ? Even : Odd;
}
}  // namespace places

// Words that serve U V U V ...
template <int ForU, int ForV>
inline SignedWords alternating() {
  return constant<SignedWords, places::alternate<ForU, ForV>>();
}

inline SignedWords all_words(int16_t value) { return SignedWords{} + value; }

// Bytes to words of 4 * (byte - 128): as the upper bytes of words, with the sign bit turned, they are signed.
// (A byte by 4 less 512 in one product and a difference is no faster: products wait for the same ports.)
inline SignedWords chroma_low(Bytes chroma) {
  return as<SignedWords>(interleave_low(Bytes{}, chroma ^ 0x80)) >> 6;
}
inline SignedWords chroma_high(Bytes chroma) {
  return as<SignedWords>(interleave_high(Bytes{}, chroma ^ 0x80)) >> 6;
}
inline SignedWords chroma_even(Bytes chroma) {
  return as<SignedWords>((as<Words>(chroma) << 8) ^ 0x8000) >> 6;
}
inline SignedWords chroma_odd(Bytes chroma) {
  return as<SignedWords>((as<Words>(chroma) & 0xFF00) ^ 0x8000) >> 6;
}

inline SignedWords luma_low(Bytes luma) { return as<SignedWords>(interleave_low(luma, Bytes{})); }
inline SignedWords luma_high(Bytes luma) { return as<SignedWords>(interleave_high(luma, Bytes{})); }
inline SignedWords luma_even(Bytes luma) { return as<SignedWords>(even_bytes(luma)); }
inline SignedWords luma_odd(Bytes luma) { return as<SignedWords>(odd_bytes(luma)); }

inline SignedWords clamp_words(SignedWords v, int16_t low, int16_t high) {
  const SignedWords lowest = all_words(low), highest = all_words(high);
  const SignedWords at_least = v > lowest ? v : lowest;
  return at_least < highest ? at_least : highest;
}

// Each chroma term truncated toward zero on its own, then the sum.
struct PackedChroma {
  static Rgb<uint32_t> pixel(uint8_t y, uint8_t u, uint8_t v) {
    const uint32_t from_u = UTable[u], from_v = VTable[v];
    return {clamp(y + high_half(from_v)), clamp(y + (low_half(from_u) + low_half(from_v))),
            clamp(y + high_half(from_u))};
  }

  // What U and V add to luma 0, not clamped.
  static Rgb<SignedWords> offsets(SignedWords u, SignedWords v) {
    const SignedWords u_below = u >> 15, v_below = v >> 15;  // -1 where true
    const SignedWords green_u = multiply_high(u, all_words(kFactorGreenFromU)) - u_below;
    const SignedWords green_v = multiply_high(v, all_words(kFactorGreenFromV)) - v_below;
    return {multiply_high(v, all_words(kFactorRedFromV)) - v_below, -(green_u + green_v),
            multiply_high(u, all_words(kFactorBlueFromU)) - u_below};
  }

  // Every pixel with a U and a V of its own.
  static Rgb<SignedWords> colours(SignedWords y, SignedWords u, SignedWords v) {
    const Rgb<SignedWords> add = offsets(u, v);
    return {y + add.r, y + add.g, y + add.b};
  }

  // Pixels in pairs, with their U and V in one vector:  Y0 Y1 Y2 Y3 ..  and  U0 V0 U2 V2 ..
  static Rgb<SignedWords> colours_of_pairs(SignedWords y, SignedWords uv) {
    const SignedWords below = uv >> 15;
    const SignedWords main = multiply_high(uv, alternating<kFactorBlueFromU, kFactorRedFromV>()) - below;
    const SignedWords green = multiply_high(uv, alternating<kFactorGreenFromU, kFactorGreenFromV>()) - below;
    return {y + shuffle<places::second_of_pair>(main), y - (green + shuffle<places::other_of_pair>(green)),
            y + shuffle<places::first_of_pair>(main)};
  }

 private:
  static uint32_t clamp(int32_t value) {
    return static_cast<uint32_t>(value < 0 ? 0 : value > 255 ? 255 : value);
  }
};

// The sum truncated as a whole: once it is clamped that is the floor of the chroma term. The green of U and V
// is made before Y is added.
struct PlaneChroma {
  static Rgb<uint32_t> pixel(uint8_t y, uint8_t u, uint8_t v) {
    const size_t line = size_t{y} * 256;
    return {PlaneRTable[line + v], PlaneGTable[line + PlaneGDeltaTable[size_t{u} * 256 + v]],
            PlaneBTable[line + u]};
  }

  static Rgb<SignedWords> colours(SignedWords y, SignedWords u, SignedWords v) {
    const SignedWords delta =
        narrow_to_words(green_delta(interleave_low(u, v)), green_delta(interleave_high(u, v)));
    return {y + multiply_high(v, all_words(kFactorRedFromV)), y + clamp_to_signed_byte(delta),
            y + multiply_high(u, all_words(kFactorBlueFromU))};
  }

  static Rgb<SignedWords> colours_of_pairs(SignedWords y, SignedWords uv) {
    const SignedWords main = multiply_high(uv, alternating<kFactorBlueFromU, kFactorRedFromV>());
    const SignedWords delta = shuffle<places::first_of_pair>(as<SignedWords>(green_delta(uv)));
    return {y + shuffle<places::second_of_pair>(main), y + clamp_to_signed_byte(delta),
            y + shuffle<places::first_of_pair>(main)};
  }

 private:
  // trunc(-0.3457 * u - 0.7144 * v) of pairs U V. The sum of the products, 40000 times the value, is exact in
  // a single (below 2^23), and 1 / 10000 is the least distance from a whole number where it is none: far more
  // than one product in singles loses.
  static SignedDoubleWords green_delta(SignedWords uv) {
    const SignedDoubleWords sum = multiply_add_pairs(uv, alternating<-3457, -7144>());
    return __builtin_convertvector(__builtin_convertvector(sum, Singles) * 2.5e-5F, SignedDoubleWords);
  }

  static SignedWords clamp_to_signed_byte(SignedWords v) { return clamp_words(v, -128, 127); }
};

}  // namespace qvn
