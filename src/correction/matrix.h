// The three matrix rules. Coefficients are row-major with inputs in the order red, green, blue; the first row
// makes red.
#pragma once

#include <algorithm>
#include <limits>

#include "correction/color_correction.h"
#include "correction/rule.h"
#include "pixel/products.h"

namespace qvn {

// Single precision, each product and sum rounded by itself and in this order; then the low bits.
template <class T>
class MatrixFloat {
 public:
  static constexpr bool kInOrder = false;
  explicit MatrixFloat(const ColorCorrection* object) {
    const auto& record = record_of<ColorCorrectionFloat>(object);
    std::copy(std::begin(record.matrix), std::end(record.matrix), m_);
  }

  Rgb<T> pixel(Rgb<T> p) const {
    const Rgb<float> sums = multiply<float>({float(p.r), float(p.g), float(p.b)});
    return {low_bits<T>(sums.r), low_bits<T>(sums.g), low_bits<T>(sums.b)};
  }

  void row_plain(Planes<T>& p, size_t from, size_t to) const {
    correct_pixels(p, from, to, [this](Rgb<T> q) { return pixel(q); });
  }

  void row(Planes<T>& p, size_t from, size_t to) const {
    if (kVectorRows) {
      for (size_t x = from; x < to; x += kLaneCount<Lanes<T>>) correct_vector(p, x);
    } else {
      row_plain(p, from, to);
    }
  }
  void shared_row(Planes<T>& p, Channel<T>, size_t from, size_t to) const { row(p, from, to); }

 private:
  static constexpr uint32_t kMask = std::numeric_limits<T>::max(), kBits = 8 * sizeof(T);

  template <class V>
  Rgb<V> multiply(Rgb<V> p) const {
    return {(p.r * m_[0] + p.g * m_[1]) + p.b * m_[2], (p.r * m_[3] + p.g * m_[4]) + p.b * m_[5],
            (p.r * m_[6] + p.g * m_[7]) + p.b * m_[8]};
  }

  // A vector of pixels, those at every second place (of bytes: every fourth) at a time, each a double word.
  //
  // From 2^31 on the integers do not fit a double word and come out as 0x80000000, whose low bits are 0. As
  // bytes, so are those of the numbers: a number of that size is a multiple of 256. As words they are not,
  // and these pixels are taken one by one.
  [[gnu::always_inline]] void correct_vector(Planes<T>& p, size_t x) const {
    const Rgb<DoubleWords> in = {load_at<DoubleWords>(p.r, x), load_at<DoubleWords>(p.g, x),
                                 load_at<DoubleWords>(p.b, x)};
    Rgb<DoubleWords> out{};
    DoubleWords large{};
    for (uint32_t shift = 0; shift < 32; shift += kBits) {
      const Rgb<Floats> sums =
          multiply<Floats>({to_floats((in.r >> shift) & kMask), to_floats((in.g >> shift) & kMask),
                            to_floats((in.b >> shift) & kMask)});
      const Rgb<DoubleWords> integers = {truncate_to_double_words(sums.r), truncate_to_double_words(sums.g),
                                         truncate_to_double_words(sums.b)};
      if constexpr (sizeof(T) > 1) {
        large |=
            DoubleWords((integers.r == 0x80000000) | (integers.g == 0x80000000) | (integers.b == 0x80000000));
      }
      out.r |= (integers.r & kMask) << shift;
      out.g |= (integers.g & kMask) << shift;
      out.b |= (integers.b & kMask) << shift;
    }
    if (sizeof(T) > 1 && any(large)) {
      row_plain(p, x, x + kLaneCount<Lanes<T>>);
    } else {
      store_at(p.r, x, out.r);
      store_at(p.g, x, out.g);
      store_at(p.b, x, out.b);
    }
  }

  float m_[9];
};

inline constexpr int kFractionBits = 10;  // of the fixed matrices

// The rows of the fixed matrices: `Matrix::lanes` corrects a vector of pixels that are words.
template <class T, class Matrix>
void correct_words(const Matrix& matrix, Planes<T>& p, size_t from, size_t to) {
  for (size_t x = from; x < to; x += kLaneCount<Lanes<T>>) {
    const Rgb<Lanes<T>> in = {load_at<Lanes<T>>(p.r, x), load_at<Lanes<T>>(p.g, x),
                              load_at<Lanes<T>>(p.b, x)};
    if constexpr (sizeof(T) == 1) {
      const Rgb<Words> even = matrix.lanes({even_bytes(in.r), even_bytes(in.g), even_bytes(in.b)});
      const Rgb<Words> odd = matrix.lanes({odd_bytes(in.r), odd_bytes(in.g), odd_bytes(in.b)});
      store_at(p.r, x, join_bytes(even.r & 0xFF, odd.r));
      store_at(p.g, x, join_bytes(even.g & 0xFF, odd.g));
      store_at(p.b, x, join_bytes(even.b & 0xFF, odd.b));
    } else {
      const Rgb<Words> out = matrix.lanes(in);
      store_at(p.r, x, out.r);
      store_at(p.g, x, out.g);
      store_at(p.b, x, out.b);
    }
  }
}

// Sixteen bits with wrap, for bytes. A sum is -32 to 31 after the shift; negative ones become 0, so that
// nothing above 31 comes out.
class MatrixFixed16 {
 public:
  static constexpr bool kInOrder = false;
  explicit MatrixFixed16(const ColorCorrection* object) {
    const auto& record = record_of<ColorCorrectionFixed>(object);
    for (int i = 0; i < 9; ++i) c_[i] = static_cast<uint16_t>(record.coefficients[i]);
  }

