/// Slow reference of the 8-bit demosaics with a colour correction between the window and the store.
///
/// Patterns are internal codes. A null object runs the plain demosaic. The results are the dispatcher's.
#pragma once

#include <cstdint>

namespace reference {

int Raw8ToBGR_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                 std::uint32_t pattern, const void* correction);
int Raw8ToY8_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern, const void* correction);

}  // namespace reference
