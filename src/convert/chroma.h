// What a pixel's chroma adds to its luma: the two sets of YUV arithmetic, each as the tables give it for one
// pixel and, without tables, for a vector of them. Both are equal for every U and V, which the tests run
// through.
//
// An offset of a vector is two bytes of which one is 0, what goes up and what goes down, so that sums and
// clamps stay in bytes.
#pragma once

#include "convert/yuv_tables.h"
#include "pixel/rgb.h"
#include "pixel/saturate.h"

namespace qvn {

struct Offset {
  Bytes up, down;
};

inline Bytes shift_clamped(Bytes y, Offset offset) {
  return subtract_saturated(add_saturated(y, offset.up), offset.down);
}

inline Rgb<Bytes> shift_clamped(Bytes y, const Rgb<Offset>& offsets) {
  return {shift_clamped(y, offsets.r), shift_clamped(y, offsets.g), shift_clamped(y, offsets.b)};
}

// A chroma byte about its centre: the distance from 128, and all bits set where it lies below.
struct Chroma {
  Bytes distance, below;
};

inline Chroma centred(Bytes chroma) {
  const Bytes signed_distance = chroma ^ 0x80;
  const Bytes below = as<Bytes>(as<SignedBytes>(signed_distance) < 0);
  return {(signed_distance ^ below) - below, below};
}

// (distance * Factor + Bias) >> Shift. With the numbers below it is the distance times a constant, rounded
// down, for all 129 distances, and the product fits 16 bits.
template <uint16_t Factor, uint16_t Bias, int Shift>
inline Bytes scaled(Bytes distance) {
  static_assert(128 * Factor + Bias < 65536 && Shift >= 8);
  const Words factors = factor<Words>(Factor);
  const Words even = even_bytes(distance) * factors + Bias, odd = odd_bytes(distance) * factors + Bias;
  return as<Bytes>((even >> Shift) | ((odd >> Shift) << 8));
}

// Magnitudes, rounded down; 1.771 is 2 - 0.229, the product of which is rounded up.
inline Bytes scaled_1_771(Bytes distance) { return distance + distance - scaled<469, 2047, 11>(distance); }
inline Bytes scaled_1_4022(Bytes distance) { return distance + scaled<205, 84, 9>(distance); }
inline Bytes scaled_0_3457(Bytes distance) { return scaled<177, 0, 9>(distance); }
inline Bytes scaled_0_7144(Bytes distance) { return scaled<183, 0, 8>(distance); }

// Each chroma term truncated toward zero on its own, then the sum.
struct PackedChroma {
  static Rgb<uint32_t> pixel(uint8_t y, uint8_t u, uint8_t v) {
    const uint32_t from_u = UTable[u], from_v = VTable[v];
    return {clamp(y + high_half(from_v)), clamp(y + (low_half(from_u) + low_half(from_v))),
            clamp(y + high_half(from_u))};
  }

  static Rgb<Offset> offsets(Bytes u_byte, Bytes v_byte) {
    const Chroma u = centred(u_byte), v = centred(v_byte);
    const Bytes red = scaled_1_4022(v.distance), blue = scaled_1_771(u.distance);
    const Bytes green_u = scaled_0_3457(u.distance), green_v = scaled_0_7144(v.distance);
    // Green moves against the chroma. The two terms may have different signs; at most 44 + 91 each way.
    const Bytes green_up = (green_u & u.below) + (green_v & v.below);
    const Bytes green_down = (green_u & ~u.below) + (green_v & ~v.below);
    const Bytes more = larger(green_up, green_down);
    return {{red & ~v.below, red & v.below},
            {more - green_down, more - green_up},
            {blue & ~u.below, blue & u.below}};
  }

 private:
  static uint32_t clamp(int32_t value) {
    return static_cast<uint32_t>(value < 0 ? 0 : value > 255 ? 255 : value);
  }
};

// The sum truncated as a whole, with the green of U and V made before Y is added.
struct PlaneChroma {
  static Rgb<uint32_t> pixel(uint8_t y, uint8_t u, uint8_t v) {
    const size_t line = size_t{y} * 256;
    return {PlaneRTable[line + v], PlaneGTable[line + PlaneGDeltaTable[size_t{u} * 256 + v]],
            PlaneBTable[line + u]};
  }

  static Rgb<Offset> offsets(Bytes u_byte, Bytes v_byte) {
    const Chroma u = centred(u_byte), v = centred(v_byte);
    const Bytes red = scaled_1_4022(v.distance), blue = scaled_1_771(u.distance);
    const SignedWords even = green_delta(even_bytes(u_byte), even_bytes(v_byte));
    const SignedWords odd = green_delta(odd_bytes(u_byte), odd_bytes(v_byte));
    // No product of a chroma byte is a whole number but 0, so that below 128 the sum's truncation takes one
    // more than the magnitude.
    return {{red & ~v.below, (red + 1) & v.below},
            {join_low_bytes(positive_part(even), positive_part(odd)),
             join_low_bytes(positive_part(-even), positive_part(-odd))},
            {blue & ~u.below, (blue + 1) & u.below}};
  }

  // trunc(N / 10000) for N = 3457 * (128 - u) + 7144 * (128 - v), between -128 and 127. N does not fit 16
  // bits, but what is left of it after a quotient that is wrong by one at most does:
  //
  //     (44 * a + 91 * b) / 128 lies within 0.7 of N / 10000, so that N - 10000 * its floor lies in
  //     -10000 .. 19999, and arithmetic modulo 65536 keeps it.
  static SignedWords green_delta(Words u, Words v) {
    const Words a = 128 - u, b = 128 - v;
    const auto estimate = as<SignedWords>(a * factor<Words>(44) + b * factor<Words>(91)) >> 7;
    const Words ten_thousand = factor<Words>(10000);
    const auto rest = as<SignedWords>(a * factor<Words>(3457) + b * factor<Words>(7144) -
                                      as<Words>(estimate) * ten_thousand);
    const SignedWords too_high = rest < 0, too_low = rest > 9999;  // -1 where true
    const SignedWords floor = estimate + too_high - too_low;
    const auto remainder = rest + (as<SignedWords>(ten_thousand) & too_high) -
                           (as<SignedWords>(ten_thousand) & too_low);
    const SignedWords truncated = floor - ((floor < 0) & (remainder != 0));
    const SignedWords lowest = SignedWords{} - 128, highest = SignedWords{} + 127;
    const SignedWords at_least = truncated > lowest ? truncated : lowest;
    return at_least < highest ? at_least : highest;
  }

 private:
  static Words positive_part(SignedWords v) { return as<Words>(v > 0 ? v : SignedWords{}); }
  static Bytes join_low_bytes(Words even, Words odd) { return as<Bytes>(even | (odd << 8)); }
};

}  // namespace qvn
