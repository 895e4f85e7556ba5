/// QVN_GetSIS: where a block lies and which statuses come first, by examples and against the slow reference
/// over all codes and kinds, with products that pass 32 bits.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "reference/sis.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kMono8 = 0;
constexpr std::uint32_t kYuv411 = 1;
constexpr std::uint32_t kMono16 = 5;
constexpr std::uint32_t kRgb16 = 6;
constexpr std::uint32_t kShort = 1;  ///< 12 bytes
constexpr std::uint32_t kLong = 2;   ///< 52 bytes

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

Bytes random_frame(std::size_t size) {
  Bytes frame(size);
  support::Random(870).fill(frame.data(), frame.size());
  return frame;
}

struct Place {
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t code;
  std::int32_t position;
};

/// The call leaves `size` bytes from `offset` of the frame in its destination, and nothing behind.
testing::AssertionResult copies(const Bytes& frame, const Place& place, std::uint32_t kind,
                                std::size_t offset) {
  const std::size_t size = kind == kShort ? 12 : 52;
  Bytes dst(64, 0xA5);
  const std::uint32_t status =
      QVN_GetSIS(&dst[1], frame.data(), place.width, place.height, place.code, place.position, kind);
  if (status != QVN_OK) return testing::AssertionFailure() << "status 0x" << std::hex << status;
  Bytes expected(64, 0xA5);
  std::copy_n(&frame.at(offset), size, &expected[1]);
  if (dst != expected) return testing::AssertionFailure() << "other bytes than those from " << offset;
  return testing::AssertionSuccess();
}

/// The status of a call that must leave its destination alone.
std::uint32_t refusal(const Bytes& frame, const Place& place, std::uint32_t kind) {
  Bytes dst(64, 0xA5);
  const std::uint32_t status =
      QVN_GetSIS(dst.data(), frame.data(), place.width, place.height, place.code, place.position, kind);
  EXPECT_EQ(Bytes(64, 0xA5), dst);
  return status;
}

TEST(GetSIS, LineOfAnEightBitFrame) {
  const Bytes frame = random_frame(640 * 480);
  EXPECT_TRUE(copies(frame, {640, 480, kMono8, 479}, kShort, 306560));
  EXPECT_TRUE(copies(frame, {640, 480, kMono8, 479}, kLong, 306560));
  EXPECT_TRUE(copies(frame, {640, 480, kMono8, 0}, kLong, 0));
  EXPECT_TRUE(copies(frame, {640, 480, kMono8, 7}, kShort, 4480));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {640, 480, kMono8, 480}, kShort));
}

/// A block that ends with the frame's last byte is refused; the negative side counts pixels, not lines.
TEST(GetSIS, PixelsBackFromTheEnd) {
  const Bytes frame = random_frame(640 * 480);
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {640, 480, kMono8, -1}, kShort));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {640, 480, kMono8, -11}, kShort));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {640, 480, kMono8, -12}, kShort));
  EXPECT_TRUE(copies(frame, {640, 480, kMono8, -13}, kShort, 307187));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {640, 480, kMono8, -52}, kLong));
  EXPECT_TRUE(copies(frame, {640, 480, kMono8, -53}, kLong, 307147));
  EXPECT_TRUE(copies(frame, {640, 480, kMono8, -307200}, kLong, 0));
}

TEST(GetSIS, PixelsOfSeveralBytes) {
  const Bytes frame = random_frame(40 * 10 * 6);
  EXPECT_TRUE(copies(frame, {40, 10, kMono16, 3}, kLong, 240));
  EXPECT_TRUE(copies(frame, {40, 10, kMono16, -7}, kShort, 786));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {40, 10, kMono16, -6}, kShort));
  EXPECT_TRUE(copies(frame, {40, 10, kRgb16, 9}, kLong, 2160));
  EXPECT_TRUE(copies(frame, {40, 10, kRgb16, -3}, kShort, 2382));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {40, 10, kRgb16, -2}, kShort));
}

