// The interpolating transforms: a scratch frame around the interpolations, one a call.
#pragma once

#include "bayer/interpolation.h"
#include "transform/targets.h"

namespace qvn {

extern const ByTarget<const InterpolationTarget*> kInterpolations;

// Runs one. `src` ends as the 4:2:2 form of the second half frame. Without memory for the scratch frame,
// kPair returns with both buffers untouched, kBox4 lets the exception out, and kBlock8 throws the integer 1.
void run_interpolation(ChromaFilter filter, const InterpolationTarget& target, uint8_t* dst, uint8_t* src,
                       uint32_t width, uint32_t height, uint32_t pattern);

}  // namespace qvn
