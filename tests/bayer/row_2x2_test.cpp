// The rows of 2x2 windows: vectors against one pixel at a time, for every length, phase and alignment.
#include "bayer/row_2x2.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "pixel/yuv.h"

namespace qvn {
namespace {

constexpr size_t kLongest = 300, kMargin = 8;

template <class Fetch, class Put>
void compare_rows() {
  std::mt19937 random(20);
  std::vector<uint8_t> red(2 * (kLongest + 1) + 8), blue(red.size());
  for (size_t i = 0; i < red.size(); ++i) {
    red[i] = static_cast<uint8_t>(random());
    blue[i] = static_cast<uint8_t>(random());
  }
  const size_t out_bytes = kLongest * Put::kPixelBytes + 2 * kMargin;
  for (uint32_t phase = 0; phase < 2; ++phase) {
    for (size_t n = 0; n <= kLongest; ++n) {
      const CellLine line{red.data() + n % 4, blue.data() + n / 4 % 4, phase};
      std::vector<uint8_t> plain(out_bytes, 0xC3), vectors(out_bytes, 0xC3);
      row_2x2_plain<Fetch>(PackedPixels<Put>{plain.data() + kMargin}, line, 0, n);
      row_2x2<Fetch>(PackedPixels<Put>{vectors.data() + kMargin}, line, n);
      ASSERT_EQ(plain, vectors) << "n " << n << ", column phase " << phase;
    }
  }
}

TEST(Row2x2, Raw8ToBgr) { compare_rows<FetchRaw8, PutBgr>(); }
TEST(Row2x2, Raw8ToY8) { compare_rows<FetchRaw8, PutY8>(); }
TEST(Row2x2, Raw8ToY8Rounded) { compare_rows<FetchRaw8, PutY8Rounded>(); }
TEST(Row2x2, Raw8ToGreyBgr) { compare_rows<FetchRaw8, PutGreyBgr>(); }
TEST(Row2x2, Raw8ToYuv444) { compare_rows<FetchRaw8, PutYuv444>(); }
TEST(Row2x2, Raw16ToBgr) { compare_rows<FetchRaw16TopByte, PutBgr>(); }
TEST(Row2x2, Raw12ToBgr) { compare_rows<FetchRaw12TopByte, PutBgr>(); }
TEST(Row2x2, Raw12ToY8) { compare_rows<FetchRaw12TopByte, PutY8>(); }

// R G1 over G2 B with samples that name their places.
TEST(Row2x2, WindowTakesItsFourSamples) {
  const uint8_t upper[] = {10, 20, 30, 40}, lower[] = {50, 61, 70, 80};
  const Rgb<uint32_t> even = window_2x2<FetchRaw8>({upper, lower, 0}, 0);
  EXPECT_EQ(even.r, 10u);
  EXPECT_EQ(even.g, (20u + 50u) / 2);
  EXPECT_EQ(even.b, 61u);
  const Rgb<uint32_t> odd = window_2x2<FetchRaw8>({upper, lower, 0}, 1);
  EXPECT_EQ(odd.r, 30u);
  EXPECT_EQ(odd.g, (20u + 70u) / 2);
  EXPECT_EQ(odd.b, 61u);
}

}  // namespace
}  // namespace qvn
