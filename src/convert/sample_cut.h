// 16-bit samples cut down to 8 bits: which bits of a sample become the byte, and how the two below them push
// the channels up by one. For one sample and for a vector of them.
#pragma once

#include <bit>

#include "pixel/products.h"
#include "pixel/rgb.h"

namespace qvn {

// A byte of 255 is never pushed.
struct SampleCut {
  uint32_t shift;      // below 16
  uint16_t byte_mask;  // 0xFF, or 0 where nothing of the sample is left
  uint16_t roundBit;   // pushes red, and mono
  uint16_t dropBit;    // pushes blue

  // Whether eight bits in a row are left, with the round bit right below them or, below bit 0, none.
  constexpr bool is_a_byte_above_its_push() const {
    return shift <= 8 && byte_mask == 0xFF && roundBit == (1U << shift) >> 1;
  }
};

// The top byte, for samples of 16 bits and for all that are aligned to the top.
inline constexpr SampleCut kCutTopByte = {8, 0xFF, 0x80, 0x40};

// For samples of `bits` bits aligned to bit 0. Counts take their low five bits and shift everything out from
// 16 on, as the shift instructions of 16-bit words do; callers rely on no number of bits being refused.
constexpr SampleCut cut_low_aligned(uint32_t bits) {
  const auto bit = [](uint32_t place) {
    return static_cast<uint16_t>(place % 32 < 16 ? 1U << place % 32 : 0);
  };
  const uint32_t shift = (bits - 8) % 32;
  return {shift % 16, static_cast<uint16_t>(shift < 16 ? 0xFF : 0), bit(shift - 1), bit(shift - 2)};
}

enum class SampleOrder { kLittleEndian, kBigEndian };
inline constexpr SampleOrder kHostOrder =
    std::endian::native == std::endian::little ? SampleOrder::kLittleEndian : SampleOrder::kBigEndian;

inline uint32_t load_sample(const uint8_t* from, SampleOrder order) {
  const bool big = order == SampleOrder::kBigEndian;
  return uint32_t{from[big ? 0 : 1]} << 8 | from[big ? 1 : 0];
}

// A sample as a colour: green is the byte, red and blue are pushed.
constexpr Rgb<uint32_t> cut_colours(uint32_t sample, SampleCut cut) {
  const uint32_t byte = (sample >> cut.shift) & cut.byte_mask;
  const auto pushed = [=](uint32_t bit) { return byte + ((sample & bit) != 0 && byte != 255 ? 1 : 0); };
  return {pushed(cut.roundBit), byte, pushed(cut.dropBit)};
}

struct CutLanes {
  uint32_t shift;
  Words byte_mask, roundBit, dropBit;

  explicit CutLanes(SampleCut cut)
      : shift(cut.shift),
        byte_mask(Words{} + cut.byte_mask),
        roundBit(Words{} + cut.roundBit),
        dropBit(Words{} + cut.dropBit) {}

  Words bytes(Words samples) const { return (samples >> shift) & byte_mask; }

  // One more where a sample has the bit; the narrowing stops 256 at 255.
  SignedWords pushed(Words samples, Words bit) const {
    return as<SignedWords>(bytes(samples)) + 1 + ((samples & bit) == 0);
  }
};

// The samples of a vector of pixels in two vectors of words, in the order that narrow_to_bytes undoes.
struct SamplePair {
  Words first, second;

  Bytes red(const CutLanes& cut) const {
    return narrow_to_bytes(cut.pushed(first, cut.roundBit), cut.pushed(second, cut.roundBit));
  }
  Bytes green(const CutLanes& cut) const {
    return narrow_to_bytes(as<SignedWords>(cut.bytes(first)), as<SignedWords>(cut.bytes(second)));
  }
  SamplePair lifted(uint32_t bits) const { return {first << bits, second << bits}; }

  // Red where the byte is the top one and the round bit lies right below it: the sum stops at 65535, so that
  // 255 stays.
  Bytes rounded_top_bytes() const {
    const auto rounded = [](Words samples) {
      return as<SignedWords>(add_saturated(samples, Words{} + 0x80) >> 8);
    };
    return narrow_to_bytes(rounded(first), rounded(second));
  }
  Bytes blue(const CutLanes& cut) const {
    return narrow_to_bytes(cut.pushed(first, cut.dropBit), cut.pushed(second, cut.dropBit));
  }
};

template <SampleOrder order>
inline SamplePair load_samples(const uint8_t* from) {
  const auto value_of = [](Bytes bytes) {
    const auto words = as<Words>(bytes);
    if constexpr (order == SampleOrder::kLittleEndian) return words;
    if constexpr (kBytePermutes) return as<Words>(shuffle<places::other_of_pair>(bytes));
    return (words << 8) | (words >> 8);
  };
  return {value_of(load_blocks<32>(from)), value_of(load_blocks<32>(from + 16))};
}

}  // namespace qvn
