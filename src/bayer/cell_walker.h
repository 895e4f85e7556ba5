// CellWalker: the walk over a Bayer frame that every 2x2 kernel shares, a line at a time.
//
// The samples of a colour lie on every second line and column, so a line of windows needs only to know which
// of its two source lines holds the reds, and whether they lie on its even columns:
//
//     red line     R  G2 R  G2       column phase 0: reds on even columns, blues on odd ones
//     blue line    G1 B  G1 B        column phase 1: the other way about
//
// The red line is the upper one for an even row phase and the lower one for an odd one. G1 is always the
// green on the blues' line, G2 the green on the reds' line.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

struct CellLine {
  const uint8_t* red;     // the source line with reds and G2
  const uint8_t* blue;    // the source line with blues and G1
  uint32_t column_phase;  // 0: column 0 of the red line is a red
};

// The line of windows over source lines `row` and `row` + 1. `pattern` is an internal code; of codes above 3
// the parities of bit 0 and of the rest count.
inline CellLine cell_line(const uint8_t* src, size_t line_bytes, uint32_t row, uint32_t pattern) {
  const uint8_t* upper = src + row * line_bytes;
  const uint8_t* lower = upper + line_bytes;
  const bool odd = ((row + (pattern >> 1)) & 1) != 0;
  return odd ? CellLine{lower, upper, pattern & 1} : CellLine{upper, lower, pattern & 1};
}

class CellWalker {
 public:
  // The number of lines wraps as unsigned numbers do: none for height 1, a runaway for height 0 with pattern
  // 0 or 1.
  CellWalker(const uint8_t* src, size_t line_bytes, uint32_t height, uint32_t pattern)
      : src_(src), line_bytes_(line_bytes), pattern_(pattern), end_((pattern >> 1) + height - 1) {}

  bool done() const { return (pattern_ >> 1) + row_ >= end_; }

  // The line of windows at hand; then the walk moves on by one source line.
  CellLine next() { return cell_line(src_, line_bytes_, row_++, pattern_); }

 private:
  const uint8_t* src_;
  size_t line_bytes_;
  uint32_t pattern_;
  uint32_t row_ = 0;
  uint32_t end_;
};

}  // namespace qvn
