// Windows: from the samples around a pixel to its brightness and colour differences.
//
// A line's two colours alternate. So of a pair of columns, an even one and an odd one, each line of a window
// gives a sum and the difference of its two colours, Y - C or M - G, whichever column comes first. The kinds
// of windows differ in which lines they take and how they weigh them. A pixel of a 2x2 window has the pair
// that begins with its own column; a pixel of a 3x3 window has that and the one before it, which weighs three
// columns 1 2 1.
//
//     x - 1    x    x + 1
//     [   pair   ]                both: 3x3
//              [  pair   ]        this one: 2x2
//
// T is a number or a vector of words; no sum exceeds 16 * 255.
#pragma once

#include <type_traits>

#include "cygm/colour.h"
#include "pixel/clamped_pairs.h"

namespace qvn {

// How a line counts: the difference is what is at odd columns less what is at even ones or the other way
// about, and both sums may be taken twice.
template <bool OddLess, int Times>
struct LineRule {
  static constexpr bool kOddLess = OddLess;
  static constexpr int kTimes = Times;
};
using OddLessEven = LineRule<true, 1>;
using EvenLessOdd = LineRule<false, 1>;
template <class Rule>
using Twice = LineRule<Rule::kOddLess, 2 * Rule::kTimes>;

template <class T>
struct LineSums {
  T sum, difference;
};

template <class T>
inline LineSums<T> operator+(const LineSums<T>& a, const LineSums<T>& b) {
  return {a.sum + b.sum, a.difference + b.difference};
}

// What a window makes of its lines: sums that are still to be divided by the number of samples that count.
template <class T>
struct WindowSums {
  T total, red_diff, blue_diff;
};

template <class T>
inline WindowSums<T> operator+(const WindowSums<T>& a, const WindowSums<T>& b) {
  return {a.total + b.total, a.red_diff + b.red_diff, a.blue_diff + b.blue_diff};
}

// RedDiff = (Y - C) + (M - G) and BlueDiff = (M - G) - (Y - C).
template <class T>
inline WindowSums<T> mosaic_sums(const LineSums<T>& yellow_cyan, const LineSums<T>& magenta_green) {
  return {yellow_cyan.sum + magenta_green.sum, yellow_cyan.difference + magenta_green.difference,
          magenta_green.difference - yellow_cyan.difference};
}

// Lines of green and magenta have either of them at the even columns; lines of cyan and yellow always have
// cyan there.
enum class EvenSite { kGreen, kMagenta };

template <EvenSite Site>
using MagentaLessGreen = std::conditional_t<Site == EvenSite::kGreen, OddLessEven, EvenLessOdd>;
using YellowLessCyan = OddLessEven;

// ---- The kinds of windows. sums() of a pair of columns asks line_sums(rule, line) for those of each line.

// A binned frame has no sites: a blue line's even samples less its odd ones are its blue difference, a red
// line's odd samples less its even ones the red difference.
struct BinnedWindow {
  static constexpr CygmMatrix kMatrix = CygmBinMatrix;
  static constexpr int kDifferenceShift = 1, kTotalShift = 2;
  static constexpr bool kBothPairs = false;
  const uint8_t *blue_line, *red_line;

  template <class T, class Sums>
  WindowSums<T> sums(const Sums& line_sums) const {
    const LineSums<T> blue = line_sums(EvenLessOdd{}, blue_line), red = line_sums(OddLessEven{}, red_line);
    return {blue.sum + red.sum, red.difference, blue.difference};
  }
};

// 2x2 samples, one of each colour.
template <EvenSite Site>
struct CellWindow {
  static constexpr CygmMatrix kMatrix = CygmFullMatrix;
  static constexpr int kDifferenceShift = 2, kTotalShift = 2;
  static constexpr bool kBothPairs = false;
  const uint8_t *cyan_yellow, *green_magenta;

  template <class T, class Sums>
  WindowSums<T> sums(const Sums& line_sums) const {
    return mosaic_sums<T>(line_sums(YellowLessCyan{}, cyan_yellow),
                          line_sums(MagentaLessGreen<Site>{}, green_magenta));
  }
};

// 3x3 samples weighted 1 2 1 over 2 4 2 over 1 2 1, four of each colour, around a line of green and magenta.
template <EvenSite Site>
struct GreenMagentaWindow {
  static constexpr CygmMatrix kMatrix = CygmFullMatrix;
  static constexpr int kDifferenceShift = 4, kTotalShift = 4;
  static constexpr bool kBothPairs = true;
  const uint8_t *cyan_yellow_above, *green_magenta, *cyan_yellow_below;

  template <class T, class Sums>
  WindowSums<T> sums(const Sums& line_sums) const {
    const LineSums<T> above = line_sums(YellowLessCyan{}, cyan_yellow_above);
    const LineSums<T> centre = line_sums(Twice<MagentaLessGreen<Site>>{}, green_magenta);
    const LineSums<T> below = line_sums(YellowLessCyan{}, cyan_yellow_below);
    return mosaic_sums<T>(above + below, centre);
  }
};

// The same around a line of cyan and yellow. Of the lines above and below, one has green at the even columns
// and the other one magenta.
struct CyanYellowWindow {
  static constexpr CygmMatrix kMatrix = CygmFullMatrix;
  static constexpr int kDifferenceShift = 4, kTotalShift = 4;
  static constexpr bool kBothPairs = true;
  const uint8_t *even_green, *cyan_yellow, *even_magenta;

