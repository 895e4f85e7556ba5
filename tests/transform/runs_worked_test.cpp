/// The transforms of runs against numbers worked out by hand, and what each leaves alone.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <bit>
#include <cstring>
#include <vector>

#include "support/random.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;
using Library = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t);

/// Whatever is not written stays 0xA5.
Bytes convert(Library library, std::uint32_t target, const Bytes& src, std::uint32_t count,
              std::size_t dst_bytes) {
  Bytes dst(dst_bytes, 0xA5);
  EXPECT_EQ(QVN_OK, library(dst.data(), src.data(), count, target));
  return dst;
}

Bytes convert_ex(const SampleFormatBlock* format, std::uint32_t target, const Bytes& src,
                 std::size_t dst_bytes) {
  Bytes dst(dst_bytes, 0xA5);
  const auto count = static_cast<std::uint32_t>(src.size() / 2);
  EXPECT_EQ(QVN_OK, QVN_Y16ImageTransformEx(dst.data(), src.data(), count, target, format));
  return dst;
}

Words words_of(const Bytes& bytes) {
  Words words(bytes.size() / 2);
  std::memcpy(words.data(), bytes.data(), bytes.size());
  return words;
}

SampleFormatBlock format_of(std::uint32_t alignment, std::uint32_t bits, std::uint32_t order) {
  return {0, alignment, bits, order, 0};
}

TEST(RGB8ImageTransform, WhiteIs255UnderBothWeights) {
  EXPECT_EQ(Bytes{255}, convert(QVN_RGB8ImageTransform, 0, {255, 255, 255}, 1, 1));
  EXPECT_EQ(Bytes{255}, convert(QVN_RGB8ImageTransform, 3, {255, 255, 255}, 1, 1));
}

TEST(RGB8ImageTransform, WeightsOfTheChannels) {
  const Bytes primaries = {255, 0, 0, 0, 255, 0, 0, 0, 255};
  // 77 * 255 = 19635, 150 * 255 = 38250, 29 * 255 = 7395, cut.
  EXPECT_EQ((Bytes{76, 149, 28}), convert(QVN_RGB8ImageTransform, 0, primaries, 3, 3));
  // 54 * 255 + 128 = 13898, 184 * 255 + 128 = 47048, 18 * 255 + 128 = 4718.
  EXPECT_EQ((Bytes{54, 183, 18}), convert(QVN_RGB8ImageTransform, 3, primaries, 3, 3));
}

TEST(RGB8ImageTransform, Target3RoundsAndTarget0DoesNot) {
  // Red 5: 385 is 1 and 129 over; 54 * 5 + 128 = 398 is 1. Red 3: 231 is 0; 162 + 128 = 290 is 1.
  EXPECT_EQ((Bytes{1, 0}), convert(QVN_RGB8ImageTransform, 0, {5, 0, 0, 3, 0, 0}, 2, 2));
  EXPECT_EQ((Bytes{1, 1}), convert(QVN_RGB8ImageTransform, 3, {5, 0, 0, 3, 0, 0}, 2, 2));
}

TEST(RGB8ImageTransform, BgrAndBgraChangeTheOrder) {
  const Bytes src = {1, 2, 3, 11, 12, 13};
  EXPECT_EQ((Bytes{3, 2, 1, 13, 12, 11}), convert(QVN_RGB8ImageTransform, 1, src, 2, 6));
  EXPECT_EQ((Bytes{3, 2, 1, 0xA5, 13, 12, 11, 0xA5}), convert(QVN_RGB8ImageTransform, 2, src, 2, 8));
}

TEST(RGBA8ImageTransform, Target2CopiesAlpha) {
  EXPECT_EQ((Bytes{3, 2, 1, 4}), convert(QVN_RGBA8ImageTransform, 2, {1, 2, 3, 4}, 1, 4));
}

TEST(RGBA8ImageTransform, OtherTargetsDropAlpha) {
  const Bytes src = {255, 0, 0, 77, 0, 0, 255, 88};
  EXPECT_EQ((Bytes{76, 28}), convert(QVN_RGBA8ImageTransform, 0, src, 2, 2));
  EXPECT_EQ((Bytes{0, 0, 255, 255, 0, 0}), convert(QVN_RGBA8ImageTransform, 1, src, 2, 6));
  EXPECT_EQ((Bytes{54, 18}), convert(QVN_RGBA8ImageTransform, 3, src, 2, 2));
}

