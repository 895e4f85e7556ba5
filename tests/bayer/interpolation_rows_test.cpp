// The interpolations read the process's hue and saturation: by rows for the plain pair only.
#include "bayer/interpolation_rows.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "convert/yuv_tables.h"
#include "convert/yuv_to_bgr.h"

namespace qvn {
namespace {

// Puts the plain pair back, whatever a test leaves behind.
struct PairRestored {
  ~PairRestored() { color_tables = {}; }
};

// What is left in src is the 4:2:2 form of the second half, of which the second half of dst is made.
TEST(InterpolationRows, AnotherHueAndSaturationReachThePicture) {
  constexpr uint32_t kWidth = 48, kHeight = 12, kPixels = kWidth * kHeight;
  std::mt19937 random(31);
  std::vector<uint8_t> mosaic(kPixels);
  for (uint8_t& sample : mosaic) sample = static_cast<uint8_t>(random());
  for (const auto filter : {ChromaFilter::kPair, ChromaFilter::kBox4, ChromaFilter::kBlock8}) {
    const PairRestored restored;
    std::vector<uint8_t> plain(3 * kPixels), turned(3 * kPixels), expected(3 * kPixels / 2);
    std::vector<uint8_t> src = mosaic;
    interpolate(filter, plain.data(), src.data(), kWidth, kHeight, 0);

    color_tables.hue_sat = {0.5F, 1.25F};
    RebuildHueSat(0.5F, 1.25F);
    src = mosaic;
    interpolate(filter, turned.data(), src.data(), kWidth, kHeight, 0);
    YUV422ToBGRAdjustable(expected.data(), src.data(), kPixels / 2, 0.5F, 1.25F);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), turned.begin() + 3 * kPixels / 2));
    EXPECT_NE(plain, turned);
  }
}

TEST(InterpolationRows, SizesThatRunByRows) {
  EXPECT_EQ(runs_by_rows(8, 6), kVectorRows);
  EXPECT_FALSE(runs_by_rows(6, 6));
  EXPECT_FALSE(runs_by_rows(8, 4));
  EXPECT_FALSE(runs_by_rows(9, 6));
  EXPECT_FALSE(runs_by_rows(8, 7));
  // From 2^32 bytes of working frame on, the halves of the passes wrap around.
  EXPECT_EQ(runs_by_rows(65536, 21844), kVectorRows);
  EXPECT_FALSE(runs_by_rows(65536, 21846));
  EXPECT_EQ(runs_by_rows(65536, 16382, 4), kVectorRows);
  EXPECT_FALSE(runs_by_rows(65536, 16384, 4));
  EXPECT_FALSE(runs_by_rows(65536, 21846, 1));
}

}  // namespace
}  // namespace qvn
