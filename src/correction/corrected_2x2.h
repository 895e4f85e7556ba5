// Corrected 2x2 demosaics: the walk of the plain ones, strip by strip over windows, rule and put.
#pragma once

#include <algorithm>

#include "bayer/demosaic_2x2.h"
#include "correction/dispatch.h"

namespace qvn {

// Samples of a frame that go through a rule.
constexpr uint64_t samples_of(uint32_t width, uint32_t height) { return uint64_t{3} * width * height; }

// The corrected pixels of n windows.
template <class Fetch, class Put, class T, class CorrectionRule>
void corrected_row(CorrectionRule& rule, Planes<T>& planes, const CellLine& line, uint8_t* out, size_t n) {
  for (size_t x = 0; x < n; x += kStripPixels) {
    const size_t pixels = std::min(n - x, kStripPixels);
    prefetch_strip<Put>(out + x * Put::kPixelBytes);
    if constexpr (kBeginsByCurve<CorrectionRule>) {
      windows_by_curve<Fetch>(rule.curve(), planes, line_from<Fetch>(line, x), pixels);
      rule.behind_curve(planes, 0, pixels);
    } else {
      row_2x2<Fetch>(PlaneOutput<T>{planes}, line_from<Fetch>(line, x), pixels);
      rule.row(planes, 0, pixels);
    }
    put_planes<Put>(out + x * Put::kPixelBytes, planes, pixels);
  }
}

// All lines but the last one, of which every one ends with a copy of the pixel before. Returns the place of
// the last one.
template <class Fetch, class Put, class T, class CorrectionRule>
uint8_t* corrected_lines(CorrectionRule& rule, uint8_t* dst, const uint8_t* src, uint32_t width,
                         uint32_t height, uint32_t pattern, ColumnStep columns) {
  const size_t pixels = line_pixels(columns, width), windows = pixels - CopyOfPixelBefore::kPixels;
  Planes<T> planes{};
  return walk_2x2(dst, pixels * Put::kPixelBytes, src, Fetch::line_bytes(width), height, pattern,
                  [&](const CellLine& line, uint8_t* out) {
                    corrected_row<Fetch, Put>(rule, planes, line, out, windows);
                    CopyOfPixelBefore::finish<Fetch>(PackedPixels<Put>{out}, line, windows);
                  });
}

}  // namespace qvn
