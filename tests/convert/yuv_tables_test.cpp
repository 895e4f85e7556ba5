/// The YUV tables against their formulas, their state at load, and the pair of hue and saturation: when it
/// costs a rebuild, what a rebuild makes, and what the adjustable conversion makes of it.
#include "convert/yuv_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "convert/yuv_to_bgr.h"
#include "frame/start_up.h"
#include "reference/yuv_tables.h"
#include "reference/yuv_to_bgr.h"
#include "support/random.h"

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(YuvTables, PackedOffsetsAreTheFormulas) {
  EXPECT_EQ(qvn::UTable, reference::yuv_tables().UTable);
  EXPECT_EQ(qvn::VTable, reference::yuv_tables().VTable);
}

TEST(YuvTables, PackedOffsetsAtTheEndsAndInTheMiddle) {
  EXPECT_EQ(qvn::high_half(qvn::UTable[0]), -226);
  EXPECT_EQ(qvn::low_half(qvn::UTable[0]), 44);
  EXPECT_EQ(qvn::high_half(qvn::UTable[255]), 224);
  EXPECT_EQ(qvn::low_half(qvn::UTable[255]), -43);
  EXPECT_EQ(qvn::high_half(qvn::VTable[0]), -179);
  EXPECT_EQ(qvn::low_half(qvn::VTable[0]), 91);
  EXPECT_EQ(qvn::high_half(qvn::VTable[255]), 178);
  EXPECT_EQ(qvn::low_half(qvn::VTable[255]), -90);
  EXPECT_EQ(qvn::UTable[128], 0u);
  EXPECT_EQ(qvn::VTable[128], 0u);
}

TEST(YuvTables, PlaneTablesAreTheFormulas) {
  EXPECT_EQ(qvn::PlaneRTable, reference::yuv_tables().PlaneRTable);
  EXPECT_EQ(qvn::PlaneBTable, reference::yuv_tables().PlaneBTable);
  EXPECT_EQ(qvn::PlaneGDeltaTable, reference::yuv_tables().PlaneGDeltaTable);
  EXPECT_EQ(qvn::PlaneGTable, reference::yuv_tables().PlaneGTable);
}

TEST(YuvTables, PlaneTablesAtSomePlaces) {
  EXPECT_EQ(qvn::PlaneGDeltaTable[128 * 256 + 128], 0);
  EXPECT_EQ(qvn::PlaneGTable[200 * 256], 200);
  EXPECT_EQ(qvn::PlaneGTable[10 * 256 + 0xF0], 0);
  EXPECT_EQ(qvn::PlaneGTable[250 * 256 + 0x7F], 255);
  EXPECT_EQ(qvn::PlaneRTable[255 * 256 + 255], 255);
  EXPECT_EQ(qvn::PlaneRTable[0], 0);
}

/// Above the centre the two sets agree; below it the packed one can be one higher, and is somewhere.
TEST(YuvTables, TheTwoSetsDifferByOneBelowTheCentre) {
  int higher = 0;
  for (int y = 0; y < 256; ++y) {
    for (int chroma = 0; chroma < 256; ++chroma) {
      const auto c = static_cast<size_t>(chroma), line = static_cast<size_t>(y) * 256;
      const int red = std::clamp(y + qvn::high_half(qvn::VTable[c]), 0, 255) - qvn::PlaneRTable[line + c];
      const int blue = std::clamp(y + qvn::high_half(qvn::UTable[c]), 0, 255) - qvn::PlaneBTable[line + c];
      if (chroma >= 128) {
        ASSERT_EQ(red, 0);
        ASSERT_EQ(blue, 0);
      } else {
        ASSERT_TRUE(red == 0 || red == 1);
        ASSERT_TRUE(blue == 0 || blue == 1);
        higher += red + blue;
      }
    }
  }
  EXPECT_GT(higher, 0);
}

TEST(YuvTables, ApproximationsAreTheIntegerFormulas) {
  for (int i = 0; i < 256; ++i) {
    const int t = i < 128 ? 128 - i : i - 128, sign = i < 128 ? -1 : 1;
    const auto index = static_cast<size_t>(i);
    EXPECT_EQ(qvn::high_half(qvn::UApproximationTable[index]), sign * (t + t * 197 / 256)) << i;
    EXPECT_EQ(qvn::low_half(qvn::UApproximationTable[index]), -sign * (t * 88 / 256)) << i;
    EXPECT_EQ(qvn::high_half(qvn::VApproximationTable[index]), sign * (t + t * 102 / 256)) << i;
    EXPECT_EQ(qvn::low_half(qvn::VApproximationTable[index]), -sign * (t * 182 / 256)) << i;
  }
}

