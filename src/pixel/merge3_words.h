// Three channels to packed pixels of three words, for a whole vector of pixels: merge3.h for words.
//
// Word i of block j of each 48 bytes belongs to channel (8 * j + i) % 3 = (2 * j + i) % 3 and to pixel
// (8 * j + i) / 3, so that again a channel fills each place i in exactly one of the three blocks:
//
//     a:  a0 a1 a2 ... a7              block 0:  a0 b0 c0 a1 b1 c1 a2 b2
//     b:  b0 b1 b2 ... b7      ->      block 1:  c2 a3 b3 c3 a4 b4 c4 a5
//     c:  c0 c1 c2 ... c7              block 2:  b5 c5 a6 b6 c6 a7 b7 c7
#pragma once

#include "pixel/merge3.h"

namespace qvn {

namespace places {
// Places are bytes: a word's two move together.
template <int Channel>
constexpr int spread3_words(int i) {
  const int word = i % 16 / 2, block = 2 * (Channel - word % 3 + 3) % 3;
  return i / 16 * 16 + (8 * block + word) / 3 * 2 + i % 2;
}

template <int Block, int Channel>
constexpr int is_channel_word(int i) {
  return (2 * Block + i % 16 / 2) % 3 == Channel ? 1 : 0;
}
}  // namespace places

template <int Block>
inline Bytes block3_words(Bytes a, Bytes b, Bytes c) {
  return blend<places::is_channel_word<Block, 0>>(a, blend<places::is_channel_word<Block, 1>>(b, c));
}

inline void store_merge3_permuted(uint8_t* to, Words a, Words b, Words c) {
  const Bytes spread_a = shuffle<places::spread3_words<0>>(as<Bytes>(a));
  const Bytes spread_b = shuffle<places::spread3_words<1>>(as<Bytes>(b));
  const Bytes spread_c = shuffle<places::spread3_words<2>>(as<Bytes>(c));
  store_blocks3(to, block3_words<0>(spread_a, spread_b, spread_c),
                block3_words<1>(spread_a, spread_b, spread_c), block3_words<2>(spread_a, spread_b, spread_c));
}

// 3 * kLaneBytes bytes to `to`: words a[0] b[0] c[0] a[1] b[1] c[1] ...
inline void store_merge3(uint8_t* to, Words a, Words b, Words c) {
  if constexpr (kBytePermutes) {
    store_merge3_permuted(to, a, b, c);
  } else {
    store_merge3_interleaved(to, a, b, c);
  }
}

}  // namespace qvn
