// Colour corrections: owners of the library's objects.
#pragma once

#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "quorvane/result.hpp"
#include "quorvane/types.hpp"

namespace quorvane {

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

}  // namespace quorvane