TEST(YUVImageTransform, WeightsApplyToTheClampedBytes) {
  // Y 255, U 255, V 255 gives blue 255, green 255 - 43 - 90 = 122, red 255: (255 * 106 + 122 * 150) >> 8 and
  // (255 * 72 + 122 * 184 + 128) >> 8. The sums before the clamp are 479, 122 and 433.
  const Bytes yuv444 = {255, 255, 255};
  EXPECT_EQ(Bytes{177}, convert(QVN_YUV444ImageTransform, 0, yuv444, 1, 1));
  EXPECT_EQ((Bytes{255, 122, 255}), convert(QVN_YUV444ImageTransform, 1, yuv444, 1, 3));
  EXPECT_EQ((Bytes{255, 122, 255, 0xA5}), convert(QVN_YUV444ImageTransform, 2, yuv444, 1, 4));
  EXPECT_EQ(Bytes{159}, convert(QVN_YUV444ImageTransform, 3, yuv444, 1, 1));
  // Y 0, U 0, V 0 gives green 44 + 91 = 135 alone: 20250 >> 8 and (24840 + 128) >> 8.
  EXPECT_EQ((Bytes{79, 79}), convert(QVN_YUV422ImageTransform, 0, {0, 0, 0, 0}, 2, 2));
  EXPECT_EQ((Bytes{97, 97, 97, 97}), convert(QVN_YUV411ImageTransform, 3, {0, 0, 0, 0, 0, 0}, 4, 4));
}

TEST(YUVImageTransform, PixelsTakeTheirLumaInOrder) {
  EXPECT_EQ((Bytes{10, 20}), convert(QVN_YUV422ImageTransform, 0, {128, 10, 128, 20}, 2, 2));
  EXPECT_EQ((Bytes{10, 20, 30, 40}), convert(QVN_YUV411ImageTransform, 3, {128, 10, 20, 128, 30, 40}, 4, 4));
}

TEST(YUVImageTransform, PartialGroupsAreLeftAlone) {
  const Bytes src(12, 128);
  EXPECT_EQ((Bytes{128, 128, 0xA5}), convert(QVN_YUV422ImageTransform, 0, src, 3, 3));
  EXPECT_EQ(Bytes(8, 0xA5), convert(QVN_YUV422ImageTransform, 2, src, 1, 8));
  EXPECT_EQ((Bytes{128, 128, 128, 128, 0xA5, 0xA5, 0xA5}), convert(QVN_YUV411ImageTransform, 3, src, 7, 7));
  EXPECT_EQ(Bytes(12, 0xA5), convert(QVN_YUV411ImageTransform, 1, src, 3, 12));
}

TEST(YUVImageTransform, GroupsOfBgraTakeFourBytesAPixel) {
  EXPECT_EQ((Bytes{10, 10, 10, 0xA5, 20, 20, 20, 0xA5}),
            convert(QVN_YUV422ImageTransform, 2, {128, 10, 128, 20}, 2, 8));
  EXPECT_EQ((Bytes{10, 10, 10, 0xA5, 20, 20, 20, 0xA5, 30, 30, 30, 0xA5, 40, 40, 40, 0xA5}),
            convert(QVN_YUV411ImageTransform, 2, {128, 10, 20, 128, 30, 40}, 4, 16));
}

TEST(YUVImageTransform, BgrIsThePlainConversion) {
  support::Random random(211);
  Bytes src(720);
  random.fill(src.data(), src.size());
  Bytes plain(3 * 480, 0xA5);
  QVN_YUV444ToBGR(plain.data(), src.data(), 240);
  EXPECT_EQ(plain, convert(QVN_YUV444ImageTransform, 1, src, 240, plain.size()));
  QVN_YUV422ToBGR(plain.data(), src.data(), 360);
  EXPECT_EQ(Bytes(plain.begin(), plain.begin() + 1080), convert(QVN_YUV422ImageTransform, 1, src, 360, 1080));
  QVN_YUV411ToBGR(plain.data(), src.data(), 480);
  EXPECT_EQ(plain, convert(QVN_YUV411ImageTransform, 1, src, 480, plain.size()));
}

