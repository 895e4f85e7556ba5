/// Packed pixels to three channels, and the products and narrowings of signed words.
#include "pixel/split3.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

#include "pixel/products.h"
#include "support/random.h"

namespace qvn {
namespace {

using ByteArray = std::array<uint8_t, kLaneBytes>;

ByteArray bytes_of(Bytes lanes) {
  ByteArray bytes;
  store(bytes.data(), lanes);
  return bytes;
}

std::vector<uint8_t> random_bytes(size_t count) {
  support::Random random(1);
  std::vector<uint8_t> bytes(count);
  random.fill(bytes.data(), count);
  return bytes;
}

void expect_channels(const std::vector<uint8_t>& packed, Channels3 channels) {
  const ByteArray a = bytes_of(channels.a), b = bytes_of(channels.b), c = bytes_of(channels.c);
  for (size_t i = 0; i < kLaneBytes; ++i) {
    ASSERT_EQ(a[i], packed[3 * i]) << i;
    ASSERT_EQ(b[i], packed[3 * i + 1]) << i;
    ASSERT_EQ(c[i], packed[3 * i + 2]) << i;
  }
}

TEST(Split3, ChannelsInOrder) {
  const std::vector<uint8_t> packed = random_bytes(3 * kLaneBytes);
  expect_channels(packed, load_split3(packed.data()));
}

TEST(Split3, BothFormsAreEqual) {
  if constexpr (kLaneBytes == 16) {
    const std::vector<uint8_t> packed = random_bytes(3 * kLaneBytes);
    expect_channels(packed, load_split3_permuted(packed.data()));
    expect_channels(packed, load_split3_interleaved(packed.data()));
  } else {
    GTEST_SKIP() << "this level has one form only";
  }
}

TEST(Split3, MergeGivesThePixelsBack) {
  const std::vector<uint8_t> packed = random_bytes(3 * kLaneBytes);
  std::vector<uint8_t> merged(packed.size());
  const auto [a, b, c] = load_split3(packed.data());
  store_merge3(merged.data(), a, b, c);
  EXPECT_EQ(packed, merged);
}

TEST(Lanes, Zip) {
  const std::vector<uint8_t> from = random_bytes(2 * kLaneBytes);
  const Bytes a = load<Bytes>(from.data()), b = load<Bytes>(from.data() + kLaneBytes);
  const ByteArray low = bytes_of(zip_low(a, b)), high = bytes_of(zip_high(a, b));
  for (size_t i = 0; i < 2 * kLaneBytes; ++i) {
    ASSERT_EQ(i < kLaneBytes ? low[i] : high[i - kLaneBytes], from[i / 2 + i % 2 * kLaneBytes]) << i;
  }
}

using WordArray = std::array<int16_t, kLaneBytes / 2>;
using DoubleWordArray = std::array<int32_t, kLaneBytes / 4>;

template <class Array, class V>
Array lanes_of(V lanes) {
  Array array;
  std::memcpy(array.data(), &lanes, sizeof array);
  return array;
}

SignedWords random_words(support::Random& random) {
  SignedWords words{};
  for (int i = 0; i < kLaneBytes / 2; ++i) words[i] = static_cast<int16_t>(random.next());
  return words;
}

TEST(Products, OfSignedWords) {
  support::Random random(2);
  for (int round = 0; round < 1000; ++round) {
    const SignedWords a = random_words(random), b = random_words(random);
    const auto high = lanes_of<WordArray>(multiply_high(a, b));
    const auto sums = lanes_of<DoubleWordArray>(multiply_add_pairs(a, b));
    for (int i = 0; i < kLaneBytes / 2; ++i) {
      ASSERT_EQ(high[static_cast<size_t>(i)], (int{a[i]} * b[i]) >> 16);
    }
    for (int i = 0; i < kLaneBytes / 4; ++i) {
      ASSERT_EQ(sums[static_cast<size_t>(i)], a[2 * i] * b[2 * i] + a[2 * i + 1] * b[2 * i + 1]);
    }
  }
}

TEST(Products, NarrowingUndoesInterleaving) {
  const std::vector<uint8_t> from = random_bytes(kLaneBytes);
  const Bytes bytes = load<Bytes>(from.data());
  const auto low = as<SignedWords>(interleave_low(bytes, Bytes{}));
  const auto high = as<SignedWords>(interleave_high(bytes, Bytes{}));
  EXPECT_EQ(bytes_of(narrow_to_bytes(low, high)), bytes_of(bytes));
  const SignedWords zero{};
  EXPECT_EQ(bytes_of(as<Bytes>(narrow_to_words(as<SignedDoubleWords>(interleave_low(low, zero)),
                                               as<SignedDoubleWords>(interleave_high(low, zero))))),
            bytes_of(as<Bytes>(low)));
}

TEST(Products, UpperHalvesOfUnsignedProducts) {
  const std::vector<uint8_t> from = random_bytes(2 * kLaneBytes);
  const Words a = load<Words>(from.data()), b = load<Words>(from.data() + kLaneBytes);
  const Words high = multiply_high(a, b);
  for (int i = 0; i < kLaneCount<Words>; ++i) ASSERT_EQ(high[i], (uint32_t{a[i]} * b[i]) >> 16) << i;
}

TEST(Products, NarrowingStopsAtTheEnds) {
  for (int value = -32768; value < 32768; ++value) {
    const SignedWords words = SignedWords{} + static_cast<int16_t>(value);
    ASSERT_EQ(narrow_to_bytes(words, words)[0], value < 0 ? 0 : value > 255 ? 255 : value);
  }
  const auto small = factor<SignedDoubleWords>(-40000), large = factor<SignedDoubleWords>(40000);
  EXPECT_EQ(narrow_to_words(small, large)[0], -32768);
  EXPECT_EQ(narrow_to_words(small, large)[4], 32767);
}

TEST(Products, EveryOtherBlockIsWhatNarrowingPutsInOrder) {
  const std::vector<uint8_t> from = random_bytes(2 * kLaneBytes);
  const Bytes lower = load<Bytes>(from.data()), upper = load<Bytes>(from.data() + kLaneBytes);
  const Bytes first = shuffle<places::every_other_block<0>>(lower, upper);
  const Bytes second = shuffle<places::every_other_block<1>>(lower, upper);
  const ByteArray odd =
      bytes_of(narrow_to_bytes(as<SignedWords>(odd_bytes(first)), as<SignedWords>(odd_bytes(second))));
  for (size_t i = 0; i < kLaneBytes; ++i) ASSERT_EQ(odd[i], from[2 * i + 1]) << i;
}

}  // namespace
}  // namespace qvn
