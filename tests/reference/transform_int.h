/// Slow reference of the demosaics by way of YUV with a selector of the output.
///
/// The working frame is a scratch frame of the call; `src` is overwritten with a 4:2:2 stream, half a frame
/// at a time, and ends as that of the second half. Patterns are internal codes. Each function is false, and
/// has written nothing, for a target above 3.
#pragma once

#include <cstdint>

#include "reference/yuv_tables.h"

namespace reference {

/// YUV422ToBGRAdjustable for each of the targets 0 to 3. Always true.
bool YUV422ToTargetAdjustable(ColorTables& tables, std::uint32_t target, std::uint8_t* dst,
                              const std::uint8_t* src, std::uint32_t count, float hue, float saturation);

bool Raw8ImageTransform_IntYUV422(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width,
                                  std::uint32_t height, std::uint32_t target, std::uint32_t pattern);
bool Raw8ImageTransform_IntLCAA(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width,
                                std::uint32_t height, std::uint32_t target, std::uint32_t pattern);

/// With two lines a half, the three pixels before the scratch frame that the first half looks back at are 0.
bool Raw8ImageTransform_IntLCAAV(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width,
                                 std::uint32_t height, std::uint32_t target, std::uint32_t pattern);

}  // namespace reference
