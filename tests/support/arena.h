/// A buffer with margins before and behind it, compared as a whole.
///
/// A function under test gets data(); whatever it writes, inside or outside of the frame, shows in the
/// comparison of two arenas. The margins also give defined bytes to the few conversions that read around
/// their frame. data() has the alignment of a vector register plus `before`.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "support/random.h"

namespace support {

class Arena {
 public:
  /// `before` and `behind` are the margins in bytes.
  Arena(std::size_t before, std::size_t size, std::size_t behind);
  Arena(const Arena& other);
  Arena& operator=(const Arena&) = delete;
  ~Arena();

  std::uint8_t* data() { return bytes_ + before_; }
  const std::uint8_t* data() const { return bytes_ + before_; }
  std::size_t size() const { return size_; }
  std::size_t before() const { return before_; }
  std::size_t whole_size() const { return before_ + size_ + behind_; }
  const std::uint8_t* whole() const { return bytes_; }

  /// Each fills the margins too.
  void fill(std::uint8_t value);
  void fill(Random& random);
  void fill_inverse_of(const Arena& other);

 private:
  std::size_t before_;
  std::size_t size_;
  std::size_t behind_;
  std::uint8_t* bytes_;
};

/// True if the two are equal from the first byte of the margin before to the last of the margin behind. The
/// message names the first differing byte by its offset from data(), and by line and byte in the line if
/// `line_bytes` is not 0, and says how many bytes differ.
testing::AssertionResult same_bytes(const char* what, const Arena& expected, const Arena& actual,
                                    std::size_t line_bytes = 0);

}  // namespace support
