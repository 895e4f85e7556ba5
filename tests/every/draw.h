/// Calls drawn from a string of bytes: the same bytes give the same call on every platform. A fuzzer draws
/// from its input, a test from random bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "every/entry.h"

namespace every {

/// Numbers from bytes; behind the last one all are 0.
class Input {
 public:
  Input(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes, size) {}

  /// From 0 to bound - 1.
  std::uint32_t below(std::uint32_t bound);
  std::uint32_t word();
  /// True once in `times`.
  bool once_in(std::uint32_t times) { return below(times) == times - 1; }
  std::span<const std::uint8_t> rest() const { return bytes_; }

 private:
  std::uint8_t byte();

  std::span<const std::uint8_t> bytes_;
};

/// Arguments that the entry takes, good and bad ones, with sizes that are tight or loose.
Call draw_call(const Entry& entry, Input& input);

}  // namespace every
