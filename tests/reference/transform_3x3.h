/// Slow reference of the 3x3 demosaic with a selector of the output.
///
/// As Raw8ToBGR_3x3, sizes outside the contract included, but for one site: with neither row nor column flag,
/// the green sites take the formula of a green on a blue line. The pattern is an internal code.
#pragma once

#include <cstdint>

namespace reference {

/// Targets 0 to 3; false, with nothing written, for any other.
bool Raw8ImageTransform_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                            std::uint32_t height, std::uint32_t target, std::uint32_t pattern);

}  // namespace reference
