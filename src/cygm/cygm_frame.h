// Frames of two stored fields, one byte a sample, and their lines in display order. The field that lies
// second in memory holds the top line of the picture; lines of the two take turns.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

struct CygmFrame {
  const uint8_t* first_field;
  const uint8_t* second_field;
  size_t width;

  // F(n), line n of the picture.
  const uint8_t* line(size_t n) const { return (n % 2 == 0 ? second_field : first_field) + n / 2 * width; }
};

// The second field begins at half of the samples. The product wraps at 32 bits.
inline CygmFrame halved_frame(const uint8_t* src, uint32_t width, uint32_t height) {
  return {src, src + ((width * height) >> 1), width};
}

// The second field begins behind half of the lines: elsewhere than in a halved frame where the height is odd.
inline CygmFrame frame_of_whole_lines(const uint8_t* src, uint32_t width, uint32_t height) {
  return {src, src + (height >> 1) * width, width};
}

}  // namespace qvn
