/// The demosaics of packed 12-bit frames against numbers worked out by hand: the packing, top bytes and whole
/// samples, the half last line, and the rules of the corrections at both widths.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"

namespace {

using support::Correction;
using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

constexpr std::uint16_t kMarker = 0xA55A;

/// Packs samples by pairs: the top byte of the first, both low nibbles, the top byte of the second.
Bytes packed(const Words& samples) {
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(samples[i] >> 4));
    bytes.push_back(static_cast<std::uint8_t>((samples[i] & 15) | (samples[i + 1] & 15) << 4));
    bytes.push_back(static_cast<std::uint8_t>(samples[i + 1] >> 4));
  }
  return bytes;
}

Bytes flat(std::uint16_t sample, std::size_t count) { return packed(Words(count, sample)); }

Bytes bgr(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern) {
  Bytes dst(std::size_t{3} * width * height, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw12ToBGR(dst.data(), src.data(), width, height, pattern));
  return dst;
}

Words bgr16(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern) {
  Words dst(std::size_t{3} * width * height, kMarker);
  EXPECT_EQ(QVN_OK, QVN_Raw12ToBGR16(dst.data(), src.data(), width, height, pattern));
  return dst;
}

Bytes bgr_cc(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
             const Correction& correction) {
  Bytes dst(std::size_t{3} * width * height, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw12ToBGR_CC(dst.data(), src.data(), width, height, pattern,
                                      support::as_correction(correction.get())));
  return dst;
}

Words bgr16_cc(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
               const Correction& correction) {
  Words dst(std::size_t{3} * width * height, kMarker);
  EXPECT_EQ(QVN_OK, QVN_Raw12ToBGR16_CC(dst.data(), src.data(), width, height, pattern,
                                        support::as_correction(correction.get())));
  return dst;
}

/// A line, and half a line behind it: what a frame of two lines holds of its last one.
Words and_half(Words line, std::size_t pixels) {
  const Words copy = line;
  line.insert(line.end(), copy.begin(), copy.begin() + static_cast<std::ptrdiff_t>(3 * pixels / 2));
  line.resize(6 * pixels, kMarker);
  return line;
}

Bytes twice(Bytes line) {
  const Bytes copy = line;
  line.insert(line.end(), copy.begin(), copy.end());
  return line;
}

/// 0xAB, 0xCD, 0xEF hold 0xABD and 0xEFC.
TEST(Raw12, AGroupHoldsTwoSamples) {
  EXPECT_EQ((Bytes{0xAB, 0xCD, 0xEF}), packed({0xABD, 0xEFC}));
  const Bytes src = {0xAB, 0xCD, 0xEF, 0xAB, 0xCD, 0xEF, 0, 0, 0, 0, 0, 0};
  // R G over G B: the lower line is black, so green is half of the odd sample.
  const Words words = bgr16(src, 4, 2, 0);
  EXPECT_EQ((Words{0, 0xEFC / 2, 0xABD, 0, 0xEFC / 2, 0xABD}), Words(words.begin(), words.begin() + 6));
  const Bytes bytes = bgr(src, 4, 2, 0);
  EXPECT_EQ((Bytes{0, 0xEF / 2, 0xAB, 0, 0xEF / 2, 0xAB}), Bytes(bytes.begin(), bytes.begin() + 6));
  // G R over B G, and B G over G R, where the even sample is blue.
  EXPECT_EQ(0xEFC, bgr16(src, 4, 2, 2)[2]);
  EXPECT_EQ(0xABD, bgr16(src, 4, 2, 3)[0]);
  EXPECT_EQ(0xEFC / 2, bgr16(src, 4, 2, 3)[1]);
  EXPECT_EQ(0xEFC, bgr16(src, 4, 2, 1)[0]);
}

TEST(Raw12ToBGR, LowNibblesAreNotRead) {
  Bytes src = flat(0x123, 8);
  const Bytes before = bgr(src, 4, 2, 0);
  EXPECT_EQ(Bytes(24, 0x12), before);
  for (std::size_t i = 1; i < src.size(); i += 3) src[i] = 0xFF;
  EXPECT_EQ(before, bgr(src, 4, 2, 0));
}

