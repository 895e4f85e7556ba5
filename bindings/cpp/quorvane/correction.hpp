// Colour corrections: owners of the library's objects, and a matrix that stops at black and white.
#pragma once

#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "quorvane/result.hpp"

namespace quorvane {

/// Row by row, with red, green and blue as inputs; the rows make red, green and blue.
using Matrix = std::array<float, 9>;

/// An object of the library with all that it points to. What each kind does to a colour, and which functions
/// serve it, stands in quorvane.h. Any number of threads may convert with the same one.
class Correction {
 public:
  /// Kind 1. Results do not stop at black and white but wrap; ClampedMatrix does stop.
  static Correction matrix(const Matrix& matrix) { return of_floats(CcMatrixFloat, matrix, 1, 1); }
  /// Kind 2, for 8-bit sources. Gives levels of 0 to 31 only.
  static Correction fixed_int8(const Matrix& matrix) {
    return of_fixed(CcMatrixInt8, QVN_CreateColorCorrectionMatrix_Int8, matrix);
  }
  /// Kind 3, for sources of 12 and 16 bits.
  static Correction fixed_int16(const Matrix& matrix) {
    return of_fixed(CcMatrixInt16, QVN_CreateColorCorrectionMatrix_Int16, matrix);
  }
  /// Kind 4. `white` is the sample that stands for 1.0: 255 for 8 bits, 4095, 65535 >> shift and so on.
  static Correction gamma(float gamma, float white) { return of_floats(CcGamma, {}, gamma, white); }
  /// Kind 5: gamma, then the matrix.
  static Correction gamma_matrix(float gamma, float white, const Matrix& matrix) {
    return of_floats(CcGammaMatrix, matrix, gamma, white);
  }
  /// Kind 8, a byte for each level.
  static Correction table8(std::span<const std::uint8_t> table) {
    Correction made;
    made.bytes_.assign(table.begin(), table.end());
    made.set_table(CcTable8, made.bytes_);
    return made;
  }
  /// Kind 9, a word for each level. QVN_Raw12ToBGR_CC reads it as bytes: for that one, hand over bytes.
  static Correction table16(std::span<const std::uint16_t> table) {
    Correction made;
    made.words_.assign(table.begin(), table.end());
    made.largest_ = table.empty() ? 0 : *std::max_element(table.begin(), table.end());
    made.set_table(CcTable16, made.words_);
    return made;
  }
  /// Kind 9 with a table of bytes, for QVN_Raw12ToBGR_CC.
  static Correction table16_of_bytes(std::span<const std::uint8_t> table) {
    Correction made;
    made.bytes_.assign(table.begin(), table.end());
    made.largest_ = 0xFFFF;
    made.set_table(CcTable16, made.bytes_);
    return made;
  }
  /// Takes over an object of any kind that came from operator new, as its tables did; it ends in
  /// QVN_DestroyColorCorrection.
  static Correction adopt(ColorCorrection* object) {
    Correction made;
    std::memcpy(&made.kind_, object, sizeof made.kind_);
    made.largest_ = 0xFFFF;
    if (made.kind_ == CcTable8 || made.kind_ == CcTable16) {
      std::memcpy(&made.table_, object, sizeof made.table_);
    }
    made.owned_.reset(object);
    return made;
  }

  std::uint32_t kind() const { return kind_; }
  const ColorCorrection* object() const {
    if (owned_) {
      return owned_.get();
    }
    return kind_ == CcTable8 || kind_ == CcTable16 ? reinterpret_cast<const ColorCorrection*>(&table_)
                                                   : reinterpret_cast<const ColorCorrection*>(&floats_);
  }
  /// Bytes of the table; 0 for other kinds.
  std::size_t table_bytes() const {
    return static_cast<std::size_t>(static_cast<const std::uint8_t*>(table_.last) -
                                    static_cast<const std::uint8_t*>(table_.first));
  }
  /// No word of the table is larger.
  std::uint32_t largest() const { return largest_; }

 private:
  struct Destroy {
    void operator()(ColorCorrection* object) const { QVN_DestroyColorCorrection(object); }
  };

  Correction() = default;

  static Correction of_floats(std::uint32_t kind, const Matrix& matrix, float gamma, float white) {
    Correction made;
    made.kind_ = kind;
    made.floats_.kind = kind;
    std::copy(matrix.begin(), matrix.end(), made.floats_.matrix);
    made.floats_.gamma = gamma;
    made.floats_.maxValue = white;
    return made;
  }

