// The 2x2 demosaics: a walk over the lines of windows, and recipes that say what a line makes of them, how
// many pixels it gets and how it ends. Other rooms make recipes of their own, or walk with lines of their
// own.
#pragma once

#include <cstring>

#include "bayer/cell_walker.h"
#include "bayer/line_end.h"
#include "bayer/staged_row.h"
#include "pixel/stream.h"

namespace qvn {

// How many columns a line's kernel makes a step. Two columns a step make the same number of pixels as one for
// an even width, and one more for an odd one: the lines then hold width + 1 pixels and drift, at an unchanged
// source pitch.
enum class ColumnStep { kOne, kTwo };

// Pixels in a line of `width`, those of the line end included.
constexpr uint32_t line_pixels(ColumnStep columns, uint32_t width) {
  if (columns == ColumnStep::kOne) return width;
  const uint32_t steps = width == 2 ? 0 : ((width - 3) >> 1) + 1;
  return 2 * steps + 2;
}

// Runs line(source lines, out) over the height - 1 lines of windows; each one writes `out_bytes` from `out`
// on. Returns the place behind the last one. `pattern` is an internal code.
template <class Line>
uint8_t* walk_2x2(uint8_t* dst, size_t out_bytes, const uint8_t* src, size_t src_bytes, uint32_t height,
                  uint32_t pattern, const Line& line) {
  uint8_t* out = dst;
  CellWalker walker(src, src_bytes, height, pattern);
  while (!walker.done()) {
    line(walker.next(), out);
    out += out_bytes;
  }
  return out;
}

// The same of a frame that is large enough to go past the caches, by streamed_line(source lines, stream).
// Short lines do not: they have no strips to fill.
template <class Line, class StreamedLine>
uint8_t* walk_2x2(uint8_t* dst, size_t out_bytes, const uint8_t* src, size_t src_bytes, uint32_t height,
                  uint32_t pattern, const Line& line, const StreamedLine& streamed_line) {
  constexpr size_t kShortLine = 256;
  const size_t lines = height;
  if (out_bytes < kShortLine || !streams({dst, out_bytes * lines}, {src, src_bytes * (lines + 1)})) {
    return walk_2x2(dst, out_bytes, src, src_bytes, height, pattern, line);
  }
  Stream stream(dst);
  uint8_t* last = walk_2x2(dst, out_bytes, src, src_bytes, height, pattern,
                           [&](const CellLine& cells, uint8_t*) { streamed_line(cells, stream); });
  stream.finish();
  return last;
}

// Makes the last line, at `out`, a copy of the line before it. Where the writing has drifted, so has the line
// that is copied.
inline void copy_last_line(uint8_t* out, size_t line_bytes) {
  std::memmove(out, out - line_bytes, line_bytes);
}

struct Recipe2x2 {
  size_t (*src_line_bytes)(uint32_t width);
  void (*line)(const CellLine& line, uint8_t* out, size_t pixels);  // all pixels of a line
  // The same; null where none goes past the caches.
  void (*streamed_line)(const CellLine& line, Stream& stream, size_t pixels);
  size_t (*dst_line_bytes)(uint32_t width);
  size_t pixel_bytes;
  ColumnStep columns;
};

template <class Fetch, class Output>
void staged_or_plain_row_2x2(const Output& out, const CellLine& line, size_t n) {
  if constexpr (kStaged<Fetch>) {
    staged_row_2x2<Fetch>(out, line, n);
  } else {
    row_2x2<Fetch>(out, line, n);
  }
}

// A line of one fetch, output and line end.
template <class Fetch, class Output, class End>
void line_2x2(const CellLine& line, uint8_t* dst, size_t pixels) {
  const Output out{dst};
  const size_t windows = pixels - End::kPixels;
  staged_or_plain_row_2x2<Fetch>(out, line, windows);
  End::template finish<Fetch>(out, line, windows);
}

// A line by strips, of which the last one holds the line end. output_at(place) is the output that writes
// there. There is a window at least.
template <class Fetch, class End, class OutputAt>
void streamed_line_2x2(const CellLine& line, Stream& stream, size_t pixels, const OutputAt& output_at) {
  const size_t windows = pixels - End::kPixels;
  for (size_t x = 0; x < windows; x += kStreamedPixels) {
    const CellLine cells = line_from<Fetch>(line, x);
    const auto out = output_at(stream.place());
    size_t made = std::min(windows - x, kStreamedPixels);
    staged_or_plain_row_2x2<Fetch>(out, cells, made);
    if (x + made == windows) {
      End::template finish<Fetch>(out, cells, made);
      made += End::kPixels;
    }
    stream.push(made * out.kPixelBytes);
  }
}

template <class Fetch, class Output, class End>
constexpr Recipe2x2 recipe_2x2(ColumnStep columns) {
  Recipe2x2 recipe{Fetch::line_bytes,  line_2x2<Fetch, Output, End>, nullptr,
                   Output::line_bytes, Output::kPixelBytes,          columns};
  if constexpr (kStreamed<Output>) {
    recipe.streamed_line = [](const CellLine& line, Stream& stream, size_t pixels) {
      streamed_line_2x2<Fetch, End>(line, stream, pixels, [](uint8_t* place) { return Output{place}; });
    };
  }
  return recipe;
}

// Runs a recipe over all lines of a frame but the last one; returns its place.
uint8_t* demosaic_lines_2x2(const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                            uint32_t height, uint32_t pattern);

// Runs a recipe over a frame. Width at least 2; `pattern` is an internal code.
void demosaic_2x2(const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern);

extern const Recipe2x2 kRaw8ToBgr, kRaw8ToY8, kRaw8ToGreyBgr, kRaw16ToBgr, kRaw8ToYuv444;

}  // namespace qvn
