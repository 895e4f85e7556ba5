/// The resampling entries against numbers worked out by hand: lengths, indices and blends, the methods'
/// different limits, and the order in which arguments are refused.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <limits>
#include <numeric>
#include <vector>

#include "reference/resample.h"
#include "support/random.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kNearest = 0;
constexpr std::uint32_t kLinear = 1;
constexpr std::uint32_t kSuccess = 1;
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

std::int32_t length_of(std::int32_t srcLength, float srcRate, float dstRate) {
  std::int32_t length = 0x5A5A5A5A;
  EXPECT_EQ(QVN_OK, QVN_GetResampledScanlineLength(&length, srcLength, srcRate, dstRate));
  return length;
}

/// One line of `length` elements from `src`, 0xA5 behind it.
Bytes line_of(const Bytes& src, std::int32_t length, std::int32_t src_length, float srcRate, float dstRate,
              std::uint32_t type, std::uint32_t method) {
  Bytes dst(static_cast<std::size_t>(length) * type + 1, 0xA5);
  EXPECT_EQ(kSuccess, QVN_ResampleScanlinesEx(dst.data(), src.data(), length, length, src_length, src_length,
                                              1, srcRate, dstRate, type, method));
  EXPECT_EQ(0xA5, dst.back());
  dst.pop_back();
  return dst;
}

Bytes random_line(std::size_t size) {
  support::Random random(820);
  Bytes bytes(size);
  random.fill(bytes.data(), bytes.size());
  return bytes;
}

TEST(ResampledScanlineLength, GoesUpToAMultipleOfFour) {
  EXPECT_EQ(644, length_of(641, 1, 1));
  EXPECT_EQ(640, length_of(640, 1, 1));
  EXPECT_EQ(320, length_of(640, 2, 1));
  EXPECT_EQ(1280, length_of(640, 1, 2));
  EXPECT_EQ(0, length_of(0, 1, 1));
  EXPECT_EQ(4, length_of(1, 1, 1));
  EXPECT_EQ(4, length_of(2, 1, 1));
  EXPECT_EQ(4, length_of(3, 1, 1));
  EXPECT_EQ(8, length_of(5, 1, 1));
}

TEST(ResampledScanlineLength, NegativeLengthsGoUpAsWell) {
  EXPECT_EQ(4, length_of(-1, 1, 1));
  EXPECT_EQ(4, length_of(-2, 1, 1));
  EXPECT_EQ(4, length_of(-3, 1, 1));
  EXPECT_EQ(-4, length_of(-4, 1, 1));
  EXPECT_EQ(0, length_of(-5, 1, 1));
  EXPECT_EQ(0, length_of(-7, 1, 1));
  EXPECT_EQ(-8, length_of(-8, 1, 1));
  EXPECT_EQ(-4, length_of(-9, 1, 1));
  EXPECT_EQ(-4, length_of(4, -1, 1));
  EXPECT_EQ(4, length_of(-3, 3, 1));
}

TEST(ResampledScanlineLength, TruncatesBeforeItGoesUp) {
  EXPECT_EQ(0, length_of(1, 2, 1));   // 0.5
  EXPECT_EQ(0, length_of(1, -2, 1));  // -0.5
  EXPECT_EQ(4, length_of(9, 2, 1));   // 4.5
  EXPECT_EQ(4, length_of(3, -2, 1));  // -1.5
}

/// The length becomes a float, and so does the product; only the quotient is one of doubles.
TEST(ResampledScanlineLength, RoundsTheProductToSinglePrecision) {
  EXPECT_EQ(16777216, length_of(16777217, 1, 1));
  EXPECT_EQ(184549344, length_of(16777213, 1, 11));  // 184549343 rounds to 184549344
  EXPECT_EQ(8, length_of(100, 7, 0.35F));            // 34.99999940 rounds to 35
}

TEST(ResampledScanlineLength, HasOneResultWhereThereIsNoInteger) {
  EXPECT_EQ(kLeast, length_of(kMost, 1, 1));  // 2147483648.0
  EXPECT_EQ(kLeast, length_of(kLeast, 1, 1));
  EXPECT_EQ(kLeast, length_of(1000, 1, 1e30F));
  EXPECT_EQ(kLeast, length_of(-1000, 1, 1e30F));
  EXPECT_EQ(kLeast, length_of(1000, 0, 1));
  EXPECT_EQ(kLeast, length_of(0, 0, 1));
  EXPECT_EQ(kLeast, length_of(1000, 1, kInfinity));
  EXPECT_EQ(kLeast, length_of(1000, 1, kNaN));
  EXPECT_EQ(kLeast, length_of(1000, kNaN, 1));
  EXPECT_EQ(0, length_of(1000, kInfinity, 1));
  EXPECT_EQ(0, length_of(1000, 1, 0));
  EXPECT_EQ(2147483520, length_of(2147483520, 1, 1));
}

