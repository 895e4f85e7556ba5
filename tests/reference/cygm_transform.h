/// Slow reference of the conversions of complementary mosaics with a selectable output.
///
/// `target` is one that the entry offers. In an odd width rows of the 2x2 family, and 4:2:2 rows of the
/// binned family, reach into the row behind them, which is written next.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference {

/// Bytes from a row of a target to the next.
std::size_t cygm_pitch(std::uint32_t width, std::uint32_t target);

void IRaw8CYGMImageTransform_Bin(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                                 std::uint32_t height, std::uint32_t target);
void IRaw8CYGMImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                             std::uint32_t height, std::uint32_t target, std::uint32_t phase);
void IRaw8CYGMImageTransform_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                                 std::uint32_t height, std::uint32_t target, std::uint32_t phase);

}  // namespace reference
