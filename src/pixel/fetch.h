// Fetches: what the sample at a column of a source line is. A fetch knows its line pitch, one sample as a
// number, and a vector of samples of kColumns consecutive columns from any column on; it reads those samples
// only.
#pragma once

#include "pixel/lanes.h"

namespace qvn {

// One byte a sample.
struct FetchRaw8 {
  static constexpr size_t kColumns = kLaneBytes;
  static constexpr size_t line_bytes(uint32_t width) { return width; }
  static uint32_t sample(const uint8_t* line, size_t x) { return line[x]; }
  static Bytes samples(const uint8_t* line, size_t x) { return load<Bytes>(line + x); }
};

// The first byte of two: the top eight bits of a big-endian sample.
struct FetchRaw16TopByte {
  static constexpr size_t kColumns = kLaneBytes;
  static constexpr size_t line_bytes(uint32_t width) { return size_t{2} * width; }
  static uint32_t sample(const uint8_t* line, size_t x) { return line[2 * x]; }
  static Bytes samples(const uint8_t* line, size_t x) {
    return split2_even(load<Bytes>(line + 2 * x), load<Bytes>(line + 2 * x + kLaneBytes));
  }
};

}  // namespace qvn