TEST(ResampledScanlineLength, EqualsReferenceAtRandomArguments) {
  support::Random random(821);
  for (int round = 0; round < 20000; ++round) {
    const auto length = static_cast<std::int32_t>(random.next() >> (32 + random.below(32)));
    const float srcRate = static_cast<float>(random.below(100000)) / 64;
    const float dstRate = static_cast<float>(random.below(100000)) / 64;
    for (std::int32_t signed_length : {length, -(length / 2)}) {
      ASSERT_EQ(reference::GetResampledScanlineLength(signed_length, srcRate, dstRate),
                length_of(signed_length, srcRate, dstRate))
          << signed_length << ' ' << srcRate << ' ' << dstRate;
    }
  }
}

TEST(ResampleScanlines, EqualRatesCopyTheLine) {
  for (std::uint32_t type = 1; type <= 6; ++type) {
    const Bytes src = random_line(std::size_t{45} * type);
    EXPECT_EQ(src, line_of(src, 45, 45, 1, 1, type, kNearest));
    EXPECT_EQ(src, line_of(src, 45, 45, 0.3F, 0.3F, type, kLinear));
  }
}

TEST(ResampleScanlines, HalfOf640) {
  EXPECT_EQ(320, length_of(640, 2, 1));
  for (std::uint32_t type = 1; type <= 6; ++type) {
    const Bytes src = random_line(std::size_t{640} * type);
    Bytes every_other;
    Bytes first_half;
    for (std::size_t i = 0; i < 320; ++i) {
      const std::size_t far = 2 * i;
      const std::size_t held = i < 160 ? 2 * i : 319;
      for (std::size_t b = 0; b < type; ++b) every_other.push_back(src[far * type + b]);
      for (std::size_t b = 0; b < type; ++b) first_half.push_back(src[held * type + b]);
    }
    EXPECT_EQ(every_other, line_of(src, 320, 640, 2, 1, type, kNearest)) << type;
    EXPECT_EQ(first_half, line_of(src, 320, 640, 2, 1, type, kLinear)) << type;
    EXPECT_EQ(first_half, line_of(src, 320, 7, 2, 1, type, kLinear)) << "the source length is not looked at";
  }
}

TEST(ResampleScanlines, LengthOne) {
  const Bytes src = {10, 20, 30, 40, 50, 60, 70};
  for (std::uint32_t type = 1; type <= 6; ++type) {
    const Bytes first(src.begin(), src.begin() + type);
    EXPECT_EQ(first, line_of(src, 1, 1, 5, 1, type, kNearest));
    EXPECT_EQ(first, line_of(src, 1, 1, 5, 1, type, kLinear));
    EXPECT_EQ(first, line_of(src, 1, 7, -5, 1, type, kLinear));
  }
}

TEST(ResampleScanlines, NearestWithoutASourceLengthDoesNotHold) {
  Bytes src(20);
  std::iota(src.begin(), src.end(), std::uint8_t{1});
  EXPECT_EQ((Bytes{1, 4, 7, 10, 13, 16}), line_of(src, 6, 0, 3, 1, 1, kNearest));
  EXPECT_EQ((Bytes{1, 4, 7, 10, 13, 16}), line_of(src, 6, -1, 3, 1, 1, kNearest));
  EXPECT_EQ((Bytes{1, 4, 7, 10, 10, 10}), line_of(src, 6, 10, 3, 1, 1, kNearest));
  EXPECT_EQ((Bytes{1, 1, 1, 1, 1, 1}), line_of(src, 6, 1, 3, 1, 1, kNearest));
}

TEST(ResampleScanlines, NearestRoundsHalvesUp) {
  // Positions 0, 0.5, 1, 1.5, 2, 2.5, 3, 3.5.
  EXPECT_EQ((Bytes{10, 20, 20, 30, 30, 40, 40, 40}), line_of({10, 20, 30, 40}, 8, 4, 1, 2, 1, kNearest));
}

