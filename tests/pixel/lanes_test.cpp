// The lane operations against what they say they do, a byte at a time. Compiled for each level, like the
// rows.
#include "pixel/lanes.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "pixel/luma.h"
#include "pixel/merge3.h"
#include "pixel/products.h"

namespace qvn {
namespace {

using ByteArray = std::array<uint8_t, kLaneBytes>;

template <class V>
ByteArray bytes_of(V lanes) {
  ByteArray bytes;
  store(bytes.data(), lanes);
  return bytes;
}

std::vector<uint8_t> random_bytes(size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<uint8_t> bytes(count);
  for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
  return bytes;
}

TEST(Lanes, MeanFloorOfEveryPairOfBytes) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; b += kLaneBytes) {
      ByteArray other;
      for (int i = 0; i < kLaneBytes; ++i) other[static_cast<size_t>(i)] = static_cast<uint8_t>(b + i);
      const ByteArray mean =
          bytes_of(mean_floor(Bytes{} + static_cast<uint8_t>(a), load<Bytes>(other.data())));
      for (int i = 0; i < kLaneBytes; ++i)
        ASSERT_EQ(mean[static_cast<size_t>(i)], (a + b + i) / 2) << a << " " << b + i;
    }
  }
}

TEST(Lanes, MeanFloorOfWordsKeepsTheCarry) {
  const Words all = Words{} + uint16_t{0xFFFF}, one = Words{} + uint16_t{1};
  EXPECT_EQ((mean_floor(all, all))[0], 0xFFFF);
  EXPECT_EQ((mean_floor(all, one))[0], 0x8000);
  EXPECT_EQ((mean_floor(one, Words{}))[0], 0);
}

TEST(Lanes, EvenAndOddBytesAndBack) {
  const std::vector<uint8_t> from = random_bytes(kLaneBytes, 1);
  const Bytes v = load<Bytes>(from.data());
  std::array<uint16_t, kLaneBytes / 2> even, odd;
  const Words even_lanes = even_bytes(v), odd_lanes = odd_bytes(v);
  std::memcpy(even.data(), &even_lanes, kLaneBytes);
  std::memcpy(odd.data(), &odd_lanes, kLaneBytes);
  for (size_t i = 0; i < even.size(); ++i) {
    EXPECT_EQ(even[i], from[2 * i]);
    EXPECT_EQ(odd[i], from[2 * i + 1]);
  }
  const ByteArray back = bytes_of(join_top_bytes(even_lanes << 8, odd_lanes << 8));
  EXPECT_TRUE(std::equal(back.begin(), back.end(), from.begin()));
}

TEST(Lanes, Split2) {
  const std::vector<uint8_t> from = random_bytes(2 * kLaneBytes, 2);
  const Bytes first = load<Bytes>(from.data()), second = load<Bytes>(from.data() + kLaneBytes);
  const ByteArray even = bytes_of(split2_even(first, second)), odd = bytes_of(split2_odd(first, second));
  for (size_t i = 0; i < even.size(); ++i) {
    EXPECT_EQ(even[i], from[2 * i]);
    EXPECT_EQ(odd[i], from[2 * i + 1]);
  }
}

constexpr int every_third(int i) { return i % 3 == 0 ? 1 : 0; }

TEST(Lanes, Blend) {
  const std::vector<uint8_t> from = random_bytes(2 * kLaneBytes, 3);
  const ByteArray mixed =
      bytes_of(blend<every_third>(load<Bytes>(from.data()), load<Bytes>(from.data() + kLaneBytes)));
  for (size_t i = 0; i < mixed.size(); ++i) EXPECT_EQ(mixed[i], from[i % 3 == 0 ? i : kLaneBytes + i]) << i;
}

TEST(Merge3, StoresPixelsInOrderAndNothingBehind) {
  const std::vector<uint8_t> from = random_bytes(3 * kLaneBytes, 4);
  const uint8_t* a = from.data();
  const uint8_t* b = a + kLaneBytes;
  const uint8_t* c = b + kLaneBytes;
  for (size_t offset = 0; offset < 4; ++offset) {
    std::vector<uint8_t> out(3 * kLaneBytes + 16, 0xA5);
    store_merge3(out.data() + offset, load<Bytes>(a), load<Bytes>(b), load<Bytes>(c));
    for (size_t i = 0; i < kLaneBytes; ++i) {
      ASSERT_EQ(out[offset + 3 * i], a[i]) << i;
      ASSERT_EQ(out[offset + 3 * i + 1], b[i]) << i;
      ASSERT_EQ(out[offset + 3 * i + 2], c[i]) << i;
    }
    for (size_t i = 0; i < offset; ++i) ASSERT_EQ(out[i], 0xA5);
    for (size_t i = offset + 3 * kLaneBytes; i < out.size(); ++i) ASSERT_EQ(out[i], 0xA5);
  }
}

