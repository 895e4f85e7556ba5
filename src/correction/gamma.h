// The gamma rule, and gamma followed by a matrix.
//
// The recipe costs a power function, so it runs no more often than there are different values: a curve keeps
// its results, on the stack, for one conversion.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "correction/byte_table.h"
#include "correction/curve.h"
#include "correction/matrix_float.h"

namespace qvn {

// The recipe for one sample. A largest value of 0, negative exponents, infinities and NaNs go their way
// through it as the power function and the truncation have it.
class PowerLaw {
 public:
  explicit PowerLaw(const ColorCorrection* object)
      : gamma_(record_of<ColorCorrectionFloat>(object).gamma),
        max_value_(record_of<ColorCorrectionFloat>(object).maxValue) {}

  template <class T>
  T result(T sample) const {
    const float power = std::pow(static_cast<float>(sample) / max_value_, gamma_);
    const float scaled = power * max_value_;
    return low_bits<T>(static_cast<double>(scaled) + 0.5);
  }

 private:
  float gamma_, max_value_;
};

// The recipe, for frames with fewer samples than values.
template <class T>
class RecipeCurve {
 public:
  explicit RecipeCurve(const ColorCorrection* object) : law_(object) {}
  T operator()(T sample) const { return law_.result(sample); }
  void row(T* samples, size_t n) const { correct_samples(samples, n, *this); }

 private:
  PowerLaw law_;
};

// A result for each byte, worked out at once.
class ByteCurve : public ByteTable {
 public:
  explicit ByteCurve(const ColorCorrection* object)
      : ByteTable([law = PowerLaw(object)](uint8_t sample) { return law.result(sample); }) {}
};

// A result for each word below 4096, worked out at once.
class ShortWordCurve {
 public:
  static constexpr uint32_t kValues = 4096;
  explicit ShortWordCurve(const ColorCorrection* object) {
    const PowerLaw law(object);
    for (uint32_t i = 0; i < kValues; ++i) results_[i] = law.result(static_cast<uint16_t>(i));
  }
  uint16_t operator()(uint16_t sample) const { return results_[sample]; }
  void row(uint16_t* samples, size_t n) const { look_up_words(samples, n, *this); }

 private:
  std::array<uint16_t, kValues> results_;
};

// Results for words of all values: the last one for each value modulo kSlots. Neighbours in a picture differ
// by less, and a table of all words would be too much for a small stack.
class RecentCurve {
 public:
  static constexpr size_t kSlots = 4096;
  explicit RecentCurve(const ColorCorrection* object) : law_(object) {
    // No slot holds its own value yet.
    for (size_t i = 0; i < kSlots; ++i) slots_[i] = {static_cast<uint16_t>(~i), 0};
  }
  uint16_t operator()(uint16_t sample) {
    Slot& slot = slots_[sample % kSlots];
    if (slot.sample != sample) slot = {sample, law_.result(sample)};
    return slot.result;
  }
  void row(uint16_t* samples, size_t n) {
    correct_samples(samples, n, [this](uint16_t sample) { return (*this)(sample); });
  }

 private:
  struct Slot {
    uint16_t sample, result;
  };
  PowerLaw law_;
  std::array<Slot, kSlots> slots_;
};

// A result for each word below `values`, worked out at once into memory that somebody lends; larger words by
// the recipe.
class LentCurve {
 public:
  LentCurve(const ColorCorrection* object, uint8_t* memory, uint32_t values)
      : law_(object), memory_(memory), values_(values) {
    for (uint32_t i = 0; i < values; ++i) {
      const auto result = law_.result(static_cast<uint16_t>(i));
      std::memcpy(memory + i * sizeof result, &result, sizeof result);
    }
  }
  uint16_t operator()(uint16_t sample) const { return sample < values_ ? kept(sample) : law_.result(sample); }
  void row(uint16_t* samples, size_t n) const {
    uint32_t largest = 0;
    for (size_t x = 0; x < n; ++x) largest = std::max<uint32_t>(largest, samples[x]);
    if (largest < values_) {
      look_up_words(samples, n, [this](uint16_t sample) { return kept(sample); });
    } else {
      correct_samples(samples, n, *this);
    }
  }

 private:
  uint16_t kept(uint16_t sample) const {
    uint16_t result;
    std::memcpy(&result, memory_ + sample * sizeof result, sizeof result);
    return result;
  }

  PowerLaw law_;
  const uint8_t* memory_;
  uint32_t values_;
};

template <class T, class Curve>
using Gamma = ByCurve<T, Curve>;

// The matrix works on the results of gamma; there is no other order.
template <class T, class Curve>
class GammaMatrix {
 public:
  static constexpr bool kInOrder = false;
  static constexpr bool kCurveAlone = false;

  template <class... Arguments>
  explicit GammaMatrix(const ColorCorrection* object, const Arguments&... arguments)
      : gamma_(object, arguments...), matrix_(object) {}

  Curve& curve() { return gamma_.curve(); }
  void behind_curve(Planes<T>& p, size_t from, size_t to) const { matrix_.row(p, from, to); }

  void row(Planes<T>& p, size_t from, size_t to) {
    gamma_.row(p, from, to);
    matrix_.row(p, from, to);
  }
  void shared_row(const Planes<T>& others, Channel<T> shared, Plane<T>& samples, size_t from, size_t to) {
    Planes<T> results = others;
    for (const Channel<T> channel : kChannels<T>) {
      Plane<T>& plane = channel == shared ? samples : results.*channel;
      curve().row(plane.data() + from, to - from);
    }
    matrix_.shared_row(results, shared, samples, from, to);
  }

 private:
  Gamma<T, Curve> gamma_;
  MatrixFloat<T> matrix_;
};

}  // namespace qvn
