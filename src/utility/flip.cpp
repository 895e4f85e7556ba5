// Elements are exchanged from both ends of a line to its middle, a block at either end at a time. Each block
// is reversed within itself on the way.
#include "utility/flip.h"

#include <array>
#include <cstring>

#include "pixel/split3.h"

namespace qvn {
namespace {

template <size_t kElement>
void reverse_plain(uint8_t* elements, size_t n) {
  std::array<uint8_t, kElement> a, b;
  if (n == 0) return;
  for (uint8_t *first = elements, *last = elements + (n - 1) * kElement; first < last;
       first += kElement, last -= kElement) {
    std::memcpy(&a, first, kElement);
    std::memcpy(&b, last, kElement);
    std::memcpy(first, &b, kElement);
    std::memcpy(last, &a, kElement);
  }
}

// ---- Blocks of vectors: the elements of each come out in reverse order.

namespace places {
template <size_t Element>
constexpr int reverse(int i) {
  constexpr int kElement = int{Element};
  return kLaneBytes - kElement - i / kElement * kElement + i % kElement;
}

template <class V>
constexpr int reverse_lanes(int i) {
  return kLaneCount<V> - 1 - i;
}

// Of 48 bytes the one that comes to place i of block `Block`, as a place in that block of two: `First`, and a
// vector in which every other block has its bytes at their places.
template <size_t Element, int Block, int First>
constexpr int reverse48(int i) {
  constexpr int kElement = int{Element};
  const int to = 16 * Block + i % 16;
  const int from = 48 - kElement - to / kElement * kElement + to % kElement;
  return i / 16 * 16 + from % 16 + (from / 16 == First ? 0 : kLaneBytes);
}

template <int Half>
constexpr int is_half(int i) {
  return i % 16 / 8 == Half ? 1 : 0;
}
}  // namespace places

// For elements of 1 and 2 bytes.
template <size_t kElement>
class ReversedVector {
 public:
  static constexpr size_t kBytes = kLaneBytes;
  explicit ReversedVector(const uint8_t* from) {
    if constexpr (kBytePermutes) {
      v_ = shuffle<places::reverse<kElement>>(load<Bytes>(from));
    } else {
      const DoubleWords fours = shuffle<places::reverse_lanes<DoubleWords>>(load<DoubleWords>(from));
      const Words twos = as<Words>((fours << 16) | (fours >> 16));
      v_ = as<Bytes>(kElement == 2 ? twos : (twos << 8) | (twos >> 8));
    }
  }
  void put(uint8_t* to) const { store(to, v_); }

 private:
  Bytes v_;
};

// For elements of 3 and 6 bytes: runs of 48 bytes, and such runs in a vector.
//
//     block 0    block 1    block 2              block 0      block 1          block 2
//     0 .. 15    16 .. 31   32 .. 47     ->      45 46 47 42  31 32 27 .. 16   17 12 13 .. 0 1 2
template <size_t kElement>
class ReversedTriple {
 public:
  static constexpr size_t kBytes = 3 * kLaneBytes;
  explicit ReversedTriple(const uint8_t* from) {
    const auto [in0, in1, in2] = load_backward(from);
    const Bytes ends = blend<places::is_half<0>>(in2, in0);
    block0_ = shuffle<places::reverse48<kElement, 0, 2>>(in2, in1);
    block1_ = shuffle<places::reverse48<kElement, 1, 1>>(in1, ends);
    block2_ = shuffle<places::reverse48<kElement, 2, 0>>(in0, in1);
  }
  void put(uint8_t* to) const { store_blocks3(to, block0_, block1_, block2_); }

 private:
  // The runs by their three blocks, the last run first.
  static Channels3 load_backward(const uint8_t* from) {
    if constexpr (kLaneBytes == 32) {
      const Bytes first = load<Bytes>(from), second = load<Bytes>(from + 32), third = load<Bytes>(from + 64);
      return {shuffle<qvn::places::join_blocks<3, 0>>(first, second),
              shuffle<qvn::places::join_blocks<2, 1>>(first, third),
              shuffle<qvn::places::join_blocks<3, 0>>(second, third)};
    } else {
      return {load_block_backward(from, 0), load_block_backward(from, 1), load_block_backward(from, 2)};
    }
  }

  static Bytes load_block_backward(const uint8_t* from, size_t block) {
    constexpr size_t kRuns = kLaneBytes / 16;
    Bytes lanes;
    for (size_t run = 0; run < kRuns; ++run) {
      std::memcpy(reinterpret_cast<uint8_t*>(&lanes) + 16 * run, from + 48 * (kRuns - 1 - run) + 16 * block,
                  16);
    }
    return lanes;
  }

