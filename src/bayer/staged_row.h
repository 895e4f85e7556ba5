// A row of 2x2 windows whose samples are dear to fetch: a strip of both lines is fetched first, each sample
// once, and the windows are made of the strips. In place, a sample is fetched for both of its windows in each
// of its lines.
#pragma once

#include <algorithm>
#include <array>

#include "bayer/row_2x2.h"

namespace qvn {

// Which fetches are: where some level takes a tenth less time for it, or better. Cheaper ones lose by it.
template <class Fetch>
inline constexpr bool kStaged = false;
template <ByteOrder Order, int Shift>
inline constexpr bool kStaged<FetchShiftedRaw16TopByte<Order, Shift>> = Shift != 0;
template <>
inline constexpr bool kStaged<FetchRaw12TopByte> = !kBytePermutes;
template <>
inline constexpr bool kStaged<FetchRaw12> = !kBytePermutes;

inline constexpr size_t kStagedPixels = 256;  // even, so that each strip starts on the same site

// What the strips are fetched by.
template <class Fetch>
using StripFetch = std::conditional_t<Fetch::kColumns == kLaneBytes, FetchRaw8, FetchRaw16<kHostByteOrder>>;

// The samples of columns x to x + n - 1; n is at least Fetch::kColumns.
template <class Fetch>
[[gnu::flatten]] void fetch_strip(uint8_t* strip, const uint8_t* line, size_t x, size_t n) {
  constexpr size_t kStep = Fetch::kColumns, kSampleBytes = kLaneBytes / kStep;
  const auto vector = [=](size_t i) { store(strip + i * kSampleBytes, Fetch::samples(line, x + i)); };
  size_t i = 0;
  for (; i + kStep <= n; i += kStep) vector(i);
  if (i < n) vector(n - kStep);
}

// An output whose column 0 is column `first` of another one.
template <class Output>
struct OutputFrom {
  using Form = typename Output::Form;
  static constexpr bool kWholePairs = Output::kWholePairs;
  const Output& out;
  size_t first;
  void pixel(size_t x, Rgb<uint32_t> p) const { out.pixel(first + x, p); }
  template <class Pixels>
  void pixels(size_t x, const Pixels& p) const {
    out.pixels(first + x, p);
  }
};

// row_2x2 by strips. What is left of less than a vector goes without one.
template <class Fetch, class Output>
void staged_row_2x2(const Output& out, const CellLine& line, size_t n) {
  constexpr size_t kStripBytes = kStagedPixels * kLaneBytes / Fetch::kColumns + kLaneBytes;
  alignas(64) std::array<uint8_t, kStripBytes> red, blue;
  size_t x = 0;
  while (kVectorRows && n - x >= Fetch::kColumns) {
    const size_t windows = std::min(n - x, kStagedPixels);
    fetch_strip<Fetch>(red.data(), line.red, x, windows + 1);
    fetch_strip<Fetch>(blue.data(), line.blue, x, windows + 1);
    row_2x2<StripFetch<Fetch>>(OutputFrom<Output>{out, x}, {red.data(), blue.data(), line.column_phase},
                               windows);
    x += windows;
  }
  row_2x2_plain<Fetch>(out, line, x, n);
}

}  // namespace qvn
