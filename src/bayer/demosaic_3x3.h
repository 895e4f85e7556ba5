// The walk of the 3x3 demosaics: the interior of the frame by rows of windows, the border by copies.
#pragma once

#include "bayer/row_3x3.h"

namespace qvn {

struct Recipe3x3 {
  void (*blue_row)(const Line3x3& line, uint8_t* out, size_t n);
  void (*red_row)(const Line3x3& line, uint8_t* out, size_t n);
  uint32_t pixel_bytes;
};

// RedGreens: the green sites of red lines.
template <class Put, GreenSites RedGreens>
constexpr Recipe3x3 recipe_3x3() {
  return {row_3x3<OwnColour::kBlue, GreenSites::kAsTheyAre, Put>, row_3x3<OwnColour::kRed, RedGreens, Put>,
          Put::kPixelBytes};
}

// Runs a recipe over a frame. `pattern` is an internal code; codes above 3 count as odd row phase.
//
// Columns 0 and width - 1 repeat their neighbours, lines 0 and height - 1 theirs; a frame of two lines is
// black. Two columns are made a step, so that an odd width gets width + 1 pixels a line, in source and
// destination.
void demosaic_3x3(const Recipe3x3& recipe, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern);

extern const Recipe3x3 kRaw8ToBgr3x3;

}  // namespace qvn
