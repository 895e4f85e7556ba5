#include "utility/interlace.h"

#include <cstring>
#include <memory>

namespace qvn {

void weave_fields(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  const uint8_t* upper = src + (width >> 1) * height;
  const uint8_t* lower = src;
  for (uint32_t pair = 0; pair < height >> 1; ++pair, upper += width, lower += width) {
    std::memcpy(dst, upper, width);
    std::memcpy(dst + width, lower, width);
    dst += size_t{2} * width;
  }
}

// The lines that are written end where the second field's next line begins, at the latest.
void weave_fields_in_place(uint8_t* frame, uint32_t width, uint32_t height) {
  const uint32_t field_bytes = (width * height) >> 1;
  const std::unique_ptr<uint8_t[]> scratch(new uint8_t[field_bytes]);
  std::memcpy(scratch.get(), frame, field_bytes);
  const uint8_t* upper = frame + field_bytes;
  const uint8_t* lower = scratch.get();
  uint8_t* out = frame;
  for (uint32_t pair = 0; pair < height >> 1; ++pair, upper += width, lower += width) {
    std::memcpy(out, upper, width);
    std::memcpy(out + width, lower, width);
    out += size_t{2} * width;
  }
}

}  // namespace qvn
