/// Slow reference of the extraction of a block that lies in a frame.
#pragma once

#include <cstdint>

namespace reference {

/// Where the block lies, or why it is refused; for pointers that are not null.
struct SisPlace {
  std::uint32_t status;
  std::uint32_t offset;  ///< bytes from the frame's begin
  std::uint32_t size;    ///< bytes of the block
};

SisPlace find_sis(std::uint32_t width, std::uint32_t height, std::uint32_t colorCoding, std::int32_t position,
                  std::uint32_t blockKind);

}  // namespace reference
