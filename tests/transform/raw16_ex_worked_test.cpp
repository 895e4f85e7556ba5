/// QVN_Raw16ImageTransformEx against numbers worked out by hand, and by properties: what its record means,
/// the 16-bit outputs, crops of a 14-bit frame.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <cstring>
#include <vector>

#include "support/random.h"
#include "support/sizes.h"
#include "transform/frame_transforms.h"

namespace {

using support::numbers;
using transforms::Bytes;
using Words = std::vector<std::uint16_t>;

constexpr std::uint32_t kTargets[] = {0, 1, 2, 3, 5, 6, 7};

std::size_t pixel_bytes(std::uint32_t target) {
  constexpr std::size_t kBytes[] = {1, 3, 4, 1, 0, 2, 2, 6};
  return kBytes[target];
}

/// Host order, and big-endian whatever the host.
enum Order : std::uint32_t { kHost = 0, kBig = 1 };

/// Low-aligned samples of `bits`.
SampleFormatBlock low(std::uint32_t bits, Order order, std::uint32_t pattern) {
  return {0, 1, bits, order, pattern};
}

SampleFormatBlock top(Order order, std::uint32_t pattern) { return {0, 0, 0, order, pattern}; }

Bytes stored(const Words& samples, Order order) {
  Bytes bytes(2 * samples.size());
  std::memcpy(bytes.data(), samples.data(), bytes.size());
  if (order == kHost) return bytes;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    bytes[2 * i] = static_cast<std::uint8_t>(samples[i] >> 8);
    bytes[2 * i + 1] = static_cast<std::uint8_t>(samples[i] & 0xFF);
  }
  return bytes;
}

/// Whatever is not written stays 0xA5.
Bytes convert(std::uint32_t target, const SampleFormatBlock& block, const Bytes& src, std::uint32_t width,
              std::uint32_t height) {
  Bytes dst(pixel_bytes(target) * width * height, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw16ImageTransformEx(dst.data(), src.data(), width, height, target, &block));
  return dst;
}

Words words_of(const Bytes& bytes) {
  Words words(bytes.size() / 2);
  std::memcpy(words.data(), bytes.data(), bytes.size());
  return words;
}

/// The first pixel of the picture of one window, R G over G B unless the pattern says otherwise.
Words window(std::uint32_t target, const Words& samples) {
  Words all = words_of(convert(target, top(kBig, 0), stored(samples, kBig), 2, 2));
  all.resize(target == 7 ? 3 : 1);
  return all;
}

TEST(Raw16ImageTransformEx, TwelveBitsInEveryTarget) {
  // R 0x123, greens 0x45F and 0x46F, B 0x789. The mean of the whole greens is 0x4670, that of their top bytes
  // 0x45.
  const Bytes src = stored({0x123, 0x45F, 0x46F, 0x789}, kHost);
  const auto run = [&](std::uint32_t target) { return convert(target, low(12, kHost, 0), src, 2, 2); };
  EXPECT_EQ((Words{0x7890, 0x4670, 0x1230, 0, 0, 0, 0x7890, 0x4670, 0x1230, 0, 0, 0}), words_of(run(7)));
  EXPECT_EQ((Bytes{0x78, 0x45, 0x12, 0, 0, 0, 0x78, 0x45, 0x12, 0, 0, 0}), run(1));
  EXPECT_EQ((Bytes{0x78, 0x45, 0x12, 0xA5, 0, 0, 0, 0xA5, 0x78, 0x45, 0x12, 0xA5, 0, 0, 0, 0xA5}), run(2));
  // Bytes 18, 69, 120: 1386 + 10350 + 3480 = 15216; 12696 + 18 * 174 + 128 = 15956.
  EXPECT_EQ((Bytes{59, 0, 59, 0}), run(0));
  EXPECT_EQ((Bytes{62, 0, 62, 0}), run(3));
  // Words 4656, 18032, 30864: 358512 + 2704800 + 895056 = 3958368; 3317888 + 18 * 44832 + 128 = 4124992.
  EXPECT_EQ((Words{15462, 0, 15462, 0}), words_of(run(5)));
  EXPECT_EQ((Words{16113, 0, 16113, 0}), words_of(run(6)));
}

