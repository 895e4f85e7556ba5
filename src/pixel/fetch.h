// Fetches: what the sample at a column of a source line is. A fetch knows its line pitch, one sample as a
// number, and a vector of samples of kColumns consecutive columns from any column on: bytes, or words where
// a sample needs them. It reads those samples only, or of packed ones the bytes between the first and the
// last.
//
// A Bayer window takes pairs of neighbours, of kColumns + 1 columns: `pairs` of a fetch that has a quicker
// way to them than two vectors of samples, or pairs_of.
#pragma once

#include "pixel/lanes.h"
#include "pixel/packed12.h"

namespace qvn {

// Words for samples that fill a word each.
inline constexpr size_t kLaneWords = kLaneBytes / 2;

// One byte a sample.
struct FetchRaw8 {
  static constexpr size_t kColumns = kLaneBytes;
  static constexpr size_t line_bytes(uint32_t width) { return width; }
  static uint32_t sample(const uint8_t* line, size_t x) { return line[x]; }
  static Bytes samples(const uint8_t* line, size_t x) { return load<Bytes>(line + x); }
};

// The first byte of two: the top eight bits of a big-endian sample.
struct FetchRaw16TopByte {
  static constexpr size_t kColumns = kLaneBytes;
  static constexpr size_t line_bytes(uint32_t width) { return size_t{2} * width; }
  static uint32_t sample(const uint8_t* line, size_t x) { return line[2 * x]; }
  static Bytes samples(const uint8_t* line, size_t x) {
    return split2_even(load<Bytes>(line + 2 * x), load<Bytes>(line + 2 * x + kLaneBytes));
  }
};

// ---- Whole samples of two bytes, in either byte order, shifted left: what is shifted out at the top is
// lost.

enum class ByteOrder { kLittle, kBig };
inline constexpr ByteOrder kHostByteOrder =
    std::endian::native == std::endian::little ? ByteOrder::kLittle : ByteOrder::kBig;

namespace places {
constexpr int swapped(int i) { return i ^ 1; }
}  // namespace places

// The value of words as they were loaded by a little-endian machine.
template <ByteOrder Order>
inline Words value_of(Words loaded) {
  if constexpr (Order == ByteOrder::kLittle) {
    return loaded;
  } else if constexpr (kBytePermutes) {
    return as<Words>(shuffle<places::swapped>(as<Bytes>(loaded)));
  } else {
    return (loaded << 8) | (loaded >> 8);
  }
}

template <ByteOrder Order, int Shift = 0>
struct FetchRaw16 {
  static constexpr size_t kColumns = kLaneWords;
  static constexpr size_t line_bytes(uint32_t width) { return size_t{2} * width; }
  static uint32_t sample(const uint8_t* line, size_t x) {
    const uint32_t first = line[2 * x], second = line[2 * x + 1];
    const uint32_t value = Order == ByteOrder::kLittle ? second << 8 | first : first << 8 | second;
    return (value << Shift) & 0xFFFF;
  }
  static Words samples(const uint8_t* line, size_t x) {
    return value_of<Order>(load<Words>(line + 2 * x)) << Shift;
  }
};

// The top byte of such a sample.
template <ByteOrder Order, int Shift = 0>
struct FetchShiftedRaw16TopByte {
  static constexpr size_t kColumns = kLaneBytes;
  static constexpr size_t line_bytes(uint32_t width) { return size_t{2} * width; }
  static uint32_t sample(const uint8_t* line, size_t x) {
    return FetchRaw16<Order, Shift>::sample(line, x) >> 8;
  }
  static Bytes samples(const uint8_t* line, size_t x) {
    return split2_odd(as<Bytes>(FetchRaw16<Order, Shift>::samples(line, x)),
                      as<Bytes>(FetchRaw16<Order, Shift>::samples(line, x + kLaneWords)));
  }
};

// ---- Two samples in three bytes: packed12.h. An odd width's last sample has no place in the pitch.

struct FetchRaw12 {
  static constexpr size_t kColumns = kLaneWords;
  static constexpr size_t line_bytes(uint32_t width) { return size_t{3} * (width >> 1); }
  static uint32_t sample(const uint8_t* line, size_t x) { return packed12_sample(line, x); }
  static Words samples(const uint8_t* line, size_t x) { return load_packed12(line, x); }
  static constexpr bool kOwnPairs = kBytePermutes;
  static SamplePairs<Words> pairs(const uint8_t* line, size_t x) { return load_packed12_pairs(line, x); }
};

// The top eight bits of a packed sample.
struct FetchRaw12TopByte {
  static constexpr size_t kColumns = kLaneBytes;
  static constexpr size_t line_bytes(uint32_t width) { return size_t{3} * (width >> 1); }
  static uint32_t sample(const uint8_t* line, size_t x) { return line[packed12_top_byte(x)]; }
  static Bytes samples(const uint8_t* line, size_t x) { return load_packed12_top_bytes(line, x); }
  static constexpr bool kOwnPairs = kBytePermutes;
  static SamplePairs<Bytes> pairs(const uint8_t* line, size_t x) {
    return load_packed12_top_byte_pairs(line, x);
  }
};

// ---- Pairs of neighbours: of each pair the first sample and that of the next pair, and the second sample
// ---- twice.
//
//     first    a0 a1  a1 a2  a2 a3 ...        shared    b0 b0  b1 b1  b2 b2 ...

namespace places {
// Lanes of Size bytes at even places.
template <int Size>
constexpr int is_even_lane(int i) {
  return i / Size % 2 == 0 ? 1 : 0;
}
}  // namespace places

template <class Fetch>
inline constexpr bool kOwnPairs = requires {
  requires Fetch::kOwnPairs;
};

template <class Fetch>
inline auto pairs_of(const uint8_t* line, size_t x) {
  if constexpr (kOwnPairs<Fetch>) {
    return Fetch::pairs(line, x);
  } else {
    const auto v = Fetch::samples(line, x), next = Fetch::samples(line, x + 1);
    using V = std::remove_const_t<decltype(v)>;
    constexpr auto kEven = places::is_even_lane<sizeof v[0]>;
    return SamplePairs<V>{as<V>(blend<kEven>(as<Bytes>(v), as<Bytes>(next))),
                          as<V>(blend<kEven>(as<Bytes>(next), as<Bytes>(v)))};
  }
}

}  // namespace qvn
