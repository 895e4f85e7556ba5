/// The rows of the convert room: vectors against one pixel at a time, for every length and alignment, apart
/// and in place. Blocks are exactly as long as the rows may read and write.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "convert/mono_rgb.h"
#include "convert/planes.h"
#include "convert/yuv_rows.h"
#include "convert/yuv_to_bgr.h"
#include "pixel/aligned_run.h"
#include "pixel/put.h"
#include "support/guard.h"
#include "support/random.h"

namespace qvn {
namespace {

constexpr size_t kLongest = 300;

using Row = void (*)(uint8_t* dst, const uint8_t* src, size_t n);

template <class Layout, class Arithmetic>
void yuv_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n) {
  yuv_row_plain<Layout, Arithmetic>(PackedOutput<PutBgr>{dst}, src, 0, n);
}

template <SampleOrder order, uint32_t bits>
void y16_to_bgr_of(uint8_t* dst, const uint8_t* src, size_t n) {
  y16_to_bgr(dst, src, n, order, bits == 0 ? kCutTopByte : cut_low_aligned(bits));
}
template <SampleOrder order, uint32_t bits>
void y16_to_bgr_plain_of(uint8_t* dst, const uint8_t* src, size_t n) {
  y16_to_bgr_plain(dst, src, n, order, bits == 0 ? kCutTopByte : cut_low_aligned(bits));
}
template <SampleOrder order, uint32_t bits>
void y16_to_y8_of(uint8_t* dst, const uint8_t* src, size_t n) {
  y16_to_y8(dst, src, n, order, bits == 0 ? kCutTopByte : cut_low_aligned(bits));
}
template <SampleOrder order, uint32_t bits>
void y16_to_y8_plain_of(uint8_t* dst, const uint8_t* src, size_t n) {
  y16_to_y8_plain(dst, src, n, order, bits == 0 ? kCutTopByte : cut_low_aligned(bits));
}

struct RowCase {
  const char* name;
  Row row, plain;
  size_t group_pixels, group_bytes, pixel_bytes;
  bool in_place;
};

void PrintTo(const RowCase& row, std::ostream* out) { *out << row.name; }

constexpr auto kBig = SampleOrder::kBigEndian;
constexpr auto kLittle = SampleOrder::kLittleEndian;

const RowCase kRows[] = {
    {"yuv444_to_bgr", yuv444_to_bgr, yuv_to_bgr_plain<Yuv444, PackedChroma>, 1, 3, 3, true},
    {"yuv422_to_bgr", yuv422_to_bgr, yuv_to_bgr_plain<Yuv422, PackedChroma>, 2, 4, 3, false},
    {"yuv411_to_bgr", yuv411_to_bgr, yuv_to_bgr_plain<Yuv411, PackedChroma>, 4, 6, 3, false},
    {"rgb8_to_bgr", rgb8_to_bgr, rgb8_to_bgr_plain, 1, 3, 3, true},
    {"rgb8_to_y8", rgb8_to_y8, rgb8_to_y8_plain, 1, 3, 1, true},
    {"y8_to_bgr", y8_to_bgr, y8_to_bgr_plain, 1, 1, 3, false},
    {"y16_to_bgr_top", y16_to_bgr_of<kBig, 0>, y16_to_bgr_plain_of<kBig, 0>, 1, 2, 3, false},
    {"y16_to_bgr_12", y16_to_bgr_of<kLittle, 12>, y16_to_bgr_plain_of<kLittle, 12>, 1, 2, 3, false},
    {"y16_to_bgr_8", y16_to_bgr_of<kBig, 8>, y16_to_bgr_plain_of<kBig, 8>, 1, 2, 3, false},
    {"y16_to_bgr_24", y16_to_bgr_of<kLittle, 24>, y16_to_bgr_plain_of<kLittle, 24>, 1, 2, 3, false},
    {"y16_to_y8_top", y16_to_y8_of<kBig, 0>, y16_to_y8_plain_of<kBig, 0>, 1, 2, 1, true},
    {"y16_to_y8_10", y16_to_y8_of<kLittle, 10>, y16_to_y8_plain_of<kLittle, 10>, 1, 2, 1, true},
    {"y16_to_y8_23", y16_to_y8_of<kBig, 23>, y16_to_y8_plain_of<kBig, 23>, 1, 2, 1, true},
};

class ConvertRow : public testing::TestWithParam<RowCase> {};

TEST_P(ConvertRow, EqualsThePlainRowForEveryLength) {
  const RowCase& row = GetParam();
  support::Random random(1);
  for (size_t n = 0; n <= kLongest; ++n) {
    for (const support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
      const size_t src_bytes = n / row.group_pixels * row.group_bytes, dst_bytes = n * row.pixel_bytes;
      support::GuardedBuffer src(src_bytes, flush), dst(dst_bytes, flush);
      random.fill(src.data(), src_bytes);
      random.fill(dst.data(), dst_bytes);
      std::vector<uint8_t> expected(dst.data(), dst.data() + dst_bytes);
      row.plain(expected.data(), src.data(), n);
      row.row(dst.data(), src.data(), n);
      ASSERT_EQ(std::vector<uint8_t>(dst.data(), dst.data() + dst_bytes), expected) << "n " << n;
    }
  }
}

TEST_P(ConvertRow, WorksInPlace) {
  const RowCase& row = GetParam();
  if (!row.in_place) GTEST_SKIP() << "not in place";
  support::Random random(2);
  for (size_t n = 0; n <= kLongest; ++n) {
    std::vector<uint8_t> src(n * row.group_bytes + 4);
    random.fill(src.data(), src.size());
    for (size_t offset = 0; offset < 4; ++offset) {
      std::vector<uint8_t> buffer(src), expected(src);
      row.plain(expected.data() + offset, src.data() + offset, n);
      row.row(buffer.data() + offset, buffer.data() + offset, n);
      ASSERT_EQ(buffer, expected) << "n " << n;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, ConvertRow, testing::ValuesIn(kRows),
                         [](const auto& info) { return std::string(info.param.name); });

/// Every colour in rows that share their red and green, few of which have a whole luma; and rows of grey,
/// where every pixel has one. Rows are longer than 256 pixels, since their ends are not made in vectors.
TEST(Rgb8ToY8, EveryColour) {
  constexpr size_t kPixels = 384;
  std::vector<uint8_t> src(3 * kPixels), expected(kPixels), actual(kPixels);
  for (size_t line = 0; line < 0x10000; ++line) {
    for (size_t x = 0; x < kPixels; ++x) {
      src[3 * x] = static_cast<uint8_t>(line >> 8);
      src[3 * x + 1] = static_cast<uint8_t>(line);
      src[3 * x + 2] = static_cast<uint8_t>(x);
    }
    rgb8_to_y8_plain(expected.data(), src.data(), kPixels);
    rgb8_to_y8(actual.data(), src.data(), kPixels);
    ASSERT_EQ(expected, actual) << line;
  }
  for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<uint8_t>(i / 3);
  rgb8_to_y8_plain(expected.data(), src.data(), kPixels);
  rgb8_to_y8(actual.data(), src.data(), kPixels);
  EXPECT_EQ(expected, actual);
}

/// Rows of several strips, with stretches of grey among noise, apart and in place.
TEST(Rgb8ToY8, LongRows) {
  support::Random random(4);
  for (const size_t n : {2047U, 2082U, 2113U, 4160U, 7001U}) {
    std::vector<uint8_t> src(3 * n), expected(n), actual(n);
    random.fill(src.data(), src.size());
    for (size_t i = 0; i < src.size(); ++i) {
      if (i / 300 % 3 == 0) src[i] = static_cast<uint8_t>(i / 3);
    }
    rgb8_to_y8_plain(expected.data(), src.data(), n);
    rgb8_to_y8(actual.data(), src.data(), n);
    ASSERT_EQ(actual, expected) << n;
    rgb8_to_y8(src.data(), src.data(), n);
    src.resize(n);
    ASSERT_EQ(src, expected) << n;
  }
}

/// Every sample, for every number of bits that a shift count tells apart.
TEST(SampleCut, EverySampleForEveryNumberOfBits) {
  constexpr size_t kSamples = 65536;
  std::vector<uint8_t> src(2 * kSamples), expected(3 * kSamples), actual(3 * kSamples);
  for (size_t i = 0; i < kSamples; ++i) {
    src[2 * i] = static_cast<uint8_t>(i >> 8);
    src[2 * i + 1] = static_cast<uint8_t>(i);
  }
  for (uint32_t bits = 0; bits < 32; ++bits) {
    const SampleCut cut = cut_low_aligned(bits);
    for (const SampleOrder order : {kBig, kLittle}) {
      y16_to_bgr_plain(expected.data(), src.data(), kSamples, order, cut);
      y16_to_bgr(actual.data(), src.data(), kSamples, order, cut);
      ASSERT_EQ(expected, actual) << bits;
      y16_to_y8_plain(expected.data(), src.data(), kSamples, order, cut);
      y16_to_y8(actual.data(), src.data(), kSamples, order, cut);
      ASSERT_EQ(expected, actual) << bits;
    }
  }
}

TEST(SampleCut, BitsBelowTheCut) {
  const auto expect = [](uint32_t bits, uint32_t shift, uint32_t mask, uint32_t round, uint32_t drop) {
    const SampleCut cut = cut_low_aligned(bits);
    EXPECT_EQ(cut.byte_mask, mask) << bits;
    if (mask != 0) {
      EXPECT_EQ(cut.shift, shift) << bits;
    }
    EXPECT_EQ(cut.roundBit, round) << bits;
    EXPECT_EQ(cut.dropBit, drop) << bits;
  };
  expect(16, 8, 0xFF, 0x80, 0x40);
  expect(12, 4, 0xFF, 8, 4);
  expect(8, 0, 0xFF, 0, 0);
  expect(9, 1, 0xFF, 1, 0);
  expect(40, 0, 0xFF, 0, 0);
  expect(23, 15, 0xFF, 0x4000, 0x2000);
  expect(24, 16, 0, 0x8000, 0x4000);
  expect(25, 17, 0, 0, 0x8000);
  expect(26, 18, 0, 0, 0);
  expect(7, 31, 0, 0, 0);
  expect(0, 24, 0, 0, 0);
}

using PlaneRow = void (*)(const Planes& planes, const uint8_t* src, size_t n);

/// Shifting one plane onto another sends a row the slow way: the other planes then show the plain row. Long
/// rows begin at every place in a line of cache.
void compare_with_the_slow_way(PlaneRow row, size_t group_pixels, size_t group_bytes) {
  support::Random random(3);
  for (size_t n = 0; n <= kAlignedPixels + 150; ++n) {
    if (n == kLongest) n = kAlignedPixels - 2;
    const size_t src_bytes = n / group_pixels * group_bytes;
    support::GuardedBuffer src(src_bytes, support::Flush::kEnd);
    random.fill(src.data(), src_bytes);
    support::GuardedBuffer r(n, support::Flush::kEnd), g(n, support::Flush::kEnd), b(n, support::Flush::kEnd),
        y(n, support::Flush::kEnd);
    std::vector<uint8_t> slow_r(n), slow_g(n), slow_b(n), slow_y(n), scrap(n);
    row({slow_r.data(), scrap.data(), scrap.data(), nullptr}, src.data(), n);
    row({scrap.data(), slow_g.data(), scrap.data(), nullptr}, src.data(), n);
    row({scrap.data(), scrap.data(), slow_b.data(), nullptr}, src.data(), n);
    for (const bool with_luma : {false, true}) {
      row({r.data(), g.data(), b.data(), with_luma ? y.data() : nullptr}, src.data(), n);
      ASSERT_TRUE(std::equal(slow_r.begin(), slow_r.end(), r.data())) << n;
      ASSERT_TRUE(std::equal(slow_g.begin(), slow_g.end(), g.data())) << n;
      ASSERT_TRUE(std::equal(slow_b.begin(), slow_b.end(), b.data())) << n;
    }
  }
}

TEST(PlaneRow, Yuv444) { compare_with_the_slow_way(yuv444_to_planes, 1, 3); }
TEST(PlaneRow, Yuv422) { compare_with_the_slow_way(yuv422_to_planes, 2, 4); }
TEST(PlaneRow, Yuv411) { compare_with_the_slow_way(yuv411_to_planes, 4, 6); }
TEST(PlaneRow, Rgb8) { compare_with_the_slow_way(rgb8_to_planes, 1, 3); }

}  // namespace
}  // namespace qvn
