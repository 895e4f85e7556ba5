// The corrected demosaics of 8-bit mosaics. They return 0, or the map's refusal, with nothing written.
// `pattern` is an internal code; no object means the plain demosaic.
#pragma once

#include "correction/color_correction.h"

namespace qvn {

int32_t raw8_to_bgr_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                              uint32_t pattern, const ColorCorrection* object);
int32_t raw8_to_y8_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                             uint32_t pattern, const ColorCorrection* object);

}  // namespace qvn