/// 5.25 is a quarter of element 5 with three quarters of the element before; 5.75 three quarters of element
/// 6. The element behind an index takes no part.
TEST(ResampleScanlines, LinearBlendsWithTheElementBefore) {
  Bytes src(24, 0);
  src[4] = 100;
  src[5] = 200;
  src[6] = 60;
  // A step of 0.75 brings element 7 to 5.25.
  const Bytes stretched = line_of(src, 24, 24, 3, 4, 1, kLinear);
  EXPECT_EQ((100 * 768 + 200 * 256) >> 10, stretched[7]);  // 125
  EXPECT_EQ(60, stretched[8]);                             // 6.0
  EXPECT_EQ((60 * 256) >> 10, stretched[9]);               // 6.75: index 7, three quarters of a 0
  // A step of 1.4375 brings element 4 to 5.75.
  const Bytes shrunk = line_of(src, 24, 24, 23, 16, 1, kLinear);
  EXPECT_EQ((60 * 768 + 200 * 256) >> 10, shrunk[4]);  // 95
}

TEST(ResampleScanlines, LinearAtHalvesAndQuarters) {
  // Step 0.5: index 0, 1 (half of 0), 1, 2 (half of 1), ... 7 is the limit.
  EXPECT_EQ((Bytes{10, 15, 20, 30, 40, 60, 80, 120}),
            line_of({10, 20, 40, 80, 160, 0, 0, 0}, 8, 5, 1, 2, 1, kLinear));
  // Step 0.25: position 0.25 is index 0, which is not blended; 1.25 is a quarter of index 1 with the 0
  // before.
  EXPECT_EQ((Bytes{0, 0, 50, 75, 100, 25, 150, 175}),
            line_of({0, 100, 200, 0, 0, 0, 0, 0}, 8, 3, 1, 4, 1, kLinear));
}

TEST(ResampleScanlines, LinearHoldsItsLastElementUnblended) {
  // Limit 3. Positions 0, 1.5, 3, 4.5: index 2 is half of 1, and then 3, 3.
  EXPECT_EQ((Bytes{10, 25, 40, 40}), line_of({10, 20, 30, 40, 50, 60}, 4, 6, 3, 2, 1, kLinear));
  // Step 1.25, limit 2: positions 1.25 and 2.5; index 1 a quarter, index 2 held.
  EXPECT_EQ((Bytes{10, 12, 30}), line_of({10, 20, 30, 40}, 3, 4, 5, 4, 1, kLinear));
}

/// Low bytes do not carry into high ones: 0x00FF and 0x0100 meet at 0x007F.
TEST(ResampleScanlines, LinearBlendsEachByteAlone) {
  const Bytes src = {0xFF, 0x00, 0x00, 0x01, 0, 0, 0, 0};
  // Element 1 lies at 0.5.
  EXPECT_EQ((Bytes{0xFF, 0x00, 0x7F, 0x00, 0x00, 0x01, 0x00, 0x00}), line_of(src, 4, 4, 1, 2, 2, kLinear));
}

/// Rates without a ratio give index 0 throughout; a walk backwards is held at the limit at once.
TEST(ResampleScanlines, OddRates) {
  const Bytes src = {10, 20, 30, 40, 50, 60};
  for (std::uint32_t method : {kNearest, kLinear}) {
    EXPECT_EQ((Bytes{10, 10, 10, 10}), line_of(src, 4, 6, 0, 1, 1, method));
    EXPECT_EQ((Bytes{10, 10, 10, 10}), line_of(src, 4, 6, 1, 0, 1, method));
    EXPECT_EQ((Bytes{10, 10, 10, 10}), line_of(src, 4, 6, 0, 0, 1, method));
    EXPECT_EQ((Bytes{10, 10, 10, 10}), line_of(src, 4, 6, kNaN, 1, 1, method));
    EXPECT_EQ((Bytes{10, 10, 10, 10}), line_of(src, 4, 6, kInfinity, 1, 1, method));
    EXPECT_EQ((Bytes{10, 10, 10, 10}), line_of(src, 4, 6, 1, kInfinity, 1, method));
    EXPECT_EQ((Bytes{10, 10, 10, 10}), line_of(src, 4, 6, 1e20F, 1, 1, method));
    // Positions 0, -1 (truncates to 0), -2, -3 (to -1 and -2, beyond any limit).
    const std::uint8_t held = method == kNearest ? 60 : 40;
    EXPECT_EQ((Bytes{10, 10, held, held}), line_of(src, 4, 6, -1, 1, 1, method));
  }
}