TEST(Y8ImageTransform, EachTarget) {
  const Bytes src = {10, 20};
  EXPECT_EQ(src, convert(QVN_Y8ImageTransform, 0, src, 2, 2));
  EXPECT_EQ((Bytes{10, 10, 10, 20, 20, 20}), convert(QVN_Y8ImageTransform, 1, src, 2, 6));
  EXPECT_EQ((Bytes{10, 10, 10, 0xA5, 20, 20, 20, 0xA5}), convert(QVN_Y8ImageTransform, 2, src, 2, 8));
  EXPECT_EQ(src, convert(QVN_Y8ImageTransform, 3, src, 2, 2));
  EXPECT_EQ((Bytes{0, 10, 0, 20}), convert(QVN_Y8ImageTransform, 4, src, 2, 4));
}

/// The last pixel of an odd count has a group without a second pixel, at every length a vector may have.
TEST(Y8ImageTransform, OddCountsOf422LeaveTheLastByte) {
  EXPECT_EQ((Bytes{0, 10, 0, 0xA5}), convert(QVN_Y8ImageTransform, 4, {10}, 1, 4));
  EXPECT_EQ((Bytes{0, 10, 0, 20, 0, 30, 0, 0xA5, 0xA5}),
            convert(QVN_Y8ImageTransform, 4, {10, 20, 30}, 3, 9));
  support::Random random(212);
  for (std::uint32_t count = 1; count < 300; count += 2) {
    Bytes src(count);
    random.fill(src.data(), src.size());
    Bytes expected(std::size_t{2} * count + 40, 0xA5);
    for (std::size_t i = 0; i < count; ++i) {
      expected[2 * i] = 0;
      expected[2 * i + 1] = src[i];
    }
    expected[std::size_t{2} * count] = 0;
    ASSERT_EQ(expected, convert(QVN_Y8ImageTransform, 4, src, count, expected.size())) << "count " << count;
  }
}

TEST(Y16ImageTransform, PushesRedAndBlueBeforeTheWeights) {
  const auto bgr = [](std::uint8_t h, std::uint8_t l) {
    return convert(QVN_Y16ImageTransform, 1, {h, l}, 1, 3);
  };
  EXPECT_EQ((Bytes{255, 255, 255}), bgr(0xFF, 0xFF));
  EXPECT_EQ((Bytes{0x11, 0x10, 0x11}), bgr(0x10, 0xC0));
  EXPECT_EQ((Bytes{0x10, 0x10, 0x11}), bgr(0x10, 0x80));
  EXPECT_EQ((Bytes{0x11, 0x10, 0x10}), bgr(0x10, 0x40));
  EXPECT_EQ((Bytes{0x10, 0x10, 0x10}), bgr(0x10, 0x3F));
  EXPECT_EQ((Bytes{0x11, 0x10, 0x11, 0xA5}), convert(QVN_Y16ImageTransform, 2, {0x10, 0xC0}, 1, 4));
}

/// The weights see the pushed channels, but 77 + 29 of 256, and 54 + 18 with 128 for the rounding, never
/// reach the next value.
TEST(Y16ImageTransform, PushesDoNotShowInMono) {
  for (unsigned h = 0; h < 256; ++h) {
    for (std::uint8_t l : Bytes{0x00, 0x40, 0x80, 0xC0, 0xFF}) {
      const Bytes src = {static_cast<std::uint8_t>(h), l};
      EXPECT_EQ(Bytes{src[0]}, convert(QVN_Y16ImageTransform, 0, src, 1, 1));
      EXPECT_EQ(Bytes{src[0]}, convert(QVN_Y16ImageTransform, 3, src, 1, 1));
    }
  }
}

TEST(Y16ImageTransform, BgrIsThePlainConversion) {
  support::Random random(213);
  Bytes src(2 * 300);
  random.fill(src.data(), src.size());
  Bytes plain(3 * 300);
  QVN_Y16ToBGR(plain.data(), src.data(), 300);
  EXPECT_EQ(plain, convert(QVN_Y16ImageTransform, 1, src, 300, plain.size()));
}

