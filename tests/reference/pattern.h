/// From the pattern code of a caller to the one that the kernels take.
///
/// The reference kernels take the internal code; bit 0 is the column phase of the cell R G over G B, the bits
/// above it the row phase.
#pragma once

#include <cstdint>

namespace reference {

/// From product version 1.1.0.0 on, public codes 1 and 2 change places. `version` is the version word.
constexpr std::uint32_t public_to_internal(std::uint32_t pattern, std::uint32_t version = 0x02010200) {
  if (version >= 0x01010000 && (pattern == 1 || pattern == 2)) return 3 - pattern;
  return pattern;
}

}  // namespace reference
