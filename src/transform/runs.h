// The transforms of runs of pixels, by source and target.
//
// A run reads and writes its n pixels and nothing else; of YUV, its whole groups of pixels. dst and src are
// disjoint or the same pointer; the same only where a pixel of dst is no longer than one of src, and of the
// YUV sources for 4:4:4 alone.
#pragma once

#include "transform/sample_layout.h"

namespace qvn {

// Always true.
using PixelRun = bool (*)(uint8_t* dst, const uint8_t* src, size_t n);

extern const ByTarget<PixelRun> kRgb8Runs, kRgba8Runs, kYuv444Runs, kYuv422Runs, kYuv411Runs, kY8Runs,
    kY16Runs;

// Goes on until it meets the end in steps of two pixels: an odd n never does. Callers count in whole groups.
extern const ByTarget<PixelRun> kY12Runs;

extern const ByLayout<PixelRun> kY16LayoutRuns;

}  // namespace qvn
