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
}  // namespace places

// Block `Block` of each 48 bytes, for all 16-byte blocks of a vector.
template <int Block>
inline Bytes load_every_third_block(const uint8_t* from) {
  Bytes lanes;
  for (int block = 0; block < kLaneBytes / 16; ++block) {
    std::memcpy(reinterpret_cast<uint8_t*>(&lanes) + 16 * block, from + 48 * block + 16 * Block, 16);
  }
  return lanes;
}

inline Channels3 load_split3_permuted(const uint8_t* from) {
  Bytes block0, block1, block2;
  if constexpr (kLaneBytes == 32) {
    const Bytes first = load<Bytes>(from), second = load<Bytes>(from + 32), third = load<Bytes>(from + 64);
    block0 = shuffle<places::join_blocks<0, 3>>(first, second);
    block1 = shuffle<places::join_blocks<1, 2>>(first, third);
    block2 = shuffle<places::join_blocks<0, 3>>(second, third);
  } else {
    block0 = load_every_third_block<0>(from);
    block1 = load_every_third_block<1>(from);
    block2 = load_every_third_block<2>(from);
  }
  const Bytes a = blend<places::is_channel<0, 0>>(block0, blend<places::is_channel<1, 0>>(block1, block2));
  const Bytes b = blend<places::is_channel<0, 1>>(block0, blend<places::is_channel<1, 1>>(block1, block2));
  const Bytes c = blend<places::is_channel<0, 2>>(block0, blend<places::is_channel<1, 2>>(block1, block2));
  return {shuffle<places::gather3<0>>(a), shuffle<places::gather3<1>>(b), shuffle<places::gather3<2>>(c)};
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
