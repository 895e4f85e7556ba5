/// Slow reference of the weaving of two stored fields.
#pragma once

#include <cstdint>

namespace reference {

/// The field that lies second in memory gives the first line. In place where `dst` is `src`; for an odd
/// width the second field then begins elsewhere.
void InterlacedToProgressive(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                             std::uint32_t height);

}  // namespace reference
