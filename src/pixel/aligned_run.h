// Runs whose destination does not begin where a vector of the level may: what malloc gives for a large block
// begins 16 bytes behind a page, and there every other store of 32 bytes crosses a line of cache. In cache
// that takes rows with little arithmetic 5 to 30 % longer, and three planes 45 %; from memory it is not
// noticed.
#pragma once

#include "pixel/lanes.h"

namespace qvn {

// From how many pixels on: of fewer, the first ones, made one at a time, cost what the others gain.
inline constexpr size_t kAlignedPixels = 4096;

// Pixels before the first one, of pairs, whose bytes begin at a vector's. 0 if there is none.
template <size_t kPixelBytes>
inline size_t pixels_to_alignment(const uint8_t* dst) {
  const auto first = reinterpret_cast<uintptr_t>(dst);
  for (size_t x = 0; x < kLaneBytes; x += 2) {
    if ((first + x * kPixelBytes) % kLaneBytes == 0) return x;
  }
  return 0;
}

// row(to, from, pixels) over n pixels of kPixelBytes: the first few, and then those whose stores are aligned.
// Two pixels of the source are `source_pair_bytes`.
template <size_t kPixelBytes, class Row>
auto aligned_run(uint8_t* dst, const uint8_t* src, size_t source_pair_bytes, size_t n, const Row& row) {
  const size_t first = kVectorRows && n >= kAlignedPixels ? pixels_to_alignment<kPixelBytes>(dst) : 0;
  if (first != 0) row(dst, src, first);
  return row(dst + first * kPixelBytes, src + first / 2 * source_pair_bytes, n - first);
}

}  // namespace qvn
