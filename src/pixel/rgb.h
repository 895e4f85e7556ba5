// A pixel's three channels, as numbers or as lanes of many pixels.
#pragma once

#include "pixel/lanes.h"

namespace qvn {

template <class T>
struct Rgb {
  T r, g, b;
};

// A vector of pixels with a word for each channel: those at even places of the run and those at odd ones.
// Rows that weigh channels take this form, since the weighted sums need 16 bits.
struct RgbPairs {
  Rgb<Words> even, odd;
};

inline RgbPairs pairs_of_bytes(const Rgb<Bytes>& p) {
  return {{even_bytes(p.r), even_bytes(p.g), even_bytes(p.b)},
          {odd_bytes(p.r), odd_bytes(p.g), odd_bytes(p.b)}};
}

// Pixels two by two as packed BGR has them: three words, whose lower byte is the first one.
struct BgrPairs {
  Words b0_g0, r0_b1, g1_r1;
};

// Words again, with red and blue as the two bytes of a word, for sums that take them at once. Red is the
// lower byte of the even pixels and the upper one of the odd pixels (Odd 0), or the other way about (Odd 1).
struct RbgForm {};  // names the form, whose type depends on the row's phase
template <int Odd>
struct RbgPairs {
  Bytes even, odd;
  Words even_green, odd_green;
};

// And with red and blue where a mosaic has them, for sums that take each byte by its own factor: one of the
// two is the lower byte of `even` and the upper one of `odd`, red (Odd 0) or blue (Odd 1); the other one is
// the upper byte of `shared`, for the even and the odd pixel.
struct SiteForm {};
template <int Odd>
struct SitePairs {
  Bytes even, odd, shared;
  Words even_green, odd_green;
};

}  // namespace qvn