  Rgb<uint8_t> pixel(Rgb<uint8_t> p) const {
    const auto dot = [&](int row) {
      const uint32_t sum =
          uint32_t{p.r} * c_[row] + uint32_t{p.g} * c_[row + 1] + uint32_t{p.b} * c_[row + 2];
      const int shifted = static_cast<int16_t>(sum & 0xFFFF) >> kFractionBits;
      return static_cast<uint8_t>(shifted < 0 ? 0 : shifted);
    };
    return {dot(0), dot(3), dot(6)};
  }

  Rgb<Words> lanes(Rgb<Words> p) const {
    const auto dot = [&](int row) {
      const Words sum = p.r * c_[row] + p.g * c_[row + 1] + p.b * c_[row + 2];
      const SignedWords shifted = as<SignedWords>(sum) >> kFractionBits;
      return as<Words>(shifted & ~(shifted >> 15));
    };
    return {dot(0), dot(3), dot(6)};
  }

  void row_plain(Planes<uint8_t>& p, size_t from, size_t to) const {
    correct_pixels(p, from, to, [this](Rgb<uint8_t> q) { return pixel(q); });
  }
  void row(Planes<uint8_t>& p, size_t from, size_t to) const {
    if (kVectorRows) {
      correct_words(*this, p, from, to);
    } else {
      row_plain(p, from, to);
    }
  }
  void shared_row(Planes<uint8_t>& p, Channel<uint8_t>, size_t from, size_t to) const { row(p, from, to); }

 private:
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

  Rgb<T> pixel(Rgb<T> p) const {
    const auto dot = [&](int row) {
      const uint32_t sum = p.r * c_[row] + p.g * c_[row + 1] + p.b * c_[row + 2];
      const int32_t shifted = static_cast<int32_t>(sum) >> kFractionBits;
      return static_cast<T>(std::clamp(shifted, 0, 0xFFFF));
    };
    return {dot(0), dot(3), dot(6)};
  }

  // Products of signed words make the sums. For that, 32768 is taken off every sample and the sum of the
  // coefficients times 32768 is added again; and a coefficient is taken as lower + 65536 * upper, the lower
  // part signed. Of the upper part's products the low 16 bits count, shifted up; few matrices have one.
  Rgb<Words> lanes(Rgb<Words> p) const {
    const Words r = p.r ^ 0x8000, g = p.g ^ 0x8000, b = p.b ^ 0x8000;
    const Words rg_low = interleave_low(r, g), rg_high = interleave_high(r, g);
    const Words b_low = interleave_low(b, Words{}), b_high = interleave_high(b, Words{});
    const auto dot = [&](int row) {
      const Words red_green = as<Words>(DoubleWords{} + (c_[row] & 0xFFFF) + (c_[row + 1] << 16));
      const Words blue = as<Words>(DoubleWords{} + (c_[row + 2] & 0xFFFF));
      const uint32_t offset = (c_[row] + c_[row + 1] + c_[row + 2]) << 15;
      DoubleWords low = products(rg_low, red_green) + products(b_low, blue) + offset;
      DoubleWords high = products(rg_high, red_green) + products(b_high, blue) + offset;
      if (wide_) {
        const Words upper = r * upper_[row] + g * upper_[row + 1] + b * upper_[row + 2];
        low += as<DoubleWords>(interleave_low(Words{}, upper));
        high += as<DoubleWords>(interleave_high(Words{}, upper));
      }
      return narrow_to_unsigned_words(as<SignedDoubleWords>(low) >> kFractionBits,
                                      as<SignedDoubleWords>(high) >> kFractionBits);
    };
    return {dot(0), dot(3), dot(6)};
  }

  void row_plain(Planes<T>& p, size_t from, size_t to) const {
    correct_pixels(p, from, to, [this](Rgb<T> q) { return pixel(q); });
  }
  void row(Planes<T>& p, size_t from, size_t to) const {
    if (kVectorRows) {
      correct_words(*this, p, from, to);
    } else {
      row_plain(p, from, to);
    }
  }
  void shared_row(Planes<T>& p, Channel<T>, size_t from, size_t to) const { row(p, from, to); }

 private:
  static DoubleWords products(Words samples, Words factors) {
    return as<DoubleWords>(multiply_add_pairs(as<SignedWords>(samples), as<SignedWords>(factors)));
  }

  uint32_t c_[9];
  uint16_t upper_[9];
  bool wide_;
};

}  // namespace qvn