TEST(Y12ImageTransform, TakesTheOuterBytesOfAGroup) {
  const Bytes src = {0xAB, 0xCD, 0xEF};
  EXPECT_EQ((Bytes{0xAB, 0xEF}), convert(QVN_Y12ImageTransform, 0, src, 2, 2));
  EXPECT_EQ((Bytes{0xAB, 0xAB, 0xAB, 0xEF, 0xEF, 0xEF}), convert(QVN_Y12ImageTransform, 1, src, 2, 6));
  EXPECT_EQ((Bytes{0xAB, 0xAB, 0xAB, 0xA5, 0xEF, 0xEF, 0xEF, 0xA5}),
            convert(QVN_Y12ImageTransform, 2, src, 2, 8));
  EXPECT_EQ((Bytes{0xAB, 0xEF}), convert(QVN_Y12ImageTransform, 3, src, 2, 2));
}

TEST(Y16ImageTransformEx, WithoutARecordTheFirstByte) {
  EXPECT_EQ((Bytes{0x12, 0x56}), convert_ex(nullptr, 0, {0x12, 0x34, 0x56, 0x78}, 2));
  EXPECT_EQ((Words{0x1234, 0x5678}), words_of(convert_ex(nullptr, 5, {0x12, 0x34, 0x56, 0x78}, 4)));
}

Bytes host_bytes(const Words& words) {
  Bytes bytes(2 * words.size());
  std::memcpy(bytes.data(), words.data(), bytes.size());
  return bytes;
}

TEST(Y16ImageTransformEx, HostOrderAtTheTop) {
  const SampleFormatBlock format = format_of(0, 0, 0);
  EXPECT_EQ((Bytes{0x12, 0x56}), convert_ex(&format, 0, host_bytes({0x1234, 0x5678}), 2));
  EXPECT_EQ((Words{0x1234, 0x5678}), words_of(convert_ex(&format, 6, host_bytes({0x1234, 0x5678}), 4)));
  if (std::endian::native != std::endian::little) return;
  EXPECT_EQ((Bytes{0x34, 0x78}), convert_ex(&format, 0, {0x12, 0x34, 0x56, 0x78}, 2)) << "the second byte";
}

TEST(Y16ImageTransformEx, TwelveBitsMoveUp) {
  const SampleFormatBlock format = format_of(1, 12, 0);
  const Bytes src = host_bytes({0x0ABC});
  EXPECT_EQ(Words{0xABC0}, words_of(convert_ex(&format, 5, src, 2)));
  EXPECT_EQ(Bytes{0xAB}, convert_ex(&format, 0, src, 1));
  EXPECT_EQ((Bytes{0xAB, 0xAB, 0xAB, 0xA5}), convert_ex(&format, 2, src, 4));
  EXPECT_EQ((Words{0xABC0, 0xABC0, 0xABC0}), words_of(convert_ex(&format, 7, src, 6)));
}

TEST(Y16ImageTransformEx, BitsAboveTheSampleFallOff) {
  const SampleFormatBlock format = format_of(1, 12, 1);
  EXPECT_EQ(Words{0xABC0}, words_of(convert_ex(&format, 6, {0xFA, 0xBC}, 2)));
  EXPECT_EQ(Bytes{0xAB}, convert_ex(&format, 3, {0xFA, 0xBC}, 1));
}

TEST(Y16ImageTransformEx, NothingIsPushedOrRounded) {
  EXPECT_EQ((Bytes{0x10, 0x10, 0x10}), convert_ex(nullptr, 1, {0x10, 0xFF}, 3));
}

TEST(Y16ImageTransformEx, SixteenBitsAreTheTopAlignment) {
  const SampleFormatBlock low = format_of(1, 16, 1);
  const SampleFormatBlock top = format_of(0, 9, 1);
  support::Random random(214);
  Bytes src(2 * 100);
  random.fill(src.data(), src.size());
  for (std::uint32_t target : {0U, 1U, 2U, 3U, 5U, 6U, 7U}) {
    EXPECT_EQ(convert_ex(&low, target, src, 600), convert_ex(&top, target, src, 600));
    EXPECT_EQ(convert_ex(nullptr, target, src, 600), convert_ex(&top, target, src, 600));
  }
}

}  // namespace
