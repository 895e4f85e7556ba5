// How the samples of a 16-bit mosaic are read with a shift.
//
// A channel is made from the high and the low byte of its sample by two shifts apart, whose counts are those
// of 32-bit machines, modulo 32:
//
//     (high << ((8 - shift) & 31)) + (low >> (shift & 31)), cut to 16 bits
//
// and green from the sums of both samples' bytes, halved before the cut. With s = shift & 31 that is
//
//     s = 0 to 8      the whole sample, or the mean of both, shifted right by s
//     s = 9 to 23     0: the high byte has left the 16 bits at the top, the low one at the bottom
//     s = 24 to 31    the high byte alone, shifted left by 40 - s; of green the sum, shifted left by 39 - s
//
// Twice the high byte as a sample makes one of the last case: the mean of both greens is their sum, and all
// channels are shifted left by 39 - s.
#pragma once

#include "pixel/fetch.h"
#include "pixel/rgb.h"

namespace qvn {

using FetchWholeRaw16 = FetchRaw16<ByteOrder::kBig>;

struct FetchTwiceTopByte {
  static constexpr size_t kColumns = kLaneWords;
  static constexpr size_t line_bytes(uint32_t width) { return FetchWholeRaw16::line_bytes(width); }
  static uint32_t sample(const uint8_t* line, size_t x) { return uint32_t{line[2 * x]} * 2; }
  static Words samples(const uint8_t* line, size_t x) { return (load<Words>(line + 2 * x) & 0xFF) * 2; }
};

// What follows the window: shifts of all channels, to the left, then to the right, by 15 at most.
template <bool Left, bool Right>
struct ChannelShift {
  uint32_t left, right;

  uint32_t operator()(uint32_t channel) const { return ((channel << left) & 0xFFFF) >> right; }
  Words operator()(Words channels) const {
    if constexpr (Left) channels = channels << left;
    if constexpr (Right) channels = channels >> right;
    return channels;
  }
  template <class T>
  Rgb<T> operator()(Rgb<T> p) const {
    return {(*this)(p.r), (*this)(p.g), (*this)(p.b)};
  }
};

constexpr bool reads_whole_samples(uint32_t shift) { return (shift & 31) <= 8; }

// All channels are below this.
constexpr uint32_t raw16_values(uint32_t shift) {
  if (reads_whole_samples(shift)) return 65536U >> (shift & 31);
  return (shift & 31) <= 23 ? 1 : 65536;
}

// Runs convert(fetch, channel shift). A shift of 0 has a kernel of its own: vectors shift by a variable count
// in two instructions.
template <class Convert>
auto with_raw16_reading(uint32_t shift, const Convert& convert) {
  const uint32_t count = shift & 31;
  if (count == 0) return convert(FetchWholeRaw16{}, ChannelShift<false, false>{0, 0});
  if (reads_whole_samples(shift)) return convert(FetchWholeRaw16{}, ChannelShift<false, true>{0, count});
  // Twice a byte has no more than 9 bits.
  constexpr uint32_t kAllGone = 15;
  return convert(FetchTwiceTopByte{}, count <= 23 ? ChannelShift<true, true>{0, kAllGone}
                                                  : ChannelShift<true, true>{39 - count, 0});
}

}  // namespace qvn
