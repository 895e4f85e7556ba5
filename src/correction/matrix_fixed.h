// The two fixed matrices. Coefficients have 10 fraction bits and are row-major with inputs in the order red,
// green, blue; the first row makes red.
#pragma once

#include <algorithm>

#include "correction/color_correction.h"
#include "correction/rule.h"
#include "pixel/products.h"

namespace qvn {

inline constexpr int kFractionBits = 10;

// Sixteen bits with wrap, for bytes. A sum is -32 to 31 after the shift; negative ones become 0, so that
// nothing above 31 comes out.
class MatrixFixed16 {
 public:
  static constexpr bool kInOrder = false;
  explicit MatrixFixed16(const ColorCorrection* object) {
    const auto& record = record_of<ColorCorrectionFixed>(object);
    for (int i = 0; i < 9; ++i) c_[i] = static_cast<uint16_t>(record.coefficients[i]);
  }

  void row(Planes<uint8_t>& p, size_t from, size_t to) const {
    if (!kVectorRows) return row_plain(p, from, to);
    for (size_t x = from; x < to; x += kLaneBytes) {
      const Rgb<Bytes> in = load_pixels<Bytes>(p, x);
      const Bytes zero{};
      const Rgb<Words> low = {as<Words>(interleave_low(in.r, zero)), as<Words>(interleave_low(in.g, zero)),
                              as<Words>(interleave_low(in.b, zero))};
      const Rgb<Words> high = {as<Words>(interleave_high(in.r, zero)), as<Words>(interleave_high(in.g, zero)),
                               as<Words>(interleave_high(in.b, zero))};
      // To narrow is to stop at 0.
      const auto channel = [&](int row) { return narrow_to_bytes(lanes(row, low), lanes(row, high)); };
      store_pixels(p, x, Rgb<Bytes>{channel(0), channel(1), channel(2)});
    }
  }
  void row_plain(Planes<uint8_t>& p, size_t from, size_t to) const {
    correct_pixels(p, from, to, [this](Rgb<uint8_t> q) {
      return Rgb<uint8_t>{channel(0, q), channel(1, q), channel(2, q)};
    });
  }

 private:
  uint8_t channel(int row, Rgb<uint8_t> p) const {
    const uint16_t* c = c_ + 3 * row;
    const uint32_t sum = uint32_t{p.r} * c[0] + uint32_t{p.g} * c[1] + uint32_t{p.b} * c[2];
    const int shifted = static_cast<int16_t>(sum & 0xFFFF) >> kFractionBits;
    return static_cast<uint8_t>(shifted < 0 ? 0 : shifted);
  }

  SignedWords lanes(int row, const Rgb<Words>& p) const {
    const uint16_t* c = c_ + 3 * row;
    return as<SignedWords>(p.r * c[0] + p.g * c[1] + p.b * c[2]) >> kFractionBits;
  }

  uint16_t c_[9];
};

// Thirty-two bits with wrap. The test of the range is 16 bits wide for bytes, too: of those, results from 256
// to 65535 keep their low byte, and only larger ones become 255.
template <class T>
class MatrixFixed32 {
 public:
  static constexpr bool kInOrder = false;
  explicit MatrixFixed32(const ColorCorrection* object) {
    const auto& record = record_of<ColorCorrectionFixed>(object);
    for (int i = 0; i < 9; ++i) c_[i] = static_cast<uint32_t>(record.coefficients[i]);
    for (int i = 0; i < 9; ++i) upper_[i] = static_cast<uint16_t>((c_[i] + 0x8000) >> 16);
    wide_ = std::any_of(upper_, upper_ + 9, [](uint16_t upper) { return upper != 0; });
  }