TEST(YuvTables, AreBuiltOnceUnderTheirGuard) {
  EXPECT_EQ(qvn::yuv_tables_guard, 0);
  const uint32_t kept = qvn::UTable[7];
  qvn::UTable[7] = 12345;
  qvn::build_yuv_tables();
  EXPECT_EQ(qvn::UTable[7], 12345u) << "a cleared guard lets no build through";
  qvn::yuv_tables_guard = 1;
  qvn::build_yuv_tables();
  EXPECT_EQ(qvn::UTable[7], kept);
  EXPECT_EQ(qvn::yuv_tables_guard, 0);
}

int rebuilds = 0;

void count_rebuild(float hue, float saturation) {
  ++rebuilds;
  qvn::RebuildHueSat(hue, saturation);
}

/// Finds the process-wide tables as they are at load, and leaves them so.
class HueSat : public testing::Test {
 protected:
  HueSat() {
    qvn::color_tables = qvn::ColorTables{};
    rebuilds = 0;
  }
  ~HueSat() override { qvn::color_tables = qvn::ColorTables{}; }

  static void expect_tables(const reference::ColorTables& expected) {
    const qvn::ColorTables& actual = qvn::color_tables;
    EXPECT_EQ(actual.redFromU, expected.redFromU);
    EXPECT_EQ(actual.greenFromU, expected.greenFromU);
    EXPECT_EQ(actual.blueFromU, expected.blueFromU);
    EXPECT_EQ(actual.redFromV, expected.redFromV);
    EXPECT_EQ(actual.greenFromV, expected.greenFromV);
    EXPECT_EQ(actual.blueFromV, expected.blueFromV);
    for (size_t i = 0; i < 3; ++i) EXPECT_EQ(actual.identity[i], expected.identity[i]);
  }

  /// One check of the cache; how many rebuilds it took.
  static int rebuilds_of(float hue, float saturation) {
    const int before = rebuilds;
    EXPECT_TRUE(qvn::adjust_color_tables(hue, saturation, count_rebuild));
    return rebuilds - before;
  }
};

TEST(HueSatAtLoad, PairIsNeutralAndTablesAreZero) {
  const qvn::ColorTables& tables = qvn::color_tables;
  EXPECT_EQ(tables.hue_sat.hue, 0.0F);
  EXPECT_EQ(tables.hue_sat.saturation, 1.0F);
  const std::array<int16_t, 256> zero = {};
  for (const auto* table : {&tables.redFromU, &tables.greenFromU, &tables.blueFromU, &tables.redFromV,
                            &tables.greenFromV, &tables.blueFromV}) {
    EXPECT_EQ(*table, zero);
  }
  EXPECT_EQ(tables.CygmMonoGains.c, 0.0F);
  EXPECT_EQ(tables.CygmMonoGains.m, 0.0F);
  EXPECT_EQ(tables.CygmMonoGains.y, 0.0F);
  EXPECT_EQ(tables.CygmMonoGains.g, 0.0F);
  EXPECT_EQ(tables.useGains, 0);
}

TEST(HueSatAtLoad, FieldsLieInTheirOrder) {
  EXPECT_EQ(offsetof(qvn::ColorTables, identity), 0u);
  EXPECT_EQ(offsetof(qvn::ColorTables, redFromU), 1536u);
  EXPECT_EQ(offsetof(qvn::ColorTables, greenFromU), 2048u);
  EXPECT_EQ(offsetof(qvn::ColorTables, blueFromU), 2560u);
  EXPECT_EQ(offsetof(qvn::ColorTables, redFromV), 3072u);
  EXPECT_EQ(offsetof(qvn::ColorTables, greenFromV), 3584u);
  EXPECT_EQ(offsetof(qvn::ColorTables, blueFromV), 4096u);
  EXPECT_EQ(offsetof(qvn::ColorTables, hue_sat), 4608u);
  EXPECT_EQ(offsetof(qvn::ColorTables, CygmMonoGains), 4616u);
  EXPECT_EQ(offsetof(qvn::ColorTables, useGains), 4632u);
}

TEST_F(HueSat, NeutralPairLooksAtNothing) {
  for (const float zero : {0.0F, -0.0F}) {
    EXPECT_FALSE(qvn::adjust_color_tables(zero, 1.0F, count_rebuild));
  }
  EXPECT_EQ(rebuilds, 0);
  qvn::adjust_color_tables(0.5F, 2.0F, count_rebuild);
  EXPECT_FALSE(qvn::adjust_color_tables(0.0F, 1.0F, count_rebuild));
  EXPECT_EQ(rebuilds, 2);
  EXPECT_EQ(qvn::color_tables.hue_sat.hue, 0.5F) << "the neutral pair leaves the cache as it was";
  EXPECT_EQ(qvn::color_tables.hue_sat.saturation, 2.0F);
}

