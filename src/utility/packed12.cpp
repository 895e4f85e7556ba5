// A vector row leaves its tail to the plain one.
#include "utility/packed12.h"

#include "pixel/packed12.h"
#include "pixel/split3.h"

namespace qvn {
namespace {

constexpr size_t kStep = kLaneBytes;  // pairs of a step of the vector rows

// Runs vector(pair) for every whole step; returns the pairs that are done.
template <class Vector>
size_t run_vectors(size_t pairs, Vector&& vector) {
  size_t pair = 0;
  if constexpr (kVectorRows) {
    for (; pair + kStep <= pairs; pair += kStep) vector(pair);
  }
  return pair;
}

namespace places {
// Bytes a b c . of four pairs, which begin a block or, with Last, end it.
template <int Last>
constexpr int spread_pairs(int i) {
  const int byte = 4 * Last + i % 16 / 4 * 3 + i % 4;
  return i / 16 * 16 + (byte < 16 ? byte : 15);
}
}  // namespace places

//     a b c .   ->   a, low nibble of b at the top, c, high nibble of b
[[maybe_unused]] DoubleWords to_16(DoubleWords v) {
  return (v & 0x00FF00FF) | ((v << 4) & 0x0000F000) | ((v << 16) & 0xF0000000);
}

void unpack_vector_to_16(uint8_t* dst, const uint8_t* src) {
  if constexpr (kBytePermutes && kLaneBytes == 16) {
    for (int half = 0; half < 2; ++half, dst += 32, src += 24) {
      store(dst, to_16(as<DoubleWords>(shuffle<places::spread_pairs<0>>(load<Bytes>(src)))));
      store(dst + 16, to_16(as<DoubleWords>(shuffle<places::spread_pairs<1>>(load<Bytes>(src + 8)))));
    }
  } else if constexpr (kBytePermutes) {
    for (int quarter = 0; quarter < 4; ++quarter, dst += kLaneBytes, src += kSpread12Bytes) {
      store(dst, to_16(load_spread12<0>(src)));
    }
  } else {
    const auto [a, b, c] = load_split3(src);
    const Bytes low = as<Bytes>((as<Words>(b) << 4) & 0xF0F0), high = b & 0xF0;
    const Words first_low = as<Words>(interleave_low(a, low)),
                first_high = as<Words>(interleave_high(a, low));
    const Words second_low = as<Words>(interleave_low(c, high)),
                second_high = as<Words>(interleave_high(c, high));
    store(dst, interleave_low(first_low, second_low));
    store(dst + 16, interleave_high(first_low, second_low));
    store(dst + 32, interleave_low(first_high, second_high));
    store(dst + 48, interleave_high(first_high, second_high));
  }
}

}  // namespace

void unpack12_to_8_plain(uint8_t* dst, const uint8_t* src, size_t pairs) {
  for (size_t pair = 0; pair < pairs; ++pair) {
    dst[2 * pair] = src[3 * pair];
    dst[2 * pair + 1] = src[3 * pair + 2];
  }
}

void unpack12_to_8(uint8_t* dst, const uint8_t* src, size_t pairs) {
  const size_t done = run_vectors(pairs, [=](size_t pair) {
    store(dst + 2 * pair, load_packed12_top_bytes(src, 2 * pair));
    store(dst + 2 * pair + kLaneBytes, load_packed12_top_bytes(src, 2 * pair + kLaneBytes));
  });
  unpack12_to_8_plain(dst + 2 * done, src + 3 * done, pairs - done);
}

void unpack12_to_16_plain(uint8_t* dst, const uint8_t* src, size_t pairs) {
  for (size_t pair = 0; pair < pairs; ++pair, dst += 4, src += 3) {
    const uint8_t a = src[0], b = src[1], c = src[2];
    dst[0] = a;
    dst[1] = static_cast<uint8_t>(b << 4);
    dst[2] = c;
    dst[3] = b & 0xF0;
  }
}

void unpack12_to_16(uint8_t* dst, const uint8_t* src, size_t pairs) {
  const size_t done =
      run_vectors(pairs, [=](size_t pair) { unpack_vector_to_16(dst + 4 * pair, src + 3 * pair); });
  unpack12_to_16_plain(dst + 4 * done, src + 3 * done, pairs - done);
}

}  // namespace qvn
