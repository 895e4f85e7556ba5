/// Slow reference of the conversions to separate planes.
///
/// `count` is width * height in 32 bits, wraps included. 4:4:4 and 4:1:1 take the plane tables, 4:2:2 the
/// packed offsets, so that their values differ. Pixels beyond the last whole group are left out.
#pragma once

#include <cstdint>

namespace reference {

/// Where the planes go. `y` is not used by the forms without luma; it may be null where a form says so.
struct Planes {
  std::uint8_t* r;
  std::uint8_t* g;
  std::uint8_t* b;
  std::uint8_t* y;
};

void YUV444ToRGBPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count);
void YUV422ToRGBPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count);
void YUV411ToRGBPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count);
void YUV444ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count);
void YUV422ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count);
/// A null `y` skips its writes.
void YUV411ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count);

/// Three passes, one a colour, then luma from what the planes hold by then, unless `y` is null. Planes that
/// overlap each other get what these passes leave.
void RGB8ToRGBYPlanes(Planes planes, const std::uint8_t* src, std::uint32_t count);

}  // namespace reference