TEST_F(HueSat, EachChangedValueCostsOneRebuild) {
  EXPECT_EQ(rebuilds_of(0.5F, 1.0F), 1);
  EXPECT_EQ(rebuilds_of(0.5F, 1.0F), 0);
  EXPECT_EQ(rebuilds_of(0.5F, 2.0F), 1);
  EXPECT_EQ(rebuilds_of(-0.5F, 0.25F), 2);
  EXPECT_EQ(rebuilds_of(0.0F, 0.25F), 1);
  EXPECT_EQ(rebuilds_of(-0.0F, 0.25F), 0) << "minus zero is zero";
}

std::vector<std::array<float, 2>> rebuilt_pairs;

/// The first of two rebuilds has the new hue and the saturation of before.
TEST_F(HueSat, HueIsBroughtUpToDateFirst) {
  rebuilt_pairs.clear();
  EXPECT_TRUE(qvn::adjust_color_tables(0.5F, 2.0F, [](float hue, float saturation) {
    rebuilt_pairs.push_back({hue, saturation});
  }));
  EXPECT_EQ(rebuilt_pairs, (std::vector<std::array<float, 2>>{{0.5F, 1.0F}, {0.5F, 2.0F}}));
}

TEST_F(HueSat, NanIsDifferentEveryTime) {
  EXPECT_EQ(rebuilds_of(kNan, 2.0F), 2);
  EXPECT_EQ(rebuilds_of(kNan, 2.0F), 1);
  EXPECT_EQ(rebuilds_of(0.25F, kNan), 2);
  EXPECT_EQ(rebuilds_of(0.25F, kNan), 1);
  EXPECT_EQ(rebuilds_of(kNan, kNan), 2);
}

TEST_F(HueSat, RebuildMakesTheFormulas) {
  reference::ColorTables expected;
  for (const float hue : {0.0F, 0.1F, 0.785F, 1.5707964F, 3.0F, -0.3F, -2.5F, 100.0F, kNan, kInfinity}) {
    for (const float saturation :
         {0.0F, 1.0F, 0.5F, 1.5F, -1.0F, 10.0F, 1e30F, -1e30F, kNan, kInfinity, -kInfinity}) {
      SCOPED_TRACE(testing::Message() << "hue " << hue << ", saturation " << saturation);
      qvn::RebuildHueSat(hue, saturation);
      reference::RebuildHueSat(expected, hue, saturation);
      expect_tables(expected);
    }
  }
}

/// Only the cosine is scaled: without saturation, hue alone still turns colours.
TEST_F(HueSat, SaturationScalesTheCosineAlone) {
  qvn::RebuildHueSat(1.5707964F, 0.0F);
  EXPECT_EQ(qvn::color_tables.redFromU[192], 89);     // 64 * 1.4022
  EXPECT_EQ(qvn::color_tables.blueFromV[192], -113);  // 64 * -1.771
  EXPECT_EQ(qvn::color_tables.redFromV[192], 0);
}

/// The clamp is narrower than the offsets of the plain conversions.
TEST_F(HueSat, OffsetsStopAtASignedByte) {
  qvn::RebuildHueSat(0.0F, 1.0F);
  EXPECT_EQ(qvn::color_tables.blueFromU[0], -128);
  EXPECT_EQ(qvn::color_tables.blueFromU[255], 127);
  EXPECT_EQ(qvn::high_half(qvn::UTable[0]), -226);
}

TEST_F(HueSat, AdjustableConversionEqualsTheReference) {
  support::Random random(1);
  std::vector<uint8_t> src(4 * 40);
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
    for (uint32_t count = 0; count <= 80; ++count) {
      random.fill(src.data(), src.size());
      std::vector<uint8_t> expected(3 * 81, 0x77), actual(expected);
      reference::YUV422ToBGRAdjustable(expected_tables, expected.data(), src.data(), count, hue, saturation);
      EXPECT_TRUE(qvn::YUV422ToBGRAdjustable(actual.data(), src.data(), count, hue, saturation));
      ASSERT_EQ(expected, actual) << "hue " << hue << ", saturation " << saturation << ", count " << count;
    }
    if (hue != 0.0F || saturation != 1.0F) expect_tables(expected_tables);
  }
}

/// The road of the interpolating demosaics: the cached pair, read and passed back in.
TEST_F(HueSat, CachedPairAtLoadTakesThePlainPath) {
  const qvn::HueSatPair& pair = qvn::color_tables.hue_sat;
  const std::array<uint8_t, 4> src = {0, 100, 0, 250};
  std::array<uint8_t, 6> plain = {}, adjustable = {};
  qvn::yuv422_to_bgr(plain.data(), src.data(), 2);
  qvn::YUV422ToBGRAdjustable(adjustable.data(), src.data(), 2, pair.hue, pair.saturation);
  EXPECT_EQ(plain, adjustable);
  EXPECT_EQ(qvn::color_tables.redFromU[0], 0) << "no rebuild";
}

}  // namespace
