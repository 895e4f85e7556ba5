// Binned frames: a row of the picture comes from two lines of one field, a blue one and a red one.
#pragma once

#include "cygm/row.h"

namespace qvn {

using BinnedRecipe = CygmRecipe<BinnedWindow>;

// What a target is made by, or null for one that binned frames do not offer.
const BinnedRecipe* binned_recipe(uint32_t target);

// Width at least 3, height at least 4.
void convert_binned(const BinnedRecipe& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                    uint32_t height);

}  // namespace qvn
