// The demosaics of 16-bit mosaics that keep the depth, plain and corrected. Destinations are bytes here,
// since they need no alignment. `pattern` is an internal code; the corrected ones return 0, or the map's
// refusal, with nothing written, and no object means the plain demosaic.
#pragma once

#include "correction/color_correction.h"

namespace qvn {

void raw16_to_bgr16(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern,
                    uint32_t shift);
void raw16_to_y16(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern,
                  uint32_t shift);
int32_t raw16_to_bgr16_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                 uint32_t pattern, uint32_t shift, const ColorCorrection* object);
int32_t raw16_to_y16_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                               uint32_t pattern, uint32_t shift, const ColorCorrection* object);

}  // namespace qvn