TEST(GetSIS, HalfBytesAreRefusedBeforeTheKind) {
  const Bytes frame = random_frame(41 * 10 * 3 / 2);
  EXPECT_EQ(QVN_E_PARAM2, refusal(frame, {41, 10, kYuv411, 1}, kShort));
  EXPECT_EQ(QVN_E_PARAM2, refusal(frame, {41, 10, kYuv411, 1}, 0));
  EXPECT_EQ(QVN_E_PARAM2, refusal(frame, {41, 10, kYuv411, -21}, 3));
  EXPECT_EQ(QVN_E_PARAM2, refusal(frame, {41, 10, kYuv411, 1001}, 3));
  EXPECT_EQ(QVN_E_PARAM2, refusal(frame, {41, 10, 133, 1}, kShort));
  EXPECT_TRUE(copies(frame, {41, 10, kYuv411, 2}, kShort, 123));
  EXPECT_TRUE(copies(frame, {41, 10, kYuv411, -20}, kShort, 585));
}

TEST(GetSIS, KindIsRefusedBeforeTheRange) {
  const Bytes frame = random_frame(640 * 480);
  for (std::uint32_t kind : {0U, 3U, 4U, 0x101U, 0x80000001U, 0xFFFFFFFFU}) {
    EXPECT_EQ(QVN_E_PARAM7, refusal(frame, {640, 480, kMono8, 480}, kind));
    EXPECT_EQ(QVN_E_PARAM7, refusal(frame, {640, 480, kMono8, 1}, kind));
  }
}

TEST(GetSIS, PointersAreRefusedFirstThenTheCode) {
  const Bytes frame = random_frame(64);
  Bytes dst(64, 0xA5);
  EXPECT_EQ(QVN_E_PARAM1, QVN_GetSIS(nullptr, nullptr, 640, 480, 131, 480, 0));
  EXPECT_EQ(QVN_E_PARAM1, QVN_GetSIS(nullptr, frame.data(), 640, 480, kMono8, 0, kShort));
  EXPECT_EQ(QVN_E_PARAM2, QVN_GetSIS(dst.data(), nullptr, 640, 480, 131, 480, 0));
  EXPECT_EQ(QVN_E_PARAM2, QVN_GetSIS(dst.data(), nullptr, 640, 480, kMono8, 0, kShort));
  EXPECT_EQ(Bytes(64, 0xA5), dst);
  for (std::uint32_t code : {11U, 127U, 131U, 137U, 140U, 142U, 0x100U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(QVN_E_PARAM5, refusal(frame, {8, 8, code, 0}, kShort)) << code;
    EXPECT_EQ(QVN_E_PARAM5, refusal(frame, {7, 8, code, 1}, 0)) << code;
  }
}

TEST(GetSIS, FramesTooSmallForABlock) {
  const Bytes frame = random_frame(64);
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {0, 0, kMono8, 0}, kShort));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {12, 1, kMono8, 0}, kShort));
  EXPECT_TRUE(copies(frame, {13, 1, kMono8, 0}, kShort, 0));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {52, 1, kMono8, 0}, kLong));
  EXPECT_TRUE(copies(frame, {53, 1, kMono8, 0}, kLong, 0));
}