TEST(Raw16ImageTransformEx, OneWindowInEachPattern) {
  const Bytes src = stored({0x1000, 0x2000, 0x3000, 0x4000}, kBig);
  const auto first_pixel = [&](std::uint32_t pattern) {
    Words words = words_of(convert(7, top(kBig, pattern), src, 2, 2));
    words.resize(3);
    return words;
  };
  EXPECT_EQ((Words{0x4000, 0x2800, 0x1000}), first_pixel(0));  // R G over G B
  EXPECT_EQ((Words{0x2000, 0x2800, 0x3000}), first_pixel(1));  // G B over R G
  EXPECT_EQ((Words{0x3000, 0x2800, 0x2000}), first_pixel(2));  // G R over B G
  EXPECT_EQ((Words{0x1000, 0x2800, 0x4000}), first_pixel(3));  // B G over G R
}

TEST(Raw16ImageTransformEx, BitsAboveTheSampleFallOff) {
  const Bytes clean = stored({0x0123, 0x0456, 0x0459, 0x0789}, kBig);
  const Bytes dirty = stored({0xF123, 0x8456, 0x1459, 0xA789}, kBig);
  for (std::uint32_t target : kTargets) {
    EXPECT_EQ(convert(target, low(12, kBig, 0), clean, 2, 2), convert(target, low(12, kBig, 0), dirty, 2, 2));
    EXPECT_NE(convert(target, low(16, kBig, 0), clean, 2, 2), convert(target, low(16, kBig, 0), dirty, 2, 2));
  }
}

/// Sums of 24 bits, and a green mean of 17: 65535 * 150 = 9830250, 65535 * 184 + 128 = 12058568.
TEST(Raw16ImageTransformEx, WeightsOfSixteenBits) {
  EXPECT_EQ(Words{19711}, window(5, {65535, 0, 0, 0}));
  EXPECT_EQ(Words{38399}, window(5, {0, 65535, 65535, 0}));
  EXPECT_EQ(Words{7423}, window(5, {0, 0, 0, 65535}));
  EXPECT_EQ(Words{65535}, window(5, {65535, 65535, 65535, 65535}));
  EXPECT_EQ(Words{13824}, window(6, {65535, 0, 0, 0}));
  EXPECT_EQ(Words{47103}, window(6, {0, 65535, 65535, 0}));
  EXPECT_EQ(Words{4608}, window(6, {0, 0, 0, 65535}));
  EXPECT_EQ(Words{65535}, window(6, {65535, 65535, 65535, 65535}));
  EXPECT_EQ((Words{0, 65534, 0}), window(7, {0, 65535, 65534, 0}));
}

TEST(Raw16ImageTransformEx, GreyKeepsItsValueInSixteenBits) {
  constexpr std::uint32_t kWidth = 19;
  for (unsigned value = 0; value < 65536; value += value < 512 || value > 65000 ? 1 : 61) {
    const auto grey = static_cast<std::uint16_t>(value);
    const Bytes src = stored(Words(kWidth * 2, grey), kHost);
    for (std::uint32_t target : {5U, 6U, 7U}) {
      const std::size_t channels = pixel_bytes(target) / 2;
      const Words words = words_of(convert(target, top(kHost, 2), src, kWidth, 2));
      for (std::size_t i = 0; i < words.size(); ++i) {
        ASSERT_EQ(i / channels % kWidth == kWidth - 1 ? 0 : grey, words[i]) << "target " << target;
      }
    }
  }
}

TEST(Raw16ImageTransformEx, ShiftZeroBigEndianIsThePlainTransform) {
  for (std::uint32_t width : {70U, 71U}) {
    Bytes src(std::size_t{2} * width * 8);
    support::Random random(501);
    random.fill(src.data(), src.size());
    for (std::uint32_t pattern : numbers(0, 3)) {
      Bytes bgr(std::size_t{3} * width * 8);
      QVN_Raw16ToBGR(bgr.data(), src.data(), width, 8, pattern);
      EXPECT_EQ(bgr, convert(1, top(kBig, pattern), src, width, 8));
      QVN_Raw16ImageTransform(bgr.data(), src.data(), width, 8, 1, pattern);
      EXPECT_EQ(bgr, convert(1, top(kBig, pattern), src, width, 8));
      Bytes mono(std::size_t{width} * 8);
      QVN_Raw16ImageTransform(mono.data(), src.data(), width, 8, 3, pattern);
      EXPECT_EQ(mono, convert(3, top(kBig, pattern), src, width, 8));
    }
  }
}

