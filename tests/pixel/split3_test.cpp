/// Packed pixels to three channels, and the sums of bytes that stop at the ends.
#include "pixel/split3.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "pixel/saturate.h"
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

TEST(Saturate, EveryPairOfBytes) {
  for (uint32_t a = 0; a < 256; ++a) {
    for (uint32_t b = 0; b < 256; ++b) {
      const Bytes first = Bytes{} + static_cast<uint8_t>(a), second = Bytes{} + static_cast<uint8_t>(b);
      ASSERT_EQ(add_saturated(first, second)[0], a + b > 255 ? 255 : a + b);
      ASSERT_EQ(subtract_saturated(first, second)[0], a > b ? a - b : 0);
    }
  }
}

TEST(Saturate, OneMoreStopsAt255) {
  for (uint32_t a = 0; a < 256; ++a) {
    const Words words = Words{} + static_cast<uint16_t>(a), one = Words{} + uint16_t{1};
    ASSERT_EQ(add_one_saturated(words, one)[0], a == 255 ? 255 : a + 1);
    ASSERT_EQ(add_one_saturated(words, Words{})[0], a);
  }
}

}  // namespace
}  // namespace qvn
