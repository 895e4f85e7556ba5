// Samples of 12 bits, two in a group of three bytes:
//
//     byte 0         byte 1                                   byte 2
//     even, 11..4    odd, 3..0 (high); even, 3..0 (low)       odd, 11..4
//
// A vector of samples starts at either sample of a group. It reads the bytes from the first sample's to the
// last one's and not a byte more.
#pragma once

#include "pixel/lanes.h"
#include "pixel/products.h"

namespace qvn {

// Where the top eight bits of the sample at column x stand.
constexpr size_t packed12_top_byte(size_t x) { return 3 * (x / 2) + 2 * (x % 2); }

inline uint32_t packed12_sample(const uint8_t* line, size_t x) {
  const uint8_t* group = line + 3 * (x / 2);
  return x % 2 == 0 ? uint32_t{group[0]} << 4 | (group[1] & 0x0F) : uint32_t{group[2]} << 4 | group[1] >> 4;
}

template <class V>
struct SamplePairs {
  V first, shared;
};

// Blocks from every 12 bytes, the last one of which starts two bytes early and so ends two bytes behind
// the 12.
inline Bytes load_blocks12(const uint8_t* from) {
  if constexpr (kLaneBytes == 16) {
    return as<Bytes>(QuadWords{load_quad_word(from), load_quad_word(from + 6)});
  } else if constexpr (kLaneBytes == 32) {
    return load_blocks<10>(from);
  } else {
    Bytes blocks;
    constexpr size_t kLast = kLaneBytes / 16 - 1;
    for (size_t i = 0; i <= kLast; ++i) {
      std::memcpy(reinterpret_cast<uint8_t*>(&blocks) + 16 * i, from + 12 * i - (i == kLast ? 2 : 0), 16);
    }
    return blocks;
  }
}

// Double words that hold four bytes each, from every third one on. Of those that start at an even sample the
// fourth byte is undefined, and byte 3 * count - 1 is the last one read; of those that start at an odd one,
// at byte 1 of its group, byte 3 * count is.
//
//     even   g0 g1 g2 .    h0 h1 h2 .    ...         odd   g1 g2 h0 h1    h1 h2 i0 i1    ...
namespace places {
// From blocks of 12 (Odd: 13) source bytes of which the first one has them at its beginning and the second
// one at its end.
template <int Odd>
constexpr int spread12(int i) {
  const int block = i / 16, place = i % 16 / 4 * 3 + i % 4;
  const int from = place + block * (4 - Odd);
  return 16 * block + (from < 16 ? from : 15);
}
}  // namespace places

inline constexpr size_t kSpread12Bytes = 12 * kLaneBytes / 16;  // how far the next ones are

template <int Odd>
inline DoubleWords load_spread12(const uint8_t* from) {
  if constexpr (kBytePermutes && kLaneBytes == 32) {
    return as<DoubleWords>(shuffle<places::spread12<Odd>>(load_blocks<8 + Odd>(from)));
  } else {
    // Bytes 0, 1, ... and 6, 7, ...; then of each those from the third on into the upper double word.
    QuadWords halves{};
    for (int i = 0; i < kLaneCount<QuadWords>; i += 2) {
      halves[i] = load_quad_word(from + 6 * i);
      halves[i + 1] = load_quad_word(from + 6 * i + 4 + Odd) >> (16 - 8 * Odd);
    }
    return as<DoubleWords>((halves & 0xFFFFFFFF) | ((halves << 8) & ~uint64_t{0xFFFFFFFF}));
  }
}

// Whole samples as words.
inline Words load_packed12(const uint8_t* line, size_t x) {
  const uint8_t* group = line + 3 * (x / 2);
  if (x % 2 == 0) {
    const DoubleWords v = load_spread12<0>(group);
    return as<Words>(((v << 4) & 0x0FFF0FF0) | ((v >> 8) & 0x0000000F));
  }
  const DoubleWords v = load_spread12<1>(group + 1);
  return as<Words>(((v >> 4) & 0x00000FFF) | ((v << 4) & 0x0FF00000) | ((v >> 8) & 0x000F0000));
}

// Top bytes. Those of each 16 samples come from two blocks, 8 bytes apart.
namespace places {
template <int Odd>
constexpr int top_bytes12(int i) {
  const int pixel = i % 16, byte = pixel / 2 * 3 + (Odd == 0 ? pixel % 2 * 2 : 1 + pixel % 2);
  return i / 16 * 16 + (pixel < 8 ? byte : kLaneBytes + byte - 8);
}
}  // namespace places

template <int Odd>
inline Bytes load_top_bytes12_permuted(const uint8_t* from) {
  return shuffle<places::top_bytes12<Odd>>(load_blocks<24>(from), load_blocks<24>(from + 8));
}

// Without permutations: four samples in six bytes, the lower ones of a 64-bit lane.
//
//     even   a0 b0 c0 a1 | b1 c1 . .         odd   c0 a1 b1 c1 | a2 b2 . .
//
//     even   a0 c0 a1 c1                     odd   c0 a1 c1 a2
template <int Odd>
inline Bytes top_bytes_of_fours12(QuadWords first, QuadWords second) {
  const DoubleWords lower = shuffle<places::even>(as<DoubleWords>(first), as<DoubleWords>(second));
  const DoubleWords upper = shuffle<places::odd>(as<DoubleWords>(first), as<DoubleWords>(second));
  if constexpr (Odd == 0) {
    return as<Bytes>((lower & 0x000000FF) | ((lower >> 8) & 0x00FFFF00) | ((upper << 16) & 0xFF000000));
  } else {
    return as<Bytes>((lower & 0x0000FFFF) | ((lower >> 8) & 0x00FF0000) | (upper << 24));
  }
}

// For 16-byte vectors. The last four samples have nothing of ours behind them.
template <int Odd>
inline Bytes load_top_bytes12_by_fours(const uint8_t* from) {
  const uint64_t last = load_quad_word(from + 16 - Odd) >> (16 + 8 * Odd);
  return top_bytes_of_fours12<Odd>(QuadWords{load_quad_word(from), load_quad_word(from + 6)},
                                   QuadWords{load_quad_word(from + 12), last});
}

inline Bytes load_packed12_top_bytes(const uint8_t* line, size_t x) {
  const uint8_t* group = line + 3 * (x / 2);
  if constexpr (kBytePermutes) {
    return x % 2 == 0 ? load_top_bytes12_permuted<0>(group) : load_top_bytes12_permuted<1>(group + 1);
  } else {
    return x % 2 == 0 ? load_top_bytes12_by_fours<0>(group) : load_top_bytes12_by_fours<1>(group + 2);
  }
}

// ---- Pairs of samples, as the windows of a Bayer line take them, for machines that permute bytes freely: of
// ---- each pair the first sample and that of the next pair, and the second sample twice. One sample more is
// ---- read.
//
//     first    a0 a1  a1 a2  a2 a3 ...        shared    b0 b0  b1 b1  b2 b2 ...

// Whole samples. Both are permutations of the same blocks, words that hold 12 bits of 16:
//
//     even sample   g0 << 8 | g1, without its middle nibble:  g0 * 16 + (g1 & 15)
//     odd sample    g2 << 8 | g1, shifted right by 4
namespace places {
// The first four pairs of each block are at the beginning of 16 bytes, those of the last block at their end.
constexpr int byte_of_block12(int block, int byte) {
  if (kLaneBytes == 16) return byte < 8 ? byte : byte + 2;
  return 16 * block + byte + (block == kLaneBytes / 16 - 1 ? 2 : 0);
}

// Byte i of words of pairs that start with an even sample, at byte 0 of a group, or with an odd one, at byte
// 1 of it.
template <int Odd>
constexpr int first12(int i) {
  const int pair = i % 16 / 4 + i % 4 / 2, upper = i % 2;
  return byte_of_block12(i / 16, 3 * pair + (Odd == 0 ? 1 - upper : upper));
}
template <int Odd>
constexpr int shared12(int i) {
  const int pair = i % 16 / 4, upper = i % 2;
  return byte_of_block12(i / 16, 3 * pair + (Odd == 0 ? 1 + upper : 3 - upper));
}
}  // namespace places

inline Words even_samples12(Bytes words) {
  const Bytes without_nibble = as<Bytes>(as<Words>(words) & 0xFF0F);
  return as<Words>(multiply_add_pairs(without_nibble, as<SignedBytes>(Words{} + 0x1001)));
}
inline Words odd_samples12(Bytes words) { return as<Words>(words) >> 4; }

template <int Odd>
inline SamplePairs<Words> load_packed12_pairs(const uint8_t* from) {
  const Bytes blocks = load_blocks12(from);
  const Bytes first = shuffle<places::first12<Odd>>(blocks), shared = shuffle<places::shared12<Odd>>(blocks);
  if constexpr (Odd == 0) {
    return {even_samples12(first), odd_samples12(shared)};
  } else {
    return {odd_samples12(first), even_samples12(shared)};
  }
}

inline SamplePairs<Words> load_packed12_pairs(const uint8_t* line, size_t x) {
  const uint8_t* group = line + 3 * (x / 2);
  return x % 2 == 0 ? load_packed12_pairs<0>(group) : load_packed12_pairs<1>(group + 1);
}

// Top bytes. Those of each 16 samples come from two blocks, 9 or 10 bytes apart.
namespace places {
template <int Odd>
constexpr int byte_of_pair12(int i, int byte) {
  return i / 16 * 16 + (i % 16 < 8 ? byte : kLaneBytes + byte - 9 - Odd);
}
template <int Odd>
constexpr int first_top_bytes12(int i) {
  return byte_of_pair12<Odd>(i, 3 * (i % 16 / 2 + i % 2) + Odd);
}
template <int Odd>
constexpr int shared_top_bytes12(int i) {
  return byte_of_pair12<Odd>(i, 3 * (i % 16 / 2) + 2);
}
}  // namespace places

template <int Odd>
inline SamplePairs<Bytes> load_packed12_top_byte_pairs(const uint8_t* from) {
  const Bytes lower = load_blocks<24>(from), upper = load_blocks<24>(from + 9 + Odd);
  return {shuffle<places::first_top_bytes12<Odd>>(lower, upper),
          shuffle<places::shared_top_bytes12<Odd>>(lower, upper)};
}

inline SamplePairs<Bytes> load_packed12_top_byte_pairs(const uint8_t* line, size_t x) {
  const uint8_t* group = line + 3 * (x / 2);
  return x % 2 == 0 ? load_packed12_top_byte_pairs<0>(group) : load_packed12_top_byte_pairs<1>(group + 1);
}

}  // namespace qvn
