// The demosaics of packed 12-bit mosaics, plain and corrected. Destinations of 16-bit channels are bytes
// here, since they need no alignment. `pattern` is an internal code; the corrected ones return 0, or the
// map's refusal, with nothing written, and no object means the plain demosaic.
#pragma once

#include "correction/color_correction.h"

namespace qvn {

void raw12_to_bgr(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern);
void raw12_to_bgr16(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern);
int32_t raw12_to_bgr_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                               uint32_t pattern, const ColorCorrection* object);
int32_t raw12_to_bgr16_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                 uint32_t pattern, const ColorCorrection* object);

}  // namespace qvn
