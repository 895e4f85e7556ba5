// The pixel formats behind ColorCodingId: one row for each known code.
//
// Codes 0 to 10 are the colour codings of IEEE 1394 IIDC cameras; those from 128 on are
// extensions that have a size and no further meaning here.
#pragma once

#include <cstdint>

namespace qvn {

struct PixelFormat {
  uint32_t code;
  uint32_t bits_per_pixel;
  uint32_t flip_element;  // bytes that move as one when a line is reversed; 0: lines of it cannot be reversed
};

// Null for an unknown code.
const PixelFormat* find_pixel_format(uint32_t code);

}  // namespace qvn