TEST(Raw16ImageTransformEx, DepthIsIgnoredAtTheTop) {
  Bytes src(2 * 10 * 4);
  support::Random random(502);
  random.fill(src.data(), src.size());
  for (std::uint32_t target : kTargets) {
    const Bytes expected = convert(target, low(16, kHost, 1), src, 10, 4);
    for (std::uint32_t bits : {0U, 8U, 10U, 11U, 12U, 16U, 17U, 0xFFFFFFFFU}) {
      EXPECT_EQ(expected, convert(target, {7, 0, bits, kHost, 1}, src, 10, 4)) << "bits " << bits;
    }
  }
}

TEST(Raw16ImageTransformEx, OrdersDifferInTheReadingAlone) {
  Words samples(22 * 6);
  support::Random random(503);
  for (std::uint16_t& sample : samples) sample = static_cast<std::uint16_t>(random.next());
  for (std::uint32_t target : kTargets) {
    for (std::uint32_t bits : {16U, 15U, 14U, 13U, 12U, 10U}) {
      EXPECT_EQ(convert(target, low(bits, kHost, 2), stored(samples, kHost), 22, 6),
                convert(target, low(bits, kBig, 2), stored(samples, kBig), 22, 6));
    }
  }
}

TEST(Raw16ImageTransformEx, LastLineIsACopyOfTheLineAbove) {
  Bytes src(2 * 21 * 4);
  support::Random random(504);
  random.fill(src.data(), src.size());
  for (std::uint32_t target : kTargets) {
    const Bytes dst = convert(target, low(14, kHost, 3), src, 21, 4);
    const std::size_t line = pixel_bytes(target) * 21;
    EXPECT_EQ(0, std::memcmp(&dst[2 * line], &dst[3 * line], line));
  }
}

/// A frame as a sensor of 14 bits gives it, black level and noise over a slope, and its crops by a column, a
/// line and both, which begin with the three other orders: inside the borders they are the same picture.
TEST(Raw16ImageTransformEx, CropsOfA14BitFrameAgree) {
  constexpr std::uint32_t kWidth = 98;
  constexpr std::uint32_t kHeight = 34;
  support::Random random(505);
  Words samples;
  for (std::uint32_t y = 0; y < kHeight; ++y) {
    for (std::uint32_t x = 0; x < kWidth; ++x) {
      const std::uint32_t colour = (y & 1) * 2 + (x & 1);
      samples.push_back(
          static_cast<std::uint16_t>((600 + 97 * x + 41 * y + 2111 * colour + random.below(900)) & 0x3FFF));
    }
  }
  const Bytes frame = stored(samples, kHost);
  constexpr std::uint32_t kPublicPattern[2][2] = {{0, 2}, {1, 3}};  // by line and column of the crop
  for (std::uint32_t target : kTargets) {
    const std::size_t pixel = pixel_bytes(target);
    const Bytes whole = convert(target, low(14, kHost, 0), frame, kWidth, kHeight);
    for (std::uint32_t top_line : {0U, 1U}) {
      for (std::uint32_t left : {0U, 1U}) {
        const std::uint32_t width = kWidth - 2;
        const std::uint32_t height = kHeight - 2;
        const Bytes crop = transforms::crop_of(frame, 2, kWidth, left, top_line, width, height);
        const Bytes small =
            convert(target, low(14, kHost, kPublicPattern[top_line][left]), crop, width, height);
        for (std::size_t y = 0; y + 1 < height; ++y) {
          ASSERT_EQ(0, std::memcmp(&whole[((top_line + y) * kWidth + left) * pixel],
                                   &small[y * width * pixel], (width - 1) * pixel))
              << "target " << target << ", crop at line " << top_line << ", column " << left << ", line "
              << y;
        }
      }
    }
  }
}

}  // namespace
