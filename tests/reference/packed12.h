/// Slow reference of the unpacking of 12-bit pairs; both work in whole pairs.
#pragma once

#include <cstdint>

namespace reference {

/// The top eight bits of each sample.
void Packed12BitTo8Bit(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height);

/// Two bytes a sample, the high one first, the sample in the top 12 bits.
void Packed12BitTo16Bit(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                        std::uint32_t height);

}  // namespace reference