/// Position 2^32 + 512 has index 512, and a fraction that no 32 bits hold: the products wrap, and the
/// element comes out whole.
TEST(ResampleScanlines, IndicesKeepTheirLow32Bits) {
  Bytes src = random_line(1600);
  const float step = 4294967296.0F + 512.0F;
  EXPECT_EQ((Bytes{src[0], src[512], src[1024], src[1536]}), line_of(src, 4, 1600, step, 1, 1, kNearest));
  EXPECT_EQ((Bytes{src[0], src[512], src[1024], src[1299]}), line_of(src, 4, 1300, step, 1, 1, kNearest));
  const Bytes linear = line_of(src, 1600, 1, step, 1, 1, kLinear);
  EXPECT_EQ((Bytes{src[0], src[512], src[1024], src[1536], src[1599]}),
            Bytes(linear.begin(), linear.begin() + 5));
}

/// 535 * 8027976.5 is 2^32 + 131.5: half of element 131 takes no part, since the fraction does not fit.
TEST(ResampleScanlines, FractionsBeyond32BitsDoNotBlend) {
  Bytes src(600, 10);
  src[132] = 200;
  const Bytes linear = line_of(src, 600, 1, 16055953, 2, 1, kLinear);
  EXPECT_EQ(200, linear[535]);
  EXPECT_EQ(10, linear[534]);
}

TEST(ResampleScanlines, NegativePitchesWalkUpward) {
  const Bytes src = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  Bytes dst(9, 0xA5);
  ASSERT_EQ(kSuccess, QVN_ResampleScanlinesEx(&dst[6], src.data(), 3, -3, 3, 3, 3, 1, 1, 1, kNearest));
  EXPECT_EQ((Bytes{7, 8, 9, 4, 5, 6, 1, 2, 3}), dst);
  dst.assign(9, 0xA5);
  ASSERT_EQ(kSuccess, QVN_ResampleScanlinesEx(dst.data(), &src[6], 2, 3, 3, -3, 3, 1, 1, 1, kLinear));
  EXPECT_EQ((Bytes{7, 8, 0xA5, 4, 5, 0xA5, 1, 2, 0xA5}), dst);
}

TEST(ResampleScanlines, SuccessIsOneWithoutALine) {
  Bytes dst(8, 0xA5);
  const Bytes src(8, 1);
  for (std::int32_t lines : {0, -1, kLeast}) {
    EXPECT_EQ(kSuccess, QVN_ResampleScanlines(dst.data(), src.data(), 4, 4, lines, 1, 1, 1, kNearest));
    EXPECT_EQ(kSuccess, QVN_ResampleScanlines(dst.data(), src.data(), 4, 4, lines, 1, 1, 1, kLinear));
  }
  EXPECT_EQ(Bytes(8, 0xA5), dst);
}

/// Both entries refuse by the long one's argument numbers, whatever the lengths.
TEST(ResampleScanlines, RefusesInOrder) {
  Bytes dst(8, 0xA5);
  const Bytes src(8, 1);
  const auto both = [](std::uint32_t status, std::uint8_t* out, const std::uint8_t* in, std::uint32_t type,
                       std::uint32_t method) {
    for (std::int32_t length : {4, 0, -1}) {
      EXPECT_EQ(status, QVN_ResampleScanlinesEx(out, in, length, 4, 4, 4, 1, 1, 1, type, method));
      EXPECT_EQ(status, QVN_ResampleScanlines(out, in, length, 4, 1, 1, 1, type, method));
    }
  };
  both(QVN_E_PARAM1, nullptr, nullptr, 7, 9);
  both(QVN_E_PARAM1, nullptr, src.data(), 1, 0);
  both(QVN_E_PARAM2, dst.data(), nullptr, 7, 9);
  both(QVN_E_PARAM2, dst.data(), nullptr, 1, 0);
  both(QVN_E_PARAM10, dst.data(), src.data(), 7, 9);
  both(QVN_E_PARAM10, dst.data(), src.data(), 0, 9);
  for (std::uint32_t type : {0U, 7U, 0x101U, 0x10001U, 0xFFFFFFFFU}) {
    both(QVN_E_PARAM10, dst.data(), src.data(), type, 0);
    both(QVN_E_PARAM10, dst.data(), src.data(), type, 1);
  }
  for (std::uint32_t type = 1; type <= 6; ++type) {
    for (std::uint32_t method : {2U, 9U, 0x100U, 0x10001U, 0xFFFFFFFFU}) {
      both(QVN_E_PARAM11, dst.data(), src.data(), type, method);
    }
  }
  EXPECT_EQ(Bytes(8, 0xA5), dst);
}

}  // namespace
