// The gamma rule, and gamma followed by a matrix.
//
// The recipe costs a power function, so it runs no more often than there are different values: a curve keeps
// its results, on the stack, for one conversion.
#pragma once

#include <array>
#include <cmath>
#include <cstring>

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
  T operator()(T sample) { return law_.result(sample); }

 private:
  PowerLaw law_;
};

// A result for each value below Values, worked out at once.
template <class T, size_t Values>
class TableCurve {
 public:
  explicit TableCurve(const ColorCorrection* object) {
    const PowerLaw law(object);
    for (size_t i = 0; i < Values; ++i) results_[i] = law.result(static_cast<T>(i));
  }
  T operator()(T sample) { return results_[sample]; }

 private:
  std::array<T, Values> results_;
};

// Results for words of all values: the last one for each value modulo kSlots. Neighbours in a picture differ
// by less, and a table of all words would be too much for a small stack.
class RecentCurve {
 public:
  explicit RecentCurve(const ColorCorrection* object) : law_(object) {
    // No slot holds its own value yet.
    for (size_t i = 0; i < kSlots; ++i) slots_[i] = {static_cast<uint16_t>(~i), 0};
  }
  uint16_t operator()(uint16_t sample) {
    Slot& slot = slots_[sample % kSlots];
    if (slot.sample != sample) slot = {sample, law_.result(sample)};
    return slot.result;
  }

 private:
  static constexpr size_t kSlots = 4096;
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
  uint16_t operator()(uint16_t sample) const {
    if (sample >= values_) return law_.result(sample);
    uint16_t result;
    std::memcpy(&result, memory_ + sample * sizeof result, sizeof result);
    return result;
  }

 private:
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

  template <class... Arguments>
  explicit GammaMatrix(const ColorCorrection* object, const Arguments&... arguments)
      : gamma_(object, arguments...), matrix_(object) {}

  void row(Planes<T>& p, size_t from, size_t to) {
    gamma_.row(p, from, to);
    matrix_.row(p, from, to);
  }
  void shared_row(const Planes<T>& others, Channel<T> shared, Plane<T>& samples, size_t from, size_t to) {
    Planes<T> results = others;
    for (const Channel<T> channel : kChannels<T>) {
      gamma_.shared_row(others, channel, channel == shared ? samples : results.*channel, from, to);
    }
    matrix_.shared_row(results, shared, samples, from, to);
  }

 private:
  Gamma<T, Curve> gamma_;
  MatrixFloat<T> matrix_;
};

}  // namespace qvn
