// The interpolations row by row, for frames of even width and height: the working frame never leaves the
// cache. `dst` and `src` end up byte for byte as the three passes leave them.
#pragma once

#include <cstdint>

#include "bayer/interpolation.h"
#include "pixel/lanes.h"

namespace qvn {

// Whether a frame can run by rows. From 8 by 6 on every half has lines enough that no tap looks before its
// half, and every line pairs enough for its end. Beyond 2^32 bytes of working frame or of pixels the passes'
// halves wrap around. The rows are written in vectors only.
inline bool runs_by_rows(uint32_t width, uint32_t height, uint32_t pixel_bytes = 3) {
  const bool wraps = uint64_t{width} * height * (pixel_bytes > 3 ? pixel_bytes : 3) > UINT32_MAX;
  return kVectorRows && width % 2 == 0 && height % 2 == 0 && width >= 8 && height >= 6 && !wraps;
}

// For hue 0 and saturation 1, the plain conversion.
template <class Put>
void interpolate_rows(ChromaFilter filter, uint8_t* dst, WorkingRows working, uint8_t* src, uint32_t width,
                      uint32_t height, uint32_t pattern);

}  // namespace qvn
