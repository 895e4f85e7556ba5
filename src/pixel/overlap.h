// Whether blocks of memory share a byte.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

struct Block {
  const uint8_t* first;
  size_t bytes;
};

inline bool disjoint(Block a, Block b) {
  const auto a_first = reinterpret_cast<uintptr_t>(a.first), b_first = reinterpret_cast<uintptr_t>(b.first);
  return a_first < b_first ? b_first - a_first >= a.bytes : a_first - b_first >= b.bytes;
}

}  // namespace qvn
