// Mosaic frames by windows of 3x3 samples: row r of the picture comes from lines F(r - 1), F(r) and F(r + 1).
#pragma once

#include "cygm/row.h"

namespace qvn {

// The four kinds of rows, Cygm3x3Row0 to Cygm3x3Row3, by their number modulo 4.
struct NeighbourLines {
  const uint8_t *above, *centre, *below;
  uint32_t phase;
};

using NeighbourRecipe = CygmRecipe<NeighbourLines>;

// What a target is made by, or null for one that is not offered.
const NeighbourRecipe* full_3x3_recipe(uint32_t target);

// Width at least 2, height a multiple of 4. The table of lines is allocated for the call; the exception of an
// allocation that fails leaves the function.
void convert_3x3(const NeighbourRecipe& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                 uint32_t height);

}  // namespace qvn