  Bytes block0_, block1_, block2_;
};

// For elements of 3 bytes, without permutations: 48 bytes by twos in the lower six of eight bytes, which
// change places there.
//
//     0 1 2 3 4 5 . .   ->   3 4 5 0 1 2 . .
template <size_t kElement>
class ReversedTwos {
 public:
  static_assert(kElement == 3);
  static constexpr size_t kBytes = 48;
  explicit ReversedTwos(const uint8_t* from)
      // The last six bytes have nothing of ours behind them.
      : first_{exchange(QuadWords{load_quad_word(from + 40) >> 16, load_quad_word(from + 36)})},
        second_{exchange(QuadWords{load_quad_word(from + 30), load_quad_word(from + 24)})},
        third_{exchange(QuadWords{load_quad_word(from + 18), load_quad_word(from + 12)})},
        fourth_{exchange(QuadWords{load_quad_word(from + 6), load_quad_word(from)})} {}
  void put(uint8_t* to) const { store_six_bytes_of_each(to, first_, second_, third_, fourth_); }

 private:
  static QuadWords exchange(QuadWords twos) {
    return ((twos >> 24) & 0x0000000000FFFFFF) | ((twos << 24) & 0x0000FFFFFF000000);
  }

  QuadWords first_, second_, third_, fourth_;
};

// `Block` holds whole elements, so do the places of all blocks. The last two at either end may overlap; they
// are all read before one is written.
template <size_t kElement, class Block>
void reverse_by_blocks(uint8_t* elements, size_t n) {
  constexpr size_t kBlock = Block::kBytes;
  if (n * kElement < kBlock) return reverse_plain<kElement>(elements, n);
  uint8_t* first = elements;
  uint8_t* end = elements + n * kElement;
  for (; end - first > ptrdiff_t{4 * kBlock}; first += kBlock, end -= kBlock) {
    const Block front(first), back(end - kBlock);
    back.put(first);
    front.put(end - kBlock);
  }
  const size_t half = (static_cast<size_t>(end - first) / kElement + 1) / 2 * kElement;
  const size_t inward = half > kBlock ? half - kBlock : 0;
  uint8_t* inner_first = first + inward;
  uint8_t* inner_end = end - inward;
  const Block front(first), inner_front(inner_first), inner_back(inner_end - kBlock), back(end - kBlock);
  back.put(first);
  inner_back.put(inner_first);
  inner_front.put(inner_end - kBlock);
  front.put(end - kBlock);
}

template <size_t kElement>
void reverse(uint8_t* elements, size_t n) {
  if constexpr (kVectorRows && kElement <= 2) {
    reverse_by_blocks<kElement, ReversedVector<kElement>>(elements, n);
  } else if constexpr (kBytePermutes) {
    reverse_by_blocks<kElement, ReversedTriple<kElement>>(elements, n);
  } else if constexpr (kVectorRows && kElement == 3) {
    reverse_by_blocks<kElement, ReversedTwos<kElement>>(elements, n);
  } else {
    reverse_plain<kElement>(elements, n);
  }
}

}  // namespace

void reverse_elements_plain(uint8_t* elements, size_t n, uint32_t element) {
  switch (element) {
    case 1:
      return reverse_plain<1>(elements, n);
    case 2:
      return reverse_plain<2>(elements, n);
    case 3:
      return reverse_plain<3>(elements, n);
    default:
      return reverse_plain<6>(elements, n);
  }
}

void reverse_elements(uint8_t* elements, size_t n, uint32_t element) {
  switch (element) {
    case 1:
      return reverse<1>(elements, n);
    case 2:
      return reverse<2>(elements, n);
    case 3:
      return reverse<3>(elements, n);
    default:
      return reverse<6>(elements, n);
  }
}

void exchange_lines(uint8_t* lines, uint8_t* scratch, uint32_t line_bytes, uint32_t height) {
  uint8_t* a = lines;
  uint8_t* b = lines + (height - 1) * line_bytes;
  for (uint32_t pair = 0; pair < height / 2; ++pair, a += line_bytes, b -= line_bytes) {
    std::memcpy(scratch, a, line_bytes);
    std::memmove(a, b, line_bytes);
    std::memcpy(b, scratch, line_bytes);
  }
}

}  // namespace qvn