TEST(Raw12ToBGR, ComputesTheColumnBeforeTheLast) {
  // Top bytes 10 20 30 40 over 50 61 72 83, R G over G B.
  const Bytes src = packed({0x0A0, 0x140, 0x1E0, 0x280, 0x320, 0x3D0, 0x480, 0x530});
  EXPECT_EQ(twice({61, 35, 10, 61, 46, 30, 83, 56, 30, 83, 56, 30}), bgr(src, 4, 2, 0));
}

TEST(Raw12ToBGR, WidthTwo) {
  const Bytes src = packed({0x0A0, 0x140, 0x1F0, 0x280});
  EXPECT_EQ((Bytes{40, 25, 10, 40, 25, 10, 40, 25, 10, 40, 25, 10}), bgr(src, 2, 2, 0));
}

TEST(Raw12ToBGR16, WordsAreNotScaled) {
  EXPECT_EQ(and_half(Words(18, 4095), 6), bgr16(flat(4095, 12), 6, 2, 0));
}

TEST(Raw12ToBGR16, ComputesTheColumnBeforeTheLastAndHalfOfTheLastLine) {
  const Bytes src = packed({1000, 2000, 3000, 4000, 500, 601, 702, 803});
  // (1000 2000 / 500 601), (2000 3000 / 601 702), (3000 4000 / 702 803); the last pixel is a copy, and the
  // last line holds the first two pixels.
  EXPECT_EQ((Words{601, 1250, 1000, 601, 1351, 3000, 803,     2351,    3000,    803,     2351,    3000,  //
                   601, 1250, 1000, 601, 1351, 3000, kMarker, kMarker, kMarker, kMarker, kMarker, kMarker}),
            bgr16(src, 4, 2, 0));
}

TEST(Raw12ToBGR16, TheRightHalfOfTheLastLineKeepsItsBytes) {
  for (std::uint32_t height : {2U, 3U, 8U}) {
    const Words dst = bgr16(flat(1234, std::size_t{8} * height), 8, height, 2);
    Words expected(std::size_t{24} * height, 1234);
    for (std::size_t i = expected.size() - 12; i < expected.size(); ++i) expected[i] = kMarker;
    EXPECT_EQ(expected, dst);
  }
}

/// Width 5 has lines of two groups in the source, so the fifth sample is the next line's first, and writes
/// six pixels a line.
TEST(Raw12ToBGR, OddWidthsDropASampleAndDrift) {
  // Top bytes: 10 20 30 40 | 50 60 70 80 | 90 ..., as lines of four samples with a window across.
  const Bytes src = packed({0x0A0, 0x140, 0x1E0, 0x280, 0x320, 0x3C0, 0x460, 0x500, 0x5A0, 0x640});
  Bytes dst(36, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw12ToBGR(dst.data(), src.data(), 5, 2, 0));
  const Bytes expected = {60,   35,   10,  60, 45, 30, 80, 55, 30, 80,  65, 50, 100, 75, 50,
                          100,  75,   50,                                                     // six
                          60,   45,   30,  80, 55, 30, 80, 65, 50, 100, 75, 50, 100, 75, 50,  // the last five
                          0xA5, 0xA5, 0xA5};
  EXPECT_EQ(expected, dst);
}

TEST(Raw12ToBGR_CC, AFixedIdentityPassesTopBytes) {
  const Correction identity = Correction::fixed_matrix(3, support::kFixedIdentity);
  for (std::uint32_t value = 0; value < 4096; value += 15) {
    const Bytes src = flat(static_cast<std::uint16_t>(value), 8);
    ASSERT_EQ(Bytes(24, static_cast<std::uint8_t>(value >> 4)), bgr_cc(src, 4, 2, 0, identity));
  }
}

TEST(Raw12ToBGR_CC, TheFixedMatrixSaturatesOnlyAboveSixteenBits) {
  const auto red = [](std::uint8_t byte, std::int32_t factor) {
    return bgr_cc(flat(static_cast<std::uint16_t>(byte << 4), 8), 4, 2, 0,
                  Correction::fixed_matrix(3, {factor, 0, 0, 0, 1024, 0, 0, 0, 1024}))[2];
  };
  EXPECT_EQ(144, red(200, 2048));  // 400
  EXPECT_EQ(44, red(150, 2048));   // 300
  EXPECT_EQ(0, red(128, 2048));    // 256
  EXPECT_EQ(255, red(255, 1024));
  EXPECT_EQ(255, red(1, 0x3FFFFFF));  // 65535
  EXPECT_EQ(255, red(1, 0x4000000));  // 65536
  EXPECT_EQ(254, red(1, 0x3FFF800));  // 65534
  EXPECT_EQ(0, red(1, -1));
  EXPECT_EQ(0, red(200, -2048));
}

