/// Two columns a step, by one of four line bodies; the border is copied inward out.
#include "reference/demosaic_3x3.h"

#include <cstddef>
#include <cstring>

namespace reference {
namespace {

enum class Site { kBlue, kRed, kGreenOnBlueLine, kGreenOnRedLine };

/// `corner` is the top left one of the nine samples.
std::uint8_t* make_pixel(std::uint8_t* out, const std::uint8_t* corner, std::size_t pitch, Site site) {
  const std::uint32_t nw = corner[0];
  const std::uint32_t n = corner[1];
  const std::uint32_t ne = corner[2];
  const std::uint32_t w = corner[pitch];
  const std::uint32_t c = corner[pitch + 1];
  const std::uint32_t e = corner[pitch + 2];
  const std::uint32_t sw = corner[2 * pitch];
  const std::uint32_t s = corner[2 * pitch + 1];
  const std::uint32_t se = corner[2 * pitch + 2];

  const std::uint32_t diagonal = (nw + ne + sw + se) >> 2;
  const std::uint32_t cross = (n + s + w + e) >> 2;
  // One diagonal alone: north-west and south-east take no part.
  const std::uint32_t smoothed = (2 * c + sw + ne) >> 2;
  const std::uint32_t across = (w + e) >> 1;
  const std::uint32_t along = (n + s) >> 1;

  std::uint32_t blue = 0;
  std::uint32_t green = 0;
  std::uint32_t red = 0;
  switch (site) {
    case Site::kBlue:
      blue = c, green = cross, red = diagonal;
      break;
    case Site::kRed:
      blue = diagonal, green = cross, red = c;
      break;
    case Site::kGreenOnBlueLine:
      blue = across, green = smoothed, red = along;
      break;
    case Site::kGreenOnRedLine:
      blue = along, green = smoothed, red = across;
      break;
  }
  *out++ = static_cast<std::uint8_t>(blue);
  *out++ = static_cast<std::uint8_t>(green);
  *out++ = static_cast<std::uint8_t>(red);
  return out;
}

}  // namespace

void Raw8ToBGR_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                   std::uint32_t pattern) {
  bool row_flag = (pattern & ~1U) == 0;
  const bool column_flag = (pattern & 1) == 0;
  const std::size_t line_bytes = std::size_t{3} * width;

  std::memset(dst, 0, line_bytes);
  std::uint8_t* line = dst + line_bytes;
  for (std::uint32_t left = height - 2; left != 0; --left) {
    Site first;
    Site second;
    if (row_flag) {
      first = column_flag ? Site::kBlue : Site::kGreenOnBlueLine;
      second = column_flag ? Site::kGreenOnBlueLine : Site::kBlue;
    } else {
      first = column_flag ? Site::kGreenOnRedLine : Site::kRed;
      second = column_flag ? Site::kRed : Site::kGreenOnRedLine;
    }
    std::uint8_t* out = line + 3;
    if (width - 1 > 1) {
      for (std::uint32_t steps = ((width - 3) >> 1) + 1; steps != 0; --steps) {
        out = make_pixel(out, src, width, first);
        out = make_pixel(out, src + 1, width, second);
        src += 2;
      }
    }
    std::memcpy(out, out - 3, 3);
    std::memcpy(line, line + 3, 3);
    src += 2;
    line = out + 3;
    row_flag = !row_flag;
  }
  std::memcpy(line, line - line_bytes, line_bytes);
  std::memcpy(dst, dst + line_bytes, line_bytes);
}

}  // namespace reference
