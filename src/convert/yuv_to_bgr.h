// Packed YUV to BGR, as rows of n pixels: only whole groups are read and written. dst and src must not
// overlap, but yuv444_to_bgr works in place.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

void yuv444_to_bgr(uint8_t* dst, const uint8_t* src, size_t n);
void yuv422_to_bgr(uint8_t* dst, const uint8_t* src, size_t n);
void yuv411_to_bgr(uint8_t* dst, const uint8_t* src, size_t n);

// yuv422_to_bgr with a hue and a saturation, as adjustable.h tells. Always true.
bool YUV422ToBGRAdjustable(uint8_t* dst, const uint8_t* src, uint32_t count, float hue, float saturation);

}  // namespace qvn
