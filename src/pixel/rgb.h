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

}  // namespace qvn
