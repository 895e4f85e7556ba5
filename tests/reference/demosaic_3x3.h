/// Slow reference of the bilinear 3x3 demosaic.
///
/// The pattern is an internal code; one above 3 counts as odd row phase. A width of 2 has no interior column:
/// each inner line keeps what column 0 of `dst` held. An odd width writes width + 1 pixels a line, moves the
/// source by width + 1 a line, and so reads up to height - 3 samples behind the frame.
#pragma once

#include <cstdint>

namespace reference {

void Raw8ToBGR_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                   std::uint32_t pattern);

}  // namespace reference
