/// Buffers of the tests of the checked header.
#pragma once

#include <cstdint>
#include <vector>

#include "support/random.h"

namespace bindings {

using Buffer = std::vector<std::uint8_t>;

inline Buffer random_bytes(std::size_t size, std::uint64_t stream) {
  Buffer bytes(size);
  support::Random(stream).fill(bytes.data(), size);
  return bytes;
}

}  // namespace bindings
