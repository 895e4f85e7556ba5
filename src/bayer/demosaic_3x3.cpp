// The 3x3 demosaics as recipes, and the walk that runs them.
#include "bayer/demosaic_3x3.h"

#include <cstring>

namespace qvn {

namespace {

// Pixels with a window of their own in a line of `width`.
uint32_t window_count(uint32_t width) { return width - 1 > 1 ? 2 * (((width - 3) >> 1) + 1) : 0; }

}  // namespace

constexpr Recipe3x3 kRaw8ToBgr3x3 = recipe_3x3<PutBgr, GreenSites::kAsTheyAre>();

void demosaic_3x3(const Recipe3x3& recipe, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern) {
  const size_t pixel_bytes = recipe.pixel_bytes;
  const size_t line_bytes = width * pixel_bytes;
  const size_t windows = window_count(width);
  bool blue_line = (pattern & ~1u) == 0;
  // Bit 0 clear: the first interior line, which is a blue or a red one by the row phase, starts with its own
  // colour on blue lines and with a green on red ones; bit 0 set: the other way about.
  const bool column_flag = (pattern & 1) == 0;

  std::memset(dst, 0, line_bytes);
  const uint8_t* north = src + 1;
  uint8_t* out = dst + line_bytes + pixel_bytes;
  for (uint32_t line = height - 2; line > 0; --line) {
    const Line3x3 lines{north, north + width, north + 2 * size_t{width}, blue_line == column_flag};
    (blue_line ? recipe.blue_row : recipe.red_row)(lines, out, windows);
    uint8_t* end = out + windows * pixel_bytes;
    std::memcpy(end, end - pixel_bytes, pixel_bytes);
    std::memcpy(out - pixel_bytes, out, pixel_bytes);
    out = end + 2 * pixel_bytes;
    north += windows + 2;
    blue_line = !blue_line;
  }
  // From where the writing ended, which an odd width has moved.
  uint8_t* last = out - pixel_bytes;
  std::memcpy(last, last - line_bytes, line_bytes);
  std::memcpy(dst, dst + line_bytes, line_bytes);
}

}  // namespace qvn
