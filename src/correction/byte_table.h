// A result for each byte, and its look-ups.
#pragma once

#include <array>

#include "correction/planes.h"
#include "pixel/products.h"

namespace qvn {

// Where blocks of 16 bytes are permuted two and more at once, the table lies in registers' form: 16 blocks of
// 16 entries, of which the upper four bits of a sample choose one and the lower four bits an entry. Of each
// half of the table, a sample starts at its first block and goes down by one block a step:
//
//     sample 0x35    first half:    35  25  15  05 | F5 E5 D5 C5          an index with its top bit set
//                    second half:   F0  E0  D0  C0  B0 A0 90 80           gives nothing
//
// The results of all steps are added by exclusive or, and a block holds its difference to the one before, so
// that those of blocks 0 to 3 make an entry of block 3. That is 46 instructions for 32 samples, where two
// loads a cycle look up 32 of them in 18 cycles. With blocks of 16 bytes alone it takes longer than the loads
// do. (The machine's own gather is a little quicker on some processors and many times slower on others.)
class ByteTable {
 public:
  // The table of result(0) to result(255).
  template <class Result>
  explicit ByteTable(const Result& result) {
    for (size_t i = 0; i < entries_.size(); ++i) entries_[i] = result(static_cast<uint8_t>(i));
    if constexpr (kByBlocks) {
      for (size_t block = 0; block < kBlocks; ++block) fill_step(block);
    }
  }

  uint8_t operator()(uint8_t sample) const { return entries_[sample]; }

  // n samples become their results. May work on whole vectors.
  void row(uint8_t* samples, size_t n) const {
    if constexpr (kByBlocks) {
      for (size_t x = 0; x < n; x += kLaneBytes) store(samples + x, results(load<Bytes>(samples + x)));
    } else {
      row_plain(samples, n);
    }
  }

  // Eight look-ups for a load and a store of eight bytes.
  void row_plain(uint8_t* samples, size_t n) const {
    size_t x = 0;
    for (; x + 8 <= n; x += 8) {
      uint64_t eight, found = 0;
      std::memcpy(&eight, samples + x, sizeof eight);
      for (int shift = 0; shift < 64; shift += 8) {
        found |= uint64_t{entries_[(eight >> shift) & 0xFF]} << shift;
      }
      std::memcpy(samples + x, &found, sizeof found);
    }
    for (; x < n; ++x) samples[x] = entries_[samples[x]];
  }

 private:
  static constexpr bool kByBlocks = kLaneBytes >= 32;
  static constexpr size_t kBlocks = 16, kHalf = kBlocks / 2;

  void fill_step(size_t block) {
    uint8_t step[kLaneBytes];
    for (size_t i = 0; i < kLaneBytes; ++i) {
      const size_t entry = 16 * block + i % 16;
      const uint8_t before = block % kHalf == 0 ? uint8_t{0} : entries_[entry - 16];
      step[i] = entries_[entry] ^ before;
    }
    steps_[block] = load<Bytes>(step);
  }

  [[gnu::always_inline]] Bytes results(Bytes samples) const {
    Bytes found{};
    look_up_half(as<SignedBytes>(samples), &steps_[0], found);
    look_up_half(as<SignedBytes>(samples ^ 0x80), &steps_[kHalf], found);
    return found;
  }

  // The entries of samples 0 to 127. Negative ones are brought near 0 first, to be negative still after seven
  // steps.
  [[gnu::always_inline]] static void look_up_half(SignedBytes samples, const Bytes* steps, Bytes& found) {
    const Bytes step = factor<Bytes>(16);
    Bytes index = as<Bytes>(samples < -16 ? SignedBytes{} - 16 : samples);
    for (size_t i = 0; i < kHalf; ++i) {
      found ^= permute_blocks(steps[i], index);
      index -= step;
    }
  }

  std::array<uint8_t, 256> entries_;
  Bytes steps_[kBlocks];  // of tables by blocks
};

}  // namespace qvn
