/// Slow reference of the mono and RGB runs.
///
/// `count` is a number of pixels. 16-bit samples are big-endian, but for the two Ex forms, which are told.
#pragma once

#include <cstdint>

namespace reference {

/// Good in place.
void RGB8ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

/// (0.72 * G + 0.21 * R) + 0.07 * B in double precision, truncated.
void RGB8ToY8(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

void Y8ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

/// Bit 6 of the low byte pushes blue up by one, bit 7 red, unless the high byte is 255.
void Y16ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);
void Y16ToY8(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

/// `byteSwap` 0 takes words in host order, else they are big-endian. `alignment` 1 cuts below the top eight
/// of `bitsPerSample` bits, any other at bit 8.
void Y16ToBGREx(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t byteSwap,
                std::uint32_t alignment, std::uint32_t bitsPerSample);
void Y16ToY8Ex(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t byteSwap,
               std::uint32_t alignment, std::uint32_t bitsPerSample);

/// The plain loop; the count must be divisible by 8.
void Y16ToY8_MMX(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count);

}  // namespace reference
