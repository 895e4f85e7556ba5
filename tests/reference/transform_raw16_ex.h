/// Slow reference of the transform of 16-bit Bayer frames in any byte order and alignment.
///
/// The pattern is an internal code. One column at a time: odd widths are as good as even ones. The last
/// column is zero, the last line a copy of the line above; a height of 1 copies from before `dst`.
#pragma once

#include <cstdint>

#include "reference/transform_runs.h"

namespace reference {

/// Bytes a pixel of targets 0 to 3 and 5 to 7.
std::uint32_t raw16_ex_target_bytes(std::uint32_t target);

/// False, with nothing written, for a target or a format without a kernel.
bool Raw16ImageTransformEx(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                           std::uint32_t height, std::uint32_t target, const SampleFormat& format,
                           std::uint32_t pattern);

}  // namespace reference