TEST(Merge3, InterleavedFormEqualsPermutedForm) {
  if constexpr (kLaneBytes == 16 && kBytePermutes) {
    const std::vector<uint8_t> from = random_bytes(3 * kLaneBytes, 5);
    const Bytes a = load<Bytes>(from.data()), b = load<Bytes>(from.data() + 16),
                c = load<Bytes>(from.data() + 32);
    std::array<uint8_t, 48> permuted, interleaved;
    store_merge3_permuted(permuted.data(), a, b, c);
    store_merge3_interleaved(interleaved.data(), a, b, c);
    EXPECT_EQ(permuted, interleaved);
  } else {
    GTEST_SKIP() << "this level has one form only";
  }
}

TEST(Products, PairsOfBytes) {
  const std::vector<uint8_t> from = random_bytes(2 * kLaneBytes, 7);
  const Bytes a = load<Bytes>(from.data());
  SignedBytes b = as<SignedBytes>(load<Bytes>(from.data() + kLaneBytes));
  for (int i = 0; i < kLaneBytes; ++i) b[i] = static_cast<int8_t>(b[i] / 2);  // sums that fit a word
  const SignedWords sums = multiply_add_pairs(a, b);
  for (int i = 0; i < kLaneBytes / 2; ++i) {
    ASSERT_EQ(sums[i], a[2 * i] * b[2 * i] + a[2 * i + 1] * b[2 * i + 1]) << i;
  }
}

TEST(Products, RoundedToNearestHalvesUpward) {
  for (int a = -32768; a < 32768; a += kLaneCount<SignedWords>) {
    SignedWords lanes{};
    for (int i = 0; i < kLaneCount<SignedWords>; ++i) lanes[i] = static_cast<int16_t>(a + i);
    for (const int b : {-32767, -3, 1, 8192, 16383, 16384, 32767}) {
      const SignedWords rounded = multiply_round(lanes, SignedWords{} + static_cast<int16_t>(b));
      for (int i = 0; i < kLaneCount<SignedWords>; ++i) {
        ASSERT_EQ(rounded[i], ((a + i) * b + 0x4000) >> 15) << a + i << " " << b;
      }
    }
  }
}

TEST(Products, TopBits) {
  for (int i = 0; i < kLaneBytes; ++i) {
    Bytes lanes = Bytes{} + uint8_t{127};
    lanes[i] = 128;
    ASSERT_EQ(top_bits(lanes), uint64_t{1} << i);
    ASSERT_EQ(top_bits(lanes ^ 0x80), (~uint64_t{0} >> (64 - kLaneBytes)) ^ (uint64_t{1} << i));
  }
}

TEST(Merge3, Triple) {
  const std::vector<uint8_t> from = random_bytes(kLaneBytes, 6);
  std::vector<uint8_t> out(3 * kLaneBytes + 8, 0x5A);
  store_triple(out.data(), load<Bytes>(from.data()));
  for (size_t i = 0; i < 3 * kLaneBytes; ++i) ASSERT_EQ(out[i], from[i / 3]) << i;
  for (size_t i = 3 * kLaneBytes; i < out.size(); ++i) ASSERT_EQ(out[i], 0x5A);
}

// Every colour, a vector of blues at a time, against the formula written out.
TEST(Luma, EveryColour) {
  for (uint32_t r = 0; r < 256; ++r) {
    for (uint32_t g = 0; g < 256; ++g) {
      const Words red = Words{} + static_cast<uint16_t>(r), green = Words{} + static_cast<uint16_t>(g);
      for (uint32_t b = 0; b < 256; b += kLaneBytes) {
        Words even, odd;
        for (int i = 0; i < kLaneBytes / 2; ++i) {
          even[i] = static_cast<uint16_t>(b + 2 * static_cast<uint32_t>(i));
          odd[i] = static_cast<uint16_t>(even[i] + 1);
        }
        const ByteArray luma = bytes_of(luma_77_150_29(RgbPairs{{red, green, even}, {red, green, odd}}));
        for (uint32_t i = 0; i < kLaneBytes; ++i) {
          ASSERT_EQ(luma[i], (77 * r + 150 * g + 29 * (b + i)) / 256) << r << " " << g << " " << b + i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace qvn
