// Bytes of a line picked by places that many lines share, a vector at a time.
//
// A vector's 16-byte blocks are picked on their own, each from one to four windows: 16 bytes of the line
// each, which follow each other from the block's base. A window's permutation puts its bytes where they
// belong and leaves 0 elsewhere:
//
//     line       . . 0 1 2 3 4 5 6 7 8 9 A B C D E F | G H I . .
//                    base: first window                second window
//     picked     0 0 1 2 2 3 4 6 7 8 9 9 B D F 0 0 0
//     and        0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 G H I
#pragma once

#include <algorithm>

#include "pixel/products.h"

namespace qvn {

inline constexpr int kMostWindows = 4;

// The 16-byte blocks that begin at line + base[0], line + base[1] ...
template <int kBytes = kLaneBytes>
inline Bytes load_blocks_at(const uint8_t* line, const uint32_t* base) {
  if constexpr (kBytes == 32) {
    return load_block_pair(line + base[0], line + base[1]);
  } else {
    Bytes blocks;
    for (size_t i = 0; i < kBytes / 16; ++i) {
      std::memcpy(reinterpret_cast<uint8_t*>(&blocks) + 16 * i, line + base[i], 16);
    }
    return blocks;
  }
}

// The plan for a number of vectors, all with the same number of windows.
class Gather {
 public:
  static constexpr size_t kBlocks = kLaneBytes / 16;

  // What `vectors` vectors take of the memory that the constructor gets.
  static constexpr size_t memory_bytes(size_t vectors) {
    return vectors * (kMostWindows * kLaneBytes + kBlocks * sizeof(uint32_t));
  }

  Gather(uint8_t* memory, size_t vectors)
      : from_(memory), base_(memory + vectors * kMostWindows * kLaneBytes) {}

  // Plans vector `index` for kLaneBytes places below line_bytes, which may be read and are at least
  // 16 * windows. False if the places of a block do not lie within its windows.
  bool plan(size_t index, const uint32_t* places, int windows, uint32_t line_bytes) {
    const uint32_t reach = 16 * static_cast<uint32_t>(windows);
    for (size_t block = 0; block < kBlocks; ++block, places += 16) {
      const auto [lowest, highest] = range(places);
      if (highest - lowest >= reach) return false;
      const uint32_t base = std::min(lowest, line_bytes - reach);
      std::memcpy(base_ + (index * kBlocks + block) * sizeof base, &base, sizeof base);
      uint8_t* from = from_ + index * static_cast<size_t>(windows) * kLaneBytes + 16 * block;
      for (uint32_t first = base; first < base + reach; first += 16, from += kLaneBytes) {
        for (int i = 0; i < 16; ++i) {
          const uint32_t place = places[i] - first;
          from[i] = place < 16 ? static_cast<uint8_t>(place) : uint8_t{0x80};
        }
      }
    }
    return true;
  }

  template <int kWindows>
  Bytes pick(size_t index, const uint8_t* line) const {
    uint32_t base[kBlocks];
    std::memcpy(base, base_ + index * sizeof base, sizeof base);
    const uint8_t* from = from_ + index * kWindows * kLaneBytes;
    Bytes bytes{};
    for (int window = 0; window < kWindows; ++window, from += kLaneBytes, line += 16) {
      bytes |= permute_blocks(load_blocks_at(line, base), load<Bytes>(from));
    }
    return bytes;
  }

 private:
  struct Range {
    uint32_t lowest, highest;
  };
  static Range range(const uint32_t* places) {
    Range range{places[0], places[0]};
    for (int i = 1; i < 16; ++i) {
      range = {std::min(range.lowest, places[i]), std::max(range.highest, places[i])};
    }
    return range;
  }

  uint8_t* from_;
  uint8_t* base_;
};

}  // namespace qvn
