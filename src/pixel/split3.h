// Packed pixels of three bytes to three channels, for a whole vector of pixels: merge3.h backwards.
//
// In each 48 bytes, byte i of block j belongs to channel (j + i) % 3, so a channel has each place i in
// exactly one of the three blocks: blends collect its bytes, and one permutation puts them in order.
//
//     block 0:  a0 b0 c0 a1 b1 c1 ... a5
//     block 1:  b5 c5 a6 b6 c6 a7 ... b10       ->     a0 a11 a6 a1 a12 a7 ... a5     ->     a0 a1 a2 ... a15
//     block 2:  c10 a11 b11 c11   ... c15
#pragma once

#include "pixel/lanes.h"
#include "pixel/merge3.h"
#include "pixel/products.h"

namespace qvn {

// Channels of a vector of pixels, in memory order.
struct Channels3 {
  Bytes a, b, c;
};

namespace places {
// Where the blends leave pixel i of a channel.
template <int Channel>
constexpr int gather3(int i) {
  return i / 16 * 16 + (3 * (i % 16) + Channel) % 16;
}

// Where channel c's pixel i is in block `Block`, or 128 if it is in another one.
template <int Block, int Channel>
constexpr int in_block3(int i) {
  const int place = 3 * (i % 16) + Channel;
  return place / 16 == Block ? place % 16 : 128;
}
}  // namespace places

// The blocks of a vector of pixels, where bytes are permuted freely.
struct Blocks3 {
  Bytes block0, block1, block2;

  static Blocks3 load(const uint8_t* from) {
    return {load_blocks<48>(from), load_blocks<48>(from + 16), load_blocks<48>(from + 32)};
  }

  // Vectors of 32 bytes, where a blend of bytes may take three operations, by a permutation of each block: a
  // tenth less time than by blends.
  template <int Channel>
  Bytes channel() const {
    if constexpr (kLaneBytes == 32) {
      return permute_blocks(block0, constant<Bytes, places::in_block3<0, Channel>>()) |
             permute_blocks(block1, constant<Bytes, places::in_block3<1, Channel>>()) |
             permute_blocks(block2, constant<Bytes, places::in_block3<2, Channel>>());
    }
    return shuffle<places::gather3<Channel>>(
        blend<places::is_channel<0, Channel>>(block0, blend<places::is_channel<1, Channel>>(block1, block2)));
  }
};

inline Channels3 load_split3_permuted(const uint8_t* from) {
  const Blocks3 blocks = Blocks3::load(from);
  return {blocks.channel<0>(), blocks.channel<1>(), blocks.channel<2>()};
}

// Without permutations. Interleaving the lower with the upper 24 of 48 bytes sends the byte at p to
// 2 * p modulo 47. Four rounds send it to 16 * p, and byte c of pixel i from 3 * i + c to
// 48 * i + 16 * c = i + 16 * c: channel by channel.
inline Bytes upper_half(Bytes v) {
  const QuadWords halves = as<QuadWords>(v);
  return as<Bytes>(interleave_high(halves, halves));
}

inline Channels3 interleave_halves3(Channels3 v) {
  return {interleave_low(v.a, upper_half(v.b)), interleave_low(upper_half(v.a), v.c),
          interleave_low(v.b, upper_half(v.c))};
}

inline Channels3 load_split3_interleaved(const uint8_t* from) {
  static_assert(kBytePermutes || !kVectorRows || kLaneBytes == 16);
  const Channels3 packed{load<Bytes>(from), load<Bytes>(from + 16), load<Bytes>(from + 32)};
  return interleave_halves3(interleave_halves3(interleave_halves3(interleave_halves3(packed))));
}

// The channels of 3 * kLaneBytes bytes a[0] b[0] c[0] a[1] b[1] c[1] ...
inline Channels3 load_split3(const uint8_t* from) {
  if constexpr (kBytePermutes) {
    return load_split3_permuted(from);
  } else {
    return load_split3_interleaved(from);
  }
}

}  // namespace qvn
