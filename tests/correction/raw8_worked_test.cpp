/// The corrected 8-bit demosaics against numbers worked out by hand, rule by rule.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <numeric>
#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"
#include "support/random.h"

namespace {

using support::Correction;
using Bytes = std::vector<std::uint8_t>;

Bytes bgr(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
          const Correction& correction) {
  Bytes dst(std::size_t{3} * width * height, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw8ToBGR_CC(dst.data(), src.data(), width, height, pattern,
                                     support::as_correction(correction.get())));
  return dst;
}

Bytes y8(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
         const Correction& correction) {
  Bytes dst(std::size_t{width} * height, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw8ToY8_CC(dst.data(), src.data(), width, height, pattern,
                                    support::as_correction(correction.get())));
  return dst;
}

/// What becomes of the red of a flat frame.
std::uint8_t red_of(std::uint8_t value, const Correction& correction) {
  return bgr(Bytes(8, value), 4, 2, 0, correction)[2];
}

Correction red_gain(float factor) { return Correction::floats(1, {factor, 0, 0, 0, 1, 0, 0, 0, 1}, 0, 0); }

TEST(FixedMatrix8, AUniformTwoHundredBecomesEight) {
  const Correction identity = Correction::fixed_matrix(2, support::kFixedIdentity);
  for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
    EXPECT_EQ(Bytes(24, 8), bgr(Bytes(8, 200), 4, 2, pattern, identity));
    EXPECT_EQ(Bytes(8, 8), y8(Bytes(8, 200), 4, 2, pattern, identity));
  }
}

TEST(FixedMatrix8, TheIdentityFoldsAtSixteenBits) {
  const Correction identity = Correction::fixed_matrix(2, support::kFixedIdentity);
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    // 0 to 31 pass, 32 to 63 are negative, and so on.
    const auto expected = static_cast<std::uint8_t>(value % 64 < 32 ? value % 64 : 0);
    EXPECT_EQ(Bytes(24, expected), bgr(Bytes(8, grey), 4, 2, 0, identity)) << value;
  }
}

TEST(FixedMatrix8, NothingIsAboveThirtyOne) {
  support::Random random(1);
  Bytes src(64 * 8);
  for (int round = 0; round < 50; ++round) {
    support::Coefficients coefficients;
    for (std::int32_t& coefficient : coefficients)
      coefficient = static_cast<std::int32_t>(random.next() >> 32);
    random.fill(src.data(), src.size());
    for (std::uint8_t byte : bgr(src, 64, 8, 0, Correction::fixed_matrix(2, coefficients)))
      ASSERT_LE(byte, 31);
  }
}

TEST(FixedMatrix8, OnlyTheLowHalvesOfTheCoefficientsCount) {
  // 0x10400 is 1024 again, 0x18000 is -32768: an even factor of it wraps to 0.
  EXPECT_EQ(20, red_of(20, Correction::fixed_matrix(2, {0x10400, 0, 0, 0, 0, 0, 0, 0, 0})));
  EXPECT_EQ(0, red_of(20, Correction::fixed_matrix(2, {0x18000, 0, 0, 0, 0, 0, 0, 0, 0})));
  // -32768 >> 10 is -32, which is negative; together with 1024 * 33 the sum is 1024.
  EXPECT_EQ(0, red_of(1, Correction::fixed_matrix(2, {0x8000, 0, 0, 0, 0, 0, 0, 0, 0})));
  EXPECT_EQ(1, red_of(1, Correction::fixed_matrix(2, {0x8000, 0x8400, 0, 0, 0, 0, 0, 0, 0})));
}

TEST(FixedMatrix8, InputsAreRedGreenBlue) {
  // R 1, G 2, B 4 over all windows of the first line of R G over G B: 1 2 1 2 / 2 4 2 4.
  const Bytes src = {1, 2, 1, 2, 2, 4, 2, 4};
  const Correction turn = Correction::fixed_matrix(2, {0, 1024, 0, 0, 0, 1024, 1024, 0, 0});
  // Red = green, green = blue, blue = red.
  EXPECT_EQ((Bytes{1, 4, 2}), [&] {
    const Bytes dst = bgr(src, 4, 2, 0, turn);
    return Bytes(dst.begin(), dst.begin() + 3);
  }());
}

TEST(FloatMatrix, WrapsAndTruncatesTowardsZero) {
  EXPECT_EQ(0, red_of(171, red_gain(1.5F)));    // 256.5
  EXPECT_EQ(255, red_of(170, red_gain(1.5F)));  // 255.0
  EXPECT_EQ(0, red_of(1, red_gain(-0.5F)));
  EXPECT_EQ(255, red_of(1, red_gain(-1.0F)));
  EXPECT_EQ(255, red_of(1, red_gain(-1.5F)));
  EXPECT_EQ(255, red_of(3, red_gain(-0.5F)));  // -1.5
  EXPECT_EQ(0, red_of(1, red_gain(256)));
  EXPECT_EQ(44, red_of(1, red_gain(300)));
  EXPECT_EQ(0, red_of(1, red_gain(1e20F)));  // outside of 64 bits
}