TEST(Raw12ToBGR_CC, TheWordTableIsReadAsBytes) {
  // Words 0x0100, 0x0302, 0x0504 ...: as bytes in memory order, low byte first, each byte is its own index,
  // which a host with the other byte order sees the other way about.
  Words table(128);
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = static_cast<std::uint16_t>((2 * i + 1) << 8 | (2 * i));
  const Correction words = Correction::words(table, table.size());
  const bool little = words.storage()[0] == 0;
  for (std::uint32_t value = 0; value < 256; ++value) {
    const Bytes src = flat(static_cast<std::uint16_t>(value << 4 | 7), 8);
    const auto expected = static_cast<std::uint8_t>(little ? value : value ^ 1);
    ASSERT_EQ(Bytes(24, expected), bgr_cc(src, 4, 2, 0, words)) << value;
  }
}

TEST(Raw12ToBGR_CC, EachPixelIsCorrectedOnce) {
  // 128 of 256, squared: 64 everywhere, in the kept channel, the last column and the last line too.
  for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
    EXPECT_EQ(Bytes(36, 64), bgr_cc(flat(128 << 4, 12), 6, 2, pattern, Correction::gamma(2, 256)));
  }
}

TEST(Raw12ToBGR16_CC, EachPixelIsCorrectedOnce) {
  for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
    // 1024 of 4096 is a quarter, its square 256 of 4096.
    EXPECT_EQ(and_half(Words(18, 256), 6),
              bgr16_cc(flat(1024, 12), 6, 2, pattern, Correction::gamma(2, 4096)));
  }
}

TEST(Raw12ToBGR16_CC, TheFixedMatrixSaturatesAtSixteenBits) {
  const auto red = [](std::uint16_t sample, std::int32_t factor) {
    return bgr16_cc(flat(sample, 8), 4, 2, 0,
                    Correction::fixed_matrix(3, {factor, 0, 0, 0, 1024, 0, 0, 0, 1024}))[2];
  };
  EXPECT_EQ(65535, red(4000, 20 * 1024));
  EXPECT_EQ(64000, red(4000, 16 * 1024));
  EXPECT_EQ(8190, red(4095, 2048));  // no clamp at 4095
  EXPECT_EQ(0, red(4000, -1));
}

TEST(Raw12ToBGR16_CC, TheFloatMatrixWraps) {
  const auto red = [](std::uint16_t sample, float factor) {
    return bgr16_cc(flat(sample, 8), 4, 2, 0,
                    Correction::floats(1, {factor, 0, 0, 0, 1, 0, 0, 0, 1}, 0, 0))[2];
  };
  EXPECT_EQ(6000, red(4000, 1.5F));
  EXPECT_EQ(65535, red(1, -1.5F));
  EXPECT_EQ(0, red(1, -0.5F));
  EXPECT_EQ(80000 - 65536, red(4000, 20));
}

TEST(Raw12ToBGR16_CC, TheTableIsIndexedByTheWholeSample) {
  Words table(4096);
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<std::uint16_t>(65535 - 16 * i);
  const Correction negative = Correction::words(table, table.size());
  EXPECT_EQ(and_half(Words(12, 65535), 4), bgr16_cc(flat(0, 8), 4, 2, 0, negative));
  EXPECT_EQ(and_half(Words(12, 15), 4), bgr16_cc(flat(4095, 8), 4, 2, 0, negative));
  EXPECT_EQ(and_half(Words(12, 65535 - 16 * 0xABC), 4), bgr16_cc(flat(0xABC, 8), 4, 2, 0, negative));
}

TEST(Raw12ToBGR16_CC, GammaThenMatrix) {
  // 2048 of 4096 squared is 1024; red is then twice that, and green minus one times that.
  const Correction both = Correction::floats(5, {2, 0, 0, 0, -1, 0, 0, 0, 1}, 2, 4096);
  Words line;
  for (int x = 0; x < 4; ++x) line.insert(line.end(), {1024, 65536 - 1024, 2048});
  EXPECT_EQ(and_half(line, 4), bgr16_cc(flat(2048, 8), 4, 2, 0, both));
}

}  // namespace
