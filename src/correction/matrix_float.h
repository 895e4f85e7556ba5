// The float matrix. Coefficients are row-major with inputs in the order red, green, blue; the first row makes
// red.
#pragma once

#include <algorithm>
#include <limits>

#include "correction/color_correction.h"
#include "correction/rule.h"
#include "pixel/products.h"

namespace qvn {

// Single precision, each product and sum rounded by itself and in this order; then the low bits.
//
// A vector of pixels is taken apart into those at every second place (of bytes: every fourth), each a double
// word. From 2^31 on the integers do not fit one and come out as 0x80000000, whose low bits are 0. As bytes,
// so are those of the numbers: a number of that size is a multiple of 256. As words they are not, and the
// pixels of such a vector are taken one by one.
template <class T>
class MatrixFloat {
 public:
  static constexpr bool kInOrder = false;
  explicit MatrixFloat(const ColorCorrection* object) {
    const auto& record = record_of<ColorCorrectionFloat>(object);
    std::copy(std::begin(record.matrix), std::end(record.matrix), m_);
  }

  void row(Planes<T>& p, size_t from, size_t to) const {
    if (kVectorRows) {
      for (size_t x = from; x < to; x += kStep) correct_vector(p, x);
    } else {
      row_plain(p, from, to);
    }
  }
  void row_plain(Planes<T>& p, size_t from, size_t to) const {
    correct_pixels(p, from, to, [this](Rgb<T> q) {
      const Rgb<float> in = floats(q);
      return Rgb<T>{low_bits<T>(dot(0, in)), low_bits<T>(dot(1, in)), low_bits<T>(dot(2, in))};
    });
  }

  void shared_row(const Planes<T>& others, Channel<T> shared, Plane<T>& samples, size_t from,
                  size_t to) const {
    const PlanesWith<T> in(others, shared, samples);
    const int matrix_row = place_of(shared);
    if (kVectorRows) {
      for (size_t x = from; x < to; x += kStep) correct_shared_vector(in, matrix_row, samples, x);
    } else {
      correct_shared(in, matrix_row, samples, from, to);
    }
  }

 private:
  static constexpr size_t kStep = kLaneCount<Lanes<T>>;
  static constexpr uint32_t kMask = std::numeric_limits<T>::max(), kBits = 8 * sizeof(T);
  static constexpr uint32_t kNoInteger = 0x80000000;

  template <class V>
  V dot(int row, const Rgb<V>& p) const {
    return (p.r * m_[3 * row] + p.g * m_[3 * row + 1]) + p.b * m_[3 * row + 2];
  }

  static Rgb<float> floats(Rgb<T> p) {
    return {static_cast<float>(p.r), static_cast<float>(p.g), static_cast<float>(p.b)};
  }

  static Rgb<Floats> floats(const Rgb<DoubleWords>& in, uint32_t shift) {
    return {to_floats((in.r >> shift) & kMask), to_floats((in.g >> shift) & kMask),
            to_floats((in.b >> shift) & kMask)};
  }

  // An integer's low bits into their place in a vector of pixels.
  static void place(DoubleWords integers, uint32_t shift, DoubleWords& out, DoubleWords& large) {
    out |= (integers & kMask) << shift;
    if (sizeof(T) > 1) large |= DoubleWords(integers == kNoInteger);
  }

  [[gnu::always_inline]] void correct_vector(Planes<T>& p, size_t x) const {
    const Rgb<DoubleWords> in = load_pixels<DoubleWords>(p, x);
    Rgb<DoubleWords> out{};
    DoubleWords large{};
    for (uint32_t shift = 0; shift < 32; shift += kBits) {
      const Rgb<Floats> pixels = floats(in, shift);
      place(truncate_to_double_words(dot(0, pixels)), shift, out.r, large);
      place(truncate_to_double_words(dot(1, pixels)), shift, out.g, large);
      place(truncate_to_double_words(dot(2, pixels)), shift, out.b, large);
    }
    if (any(large)) {
      row_plain(p, x, x + kStep);
    } else {
      store_pixels(p, x, out);
    }
  }

  [[gnu::always_inline]] void correct_shared_vector(const PlanesWith<T>& p, int matrix_row, Plane<T>& samples,
                                                    size_t x) const {
    const Rgb<DoubleWords> in = load_pixels<DoubleWords>(p, x);
    DoubleWords out{}, large{};
    for (uint32_t shift = 0; shift < 32; shift += kBits) {
      place(truncate_to_double_words(dot(matrix_row, floats(in, shift))), shift, out, large);
    }
    if (any(large)) {
      correct_shared(p, matrix_row, samples, x, x + kStep);
    } else {
      store_at(samples, x, out);
    }
  }

  void correct_shared(const PlanesWith<T>& p, int matrix_row, Plane<T>& samples, size_t from,
                      size_t to) const {
    for (size_t x = from; x < to; ++x) {
      samples[x] = low_bits<T>(dot(matrix_row, floats({p.r[x], p.g[x], p.b[x]})));
    }
  }

  float m_[9];
};

}  // namespace qvn
