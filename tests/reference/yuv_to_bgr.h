/// Slow reference of the packed YUV to BGR conversions and of the adjustable routine.
///
/// `count` is a number of pixels; those beyond the last whole group are neither read nor written.
#pragma once

#include <cstdint>

#include "reference/yuv_tables.h"

namespace reference {

/// U, Y, V to B, G, R.
void YUV444ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

/// U, Y0, V, Y1 to two pixels.
void YUV422ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

/// U, Y0, Y1, V, Y2, Y3 to four pixels.
void YUV411ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

/// YUV422ToBGR with a hue and a saturation. Always true.
bool YUV422ToBGRAdjustable(ColorTables& tables, std::uint8_t* dst, const std::uint8_t* src,
                           std::uint32_t count, float hue, float saturation);

}  // namespace reference
