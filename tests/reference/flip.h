/// Slow reference of the flips, for arguments that are not refused.
#pragma once

#include <cstdint>

namespace reference {

/// Bytes of the unit that keeps its order; 1 for the codes that only a vertical flip takes.
std::uint32_t flip_element(std::uint32_t colorCoding);

/// `axis` 1 reverses each line, 2 the order of the lines, 3 the whole frame.
void Flip(std::uint8_t* buffer, std::uint32_t width, std::uint32_t height, std::uint32_t axis,
          std::uint32_t colorCoding);

void FlipVertical(std::uint8_t* buffer, std::uint32_t lineBytes, std::uint32_t height);

}  // namespace reference
