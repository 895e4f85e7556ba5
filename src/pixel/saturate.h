// Sums and differences of bytes that stop at 255 and at 0.
#pragma once

#include "pixel/lanes.h"

namespace qvn {

inline Bytes larger(Bytes a, Bytes b) { return a > b ? a : b; }
inline Bytes smaller(Bytes a, Bytes b) { return a < b ? a : b; }

// ~a is what a lacks to 255.
inline Bytes add_saturated(Bytes a, Bytes b) { return a + smaller(b, ~a); }
inline Bytes subtract_saturated(Bytes a, Bytes b) { return larger(a, b) - b; }

// A sum below 512 of lanes that hold a byte each, stopped at 255, for an `a` of at most 255 and a `b` of at
// most 1: only 256 has to come down.
inline Words add_one_saturated(Words a, Words b) {
  const Words sum = a + b;
  return sum - (sum >> 8);
}

}  // namespace qvn
