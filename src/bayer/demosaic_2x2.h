// The 2x2 demosaics: a walk over the lines of windows, and recipes that say what a line makes of them, how
// many pixels it gets and how it ends. Other rooms make recipes of their own, or walk with lines of their
// own.
#pragma once

#include <cstring>

#include "bayer/cell_walker.h"
#include "bayer/line_end.h"
#include "bayer/staged_row.h"

namespace qvn {

// How many columns a line's kernel makes a step. Two columns a step make the same number of pixels as one for
// an even width, and one more for an odd one: the lines then hold width + 1 pixels and drift, at an unchanged
// source pitch.
enum class ColumnStep { kOne, kTwo };

// Pixels in a line of `width`, those of the line end included.
constexpr uint32_t line_pixels(ColumnStep columns, uint32_t width) {
  if (columns == ColumnStep::kOne) return width;
  const uint32_t steps = width == 2 ? 0 : ((width - 3) >> 1) + 1;
  return 2 * steps + 2;
}

// Runs line(source lines, out) over the height - 1 lines of windows; each one writes `out_bytes` from `out`
// on. Returns the place behind the last one. `pattern` is an internal code.
template <class Line>
uint8_t* walk_2x2(uint8_t* dst, size_t out_bytes, const uint8_t* src, size_t src_bytes, uint32_t height,
                  uint32_t pattern, const Line& line) {
  uint8_t* out = dst;
  CellWalker walker(src, src_bytes, height, pattern);
  while (!walker.done()) {
    line(walker.next(), out);
    out += out_bytes;
  }
  return out;
}

// Makes the last line, at `out`, a copy of the line before it. Where the writing has drifted, so has the line
// that is copied.
inline void copy_last_line(uint8_t* out, size_t line_bytes) {
  std::memmove(out, out - line_bytes, line_bytes);
}

struct Recipe2x2 {
  size_t (*src_line_bytes)(uint32_t width);
  void (*line)(const CellLine& line, uint8_t* out, size_t pixels);  // all pixels of a line
  size_t (*dst_line_bytes)(uint32_t width);
  size_t pixel_bytes;
  ColumnStep columns;
};

// A line of one fetch, output and line end.
template <class Fetch, class Output, class End>
void line_2x2(const CellLine& line, uint8_t* dst, size_t pixels) {
  const Output out{dst};
  const size_t windows = pixels - End::kPixels;
  if constexpr (kStaged<Fetch>) {
    staged_row_2x2<Fetch>(out, line, windows);
  } else {
    row_2x2<Fetch>(out, line, windows);
  }
  End::template finish<Fetch>(out, line, windows);
}

template <class Fetch, class Output, class End>
constexpr Recipe2x2 recipe_2x2(ColumnStep columns) {
  return {Fetch::line_bytes, line_2x2<Fetch, Output, End>, Output::line_bytes, Output::kPixelBytes, columns};
}

// Runs a recipe over a frame. Width at least 2; `pattern` is an internal code.
void demosaic_2x2(const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern);

extern const Recipe2x2 kRaw8ToBgr, kRaw8ToY8, kRaw8ToGreyBgr, kRaw16ToBgr, kRaw8ToYuv444;

}  // namespace qvn
