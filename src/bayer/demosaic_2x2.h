// The walk of the 2x2 demosaics: a recipe says what a row makes of the windows, how many pixels a line gets
// and how its end is filled; the walk is the same for all.
#pragma once

#include "bayer/cell_walker.h"

namespace qvn {

// How many pixels of a line have a window. Kernels that make two columns a step make the same number as the
// others for an even width, and two more for an odd one: their lines then hold width + 1 pixels and drift, at
// an unchanged source pitch.
enum class ColumnStep { kOne, kTwo };

// What the last pixel of a line holds.
enum class LineEnd { kCopyOfPixelBefore, kZero };

struct Recipe2x2 {
  size_t (*line_bytes)(uint32_t width);                       // source pitch
  void (*row)(const CellLine& line, uint8_t* out, size_t n);  // window, correction and put of n pixels
  uint32_t pixel_bytes;
  ColumnStep columns;
  LineEnd line_end;
};

// Runs a recipe over a frame. The last line is a copy of the line above it, taken from where the writing
// ended. Width at least 2; `pattern` is an internal code.
void demosaic_2x2(const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern);

extern const Recipe2x2 kRaw8ToBgr, kRaw8ToY8, kRaw8ToGreyBgr, kRaw16ToBgr, kRaw8ToYuv444;

}  // namespace qvn