  // The library makes the numbers, and answers QVN_OK or throws.
  static Correction of_fixed(std::uint32_t kind, std::uint32_t (*create)(const float*, ColorCorrection**),
                             const Matrix& matrix) {
    Correction made;
    ColorCorrection* object = nullptr;
    create(matrix.data(), &object);
    made.kind_ = kind;
    made.owned_.reset(object);
    return made;
  }

  // The addresses of a vector's elements stay when the vector is moved.
  template <class T>
  void set_table(std::uint32_t kind, std::vector<T>& storage) {
    kind_ = kind;
    table_.kind = kind;
    table_.first = storage.data();
    table_.last = table_.end = storage.data() + storage.size();
  }

  std::uint32_t kind_ = CcUnset;
  std::uint32_t largest_ = 0;
  ColorCorrectionFloat floats_{};
  ColorCorrectionTable table_{};
  std::vector<std::uint8_t> bytes_;
  std::vector<std::uint16_t> words_;
  std::unique_ptr<ColorCorrection, Destroy> owned_;
};

/// A matrix for finished pictures that rounds and stops at black and at the top. The library has none; this
/// one is the same wherever it is offered.
///
/// A sample times a float is exact in double precision, so the sums are the same on every machine, whether or
/// not the compiler fuses them.
class ClampedMatrix {
 public:
  explicit ClampedMatrix(const Matrix& matrix) {
    std::copy(matrix.begin(), matrix.end(), m_.begin());
    if (!std::all_of(m_.begin(), m_.end(), [](double factor) { return std::isfinite(factor); })) {
      throw Error({Cause::kArgument, QVN_E_UNCLASSIFIED, "ClampedMatrix: expected nine finite numbers"});
    }
  }

  /// Pixels of `step` samples in place, of which red, green and blue are at the indices `red`, 1 and 2 - red:
  /// 2 for the library's BGR, BGRA and BGR16, 0 for RGB.
  template <class T>
  void apply(T* pixels, std::size_t count, std::size_t step, std::size_t red, std::uint32_t top) const {
    apply_to_bytes<T>(reinterpret_cast<std::uint8_t*>(pixels), count, step, red, top);
  }
  /// The same where words have no alignment.
  template <class T>
  void apply_to_bytes(std::uint8_t* pixels, std::size_t count, std::size_t step, std::size_t red,
                      std::uint32_t top) const {
    const double most = top;
    const std::array<double, 9> m = m_;  // which no pixel can overlap
    for (std::size_t i = 0; i < count; ++i, pixels += step * sizeof(T)) {
      const double r = load<T>(pixels, red);
      const double g = load<T>(pixels, 1);
      const double b = load<T>(pixels, 2 - red);
      store<T>(pixels, red, level(r * m[0] + g * m[1] + b * m[2], most));
      store<T>(pixels, 1, level(r * m[3] + g * m[4] + b * m[5], most));
      store<T>(pixels, 2 - red, level(r * m[6] + g * m[7] + b * m[8], most));
    }
  }
  void apply_bgr(std::span<std::uint8_t> picture) const {
    apply(picture.data(), picture.size() / 3, 3, 2, 255);
  }
  void apply_bgra(std::span<std::uint8_t> picture) const {
    apply(picture.data(), picture.size() / 4, 4, 2, 255);
  }
  void apply_bgr16(std::span<std::uint16_t> picture, std::uint32_t top) const {
    apply(picture.data(), picture.size() / 3, 3, 2, top);
  }

 private:
  template <class T>
  static double load(const std::uint8_t* pixel, std::size_t channel) {
    T sample;
    std::memcpy(&sample, pixel + channel * sizeof(T), sizeof(T));
    return sample;
  }
  template <class T>
  static void store(std::uint8_t* pixel, std::size_t channel, std::uint32_t value) {
    const auto sample = static_cast<T>(value);
    std::memcpy(pixel + channel * sizeof(T), &sample, sizeof(T));
  }

  static std::uint32_t level(double value, double top) {
    // One comparison each, in the form that processors have an instruction for.
    const double above = value > 0 ? value : 0;
    const double inside = above < top ? above : top;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(inside + 0.5));
  }

  std::array<double, 9> m_{};
};

}  // namespace quorvane