/// Pixel offsets, bit offsets and the frame's size have 32 bits each.
TEST(GetSIS, ProductsWrap) {
  const Bytes frame = random_frame(4096);
  // Line 65536 of a width of 65536 begins at pixel 2^32.
  EXPECT_TRUE(copies(frame, {65536, 1, kMono8, 65536}, kShort, 0));
  // Pixel 2^29 of 8 bits begins at bit 2^32; so does, counted back from a frame of 100, -2^30 + 100.
  EXPECT_TRUE(copies(frame, {1, 100, kMono8, 0x20000000}, kShort, 0));
  EXPECT_TRUE(copies(frame, {1, 100, kMono8, 0x20000005}, kLong, 5));
  EXPECT_TRUE(copies(frame, {10, 10, kMono8, -0x40000000 - 60}, kLong, 40));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {10, 10, kMono8, kLeast}, kShort));
  EXPECT_TRUE(copies(frame, {10, 10, kMono8, kLeast + 0x20000000 - 100}, kShort, 0));
  // 2^28 + 100 pixels of 16 bits are 200 bytes.
  EXPECT_TRUE(copies(frame, {1, 0x10000064, kMono16, 0x10000003}, kLong, 6));
  EXPECT_TRUE(copies(frame, {1, 0x10000064, kMono16, 0x10000003 + 70}, kLong, 146));
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {1, 0x10000064, kMono16, 0x10000003 + 71}, kLong));
  // A frame of 2^32 bits has no bytes, one of 512 bits more has 64.
  EXPECT_EQ(QVN_E_UNCLASSIFIED, refusal(frame, {0x10000, 0x2000, kMono8, 0}, kShort));
  EXPECT_TRUE(copies(frame, {0x20000040, 1, kMono8, 0}, kLong, 0));
}

/// Each block between inaccessible pages, and so is the room that it goes to.
TEST(GetSIS, TouchesNothingOutsideOfItsBuffers) {
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t size : {12U, 52U}) {
      const std::uint32_t kind = size == 12 ? kShort : kLong;
      support::GuardedBuffer frame(size + 1, flush);
      support::GuardedBuffer dst(size, flush);
      support::Random(871).fill(frame.data(), frame.size());
      ASSERT_EQ(QVN_OK, QVN_GetSIS(dst.data(), frame.data(), size + 1, 1, kMono8, 0, kind));
      EXPECT_TRUE(std::equal(dst.data(), dst.data() + size, frame.data()));
    }
  }
}

/// Against the reference: every code, every kind, positions on both sides of every limit.
TEST(GetSIS, EqualsReferenceEverywhere) {
  const Bytes frame = random_frame(1 << 16);
  support::Random random(872);
  std::size_t successes = 0;
  for (std::uint32_t code : numbers(0, 150)) {
    for (int round = 0; round < 400; ++round) {
      const Place place{random.below(40), random.below(40), code,
                        static_cast<std::int32_t>(random.below(1700)) - (round % 2 == 0 ? 1650 : 0)};
      const Place near{place.width, place.height, code, place.position % 45};
      for (const Place& p : {place, near}) {
        for (std::uint32_t kind : numbers(0, 3)) {
          const auto expected = reference::find_sis(p.width, p.height, p.code, p.position, kind);
          if (expected.status == QVN_OK) {
            ASSERT_TRUE(copies(frame, p, kind, expected.offset)) << code;
            ++successes;
          } else {
            ASSERT_EQ(expected.status, refusal(frame, p, kind)) << code << ' ' << p.position;
          }
        }
      }
    }
  }
  EXPECT_GT(successes, 5000U);
}

/// The same with numbers of all 32 bits, as far as the block lies in what is allocated here.
TEST(GetSIS, EqualsReferenceWithWrappedProducts) {
  const Bytes frame = random_frame(1 << 20);
  support::Random random(873);
  const auto number = [&random] {
    return static_cast<std::uint32_t>(random.next() >> (32 + random.below(32)));
  };
  std::size_t successes = 0;
  for (int round = 0; round < 200000; ++round) {
    // Multiples of a high power of two make products that come back to small numbers.
    const std::uint32_t shift = random.below(24);
    const Place place{number() << shift, number() << shift | random.below(200), random.below(11),
                      static_cast<std::int32_t>(number() << shift | random.below(40))};
    const std::uint32_t kind = 1 + random.below(2);
    const auto expected = reference::find_sis(place.width, place.height, place.code, place.position, kind);
    if (expected.status != QVN_OK) {
      ASSERT_EQ(expected.status, refusal(frame, place, kind));
    } else if (expected.offset + expected.size <= frame.size()) {
      ASSERT_TRUE(copies(frame, place, kind, expected.offset));
      ++successes;
    }
  }
  EXPECT_GT(successes, 1000U);
}

}  // namespace
