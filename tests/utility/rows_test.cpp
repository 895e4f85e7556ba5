/// The rows of the utility room: vectors against one element at a time, for every length and alignment.
/// Blocks are exactly as long as the rows may read and write.
#include <gtest/gtest.h>

#include <vector>

#include "pixel/products.h"
#include "support/guard.h"
#include "support/random.h"
#include "utility/flip.h"
#include "utility/packed12.h"

namespace qvn {
namespace {

/// Beyond four blocks of vectors for elements of one byte, and several for all.
constexpr size_t kLongest = 400;

class ReverseElements : public testing::TestWithParam<uint32_t> {};

TEST_P(ReverseElements, EqualsThePlainFormForEveryLength) {
  const uint32_t element = GetParam();
  support::Random random(1);
  for (size_t n = 0; n <= kLongest; ++n) {
    for (const support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
      support::GuardedBuffer buffer(n * element, flush);
      random.fill(buffer.data(), buffer.size());
      std::vector<uint8_t> expected(buffer.data(), buffer.data() + buffer.size());
      reverse_elements_plain(expected.data(), n, element);
      reverse_elements(buffer.data(), n, element);
      ASSERT_EQ(std::vector<uint8_t>(buffer.data(), buffer.data() + buffer.size()), expected) << "n " << n;
    }
  }
}

TEST_P(ReverseElements, NeedsNoAlignment) {
  const uint32_t element = GetParam();
  support::Random random(2);
  for (const size_t n : {31U, 64U, 97U, 150U, 257U}) {
    std::vector<uint8_t> before(n * element + 64);
    random.fill(before.data(), before.size());
    for (size_t offset = 0; offset < 64; ++offset) {
      std::vector<uint8_t> buffer(before), expected(before);
      reverse_elements_plain(expected.data() + offset, n, element);
      reverse_elements(buffer.data() + offset, n, element);
      ASSERT_EQ(buffer, expected) << "n " << n << ", offset " << offset;
    }
  }
}

TEST_P(ReverseElements, PlainFormMovesWholeElements) {
  const uint32_t element = GetParam();
  support::Random random(3);
  for (size_t n = 0; n <= 9; ++n) {
    std::vector<uint8_t> before(n * element);
    random.fill(before.data(), before.size());
    std::vector<uint8_t> after(before);
    reverse_elements_plain(after.data(), n, element);
    for (size_t i = 0; i < n * element; ++i) {
      ASSERT_EQ(after[i], before[(n - 1 - i / element) * element + i % element]) << "n " << n;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, ReverseElements, testing::Values(1U, 2U, 3U, 6U));

using Unpack = void (*)(uint8_t* dst, const uint8_t* src, size_t pairs);

void expect_equal_rows(Unpack row, Unpack plain, size_t pair_bytes) {
  support::Random random(4);
  for (size_t pairs = 0; pairs <= kLongest; ++pairs) {
    for (const support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
      support::GuardedBuffer src(3 * pairs, flush), dst(pairs * pair_bytes, flush);
      random.fill(src.data(), src.size());
      std::vector<uint8_t> expected(dst.size());
      plain(expected.data(), src.data(), pairs);
      row(dst.data(), src.data(), pairs);
      ASSERT_EQ(std::vector<uint8_t>(dst.data(), dst.data() + dst.size()), expected) << "pairs " << pairs;
    }
  }
  std::vector<uint8_t> src(3 * kLongest + 64), dst(kLongest * pair_bytes + 64), expected(dst);
  random.fill(src.data(), src.size());
  for (size_t offset = 0; offset < 64; ++offset) {
    plain(expected.data(), src.data() + offset, kLongest);
    row(dst.data() + offset, src.data() + offset, kLongest);
    ASSERT_TRUE(std::equal(dst.begin() + static_cast<ptrdiff_t>(offset),
                           dst.begin() + static_cast<ptrdiff_t>(offset + kLongest * pair_bytes),
                           expected.begin()))
        << "offset " << offset;
  }
}

TEST(Unpack12, To8EqualsThePlainRow) { expect_equal_rows(unpack12_to_8, unpack12_to_8_plain, 2); }
TEST(Unpack12, To16EqualsThePlainRow) { expect_equal_rows(unpack12_to_16, unpack12_to_16_plain, 4); }

TEST(Unpack12, EveryMiddleByte) {
  std::vector<uint8_t> src(3 * 256), expected(4 * 256), actual(4 * 256);
  for (size_t b = 0; b < 256; ++b) src[3 * b + 1] = static_cast<uint8_t>(b);
  unpack12_to_16_plain(expected.data(), src.data(), 256);
  unpack12_to_16(actual.data(), src.data(), 256);
  EXPECT_EQ(expected, actual);
  for (size_t b = 0; b < 256; ++b) {
    ASSERT_EQ(expected[4 * b + 1], b % 16 * 16);
    ASSERT_EQ(expected[4 * b + 3], b / 16 * 16);
  }
}

TEST(PermuteBlocks, WithinEachBlockAndNothing) {
  support::Random random(5);
  for (int round = 0; round < 200; ++round) {
    uint8_t bytes[kLaneBytes], from[kLaneBytes], picked[kLaneBytes];
    random.fill(bytes, sizeof bytes);
    for (uint8_t& place : from) {
      place = static_cast<uint8_t>(random.below(2) == 0 ? random.below(16) : 128 + random.below(128));
    }
    store(picked, permute_blocks(load<Bytes>(bytes), load<Bytes>(from)));
    for (size_t i = 0; i < kLaneBytes; ++i) {
      ASSERT_EQ(picked[i], from[i] < 16 ? bytes[i / 16 * 16 + from[i]] : 0) << i;
    }
  }
}

}  // namespace
}  // namespace qvn
