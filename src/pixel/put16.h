// Puts of 16-bit channels, in the host's byte order. put.h tells what a put is. No destination needs an
// alignment.
#pragma once

#include "pixel/lanes.h"
#include "pixel/merge3_words.h"
#include "pixel/products.h"
#include "pixel/rgb.h"

namespace qvn {

inline void store_word(uint8_t* to, uint32_t value) {
  const auto word = static_cast<uint16_t>(value);
  std::memcpy(to, &word, sizeof word);
}

// Blue, green, red.
struct PutBgr16 {
  using Form = Rgb<Words>;
  static constexpr size_t kPixelBytes = 6;
  static constexpr size_t kWrittenBytes = 6;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    store_word(out, p.b);
    store_word(out + 2, p.g);
    store_word(out + 4, p.r);
  }
  static void pixels(uint8_t* out, Rgb<Words> p) { store_merge3(out, p.b, p.g, p.r); }
};

// Mono: (r * Red + g * Green + b * Blue + Rounding) >> 8 in 32 bits. The weights sum to 256 at most, so that
// the result fits a word.
//
// The products of a vector are those of signed words, so 32768 is taken off each channel, which takes 32768
// * (Red + Green + Blue) off the sum. With 32768 * 256 taken off it instead, the shift leaves the result less
// 32768, a signed word again.
template <int Red, int Green, int Blue, int Rounding>
struct PutMono16 {
  static_assert(Red + Green + Blue <= 256);
  using Form = Rgb<Words>;
  static constexpr size_t kPixelBytes = 2;
  static constexpr size_t kWrittenBytes = 2;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    store_word(out, (p.r * Red + p.g * Green + p.b * Blue + Rounding) >> 8);
  }
  static void pixels(uint8_t* out, Rgb<Words> p) {
    const Words r = p.r ^ kTopBit, g = p.g ^ kTopBit, b = p.b ^ kTopBit;
    const Words unit = Words{} + kUnit;
    const SignedDoubleWords low = weigh(interleave_low(r, g), interleave_low(b, unit));
    const SignedDoubleWords high = weigh(interleave_high(r, g), interleave_high(b, unit));
    store(out, as<Words>(narrow_to_words(low >> 8, high >> 8)) ^ kTopBit);
  }

 private:
  static constexpr uint16_t kTopBit = 0x8000;
  // What is added to the sum, as a product of two signed words.
  static constexpr int kOffset = 32768 * (Red + Green + Blue - 256) + Rounding;
  static constexpr uint16_t kUnit = 128;
  static_assert(kOffset % kUnit == 0 && kOffset / kUnit >= -32768);
  static SignedDoubleWords weigh(Words red_green, Words blue_unit) {
    return multiply_add_pairs(as<SignedWords>(red_green), pair(Red, Green)) +
           multiply_add_pairs(as<SignedWords>(blue_unit), pair(Blue, kOffset / kUnit));
  }
  static SignedWords pair(int first, int second) {
    return as<SignedWords>(DoubleWords{} +
                           (static_cast<uint32_t>(second) << 16 | static_cast<uint16_t>(first)));
  }
};

// Blue weighs 21, and the weights sum to 248: white gives 63487. Callers depend on it.
using PutY16 = PutMono16<77, 150, 21, 0>;

}  // namespace qvn
