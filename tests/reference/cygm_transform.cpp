/// The output stages, the row kernels over them, and the plan of the 2x2 frame.
#include "reference/cygm_transform.h"

#include <cstring>

#include "reference/cygm_cells.h"

namespace reference {
namespace {

std::size_t pixel_bytes(std::uint32_t target) {
  switch (target) {
    case 1:
      return 3;
    case 2:
      return 4;
    default:
      return 1;
  }
}

/// Takes the pixels of a row from left to right.
class Output {
 public:
  /// `counter` is the row number times the width.
  Output(std::uint8_t* cursor, std::uint32_t target, std::uint32_t counter)
      : cursor_(cursor), target_(target), counter_(counter) {}

  void put(const CygmColour& colour) {
    const std::int32_t r = colour.red;
    const std::int32_t g = colour.green;
    const std::int32_t b = colour.blue;
    switch (target_) {
      case 0:
        *cursor_++ = static_cast<std::uint8_t>((g * 150 + r * 77 + b * 29) >> 8);
        break;
      case 3:
        *cursor_++ = static_cast<std::uint8_t>((g * 184 + (r * 3 + b) * 18 + 128) >> 8);
        break;
      case 4:
        put_yuv422(((g * 129 + b * 25 + r * 66 + 128) >> 8) + 16,
                   ((b * 112 - g * 74 - r * 38 + 128) >> 8) + 128,
                   ((r * 112 - g * 94 - b * 18 + 128) >> 8) + 128);
        break;
      default:
        cursor_[0] = colour.blue;
        cursor_[1] = colour.green;
        cursor_[2] = colour.red;
        cursor_ += pixel_bytes(target_);
        break;
    }
  }

 private:
  void put_yuv422(std::int32_t y, std::int32_t u, std::int32_t v) {
    if (counter_ % 2 == 0) {
      cursor_[1] = static_cast<std::uint8_t>(y);
      cursor_[0] = static_cast<std::uint8_t>(u);
      cursor_[2] = static_cast<std::uint8_t>(v);
    } else {
      cursor_[3] = static_cast<std::uint8_t>(y);
      cursor_[0] = static_cast<std::uint8_t>((u + cursor_[0]) >> 1);
      cursor_[2] = static_cast<std::uint8_t>((v + cursor_[2]) >> 1);
      cursor_ += 4;
    }
    ++counter_;
  }

  std::uint8_t* cursor_;
  std::uint32_t target_;
  std::uint32_t counter_;
};

class TargetRows {
 public:
  TargetRows(std::uint8_t* dst, std::uint32_t width, std::uint32_t target)
      : dst_(dst), width_(width), target_(target), pitch_(cygm_pitch(width, target)) {}

  void blue_first(std::int32_t row, const std::uint8_t* line) const { binned(row, line, line + width_); }
  void red_first(std::int32_t row, const std::uint8_t* line) const { binned(row, line + width_, line); }

  /// A row of 2x2 cells, the last of which is written twice.
  void cells(std::int32_t row, std::uint32_t kind, const std::uint8_t* first,
             const std::uint8_t* second) const {
    Output out = output(row);
    std::uint32_t x = 0;
    if (width_ != 2) {
      for (std::uint32_t passes = ((width_ - 3) >> 1) + 1; passes != 0; --passes) {
        out.put(cell_colour(first++, second++, kind, x++));
        out.put(cell_colour(first++, second++, kind, x++));
      }
    }
    const CygmColour last = cell_colour(first, second, kind, x);
    out.put(last);
    out.put(last);
  }

  /// A row of 3x3 neighbourhoods.
  void make(std::int32_t row, std::uint32_t kind, const std::uint8_t* above, const std::uint8_t* centre,
            const std::uint8_t* below) const {
    // Row 4 stands for row 0, so that the line above has a number.
    const std::uint32_t line = kind + 4;
    const std::size_t pixel = pixel_bytes(target_);
    if (!(width_ - 2 < 2)) {
      Output out(at(row) + pixel, target_, 0);
      std::uint32_t x = 1;
      for (std::uint32_t passes = ((width_ - 4) >> 1) + 1; passes != 0; --passes) {
        out.put(neighbourhood_colour(above + x, centre + x, below + x, line, x));
        ++x;
        out.put(neighbourhood_colour(above + x, centre + x, below + x, line, x));
        ++x;
      }
    }
    std::memcpy(at(row), at(row) + pixel, pixel);
    std::uint8_t* const last = at(row) + pixel * (width_ - 1);
    std::memcpy(last, last - pixel, pixel);
  }

  void copy(std::int32_t from, std::int32_t to) const { std::memmove(at(to), at(from), pitch_); }

 private:
  std::uint8_t* at(std::int32_t row) const { return dst_ + row * static_cast<std::ptrdiff_t>(pitch_); }

  Output output(std::int32_t row) const {
    return {at(row), target_, static_cast<std::uint32_t>(row) * width_};
  }

  void binned(std::int32_t row, const std::uint8_t* blue_line, const std::uint8_t* red_line) const {
    Output out = output(row);
    std::uint32_t x = 0;
    if (width_ != 3) {
      for (std::uint32_t pairs = ((width_ - 4) >> 1) + 1; pairs != 0; --pairs) {
        out.put(binned_colour(blue_line++, red_line++, x++));
        out.put(binned_colour(blue_line++, red_line++, x++));
      }
    }
    const CygmColour last = binned_colour(blue_line, red_line, x);
    out.put(last);
    out.put(last);
  }

  std::uint8_t* dst_;
  std::uint32_t width_;
  std::uint32_t target_;
  std::size_t pitch_;
};

}  // namespace

std::size_t cygm_pitch(std::uint32_t width, std::uint32_t target) {
  if (target == 4) return std::size_t{width >> 1} * 4;
  return pixel_bytes(target) * width;
}

void IRaw8CYGMImageTransform_Bin(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                                 std::uint32_t height, std::uint32_t target) {
  const TargetRows rows(dst, width, target);
  plan_binned_frame(rows, src, width, height);
}

void IRaw8CYGMImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                             std::uint32_t height, std::uint32_t target, std::uint32_t /*phase*/) {
  const TargetRows rows(dst, width, target);
  const auto lines = static_cast<std::int32_t>(height);
  const std::uint8_t* a = src;
  const std::uint8_t* b = src + (height >> 1) * width;
  std::int32_t r = 0;
  for (; r < lines - 4; r += 4) {
    rows.cells(r, 0, b, a);
    rows.cells(r + 1, 1, a, b + width);
    rows.cells(r + 2, 2, b + width, a + width);
    rows.cells(r + 3, 3, a + width, b + std::size_t{2} * width);
    a += std::size_t{2} * width;
    b += std::size_t{2} * width;
  }
  if (height == 0 || height == 1 || r == lines) return;
  rows.cells(r, 0, b, a);
  if (!(r + 1 < lines)) return;
  rows.cells(r + 1, 1, a, b + width);
  if (!(r + 2 < lines)) return;
  rows.cells(r + 2, 2, b + width, a + width);
  if (r + 3 < lines) rows.copy(r + 2, r + 3);
}

void IRaw8CYGMImageTransform_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                                 std::uint32_t height, std::uint32_t target, std::uint32_t /*phase*/) {
  const TargetRows rows(dst, width, target);
  plan_3x3_frame(rows, src, width, height);
}

}  // namespace reference