TEST(FloatMatrix, TheIdentityIsThePlainEntry) {
  const Correction identity = Correction::floats(1, support::kIdentity, 0, 0);
  support::Random random(2);
  Bytes src(38 * 10);
  random.fill(src.data(), src.size());
  for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
    Bytes plain(std::size_t{3} * 38 * 10);
    ASSERT_EQ(QVN_OK, QVN_Raw8ToBGR(plain.data(), src.data(), 38, 10, pattern));
    EXPECT_EQ(plain, bgr(src, 38, 10, pattern, identity));
    plain.resize(38 * 10);
    ASSERT_EQ(QVN_OK, QVN_Raw8ToY8(plain.data(), src.data(), 38, 10, pattern));
    EXPECT_EQ(plain, y8(src, 38, 10, pattern, identity));
  }
}

/// 2^24 + 1 has no place in single precision: the order of the sums shows.
TEST(FloatMatrix, SumsAreRoundedFromLeftToRight) {
  const Correction left = Correction::floats(1, {16777216, 1, 1, 16777216, 1, -16777216, 0, 0, 0}, 0, 0);
  const Bytes dst = bgr(Bytes(8, 1), 4, 2, 0, left);
  EXPECT_EQ(0, dst[2]);  // (2^24 + 1) + 1 is 2^24 both times
  EXPECT_EQ(0, dst[1]);  // (2^24 + 1) - 2^24
}

/// 3 * 357913952 is 2^30 + 32, and 2^30 in single precision. Where a product is not rounded by itself, the
/// difference of two of them shows the 32.
TEST(FloatMatrix, ProductsAreRoundedBeforeTheyAreAdded) {
  constexpr float kThird = 357913952.0F;
  EXPECT_EQ(0, red_of(3, Correction::floats(1, {kThird, -kThird, 0, 0, 0, 0, 0, 0, 0}, 0, 0)));
  EXPECT_EQ(0, red_of(3, Correction::floats(1, {-kThird, kThird, 0, 0, 0, 0, 0, 0, 0}, 0, 0)));
  EXPECT_EQ(0, red_of(3, Correction::floats(1, {kThird, 0, -kThird, 0, 0, 0, 0, 0, 0}, 0, 0)));
}

TEST(Gamma, OneIsTheIdentity) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    EXPECT_EQ(Bytes(24, grey), bgr(Bytes(8, grey), 4, 2, 0, Correction::gamma(1, 255)));
  }
}

TEST(Gamma, AMaxValueOfOneRaisesTheSampleItself) {
  const Correction square = Correction::gamma(2, 1);
  EXPECT_EQ(225, red_of(15, square));
  EXPECT_EQ(0, red_of(16, square));
  EXPECT_EQ(33, red_of(17, square));
  EXPECT_EQ(1, red_of(255, square));  // 65025
}

TEST(Gamma, RoundsByAHalfInDoublePrecision) {
  // A gamma of 0 makes every sample max_value, whatever it is.
  EXPECT_EQ(8, red_of(9, Correction::gamma(0, 7.5F)));
  EXPECT_EQ(7, red_of(9, Correction::gamma(0, 7.4999995F)));
  EXPECT_EQ(0, red_of(9, Correction::gamma(0, 0.49999997F)));  // 0.5 in single precision would bring 1
  EXPECT_EQ(0, red_of(9, Correction::gamma(0, -1.25F)));       // -0.75
  EXPECT_EQ(255, red_of(9, Correction::gamma(0, -1.5F)));      // -1
}

TEST(Gamma, FollowsThePowerFunctionAtItsEnds) {
  EXPECT_EQ(0, red_of(0, Correction::gamma(2.2F, 255)));
  EXPECT_EQ(255, red_of(0, Correction::gamma(0, 255)));  // 0 to the power of 0 is 1
  EXPECT_EQ(0, red_of(0, Correction::gamma(-1, 255)));   // infinite, which has no low bits
  EXPECT_EQ(0, red_of(0, Correction::gamma(2, 0)));      // 0 / 0
  EXPECT_EQ(0, red_of(9, Correction::gamma(2, 0)));      // infinity times 0
}

TEST(Gamma, BordersAreNotCorrectedTwice) {
  support::Random random(3);
  Bytes src(38 * 10);
  random.fill(src.data(), src.size());
  const Bytes dst = bgr(src, 38, 10, 0, Correction::gamma(2, 255));
  for (std::size_t y = 0; y < 10; ++y) {
    for (std::size_t c = 0; c < 3; ++c) {
      EXPECT_EQ(dst[(y * 38 + 36) * 3 + c], dst[(y * 38 + 37) * 3 + c]);
    }
  }
  EXPECT_EQ(Bytes(dst.end() - 114, dst.end()), Bytes(dst.end() - 228, dst.end() - 114));
  EXPECT_EQ(Bytes(24, 64), bgr(Bytes(8, 128), 4, 2, 0, Correction::gamma(2, 256)));
}