  void row(Planes<T>& p, size_t from, size_t to) const {
    if (!kVectorRows) return row_plain(p, from, to);
    for (size_t x = from; x < to; x += kStep) {
      const auto in = load_pixels<Lanes<T>>(p, x);
      if constexpr (sizeof(T) == 1) {
        const Factors even({even_bytes(in.r), even_bytes(in.g), even_bytes(in.b)});
        const Factors odd({odd_bytes(in.r), odd_bytes(in.g), odd_bytes(in.b)});
        const auto channel = [&](int row) { return join_bytes(lanes(row, even) & 0xFF, lanes(row, odd)); };
        store_pixels(p, x, Rgb<Bytes>{channel(0), channel(1), channel(2)});
      } else {
        const Factors factors(in);
        store_pixels(p, x, Rgb<Words>{lanes(0, factors), lanes(1, factors), lanes(2, factors)});
      }
    }
  }
  void row_plain(Planes<T>& p, size_t from, size_t to) const {
    correct_pixels(p, from, to, [this](Rgb<T> q) {
      return Rgb<T>{channel(0, q), channel(1, q), channel(2, q)};
    });
  }

  void shared_row(const Planes<T>& others, Channel<T> shared, Plane<T>& samples, size_t from,
                  size_t to) const {
    const PlanesWith<T> in(others, shared, samples);
    const int matrix_row = place_of(shared);
    if constexpr (kVectorRows && sizeof(T) > 1) {
      for (size_t x = from; x < to; x += kStep) {
        store_at(samples, x, lanes(matrix_row, Factors(load_pixels<Words>(in, x))));
      }
    } else {
      for (size_t x = from; x < to; ++x) samples[x] = channel(matrix_row, {in.r[x], in.g[x], in.b[x]});
    }
  }

 private:
  static constexpr size_t kStep = kLaneCount<Lanes<T>>;

  T channel(int row, Rgb<T> p) const {
    const uint32_t* c = c_ + 3 * row;
    const uint32_t sum = p.r * c[0] + p.g * c[1] + p.b * c[2];
    return static_cast<T>(std::clamp(static_cast<int32_t>(sum) >> kFractionBits, 0, 0xFFFF));
  }

  // Products of signed words make the sums. For that, 32768 is taken off every sample that is a word, and the
  // sum of the coefficients times 32768 is added again.
  static constexpr uint16_t kTaken = sizeof(T) == 1 ? 0 : 32768;
  struct Factors {
    explicit Factors(const Rgb<Words>& p)
        : signed_samples{p.r ^ kTaken, p.g ^ kTaken, p.b ^ kTaken},
          red_green_low(interleave_low(signed_samples.r, signed_samples.g)),
          red_green_high(interleave_high(signed_samples.r, signed_samples.g)),
          blue_low(interleave_low(signed_samples.b, Words{})),
          blue_high(interleave_high(signed_samples.b, Words{})) {}
    Rgb<Words> signed_samples;
    Words red_green_low, red_green_high, blue_low, blue_high;
  };

  static DoubleWords products(Words samples, Words coefficients) {
    return as<DoubleWords>(multiply_add_pairs(as<SignedWords>(samples), as<SignedWords>(coefficients)));
  }

  // A coefficient is lower + 65536 * upper, the lower part signed. Of the upper part's products the low 16
  // bits count, shifted up; few matrices have one.
  [[gnu::always_inline]] Words lanes(int row, const Factors& p) const {
    const uint32_t* c = c_ + 3 * row;
    const Words red_green = as<Words>(DoubleWords{} + (c[0] & 0xFFFF) + (c[1] << 16));
    const Words blue = as<Words>(DoubleWords{} + (c[2] & 0xFFFF));
    const uint32_t offset = (c[0] + c[1] + c[2]) * kTaken;
    DoubleWords low = products(p.red_green_low, red_green) + products(p.blue_low, blue) + offset;
    DoubleWords high = products(p.red_green_high, red_green) + products(p.blue_high, blue) + offset;
    if (wide_) {
      const uint16_t* upper = upper_ + 3 * row;
      const Words sums =
          p.signed_samples.r * upper[0] + p.signed_samples.g * upper[1] + p.signed_samples.b * upper[2];
      low += as<DoubleWords>(interleave_low(Words{}, sums));
      high += as<DoubleWords>(interleave_high(Words{}, sums));
    }
    return narrow_to_unsigned_words(as<SignedDoubleWords>(low) >> kFractionBits,
                                    as<SignedDoubleWords>(high) >> kFractionBits);
  }

  uint32_t c_[9];
  uint16_t upper_[9];
  bool wide_;
};

}  // namespace qvn