  template <class T, class Sums>
  WindowSums<T> sums(const Sums& line_sums) const {
    const LineSums<T> green = line_sums(MagentaLessGreen<EvenSite::kGreen>{}, even_green);
    const LineSums<T> centre = line_sums(Twice<YellowLessCyan>{}, cyan_yellow);
    const LineSums<T> magenta = line_sums(MagentaLessGreen<EvenSite::kMagenta>{}, even_magenta);
    return mosaic_sums<T>(centre, green + magenta);
  }
};

// ---- One pixel

template <class Window>
inline ColourDifferences<int32_t> cell_of(const WindowSums<int32_t>& sums) {
  constexpr int32_t kSamples = 1 << Window::kDifferenceShift;
  return {sums.total >> Window::kTotalShift, sums.red_diff / kSamples, sums.blue_diff / kSamples};
}

// Of the pair of columns x and x + 1.
template <class Window>
inline WindowSums<int32_t> pair_sums(const Window& window, size_t x) {
  return window.template sums<int32_t>([x]<class Rule>(Rule, const uint8_t* line) {
    const int32_t first = line[x] * Rule::kTimes, second = line[x + 1] * Rule::kTimes;
    const bool rise = (x % 2 == 0) == Rule::kOddLess;
    return LineSums<int32_t>{first + second, rise ? second - first : first - second};
  });
}

// The colours of the pixel at column x.
template <class Window>
inline Rgb<uint32_t> colours_at(const Window& window, size_t x) {
  WindowSums<int32_t> sums = pair_sums(window, x);
  if constexpr (Window::kBothPairs) sums = pair_sums(window, x - 1) + sums;
  return colours_of(Window::kMatrix, cell_of<Window>(sums));
}

// ---- A vector of pixels

// value / 2, truncated toward zero, of -16383 .. 16383. A factor of a bit less than a half takes both kinds
// of halves to the side of zero, and no other value that far:
//
//     (2 * k * 16383 + 2^14) / 2^15        =   k + (2^14 - 2 * k) / 2^15          k >= 0: floor k
//     ((2 * k + 1) * 16383 + 2^14) / 2^15  =   k + (2^15 - 1 - 2 * k) / 2^15              floor k
//     (-(2 * k + 1) * 16383 + 2^14) / 2^15 =  -k + (2 * k + 1) / 2^15                     floor -k
//
// and an even value below zero, -k + (2^14 + 2 * k) / 2^15, gives -k.
inline SignedWords truncated_half(SignedWords value) {
  return multiply_round(value, SignedWords{} + int16_t{16383});
}

// value / 2^Shift, truncated toward zero: below zero, 2^Shift - 1 is added ahead of the shift, which is what
// the upper bits of such a value hold. (A quarter as the half of a half is no faster.)
template <int Shift>
inline SignedWords truncated(Words value) {
  if constexpr (kBytePermutes && Shift == 1) return truncated_half(as<SignedWords>(value));
  return as<SignedWords>(value + (value >> (16 - Shift))) >> Shift;
}

template <class Window>
inline ColourDifferences<SignedWords> cells_of(const WindowSums<Words>& sums) {
  return {as<SignedWords>(sums.total >> Window::kTotalShift),
          truncated<Window::kDifferenceShift>(sums.red_diff),
          truncated<Window::kDifferenceShift>(sums.blue_diff)};
}

// A line's sums of the pairs of columns x, x + 1; x + 2, x + 3; ... by one instruction each where there is
// one.
template <class Rule, size_t Parity>
inline LineSums<Words> line_pairs_sums(const uint8_t* line, size_t x) {
  constexpr bool kRise = (Parity == 0) == Rule::kOddLess;  // the second column less the first
  const Bytes v = load<Bytes>(line + x);
  if constexpr (kBytePermutes) {
    constexpr uint16_t kPlus = Rule::kTimes, kMinus = 0x100 - Rule::kTimes;
    const Words both = Words{} + uint16_t{kPlus << 8 | kPlus};
    const Words signs = Words{} + uint16_t{kRise ? kPlus << 8 | kMinus : kMinus << 8 | kPlus};
    return {as<Words>(multiply_add_pairs(v, as<SignedBytes>(both))),
            as<Words>(multiply_add_pairs(v, as<SignedBytes>(signs)))};
  } else {
    const Words first = even_bytes(v) * Rule::kTimes, second = odd_bytes(v) * Rule::kTimes;
    return {first + second, kRise ? second - first : first - second};
  }
}

// A window's sums of the pairs of columns x, x + 1; x + 2, x + 3; ..., x being of parity `Parity`.
template <size_t Parity, class Window>
inline WindowSums<Words> pairs_sums(const Window& window, size_t x) {
  return window.template sums<Words>(
      [x]<class Rule>(Rule, const uint8_t* line) { return line_pairs_sums<Rule, Parity>(line, x); });
}

// The first column of a row that has a window, and so the parity of the first column of each vector.
template <class Window>
inline constexpr size_t kFirstColumn = Window::kBothPairs ? 1 : 0;

// The colours of the pixels at columns x, x + 1, ...
template <class Window>
inline RgbWordPairs colours_from(const Window& window, size_t x) {
  constexpr size_t kParity = kFirstColumn<Window> % 2;
  WindowSums<Words> first = pairs_sums<kParity>(window, x);
  WindowSums<Words> second = pairs_sums<1 - kParity>(window, x + 1);
  if constexpr (Window::kBothPairs) {
    second = first + second;
    first = pairs_sums<1 - kParity>(window, x - 1) + first;
  }
  return {colours_of(Window::kMatrix, cells_of<Window>(first)),
          colours_of(Window::kMatrix, cells_of<Window>(second))};
}

}  // namespace qvn
