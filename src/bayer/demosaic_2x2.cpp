// The 2x2 demosaics as recipes, and the walk that runs them.
#include "bayer/demosaic_2x2.h"

#include <cstring>

#include "bayer/row_2x2.h"
#include "pixel/yuv.h"

namespace qvn {

namespace {

template <class Fetch, class Put>
void put_row(const CellLine& line, uint8_t* out, size_t n) {
  row_2x2<Fetch>(PackedPixels<Put>{out}, line, n);
}

template <class Fetch, class Put>
constexpr Recipe2x2 recipe(ColumnStep columns, LineEnd line_end) {
  return {Fetch::line_bytes, put_row<Fetch, Put>, Put::kPixelBytes, columns, line_end};
}

// Pixels with a window of their own in a line of `width`.
uint32_t window_count(ColumnStep columns, uint32_t width) {
  if (columns == ColumnStep::kOne) return width - 1;
  const uint32_t steps = width == 2 ? 0 : ((width - 3) >> 1) + 1;
  return 2 * steps + 1;
}

void finish_line(LineEnd line_end, uint8_t* last_pixel, size_t pixel_bytes) {
  if (line_end == LineEnd::kZero) {
    std::memset(last_pixel, 0, pixel_bytes);
  } else {
    std::memcpy(last_pixel, last_pixel - pixel_bytes, pixel_bytes);
  }
}

}  // namespace

constexpr Recipe2x2 kRaw8ToBgr = recipe<FetchRaw8, PutBgr>(ColumnStep::kTwo, LineEnd::kCopyOfPixelBefore);
constexpr Recipe2x2 kRaw8ToY8 = recipe<FetchRaw8, PutY8>(ColumnStep::kOne, LineEnd::kCopyOfPixelBefore);
constexpr Recipe2x2 kRaw8ToGreyBgr =
    recipe<FetchRaw8, PutGreyBgr>(ColumnStep::kOne, LineEnd::kCopyOfPixelBefore);
// Black at the right, not replicated: callers tell the 16-bit source by it.
constexpr Recipe2x2 kRaw16ToBgr = recipe<FetchRaw16TopByte, PutBgr>(ColumnStep::kOne, LineEnd::kZero);

constexpr Recipe2x2 kRaw8ToYuv444 =
    recipe<FetchRaw8, PutYuv444>(ColumnStep::kOne, LineEnd::kCopyOfPixelBefore);

void demosaic_2x2(const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern) {
  const size_t pixel_bytes = recipe.pixel_bytes;
  const size_t windows = window_count(recipe.columns, width);
  uint8_t* out = dst;
  CellWalker walker(src, recipe.line_bytes(width), height, pattern);
  while (!walker.done()) {
    recipe.row(walker.next(), out, windows);
    out += windows * pixel_bytes;
    finish_line(recipe.line_end, out, pixel_bytes);
    out += pixel_bytes;
  }
  // With an odd width and two columns a step the writing has drifted, and so has the line that is copied.
  const size_t line_bytes = width * pixel_bytes;
  std::memmove(out, out - line_bytes, line_bytes);
}

}  // namespace qvn
