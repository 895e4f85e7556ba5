/// The walks of the plain demosaics, with one pixel's colours corrected at a time.
#include "reference/raw8_cc.h"

#include <cstddef>
#include <cstring>

#include "reference/correction.h"
#include "reference/demosaic_2x2.h"

namespace reference {
namespace {

std::uint32_t mean(std::uint32_t a, std::uint32_t b) { return (a + b) >> 1; }

std::uint8_t* put(std::uint8_t* out, const void* correction, Colours window) {
  const Colours colours = correct(correction, window, 8);
  *out++ = static_cast<std::uint8_t>(colours.blue);
  *out++ = static_cast<std::uint8_t>(colours.green);
  *out++ = static_cast<std::uint8_t>(colours.red);
  return out;
}

}  // namespace

int Raw8ToBGR_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                 std::uint32_t pattern, const void* correction) {
  if (correction == nullptr) {
    Raw8ToBGR(dst, src, width, height, pattern);
    return kServed;
  }
  if (const int answer = dispatch(Corrected::kRaw8, correction); answer != kServed) return answer;
  CellWalker at(src, pattern, width, height);
  std::uint8_t* out = dst;
  while (at.begin_line()) {
    if (width - 2 != 0) {
      for (std::uint32_t step = 0; step < ((width - 3) >> 1) + 1; ++step) {
        out = put(out, correction, {.red = at.R[0], .green = mean(at.G1[0], at.G2[0]), .blue = at.B[0]});
        if ((pattern & 1) == 0) {
          out = put(out, correction, {.red = at.R[2], .green = mean(at.G2[0], at.G1[2]), .blue = at.B[0]});
        } else {
          out = put(out, correction, {.red = at.R[0], .green = mean(at.G1[0], at.G2[2]), .blue = at.B[2]});
        }
        at.step_two_columns();
      }
    }
    out = put(out, correction, {.red = *at.R, .green = mean(*at.G1, *at.G2), .blue = *at.B});
    std::memcpy(out, out - 3, 3);
    out += 3;
    at.end_line();
  }
  const std::size_t line_bytes = std::size_t{3} * width;
  std::memcpy(out, out - line_bytes, line_bytes);
  return kServed;
}

int Raw8ToY8_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern, const void* correction) {
  if (correction == nullptr) {
    Raw8ToY8(dst, src, width, height, pattern);
    return kServed;
  }
  if (const int answer = dispatch(Corrected::kRaw8, correction); answer != kServed) return answer;
  CellWalker at(src, pattern, width, height);
  std::uint8_t* out = dst;
  while (at.begin_line()) {
    for (; at.in_line(); at.step()) {
      const Colours colours =
          correct(correction, {.red = *at.R, .green = mean(*at.G1, *at.G2), .blue = *at.B}, 8);
      *out++ = luma(colours.red, colours.green, colours.blue);
    }
    *out = out[-1];
    ++out;
    at.end_line();
  }
  std::memcpy(out, out - width, width);
  return kServed;
}

}  // namespace reference
