/// Slow reference of the demosaics of packed 12-bit frames, plain and corrected, to 8 and to 16 bits.
///
/// Patterns are internal codes. 16-bit words are stored in host order at any address. The corrected forms
/// take any object, null runs the plain form; their results are the dispatcher's.
#pragma once

#include <cstdint>

namespace reference {

void Raw12ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern);
void Raw12ToBGR16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern);
int Raw12ToBGR_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern, const void* correction);
int Raw12ToBGR16_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t pattern, const void* correction);

}  // namespace reference
