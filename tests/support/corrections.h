/// Colour corrections as a caller lays them down, word by word: made by hand, or random ones of every temper.
///
/// Built from the layouts alone, without the record types of the public header. Fields that nothing may read
/// hold rubbish.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/random.h"

namespace support {

using Matrix = std::array<float, 9>;
using Coefficients = std::array<std::int32_t, 9>;

inline constexpr Matrix kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};
inline constexpr Coefficients kFixedIdentity = {1024, 0, 0, 0, 1024, 0, 0, 0, 1024};

/// The object and, for tables, their storage. It can be moved, but not copied: the object points to the
/// storage.
class Correction {
 public:
  /// No object.
  Correction() = default;
  Correction(Correction&&) = default;
  Correction& operator=(Correction&&) = default;
  /// The kind and rubbish behind it: enough words for every layout.
  static Correction of_kind(std::uint32_t kind);
  /// Kinds 2 and 3.
  static Correction fixed_matrix(std::uint32_t kind, const Coefficients& coefficients);
  /// Kinds 1, 4 and 5.
  static Correction floats(std::uint32_t kind, const Matrix& matrix, float gamma, float max_value);
  static Correction gamma(float gamma, float max_value) { return floats(4, kIdentity, gamma, max_value); }
  /// Kinds 8 and 9 over storage that the caller keeps alive.
  static Correction table(std::uint32_t kind, const void* first, const void* last);
  /// Kinds 8 and 9 over a copy of the storage, the table being its first `bytes` bytes.
  static Correction bytes(std::uint32_t kind, const std::vector<std::uint8_t>& storage, std::size_t bytes);
  static Correction words(const std::vector<std::uint16_t>& storage, std::size_t entries);

  const void* get() const { return object_.empty() ? nullptr : object_.data(); }
  /// The table's storage.
  std::vector<std::uint8_t>& storage() { return storage_; }
  const std::vector<std::uint8_t>& storage() const { return storage_; }

 private:
  std::vector<std::uint64_t> object_;
  std::vector<std::uint8_t> storage_;
};

/// Bytes of the layouts, up to the last field that a conversion reads.
std::size_t object_bytes(std::uint32_t kind);

enum class Temper {
  kGentle,    ///< about what a picture needs
  kWild,      ///< results far outside of the channel
  kNegative,  ///< negative factors and exponents
  kHuge,      ///< results outside of 32 and of 64 bits
  kSpecial,   ///< NaN, infinities, zeros, the ends of the number ranges
};
inline constexpr Temper kTempers[] = {Temper::kGentle, Temper::kWild, Temper::kNegative, Temper::kHuge,
                                      Temper::kSpecial};

const char* name_of(Temper temper);

/// Kinds 1 to 5, 8 and 9. Tables hold every index, and random values.
/// @param sample_bits  bits of the samples that are corrected: 8, 12 or 16
/// @param word_table   whether a kind-9 object is used as words, over the whole range of 16 bits
Correction random_correction(std::uint32_t kind, Temper temper, unsigned sample_bits, bool word_table,
                             Random& random);

}  // namespace support
