/// Slow reference of the demosaics of 16-bit frames that keep the depth, plain and corrected.
///
/// Patterns are internal codes. 16-bit words are stored in host order at any address. No shift is refused
/// here. The corrected forms take any object, null runs the plain form; their results are the dispatcher's.
/// Width 2 makes no pixel, and copies what lies before `dst`.
#pragma once

#include <cstdint>

namespace reference {

void Raw16ToBGR16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern, std::uint32_t shift);
void Raw16ToY16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern, std::uint32_t shift);
int Raw16ToBGR16_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t pattern, std::uint32_t shift, const void* correction);
int Raw16ToY16_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern, std::uint32_t shift, const void* correction);

/// One sample, and the mean of two, after the shift; each pointer is at a high byte.
std::uint32_t shifted_sample(const std::uint8_t* sample, std::uint32_t shift);
std::uint32_t shifted_mean(const std::uint8_t* a, const std::uint8_t* b, std::uint32_t shift);

}  // namespace reference
