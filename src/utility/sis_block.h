// The SIS: a block of bytes that a camera writes into the pixel data. Its fields are the camera's business.
#pragma once

#include <cstdint>

namespace qvn {

struct SisPlace {
  uint32_t width, height;
  uint32_t color_coding;
  int32_t position;  // a line, or if below 0, pixels from the end of the frame
  uint32_t block_kind;
};

// A status; `dst` is written if it is QVN_OK.
uint32_t copy_sis_block(uint8_t* dst, const uint8_t* frame, const SisPlace& place);

}  // namespace qvn
