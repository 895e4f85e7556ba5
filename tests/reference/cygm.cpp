/// Row kernels of three bytes a pixel, the plan of the 2x2 frame, and the grey conversion with its two
/// cursors.
#include "reference/cygm.h"

#include <cstddef>
#include <cstring>

#include "reference/cygm_cells.h"

namespace reference {
namespace {

std::uint8_t* put(std::uint8_t* out, const CygmColour& colour) {
  out[0] = colour.blue;
  out[1] = colour.green;
  out[2] = colour.red;
  return out + 3;
}

/// Rows of 3 * width bytes.
class BgrRows {
 public:
  BgrRows(std::uint8_t* dst, std::uint32_t width) : dst_(dst), width_(width) {}

  void blue_first(std::int32_t row, const std::uint8_t* line) const { binned(row, line, line + width_); }
  void red_first(std::int32_t row, const std::uint8_t* line) const { binned(row, line + width_, line); }

  /// A row of 2x2 cells.
  void cells(std::int32_t row, std::uint32_t kind, const std::uint8_t* first,
             const std::uint8_t* second) const {
    if (width_ == 1) return;
    std::uint8_t* out = at(row);
    std::uint32_t x = 0;
    for (std::uint32_t passes = ((width_ - 2) >> 1) + 1; passes != 0; --passes) {
      out = put(out, cell_colour(first, second, kind, x));
      out = put(out, cell_colour(first + 1, second + 1, kind, x + 1));
      first += 2;
      second += 2;
      x += 2;
    }
  }

  /// A row of 3x3 neighbourhoods.
  void make(std::int32_t row, std::uint32_t kind, const std::uint8_t* above, const std::uint8_t* centre,
            const std::uint8_t* below) const {
    // Row 4 stands for row 0, so that the line above has a number.
    const std::uint32_t line = kind + 4;
    if (!(width_ - 2 < 2)) {
      std::uint8_t* out = at(row) + 3;
      std::uint32_t x = 1;
      for (std::uint32_t passes = ((width_ - 4) >> 1) + 1; passes != 0; --passes) {
        out = put(out, neighbourhood_colour(above + x, centre + x, below + x, line, x));
        ++x;
        out = put(out, neighbourhood_colour(above + x, centre + x, below + x, line, x));
        ++x;
      }
    }
    std::memcpy(at(row), at(row) + 3, 3);
    std::uint8_t* const last = at(row) + std::size_t{3} * (width_ - 1);
    std::memcpy(last, last - 3, 3);
  }

  void copy(std::int32_t from, std::int32_t to) const {
    std::memmove(at(to), at(from), std::size_t{3} * width_);
  }

 private:
  std::uint8_t* at(std::int32_t row) const { return dst_ + row * static_cast<std::ptrdiff_t>(width_) * 3; }

  void binned(std::int32_t row, const std::uint8_t* blue_line, const std::uint8_t* red_line) const {
    std::uint8_t* out = at(row);
    std::uint32_t x = 0;
    if (width_ != 3) {
      for (std::uint32_t pairs = ((width_ - 4) >> 1) + 1; pairs != 0; --pairs) {
        out = put(out, binned_colour(blue_line++, red_line++, x++));
        out = put(out, binned_colour(blue_line++, red_line++, x++));
      }
    }
    out = put(out, binned_colour(blue_line, red_line, x));
    std::memcpy(out, out - 3, 3);
  }

  std::uint8_t* dst_;
  std::uint32_t width_;
};

}  // namespace

void IRaw8CYGMToBGR_Bin(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                        std::uint32_t height) {
  const BgrRows rows(dst, width);
  plan_binned_frame(rows, src, width, height);
}

void IRaw8CYGMToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t /*phase*/) {
  const BgrRows rows(dst, width);
  const std::uint8_t* a = src;
  const std::uint8_t* b = src + second_field_offset(width, height);
  const std::uint32_t half = height >> 1;
  std::int32_t row = 0;
  for (std::uint32_t blocks = half == 2 ? 0 : ((half - 3) >> 1) + 1; blocks != 0; --blocks) {
    rows.cells(row, 0, b, a);
    rows.cells(row + 1, 1, a, b + width);
    rows.cells(row + 2, 2, b + width, a + width);
    rows.cells(row + 3, 3, a + width, b + std::size_t{2} * width);
    row += 4;
    a += std::size_t{2} * width;
    b += std::size_t{2} * width;
  }
  if (height >= 4 && width >= 4) {
    rows.copy(row - 1, row);
    // Two rows moved as one block, which its target does not overlap.
    rows.copy(row - 1, row + 1);
    rows.copy(row, row + 2);
  }
}

void IRaw8CYGMToBGR_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                        std::uint32_t /*phase*/) {
  const BgrRows rows(dst, width);
  plan_3x3_frame(rows, src, width, height);
}

void IRaw8CYGMToMono(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                     std::uint32_t phase) {
  IRaw8CYGMToMono_gains(dst, src, width, height, phase, CygmMonoGains{});
}

void IRaw8CYGMToMono_gains(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                           std::uint32_t height, std::uint32_t phase, const CygmMonoGains& gains) {
  const std::uint32_t p = phase >> 1;
  const std::uint32_t q = phase & 1;
  const std::uint8_t* a = src;
  const std::uint8_t* b = src + second_field_offset(width, height);
  std::uint8_t* out = dst;
  for (std::uint32_t y = p; y < p + height - 1; ++y) {
    for (std::uint32_t x = q; x < q + width - 1; ++x) {
      const std::uint32_t c = x - q;
      std::uint8_t value = 0;
      if (!gains.useGains) {
        value = static_cast<std::uint8_t>((a[c] + a[c + 1] + b[c] + b[c + 1]) >> 2);
      } else {
        // Sample c lies at mosaic column c + q, which is x.
        const std::uint32_t even = x % 2 == 0 ? c : c + 1;
        const std::uint32_t odd = x % 2 == 0 ? c + 1 : c;
        const bool green_is_even = y % 4 == 0 || y % 4 == 1;
        const auto cyan = static_cast<float>(b[even]);
        const auto yellow = static_cast<float>(b[odd]);
        const auto green = static_cast<float>(a[green_is_even ? even : odd]);
        const auto magenta = static_cast<float>(a[green_is_even ? odd : even]);
        float sum = cyan * gains.c;
        sum = sum + magenta * gains.m;
        sum = sum + yellow * gains.y;
        sum = sum + green * gains.g;
        value = static_cast<std::uint8_t>(static_cast<std::int32_t>(sum * 0.25F));
      }
      out[0] = value;
      out[1] = value;
      out[2] = value;
      out += 3;
    }
    std::memcpy(out, out - 3, 3);
    out += 3;
    if ((y - p) % 2 == 0) {
      b += width;
    } else {
      a += width;
    }
  }
  const std::size_t pitch = std::size_t{3} * width;
  std::memcpy(out, out - pitch, pitch);
}

}  // namespace reference
