/// The walk and the four plain demosaics, written with the moving cursors and the two-column steps that give
/// odd widths their drift.
#include "reference/demosaic_2x2.h"

#include <cstddef>
#include <cstring>

namespace reference {
namespace {

std::uint8_t* put(std::uint8_t* out, std::uint8_t first, std::uint8_t second, std::uint8_t third) {
  out[0] = first;
  out[1] = second;
  out[2] = third;
  return out + 3;
}

std::uint8_t mean(std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>((a + b) >> 1); }

std::uint8_t* repeat_pixel(std::uint8_t* out) { return put(out, out[-3], out[-2], out[-1]); }

void copy_line_above(std::uint8_t* out, std::size_t line_bytes) {
  std::memcpy(out, out - line_bytes, line_bytes);
}

/// Even column phase: R and G1 are the first to move.
std::uint8_t* two_columns_even(std::uint8_t* out, const CellWalker& at) {
  out = put(out, at.B[0], mean(at.G1[0], at.G2[0]), at.R[0]);
  return put(out, at.B[0], mean(at.G2[0], at.G1[2]), at.R[2]);
}

/// Odd column phase: B and G2 are the first to move.
std::uint8_t* two_columns_odd(std::uint8_t* out, const CellWalker& at) {
  out = put(out, at.B[0], mean(at.G1[0], at.G2[0]), at.R[0]);
  return put(out, at.B[2], mean(at.G1[0], at.G2[2]), at.R[0]);
}

}  // namespace

CellWalker::CellWalker(const std::uint8_t* src, std::uint32_t pattern, std::uint32_t width,
                       std::uint32_t height, std::uint32_t bytes_per_sample)
    : CellWalker(src, pattern, width, height, std::size_t{width} * bytes_per_sample, bytes_per_sample,
                 2 * bytes_per_sample) {}

CellWalker::CellWalker(const std::uint8_t* src, std::uint32_t pattern, std::uint32_t width,
                       std::uint32_t height, std::size_t line_bytes, std::uint32_t next, std::uint32_t two)
    : row(pattern >> 1),
      line_(src),
      pattern_(pattern),
      width_(width),
      height_(height),
      line_bytes_(line_bytes),
      next_(next),
      two_(two) {}

bool CellWalker::begin_line() {
  if (!(row < (pattern_ >> 1) + height_ - 1)) return false;
  const std::uint8_t* upper = line_;
  const std::uint8_t* lower = line_ + line_bytes_;
  switch ((row & 1) + 2 * (pattern_ & 1)) {
    case 0:
      R = upper, G1 = lower, G2 = upper + next_, B = lower + next_;
      break;
    case 1:
      R = lower, G1 = upper, G2 = lower + next_, B = upper + next_;
      break;
    case 2:
      R = upper + next_, G1 = lower + next_, G2 = upper, B = lower;
      break;
    default:
      R = lower + next_, G1 = upper + next_, G2 = lower, B = upper;
      break;
  }
  line_ += line_bytes_;
  col = pattern_ & 1;
  return true;
}

bool CellWalker::in_line() const { return col < (pattern_ & 1) + width_ - 1; }

void CellWalker::step() {
  if ((col & 1) == 0) {
    R += two_;
    G1 += two_;
  } else {
    B += two_;
    G2 += two_;
  }
  ++col;
}

void CellWalker::step_two_columns() {
  step();
  step();
}

std::uint8_t luma(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  return static_cast<std::uint8_t>((green * 150 + red * 77 + blue * 29) >> 8);
}

void Raw8ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
               std::uint32_t pattern) {
  CellWalker walker(src, pattern, width, height);
  std::uint8_t* out = dst;
  while (walker.begin_line()) {
    if (width - 2 != 0) {
      const std::uint32_t steps = ((width - 3) >> 1) + 1;
      if ((pattern & 1) == 0) {
        for (std::uint32_t k = 0; k < steps; ++k, walker.step_two_columns()) {
          out = two_columns_even(out, walker);
        }
      } else {
        for (std::uint32_t k = 0; k < steps; ++k, walker.step_two_columns()) {
          out = two_columns_odd(out, walker);
        }
      }
    }
    out = put(out, *walker.B, walker.green(), *walker.R);
    out = repeat_pixel(out);
    walker.end_line();
  }
  copy_line_above(out, std::size_t{3} * width);
}

void Raw8ToBGR_mono(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t pattern) {
  CellWalker walker(src, pattern, width, height);
  std::uint8_t* out = dst;
  while (walker.begin_line()) {
    for (; walker.in_line(); walker.step()) {
      const std::uint8_t y = luma(*walker.R, walker.green(), *walker.B);
      out = put(out, y, y, y);
    }
    out = repeat_pixel(out);
    walker.end_line();
  }
  copy_line_above(out, std::size_t{3} * width);
}

void Raw8ToY8(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern) {
  CellWalker walker(src, pattern, width, height);
  std::uint8_t* out = dst;
  while (walker.begin_line()) {
    for (; walker.in_line(); walker.step()) *out++ = luma(*walker.R, walker.green(), *walker.B);
    *out = out[-1];
    ++out;
    walker.end_line();
  }
  copy_line_above(out, width);
}

void Raw16ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern) {
  CellWalker walker(src, pattern, width, height, 2);
  std::uint8_t* out = dst;
  while (walker.begin_line()) {
    for (; walker.in_line(); walker.step()) out = put(out, *walker.B, walker.green(), *walker.R);
    out = put(out, 0, 0, 0);
    walker.end_line();
  }
  copy_line_above(out, std::size_t{3} * width);
}

}  // namespace reference
