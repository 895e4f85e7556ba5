/// Slow reference of the walk over a Bayer frame and of the plain 2x2 demosaics.
///
/// Everything moves by cursors, a column or two at a time, and nothing is checked: sizes that run away run
/// away here too. Patterns are internal codes. A height of 1 makes no line, and the copy of the last line
/// then reads before `dst`; the caller provides memory there.
#pragma once

#include <cstddef>
#include <cstdint>

#include "reference/pattern.h"

namespace reference {

/// Places the cursors R, G1, G2 and B on the 2x2 window of each pixel. G1 is the green on the blue sample's
/// line, G2 the green on the red sample's line. Use:
///
///     CellWalker walker(src, pattern, width, height);
///     while (walker.begin_line()) {
///       for (; walker.in_line(); walker.step()) ... one pixel ...
///       ... the last column ...
///       walker.end_line();
///     }
class CellWalker {
 public:
  CellWalker(const std::uint8_t* src, std::uint32_t pattern, std::uint32_t width, std::uint32_t height,
             std::uint32_t bytes_per_sample = 1);
  /// Columns 0 and 1 of a line are `next` bytes apart, columns 0 and 2 `two` bytes.
  CellWalker(const std::uint8_t* src, std::uint32_t pattern, std::uint32_t width, std::uint32_t height,
             std::size_t line_bytes, std::uint32_t next, std::uint32_t two);

  /// Places the cursors on the first window of the next line; false when all lines are made.
  bool begin_line();
  /// Whether the line has another window.
  bool in_line() const;
  /// One column on.
  void step();
  /// All four cursors on by two samples: what two steps do.
  void step_two_columns();
  void end_line() { ++row; }

  /// (G1 + G2) >> 1
  std::uint8_t green() const { return static_cast<std::uint8_t>((*G1 + *G2) >> 1); }

  std::uint32_t row;
  std::uint32_t col = 0;
  const std::uint8_t* R = nullptr;
  const std::uint8_t* G1 = nullptr;
  const std::uint8_t* G2 = nullptr;
  const std::uint8_t* B = nullptr;

 private:
  const std::uint8_t* line_;
  std::uint32_t pattern_;
  std::uint32_t width_;
  std::uint32_t height_;
  std::size_t line_bytes_;
  std::uint32_t next_;
  std::uint32_t two_;
};

/// (77 * R + 150 * G + 29 * B) >> 8
std::uint8_t luma(std::uint32_t red, std::uint32_t green, std::uint32_t blue);

void Raw8ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
               std::uint32_t pattern);
void Raw8ToBGR_mono(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t pattern);
void Raw8ToY8(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern);
void Raw16ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern);

}  // namespace reference
