// Mosaic frames by cells of 2x2 samples: row r of the picture comes from lines F(r) and F(r + 1). The plain
// conversion and the transforms make the same cells and differ in everything around them: how a row ends,
// which rows are copies, and where the second field begins.
#pragma once

#include "cygm/row.h"

namespace qvn {

// The four kinds of rows, CygmCellRow0 to CygmCellRow3, by their number modulo 4.
struct CellRowLines {
  const uint8_t *upper, *lower;
  uint32_t phase;
};

using CellRecipe = CygmRecipe<CellRowLines>;

// To BGR, width at least 2, height at least 8. The last row is left alone.
void convert_2x2_to_bgr(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);

// What a target is made by, or null for one that is not offered.
const CellRecipe* transform_2x2_recipe(uint32_t target);

// Width at least 2. A height of 0 or 1 writes nothing.
void transform_2x2(const CellRecipe& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                   uint32_t height);

}  // namespace qvn
