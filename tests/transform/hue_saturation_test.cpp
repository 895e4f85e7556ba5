/// Hue and saturation in the transforms: the adjustable conversion of 4:2:2 to each output, and the pair of
/// the process on its way through the interpolating transforms.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "convert/adjustable.h"
#include "convert/yuv_tables.h"
#include "pixel/put.h"
#include "quorvane/quorvane.h"
#include "reference/transform_int.h"
#include "support/random.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kPixelBytes[] = {1, 3, 4, 1};
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

bool adjustable(std::uint32_t target, std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                float hue, float saturation) {
  constexpr std::array forms = {
      qvn::YUV422ToTargetAdjustable<qvn::PutY8>, qvn::YUV422ToTargetAdjustable<qvn::PutBgr>,
      qvn::YUV422ToTargetAdjustable<qvn::PutBgra>, qvn::YUV422ToTargetAdjustable<qvn::PutY8Rounded>};
  return forms[target](dst, src, count, hue, saturation);
}

/// Puts the plain pair back when a test ends.
class TransformHueSat : public testing::Test {
 protected:
  void SetUp() override { qvn::color_tables = {}; }
  void TearDown() override { qvn::color_tables = {}; }
};

TEST_F(TransformHueSat, AdjustableConversionEqualsTheReference) {
  support::Random random(801);
  reference::ColorTables expected_tables;
  const std::array<std::array<float, 2>, 9> pairs = {{{0.0F, 1.0F},
                                                      {0.3F, 1.0F},
                                                      {0.3F, 1.7F},
                                                      {0.0F, 1.0F},
                                                      {-1.0F, 0.4F},
                                                      {0.0F, 0.4F},
                                                      {kNan, 0.4F},
                                                      {0.1F, kNan},
                                                      {2.0F, 20.0F}}};
  for (const auto& [hue, saturation] : pairs) {
    for (std::uint32_t target = 0; target < 4; ++target) {
      for (std::uint32_t count = 0; count <= 80; ++count) {
        Bytes src(4 * 40);
        random.fill(src.data(), src.size());
        Bytes expected(kPixelBytes[target] * 81);
        random.fill(expected.data(), expected.size());
        Bytes actual = expected;
        reference::YUV422ToTargetAdjustable(expected_tables, target, expected.data(), src.data(), count, hue,
                                            saturation);
        EXPECT_TRUE(adjustable(target, actual.data(), src.data(), count, hue, saturation));
        ASSERT_EQ(expected, actual) << "hue " << hue << ", saturation " << saturation << ", target " << target
                                    << ", count " << count;
      }
    }
  }
}

TEST_F(TransformHueSat, CheckIsThatOfThePlainConversion) {
  const std::array<std::uint8_t, 4> src = {0, 100, 0, 250};
  std::array<std::uint8_t, 8> dst = {};
  for (std::uint32_t target = 0; target < 4; ++target) {
    qvn::color_tables = {};
    EXPECT_TRUE(adjustable(target, dst.data(), src.data(), 2, 0.0F, 1.0F));
    EXPECT_EQ(qvn::color_tables.redFromV[0], 0) << "no rebuild";
    EXPECT_TRUE(adjustable(target, dst.data(), src.data(), 2, 0.5F, 1.25F));
    EXPECT_EQ(qvn::color_tables.hue_sat.hue, 0.5F);
    EXPECT_EQ(qvn::color_tables.hue_sat.saturation, 1.25F);
    EXPECT_NE(qvn::color_tables.redFromV[0], 0);
    // The plain pair neither looks at the cached one nor changes it.
    EXPECT_TRUE(adjustable(target, dst.data(), src.data(), 2, 0.0F, 1.0F));
    EXPECT_EQ(qvn::color_tables.hue_sat.hue, 0.5F);
  }
}

/// What is left in `src` is the 4:2:2 form of the second half, of which the second half of `dst` is made.
TEST_F(TransformHueSat, CachedPairReachesThePictures) {
  constexpr std::uint32_t kWidth = 48, kHeight = 12, kPixels = kWidth * kHeight;
  constexpr std::array entries = {QVN_Raw8ImageTransform_IntYUV422, QVN_Raw8ImageTransform_IntLCAA,
                                  QVN_Raw8ImageTransform_IntLCAAV};
  support::Random random(802);
  Bytes mosaic(kPixels);
  random.fill(mosaic.data(), mosaic.size());
  for (const auto entry : entries) {
    for (std::uint32_t target = 0; target < 4; ++target) {
      qvn::color_tables = {};
      Bytes plain(kPixelBytes[target] * kPixels), turned(plain), expected(plain.size() / 2);
      Bytes src = mosaic;
      ASSERT_EQ(QVN_OK, entry(plain.data(), src.data(), kWidth, kHeight, target, 0));

      qvn::color_tables.hue_sat = {0.5F, 1.25F};
      qvn::RebuildHueSat(0.5F, 1.25F);
      src = mosaic;
      ASSERT_EQ(QVN_OK, entry(turned.data(), src.data(), kWidth, kHeight, target, 0));
      reference::ColorTables tables;
      reference::YUV422ToTargetAdjustable(tables, target, expected.data(), src.data(), kPixels / 2, 0.5F,
                                          1.25F);
      EXPECT_EQ(expected, Bytes(turned.begin() + static_cast<std::ptrdiff_t>(expected.size()), turned.end()));
      EXPECT_NE(plain, turned);
      EXPECT_EQ(qvn::color_tables.hue_sat.hue, 0.5F);
    }
  }
}

}  // namespace
