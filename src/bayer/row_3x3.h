// Rows of 3x3 windows: a pixel keeps its own sample and takes the two other colours from its neighbours.
//
// A line has samples of its own colour (blue or red) and greens in turn; the other colour lies on the lines
// above and below. C is the pixel's sample, N S W E and so on its neighbours:
//
//     site     own colour       green                    other colour
//     own      C                (N + S + W + E) >> 2     (NW + NE + SW + SE) >> 2
//     green    (W + E) >> 1     (2 * C + SW + NE) >> 2   (N + S) >> 1
//
// The green of a green site is smoothed along one diagonal only; callers depend on this one-sided filter.
// Every sum is cut off by its shift. A row of n pixels reads n + 2 samples of each of its three lines.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/put.h"

namespace qvn {

struct Line3x3 {
  const uint8_t* north;  // the three lines at the column of the row's first pixel
  const uint8_t* centre;
  const uint8_t* south;
  bool own_first;  // the first pixel is a site of the line's own colour, not a green
};

// Which colour a line has beside green.
enum class OwnColour { kBlue, kRed };

// The red and blue of green sites: as they are, or exchanged where the row's first pixel is a site of the
// line's own colour.
enum class GreenSites { kAsTheyAre, kExchangedBehindOwn };

constexpr OwnColour other_colour(OwnColour own) {
  return own == OwnColour::kBlue ? OwnColour::kRed : OwnColour::kBlue;
}

namespace row_3x3_detail {

template <class T>
struct Site {
  T own, green, other;
};

template <OwnColour Own, class T>
Rgb<T> to_rgb(Site<T> site) {
  if constexpr (Own == OwnColour::kBlue) return {site.other, site.green, site.own};
  return {site.own, site.green, site.other};
}

}  // namespace row_3x3_detail

template <OwnColour Own, GreenSites Greens = GreenSites::kAsTheyAre>
inline Rgb<uint32_t> window_3x3(const Line3x3& line, size_t column) {
  using row_3x3_detail::Site;
  using row_3x3_detail::to_rgb;
  const auto x = static_cast<ptrdiff_t>(column);
  const uint8_t *n = line.north + x, *c = line.centre + x, *s = line.south + x;
  if ((x % 2 == 0) == line.own_first) {
    return to_rgb<Own>(Site<uint32_t>{c[0], uint32_t(n[0] + s[0] + c[-1] + c[1]) >> 2,
                                      uint32_t(n[-1] + n[1] + s[-1] + s[1]) >> 2});
  }
  const Site<uint32_t> green{uint32_t(c[-1] + c[1]) >> 1, uint32_t(2 * c[0] + s[-1] + n[1]) >> 2,
                             uint32_t(n[0] + s[0]) >> 1};
  if (Greens == GreenSites::kExchangedBehindOwn && line.own_first) return to_rgb<other_colour(Own)>(green);
  return to_rgb<Own>(green);
}

// A vector of windows as words, a pair of pixels a lane. A pair's two columns are the even and odd bytes of a
// load at the pair; the column to its left is the even byte of a load one before, the one to its right the
// odd byte of a load one behind.
//
//     left | even  odd | right        even pixel: left, even, odd        odd pixel: even, odd, right
template <OwnColour Own, GreenSites Greens, bool OwnFirst>
inline RgbPairs windows_3x3(const Line3x3& line, size_t x) {
  using row_3x3_detail::Site;
  using row_3x3_detail::to_rgb;
  const Bytes n = load<Bytes>(line.north + x), c = load<Bytes>(line.centre + x),
              s = load<Bytes>(line.south + x);
  const Words n_even = even_bytes(n), c_even = even_bytes(c), s_even = even_bytes(s);
  const Words n_odd = odd_bytes(n), c_odd = odd_bytes(c), s_odd = odd_bytes(s);
  const Words c_left = even_bytes(load<Bytes>(line.centre + x - 1));
  const Words s_left = even_bytes(load<Bytes>(line.south + x - 1));
  const Words n_right = odd_bytes(load<Bytes>(line.north + x + 1));
  const Words c_right = odd_bytes(load<Bytes>(line.centre + x + 1));
  if constexpr (OwnFirst) {
    const Words n_left = even_bytes(load<Bytes>(line.north + x - 1));
    const Words column = n_odd + s_odd;
    constexpr OwnColour kGreens = Greens == GreenSites::kAsTheyAre ? Own : other_colour(Own);
    return {to_rgb<Own>(Site<Words>{c_even, (n_even + s_even + c_left + c_odd) >> 2,
                                    (n_left + s_left + column) >> 2}),
            to_rgb<kGreens>(
                Site<Words>{(c_even + c_right) >> 1, (c_odd + c_odd + s_even + n_right) >> 2, column >> 1})};
  } else {
    const Words s_right = odd_bytes(load<Bytes>(line.south + x + 1));
    const Words column = n_even + s_even;
    return {
        to_rgb<Own>(Site<Words>{(c_left + c_odd) >> 1, (c_even + c_even + s_left + n_odd) >> 2, column >> 1}),
        to_rgb<Own>(
            Site<Words>{c_odd, (n_odd + s_odd + c_even + c_right) >> 2, (column + n_right + s_right) >> 2})};
  }
}

template <OwnColour Own, GreenSites Greens, class Put>
void row_3x3_plain(const Line3x3& line, uint8_t* out, size_t n) {
  for (size_t x = 0; x < n; ++x) Put::pixel(out + x * Put::kPixelBytes, window_3x3<Own, Greens>(line, x));
}

// A vector at a time; the last one overlaps the one before it. n is even, so that it starts on the same site.
template <OwnColour Own, GreenSites Greens, bool OwnFirst, class Put>
[[gnu::flatten]] void row_3x3_vectors(Line3x3 line, uint8_t* out, size_t n) {
  constexpr size_t kStep = kLaneBytes;
  size_t x = 0;
  for (; x + kStep <= n; x += kStep) {
    put_pairs<Put>(out + x * Put::kPixelBytes, windows_3x3<Own, Greens, OwnFirst>(line, x));
  }
  if (x == n) return;
  x = n - kStep;
  put_pairs<Put>(out + x * Put::kPixelBytes, windows_3x3<Own, Greens, OwnFirst>(line, x));
}

template <OwnColour Own, GreenSites Greens, class Put>
void row_3x3(const Line3x3& line, uint8_t* out, size_t n) {
  if (!kVectorRows || n < kLaneBytes || n % 2 != 0) {
    row_3x3_plain<Own, Greens, Put>(line, out, n);
  } else if (line.own_first) {
    row_3x3_vectors<Own, Greens, true, Put>(line, out, n);
  } else {
    row_3x3_vectors<Own, Greens, false, Put>(line, out, n);
  }
}

}  // namespace qvn
