// Line ends of the 2x2 demosaics: what the last pixels of a line hold, behind those with a window of their
// own. An end knows how many pixels it makes, and writes them from place x of the line on.
#pragma once

#include <cstring>
#include <utility>

#include "bayer/row_2x2.h"

namespace qvn {

// One copy of the pixel before, or two.
template <uint32_t Count>
struct CopiesOfPixelBefore {
  static constexpr uint32_t kPixels = Count;
  template <class Fetch, class Output>
  static void finish(const Output& out, const CellLine&, size_t x) {
    constexpr size_t kBytes = Output::kPixelBytes;
    uint8_t* end = out.dst + x * kBytes;
    for (uint32_t i = 0; i < Count; ++i) std::memcpy(end + i * kBytes, end - kBytes, kBytes);
  }
};
using CopyOfPixelBefore = CopiesOfPixelBefore<1>;
using TwoCopiesOfPixelBefore = CopiesOfPixelBefore<2>;

// Black, not replicated: callers tell the 16-bit sources by it. A byte that the pixels do not write stays.
struct BlackPixel {
  static constexpr uint32_t kPixels = 1;
  template <class Fetch, class Output>
  static void finish(const Output& out, const CellLine&, size_t x) {
    std::memset(out.dst + x * Output::kPixelBytes, 0, Output::kWrittenBytes);
  }
};

// The last window once more.
struct LastWindowAgain {
  static constexpr uint32_t kPixels = 1;
  template <class Fetch, class Output>
  static void finish(const Output& out, const CellLine& line, size_t x) {
    out.pixel(x, window_2x2<Fetch>(line, x - 1));
  }
};

// Two pixels of the last window, with red and blue of the first one exchanged where column 0 of the red line
// is no red; callers depend on it.
struct ExchangedTail {
  static constexpr uint32_t kPixels = 2;
  template <class Fetch, class Output>
  static void finish(const Output& out, const CellLine& line, size_t x) {
    const Rgb<uint32_t> right = window_2x2<Fetch>(line, x);
    Rgb<uint32_t> tail = right;
    if (line.column_phase != 0) std::swap(tail.r, tail.b);
    out.pixel(x, tail);
    out.pixel(x + 1, right);
  }
};

}  // namespace qvn
