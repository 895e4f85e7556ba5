// What the correction rules share. A rule acts on planes of bytes or words:
//
//     row          corrects pixels from..to - 1 of a strip
//     shared_row   of words alone: corrects the samples of one channel, beside the other two of other pixels
//
// A rule that says kInOrder must see one pixel after the other; for all others `from` is 0.
//
// No rule clamps but for the fixed matrices: what comes out too large or negative keeps its low bits. Callers
// depend on it.
#pragma once

#include "correction/planes.h"
#include "pixel/defined_conversion.h"

namespace qvn {

// The low bits of a number truncated toward zero to 64 bits.
template <class T>
T low_bits(double value) {
  return static_cast<T>(static_cast<uint64_t>(truncate_to_int64(value)));
}

// Each pixel by `correct`.
template <class T, class Correct>
void correct_pixels(Planes<T>& p, size_t from, size_t to, const Correct& correct) {
  for (size_t x = from; x < to; ++x) {
    const Rgb<T> corrected = correct(Rgb<T>{p.r[x], p.g[x], p.b[x]});
    p.r[x] = corrected.r;
    p.g[x] = corrected.g;
    p.b[x] = corrected.b;
  }
}

}  // namespace qvn