TEST(GammaMatrix, TheMatrixWorksOnTheGammasBytes) {
  // Each channel of 16 squared is 256, a byte of 0, whatever the matrix does; 17 gives 33, and its half 16.
  const Correction both = Correction::floats(5, {0.5F, 0, 0, 0, 1, 0, 0, 0, -1}, 2, 1);
  const Bytes zero = bgr(Bytes(8, 16), 4, 2, 0, both);
  EXPECT_EQ((Bytes{0, 0, 0}), Bytes(zero.begin(), zero.begin() + 3));
  const Bytes some = bgr(Bytes(8, 17), 4, 2, 0, both);
  EXPECT_EQ((Bytes{223, 33, 16}), Bytes(some.begin(), some.begin() + 3));
}

TEST(GammaMatrix, ANegativeResultIsABrightPixel) {
  const Correction negative = Correction::floats(5, {-1, 0, 0, 0, -1, 0, 0, 0, -1}, 1, 255);
  EXPECT_EQ(Bytes(8, 255), y8(Bytes(8, 1), 4, 2, 0, negative));
  // Red alone: (77 * 255 + 150 + 29) >> 8.
  const Correction red = Correction::floats(5, {-1, 0, 0, 0, 1, 0, 0, 0, 1}, 1, 255);
  EXPECT_EQ(Bytes(8, 77), y8(Bytes(8, 1), 4, 2, 0, red));
}

TEST(Table8, IsLookedUpByTheMeanOfTheGreens) {
  Bytes table(256);
  std::iota(table.begin(), table.end(), std::uint8_t{0});
  for (std::uint8_t& entry : table) entry = static_cast<std::uint8_t>(255 - entry);
  const Correction negative = Correction::bytes(8, table, 256);
  // Greens 20 and 31: their mean 25, and not the mean of 235 and 224, which is 229.
  const Bytes dst = bgr({10, 20, 31, 40}, 2, 2, 0, negative);
  EXPECT_EQ((Bytes{215, 230, 245}), Bytes(dst.begin(), dst.begin() + 3));
  EXPECT_EQ((245 * 77 + 230 * 150 + 215 * 29) >> 8, y8({10, 20, 31, 40}, 2, 2, 0, negative)[0]);
}

TEST(OddWidths, DriftInBGRAndKeepTheirLinesInY8) {
  const Correction square = Correction::gamma(2, 256);
  Bytes wide(23, 0xA5);
  const Bytes src(7, 128);
  EXPECT_EQ(QVN_OK, QVN_Raw8ToBGR_CC(wide.data(), src.data(), 3, 2, 0, support::as_correction(square.get())));
  Bytes expected(23, 64);
  expected[21] = expected[22] = 0xA5;
  EXPECT_EQ(expected, wide);
  Bytes narrow(8, 0xA5);
  EXPECT_EQ(QVN_OK,
            QVN_Raw8ToY8_CC(narrow.data(), src.data(), 3, 2, 0, support::as_correction(square.get())));
  EXPECT_EQ((Bytes{64, 64, 64, 64, 64, 64, 0xA5, 0xA5}), narrow);
}

TEST(CreatedObjects, IdentityGivesNothingAboveThirtyOne) {
  const float identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  ColorCorrection* made = nullptr;
  ASSERT_EQ(QVN_OK, QVN_CreateColorCorrectionMatrix_Int8(identity, &made));
  Bytes src(256);
  std::iota(src.begin(), src.end(), std::uint8_t{0});
  Bytes dst(768, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw8ToBGR_CC(dst.data(), src.data(), 16, 16, 0, made));
  for (std::uint8_t byte : dst) EXPECT_LE(byte, 31);
  EXPECT_EQ(QVN_OK, QVN_DestroyColorCorrection(made));
}

TEST(CreatedObjects, ServeTheirOwnDepthOnly) {
  const float identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  ColorCorrection* low = nullptr;
  ColorCorrection* high = nullptr;
  ASSERT_EQ(QVN_OK, QVN_CreateColorCorrectionMatrix_Int8(identity, &low));
  ASSERT_EQ(QVN_OK, QVN_CreateColorCorrectionMatrix_Int16(identity, &high));
  const Bytes src(256, 9);
  for (const support::CorrectedEntry& entry : support::kCorrectedEntries) {
    const bool eight = entry.sample_bits == 8;
    Bytes dst(1024, 0xA5);
    EXPECT_EQ(QVN_E_FAIL, entry.library(dst.data(), src.data(), {8, 8, 0, 0}, eight ? high : low))
        << entry.name;
    EXPECT_EQ(Bytes(1024, 0xA5), dst) << entry.name;
    EXPECT_EQ(QVN_OK, entry.library(dst.data(), src.data(), {8, 8, 0, 0}, eight ? low : high)) << entry.name;
  }
  EXPECT_EQ(QVN_OK, QVN_DestroyColorCorrection(low));
  EXPECT_EQ(QVN_OK, QVN_DestroyColorCorrection(high));
}

}  // namespace
