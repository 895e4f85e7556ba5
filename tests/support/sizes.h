/// The sizes that tests run over: every small one, and the neighbourhoods of vector and strip lengths.
#pragma once

#include <cstdint>
#include <numeric>
#include <vector>

namespace support {

/// first, first + 1, ... last
inline std::vector<std::uint32_t> numbers(std::uint32_t first, std::uint32_t last) {
  std::vector<std::uint32_t> all(last - first + 1);
  std::iota(all.begin(), all.end(), first);
  return all;
}

/// Widths of frames, odd ones among them.
inline std::vector<std::uint32_t> frame_widths() {
  std::vector<std::uint32_t> all = numbers(2, 70);
  for (std::uint32_t first : {95U, 127U, 190U, 255U, 319U, 383U, 511U}) {
    for (std::uint32_t width : numbers(first, first + 4)) all.push_back(width);
  }
  return all;
}

/// The even ones of frame_widths().
inline std::vector<std::uint32_t> even_widths() {
  std::vector<std::uint32_t> all;
  for (std::uint32_t width : frame_widths()) {
    if (width % 2 == 0) all.push_back(width);
  }
  return all;
}

/// Lengths of runs of pixels.
inline std::vector<std::uint32_t> run_counts() {
  std::vector<std::uint32_t> all = numbers(0, 300);
  for (std::uint32_t middle : {512U, 1000U, 4096U, 10007U}) {
    for (std::uint32_t count : numbers(middle - 2, middle + 2)) all.push_back(count);
  }
  return all;
}

}  // namespace support
