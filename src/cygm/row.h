// Rows: the pixels of a line through a window into an output, by themselves or in vectors, and the two ways
// in which a row ends.
//
// An output writes the pixels of one row in the format of a target. It is made of the row's place and of the
// number of its first pixel, counted through the frame.
#pragma once

#include <cstring>

#include "cygm/window.h"
#include "pixel/put.h"
#include "pixel/studio.h"

namespace qvn {

// ---- Outputs

// Packed pixels by a put.
template <class Put>
class PackedRow {
 public:
  static size_t line_bytes(uint32_t width) { return width * Put::kPixelBytes; }

  PackedRow(uint8_t* dst, uint32_t) : dst_(dst) {}
  bool takes_vectors() const { return true; }
  void pixel(size_t x, Rgb<uint32_t> p) const { Put::pixel(at(x), p); }
  void pixels(size_t x, const RgbWordPairs& p) const { put_clamped<Put>(at(x), p); }
  void copy_pixel(ptrdiff_t to, ptrdiff_t from) const {
    constexpr auto kBytes = static_cast<ptrdiff_t>(Put::kPixelBytes);
    std::memcpy(dst_ + to * kBytes, dst_ + from * kBytes, Put::kPixelBytes);
  }

 private:
  uint8_t* at(size_t x) const { return dst_ + x * Put::kPixelBytes; }
  uint8_t* dst_;
};

// 4:2:2. Whether a pixel is the first or the second of its group goes by its number in the frame, and yet a
// row begins at a group: where the number is odd, which takes an odd width, the row's first pixel is mixed
// into what the group holds. Such rows go one pixel at a time.
class StudioRow {
 public:
  static size_t line_bytes(uint32_t width) { return Studio422::line_bytes(width); }

  StudioRow(uint8_t* dst, uint32_t first_pixel) : groups_{dst}, first_(first_pixel % 2) {}
  bool takes_vectors() const { return first_ == 0; }
  void pixel(size_t x, Rgb<uint32_t> p) const { groups_.pixel(first_ + x, p); }
  void pixels(size_t x, const RgbWordPairs& p) const { groups_.pixels(x, narrow_to_pairs(p)); }

 private:
  Studio422 groups_;
  size_t first_;
};

// ---- Rows of pixels that each have a window of their own

template <class Window, class Output>
void row_plain(const Window& window, const Output& out, size_t x, size_t end) {
  for (; x < end; ++x) out.pixel(x, colours_at(window, x));
}

// A vector at a time; the last one overlaps the one before it. n is even, so that it starts on the same
// column parity.
template <class Window, class Output>
void row_vectors(const Window& window, const Output& out, size_t n) {
  constexpr size_t kStep = kLaneBytes;
  const size_t end = kFirstColumn<Window> + n;
  size_t x = kFirstColumn<Window>;
  for (; x + kStep <= end; x += kStep) out.pixels(x, colours_from(window, x));
  if (x < end) out.pixels(end - kStep, colours_from(window, end - kStep));
}

// n pixels, an even number, from the first column that has a window on.
template <class Window, class Output>
void row_of_windows(const Window& window, const Output& out, size_t n) {
  if (!kVectorRows || n < kLaneBytes || !out.takes_vectors()) {
    row_plain(window, out, kFirstColumn<Window>, kFirstColumn<Window> + n);
  } else {
    row_vectors(window, out, n);
  }
}

// ---- Row ends

// n pixels, then a last cell whose colours are written twice.
template <class Window, class Output>
void row_with_last_cell_twice(const Window& window, const Output& out, size_t n) {
  row_of_windows(window, out, n);
  const Rgb<uint32_t> last = colours_at(window, n);
  out.pixel(n, last);
  out.pixel(n + 1, last);
}

// The first and the last pixel of `width` are copies of their neighbours, fourth bytes with them. An odd
// width leaves the neighbour of the last one as it was and copies that.
template <class Window, class Output>
void row_with_edge_copies(const Window& window, const Output& out, uint32_t width) {
  row_of_windows(window, out, width < 4 ? 0 : (width & ~1u) - 2);
  const auto end = static_cast<ptrdiff_t>(width);
  out.copy_pixel(0, 1);
  out.copy_pixel(end - 1, end - 2);
}

// ---- Recipes: what is written for a row of such lines, and the pitch from row to row. `first_pixel` is the
// ---- number of the row's first pixel in the frame.

template <class Lines>
struct CygmRecipe {
  void (*row)(const Lines& lines, uint8_t* dst, uint32_t first_pixel, uint32_t width);
  size_t (*line_bytes)(uint32_t width);
};

// The recipe of a target, or null behind the last one that is offered.
template <class Recipe, size_t Count>
const Recipe* find_recipe(const Recipe (&recipes)[Count], uint32_t target) {
  return target < Count ? &recipes[target] : nullptr;
}

// The rows of a picture that is being written.
template <class Lines>
class CygmPicture {
 public:
  CygmPicture(const CygmRecipe<Lines>& recipe, uint8_t* dst, uint32_t width)
      : recipe_(recipe),
        dst_(dst),
        width_(width),
        line_bytes_(static_cast<ptrdiff_t>(recipe.line_bytes(width))) {}
  void write_row(uint32_t row, const Lines& lines) const {
    recipe_.row(lines, at(row), row * width_, width_);
  }
  void copy_row(int64_t to, int64_t from) const {
    std::memcpy(at(to), at(from), static_cast<size_t>(line_bytes_));
  }

 private:
  uint8_t* at(int64_t row) const { return dst_ + static_cast<ptrdiff_t>(row) * line_bytes_; }
  CygmRecipe<Lines> recipe_;
  uint8_t* dst_;
  uint32_t width_;
  ptrdiff_t line_bytes_;
};

}  // namespace qvn
