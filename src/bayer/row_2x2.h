// Rows of 2x2 windows: the colours of n consecutive pixels of a line, from the first column on.
//
//     site of x       red           blue          greens
//     even            red[x]        blue[x+1]     blue[x] and red[x+1]       even, odd: of x + column phase
//     odd             red[x+1]      blue[x]       blue[x+1] and red[x]
//
// Green is the mean of the two, rounded down. A row of n pixels reads n + 1 samples of each line, writes n
// pixels and nothing else.
#pragma once

#include <type_traits>

#include "bayer/cell_walker.h"
#include "pixel/fetch.h"
#include "pixel/put.h"

namespace qvn {

// The line from column x on; x is even.
template <class Fetch>
CellLine line_from(const CellLine& line, size_t x) {
  const size_t skipped = Fetch::line_bytes(static_cast<uint32_t>(x));
  return {line.red + skipped, line.blue + skipped, line.column_phase};
}

// The colours of the window at column x.
template <class Fetch>
inline Rgb<uint32_t> window_2x2(const CellLine& line, size_t x) {
  const size_t odd = (x + line.column_phase) & 1;
  const uint32_t green1 = Fetch::sample(line.blue, x + odd);
  const uint32_t green2 = Fetch::sample(line.red, x + 1 - odd);
  return {Fetch::sample(line.red, x + odd), (green1 + green2) >> 1, Fetch::sample(line.blue, x + 1 - odd)};
}

// The colours of the windows at columns x, x + 1, ... of which the first is an even site (Odd 0) or an odd
// one. Both windows of a pair hold the pair's right-hand samples:
//
//     red line     r   g2 | r'        left window   r  g2     right window   g2 r'
//     blue line    g1  b  | g1'                     g1 b                     b  g1'
//
// For a pair that starts on an odd site the two lines change their parts.
template <class Fetch, int Odd, class V>
inline Rgb<V> windows_2x2(const CellLine& line, size_t x, const Rgb<V>*) {
  const SamplePairs<V> first = pairs_of<Fetch>(Odd == 0 ? line.red : line.blue, x);
  const SamplePairs<V> second = pairs_of<Fetch>(Odd == 0 ? line.blue : line.red, x);
  const V green = mean_floor(first.shared, second.first);
  return Odd == 0 ? Rgb<V>{first.first, green, second.shared} : Rgb<V>{second.shared, green, first.first};
}

// The same of samples that are bytes, as words: a pair of pixels a lane.
template <class Fetch, int Odd>
inline RgbPairs windows_2x2(const CellLine& line, size_t x, const RgbPairs*) {
  if constexpr (kOwnPairs<Fetch>) {
    return pairs_of_bytes(windows_2x2<Fetch, Odd>(line, x, static_cast<const Rgb<Bytes>*>(nullptr)));
  }
  const uint8_t* first = Odd == 0 ? line.red : line.blue;
  const uint8_t* second = Odd == 0 ? line.blue : line.red;
  const Bytes a = Fetch::samples(first, x), a_next = Fetch::samples(first, x + 1);
  const Bytes b = Fetch::samples(second, x), b_next = Fetch::samples(second, x + 1);
  const Words shared_green = odd_bytes(a), shared = odd_bytes(b);
  const Words left_green = (shared_green + even_bytes(b)) >> 1;
  const Words right_green = (shared_green + odd_bytes(b_next)) >> 1;
  if constexpr (Odd == 0) {
    return {{even_bytes(a), left_green, shared}, {odd_bytes(a_next), right_green, shared}};
  } else {
    return {{shared, left_green, even_bytes(a)}, {shared, right_green, odd_bytes(a_next)}};
  }
}

// And with red and blue in one word: the even bytes of the one line and the odd bytes of the other.
template <class Fetch, int Odd>
inline RbgPairs<Odd> windows_2x2(const CellLine& line, size_t x, const RbgForm*) {
  const uint8_t* first = Odd == 0 ? line.red : line.blue;
  const uint8_t* second = Odd == 0 ? line.blue : line.red;
  const Bytes a = Fetch::samples(first, x), a_next = Fetch::samples(first, x + 1);
  const Bytes b = Fetch::samples(second, x), b_next = Fetch::samples(second, x + 1);
  const Words shared_green = odd_bytes(a);
  return {masked_blend<places::is_even_lane<1>>(a, b), masked_blend<places::is_even_lane<1>>(b_next, a_next),
          (shared_green + even_bytes(b)) >> 1, (shared_green + odd_bytes(b_next)) >> 1};
}

// And with both where the lines have them; of a fetch with pairs of its own, as words.
template <class Fetch, int Odd>
inline auto windows_2x2(const CellLine& line, size_t x, const SiteForm*) {
  if constexpr (kOwnPairs<Fetch>) {
    return windows_2x2<Fetch, Odd>(line, x, static_cast<const RgbPairs*>(nullptr));
  } else {
    const uint8_t* first = Odd == 0 ? line.red : line.blue;
    const uint8_t* second = Odd == 0 ? line.blue : line.red;
    const Bytes a = Fetch::samples(first, x), b = Fetch::samples(second, x);
    const Words shared_green = odd_bytes(a);
    return SitePairs<Odd>{a, Fetch::samples(first, x + 1), b, (shared_green + even_bytes(b)) >> 1,
                          (shared_green + odd_bytes(Fetch::samples(second, x + 1))) >> 1};
  }
}

// And as packed BGR has them, of samples that are bytes; of a fetch with pairs of its own, as bytes.
template <class Fetch, int Odd>
inline auto windows_2x2(const CellLine& line, size_t x, const BgrPairs*) {
  if constexpr (kOwnPairs<Fetch>) {
    return windows_2x2<Fetch, Odd>(line, x, static_cast<const Rgb<Bytes>*>(nullptr));
  } else {
    const uint8_t* first = Odd == 0 ? line.red : line.blue;
    const uint8_t* second = Odd == 0 ? line.blue : line.red;
    const Bytes a = Fetch::samples(first, x), a_next = Fetch::samples(first, x + 1);
    const Bytes b = Fetch::samples(second, x), b_next = Fetch::samples(second, x + 1);
    const auto upper = [](Bytes v) { return as<Words>(v) & 0xFF00; };
    const Words shared_green = odd_bytes(a);
    const Words left_green = ((shared_green + even_bytes(b)) << 7) & 0xFF00;
    const Words right_green = (shared_green + odd_bytes(b_next)) >> 1;
    if constexpr (Odd == 0) {
      return BgrPairs{odd_bytes(b) | left_green, even_bytes(a) | upper(b), right_green | upper(a_next)};
    } else {
      return BgrPairs{even_bytes(a) | left_green, odd_bytes(b) | upper(a_next), right_green | upper(b)};
    }
  }
}

// Pixels `from` to n - 1, one at a time. An output takes pixel x as numbers, or pixels x, x + 1, ... as
// lanes.
template <class Fetch, class Output>
void row_2x2_plain(const Output& out, const CellLine& line, size_t from, size_t n) {
  for (size_t x = from; x < n; ++x) out.pixel(x, window_2x2<Fetch>(line, x));
}

// A vector at a time; the last one overlaps the one before it, so that no pixel is left over. An output that
// takes whole pairs only gets the last pixel of an odd number by itself. g++ 12 would leave pieces of some
// loops out of line and pass their vectors through memory.
template <class Fetch, int Odd, class Output>
[[gnu::flatten]] void row_2x2_vectors(const Output& out, CellLine line, size_t n) {
  constexpr size_t kStep = Fetch::kColumns;
  constexpr const typename Output::Form* kForm = nullptr;
  size_t x = 0;
  for (; x + kStep <= n; x += kStep) out.pixels(x, windows_2x2<Fetch, Odd>(line, x, kForm));
  if (x == n) return;
  x = n - kStep;
  if (x % 2 == 0) {
    out.pixels(x, windows_2x2<Fetch, Odd>(line, x, kForm));
  } else if constexpr (Output::kWholePairs) {
    out.pixels(x - 1, windows_2x2<Fetch, Odd>(line, x - 1, kForm));
    row_2x2_plain<Fetch>(out, line, n - 1, n);
  } else {
    out.pixels(x, windows_2x2<Fetch, 1 - Odd>(line, x, kForm));
  }
}

template <class Fetch, class Output>
void row_2x2(const Output& out, const CellLine& line, size_t n) {
  if (!kVectorRows || n < Fetch::kColumns) {
    row_2x2_plain<Fetch>(out, line, 0, n);
  } else if (line.column_phase == 0) {
    row_2x2_vectors<Fetch, 0>(out, line, n);
  } else {
    row_2x2_vectors<Fetch, 1>(out, line, n);
  }
}

// The form of windows that a put takes with the least work.
template <class Put>
struct WindowForm {
  using Type = typename Put::Form;
};
template <>
struct WindowForm<PutBgr> {
  using Type = std::conditional_t<kQuickByteBlends, PutBgr::Form, BgrPairs>;
};
template <>
struct WindowForm<PutY8> {
  using Type = std::conditional_t<kBytePermutes, SiteForm, RgbPairs>;
};
template <>
struct WindowForm<PutY8Rounded> : WindowForm<PutY8> {};
template <>
struct WindowForm<PutGreyBgr> : WindowForm<PutY8> {};

// An output that writes packed pixels by a put.
template <class Put>
struct PackedPixels {
  using Form = typename WindowForm<Put>::Type;
  static constexpr bool kWholePairs = false;
  static constexpr size_t kPixelBytes = Put::kPixelBytes;
  static constexpr size_t kWrittenBytes = Put::kWrittenBytes;
  static constexpr size_t line_bytes(uint32_t width) { return width * kPixelBytes; }
  uint8_t* dst;
  void pixel(size_t x, Rgb<uint32_t> p) const { Put::pixel(dst + x * Put::kPixelBytes, p); }
  template <class Pixels>
  void pixels(size_t x, const Pixels& p) const {
    Put::pixels(dst + x * Put::kPixelBytes, p);
  }
};

}  // namespace qvn
