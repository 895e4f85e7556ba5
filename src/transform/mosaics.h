// The transforms of Bayer frames by windows, by source and target.
#pragma once

#include <optional>

#include "bayer/demosaic_2x2.h"
#include "bayer/demosaic_3x3.h"
#include "transform/sample_layout.h"

namespace qvn {

using Mosaic2x2 = std::optional<Recipe2x2>;
using Mosaic3x3 = std::optional<Recipe3x3>;

extern const ByTarget<Mosaic2x2> kRaw8Mosaics, kRaw12Mosaics, kRaw16Mosaics;
extern const ByLayout<Mosaic2x2> kRaw16LayoutMosaics;
extern const ByTarget<Mosaic3x3> kRaw8Mosaics3x3;

}  // namespace qvn
