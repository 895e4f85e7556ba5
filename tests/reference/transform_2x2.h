/// Slow reference of the transforms of Bayer frames by the 2x2 window, at 8 bits a sample.
///
/// Patterns are internal codes. Nothing is checked but the target: a function is false, and has written
/// nothing, where its entry refuses it. An odd width writes width + 1 pixels a line in the two-column kernels
/// (Raw8, Raw12). A height of 1 makes no line, and the copy of the last line then reads before `dst`.
#pragma once

#include <cstdint>

namespace reference {

/// Targets 0 to 4. In odd column phase the column before the last has red and blue exchanged; the last
/// column is its right form. Target 4 is U, Y0, V, Y1 in studio range, its pairs counted through the frame.
bool Raw8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                        std::uint32_t target, std::uint32_t pattern);

/// Targets 0 to 3, from bytes 0 and 2 of each group. The last column repeats the one before it.
bool Raw12ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                         std::uint32_t height, std::uint32_t target, std::uint32_t pattern);

/// Targets 0 to 3, from the first byte of each sample. The last column is zero. Target 0 goes on into
/// target 3, whose frame it leaves.
bool Raw16ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                         std::uint32_t height, std::uint32_t target, std::uint32_t pattern);

}  // namespace reference
