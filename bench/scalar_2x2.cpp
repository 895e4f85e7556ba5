// The 2x2 demosaic as a plain fused loop, the yardstick for the vector rows. In a file of its own, so that
// the compiler knows neither pattern nor size.
#include <cstddef>

#include "entry_rows.h"

void scalar_raw8_to_bgr(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  for (uint32_t y = 0; y + 1 < height; ++y) {
    const uint8_t* red = src + size_t{y + (y & 1)} * width;
    const uint8_t* blue = src + size_t{y + 1 - (y & 1)} * width;
    uint8_t* out = dst + size_t{3} * y * width;
    for (uint32_t x = 0; x + 1 < width; ++x, out += 3) {
      const uint32_t odd = x & 1;
      out[0] = blue[x + 1 - odd];
      out[1] = static_cast<uint8_t>((blue[x + odd] + red[x + 1 - odd]) >> 1);
      out[2] = red[x + odd];
    }
  }
}
