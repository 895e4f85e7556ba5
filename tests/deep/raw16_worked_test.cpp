/// The 16-bit demosaics that keep their depth, against numbers worked out by hand: the shift, the carry
/// between the greens, the ends of lines, the weights, and what the corrected forms do to the second pixel of
/// a step.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <cstring>
#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"

namespace {

using support::Correction;
using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

constexpr std::uint16_t kMarker = 0xA55A;

/// Samples as the frame holds them, high byte first.
Bytes frame(const Words& samples) {
  Bytes bytes;
  for (std::uint16_t sample : samples) {
    bytes.push_back(static_cast<std::uint8_t>(sample >> 8));
    bytes.push_back(static_cast<std::uint8_t>(sample));
  }
  return bytes;
}

Bytes flat(std::uint16_t sample, std::size_t count) { return frame(Words(count, sample)); }

Words bgr16(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
            std::uint32_t shift) {
  Words dst(std::size_t{3} * width * height, kMarker);
  EXPECT_EQ(QVN_OK, QVN_Raw16ToBGR16(dst.data(), src.data(), width, height, pattern, shift));
  return dst;
}

Words y16(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
          std::uint32_t shift) {
  Words dst(std::size_t{width} * height, kMarker);
  EXPECT_EQ(QVN_OK, QVN_Raw16ToY16(dst.data(), src.data(), width, height, pattern, shift));
  return dst;
}

Words bgr16_cc(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
               std::uint32_t shift, const Correction& correction) {
  Words dst(std::size_t{3} * width * height, kMarker);
  EXPECT_EQ(QVN_OK, QVN_Raw16ToBGR16_CC(dst.data(), src.data(), width, height, pattern, shift,
                                        support::as_correction(correction.get())));
  return dst;
}

Words y16_cc(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
             std::uint32_t shift, const Correction& correction) {
  Words dst(std::size_t{width} * height, kMarker);
  EXPECT_EQ(QVN_OK, QVN_Raw16ToY16_CC(dst.data(), src.data(), width, height, pattern, shift,
                                      support::as_correction(correction.get())));
  return dst;
}

/// The pixels of a line, and the line again and again.
Words lines(std::size_t count, const Words& line) {
  Words all;
  for (std::size_t i = 0; i < count; ++i) all.insert(all.end(), line.begin(), line.end());
  return all;
}

TEST(Raw16ToBGR16, ShiftsOfOneSample) {
  EXPECT_EQ(Words(24, 0xABCD), bgr16(flat(0xABCD, 8), 4, 2, 0, 0));
  EXPECT_EQ(Words(24, 0xABC), bgr16(flat(0xABCD, 8), 4, 2, 0, 4));
  EXPECT_EQ(Words(24, 0xAB), bgr16(flat(0xABCD, 8), 4, 2, 0, 8));
  // 0xABCD >> 1 and >> 7, nothing rounded; the greens' low bytes are added first, and 0x19A >> 7 is 3.
  EXPECT_EQ(Words(24, 0x55E6), bgr16(flat(0xABCD, 8), 4, 2, 0, 1));
  EXPECT_EQ(Words(24, 0x157), bgr16(flat(0xABCD, 8), 4, 2, 0, 7));
}

TEST(Raw16ToBGR16, FromShiftNineOnFramesAreBlack) {
  for (std::uint32_t shift = 9; shift <= 16; ++shift) {
    for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
      EXPECT_EQ(Words(36, 0), bgr16(flat(0xFFFF, 12), 6, 2, pattern, shift));
      EXPECT_EQ(Words(12, 0), y16(flat(0xFFFF, 12), 6, 2, pattern, shift));
    }
  }
}

TEST(Raw16ToBGR16, TheCarryBetweenTheGreensSurvives) {
  // Greens 1 and 3 under shift 1: low bytes 4, shifted 2, halved 1; the mean of 0 and 1 would be 0.
  const Bytes src = frame({0, 1, 0, 1, 3, 0, 3, 0});
  EXPECT_EQ(lines(2, {0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0}), bgr16(src, 4, 2, 0, 1));
  // 0x00FF and 0x0001 under shift 8: the low bytes' sum 0x100 reaches the result as 1, halved 0; with
  // 0x01FF the high bytes bring 1, and 2 is halved to 1.
  EXPECT_EQ(0, bgr16(frame({0, 0x00FF, 0, 0, 1, 0, 0, 0}), 4, 2, 0, 8)[1]);
  EXPECT_EQ(1, bgr16(frame({0, 0x01FF, 0, 0, 1, 0, 0, 0}), 4, 2, 0, 8)[1]);
}

TEST(Raw16ToBGR16, WindowsOfALineAndItsLastTwoPixels) {
  const Bytes src = frame({100, 200, 300, 400, 500, 600, 1000, 2000, 3000, 4000, 5000, 6001});
  // R G over G B. Four windows, and the last of them twice more.
  EXPECT_EQ(lines(2, {2000, 600, 100, 2000, 1600, 300, 4000, 1700, 300, 4000, 2700, 500, 4000, 2700, 500,
                      4000, 2700, 500}),
            bgr16(src, 6, 2, 0, 0));
  // G R over B G.
  EXPECT_EQ(lines(2, {1000, 1050, 200, 3000, 1150, 200, 3000, 2150, 400, 5000, 2250, 400, 5000, 2250, 400,
                      5000, 2250, 400}),
            bgr16(src, 6, 2, 2, 0));
}

TEST(Raw16ToBGR16, WidthFourComputesTwoColumns) {
  const Bytes src = frame({10, 20, 30, 40, 50, 60, 70, 80});
  EXPECT_EQ(lines(2, {60, 35, 10, 60, 45, 30, 60, 45, 30, 60, 45, 30}), bgr16(src, 4, 2, 0, 0));
}

TEST(Raw16ToBGR16, WidthTwoCopiesWhatLiesBeforeTheFrame) {
  Words dst = {1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  const Bytes src = flat(500, 4);
  EXPECT_EQ(QVN_OK, QVN_Raw16ToBGR16(dst.data() + 3, src.data(), 2, 2, 0, 0));
  EXPECT_EQ(lines(5, {1, 2, 3}), dst);
  Words luma = {7, 0, 0, 0, 0};
  EXPECT_EQ(QVN_OK, QVN_Raw16ToY16(luma.data() + 1, src.data(), 2, 2, 0, 0));
  EXPECT_EQ(Words(5, 7), luma);
}

TEST(Raw16ToBGR16, OddWidthsWriteOnePixelMoreALine) {
  // Width 5: four windows a line and two copies, then the last five pixels again.
  const Bytes src = frame({10, 20, 30, 40, 50, 60, 70, 80, 90, 100});
  const Words dst = [&] {
    Words room(3 * 12, kMarker);
    EXPECT_EQ(QVN_OK, QVN_Raw16ToBGR16(room.data(), src.data(), 5, 2, 0, 0));
    return room;
  }();
  const Words expected = {
      70, 40, 10, 70, 50, 30, 90, 60, 30, 90, 70, 50, 90, 70, 50, 90,      70,      50,  // six
      70, 50, 30, 90, 60, 30, 90, 70, 50, 90, 70, 50, 90, 70, 50, kMarker, kMarker, kMarker};
  EXPECT_EQ(expected, dst);
  Words luma(12, kMarker);
  EXPECT_EQ(QVN_OK, QVN_Raw16ToY16(luma.data(), flat(256, 10).data(), 5, 2, 0, 0));
  EXPECT_EQ((Words{248, 248, 248, 248, 248, 248, 248, 248, 248, 248, 248, kMarker}), luma);
}

TEST(Raw16ToY16, WeightsAddUpTo248) {
  EXPECT_EQ(Words(8, 63487), y16(flat(0xFFFF, 8), 4, 2, 0, 0));
  // Red 77, green 150, blue 21, on samples of 256.
  EXPECT_EQ(77, y16(frame({256, 0, 0, 0, 0, 0, 0, 0}), 4, 2, 0, 0)[0]);
  EXPECT_EQ(150, y16(frame({0, 256, 0, 0, 256, 0, 0, 0}), 4, 2, 0, 0)[0]);
  EXPECT_EQ(21, y16(frame({0, 0, 0, 0, 0, 256, 0, 0}), 4, 2, 0, 0)[0]);
}

TEST(Raw16ToY16, LastTwoWordsRepeatTheOneBefore) {
  const Bytes src = frame({256, 512, 768, 1024, 1280, 1536, 256, 512, 768, 1024, 1280, 1536});
  // R G over G B: windows (256, (512 + 256) / 2, 512), (768, (512 + 768) / 2, 512),
  // (768, (1024 + 768) / 2, 1024), (1280, (1024 + 1280) / 2, 1024).
  const Words line = {(256 * 77 + 384 * 150 + 512 * 21) / 256,    (768 * 77 + 640 * 150 + 512 * 21) / 256,
                      (768 * 77 + 896 * 150 + 1024 * 21) / 256,   (1280 * 77 + 1152 * 150 + 1024 * 21) / 256,
                      (1280 * 77 + 1152 * 150 + 1024 * 21) / 256, (1280 * 77 + 1152 * 150 + 1024 * 21) / 256};
  EXPECT_EQ(lines(2, line), y16(src, 6, 2, 0, 0));
}

TEST(Raw16Corrected, ShiftsAboveSixteenAreNotRefused) {
  const Correction identity = Correction::fixed_matrix(3, support::kFixedIdentity);
  const Bytes src = flat(0xABCD, 8);
  for (std::uint32_t shift : {9U, 16U, 17U, 23U}) {
    EXPECT_EQ(Words(24, 0), bgr16_cc(src, 4, 2, 0, shift, identity));
    EXPECT_EQ(Words(24, 0), bgr16_cc(src, 4, 2, 0, shift, Correction()));
    EXPECT_EQ(Words(8, 0), y16_cc(src, 4, 2, 0, shift, identity));
  }
  EXPECT_EQ(Words(24, 0xABCD), bgr16_cc(src, 4, 2, 0, 32, identity));
  EXPECT_EQ(Words(24, 0xABCD), bgr16_cc(src, 4, 2, 0, 32, Correction()));
  EXPECT_EQ(Words(24, 0xABC), bgr16_cc(src, 4, 2, 0, 36, identity));
}

TEST(Raw16Corrected, ShiftsTwentyFourToThirtyOneFollowTheirCounts) {
  const Correction identity = Correction::fixed_matrix(3, support::kFixedIdentity);
  // High bytes 0x01 and 0x02 in the greens: their sum of 3 moves left by 40 - shift, then right by one. The
  // high byte of red and blue, 0x81, moves left by 40 - shift.
  const Bytes src = frame({0x81FF, 0x01FF, 0x81FF, 0x01FF, 0x02FF, 0x81FF, 0x02FF, 0x81FF});
  const auto pixel = [&](std::uint32_t shift) {
    const Words dst = bgr16_cc(src, 4, 2, 0, shift, identity);
    return Words(dst.begin(), dst.begin() + 3);
  };
  EXPECT_EQ((Words{0, 0x8000, 0}), pixel(24));
  EXPECT_EQ((Words{0x8000, 0xC000, 0x8000}), pixel(25));
  EXPECT_EQ((Words{0x0400, 0x0600, 0x0400}), pixel(30));
  EXPECT_EQ((Words{0x0200, 0x0300, 0x0200}), pixel(31));
  EXPECT_EQ((Words{0x0200, 0x0300, 0x0200}), pixel(255));
  EXPECT_EQ((Words{0x0200, 0x0300, 0x0200}), pixel(0xFFFFFFFF));
}

TEST(Raw16ToBGR16_CC, AFixedIdentityIsThePlainKernel) {
  const Correction identity = Correction::fixed_matrix(3, support::kFixedIdentity);
  const Bytes src = frame({1, 70, 0xFFFF, 500, 4000, 9, 1000, 0x8000, 3, 65000, 12, 0xFFFE});
  for (std::uint32_t shift : {0U, 1U, 4U, 8U}) {
    for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
      EXPECT_EQ(bgr16(src, 6, 2, pattern, shift), bgr16_cc(src, 6, 2, pattern, shift, identity));
    }
  }
}

/// 128 of 256 is a half: its square is 64 of 256, and the square of that 16.
TEST(Raw16ToBGR16_CC, TheKeptChannelGoesThroughGammaTwice) {
  const Correction square = Correction::gamma(2, 256);
  const Words blue_kept = {64, 64, 64, 16, 64, 64, 64, 64, 64, 16, 64, 64, 16, 64, 64, 16, 64, 64};
  const Words red_kept = {64, 64, 64, 64, 64, 16, 64, 64, 64, 64, 64, 16, 64, 64, 16, 64, 64, 16};
  for (std::uint32_t shift : {0U, 3U}) {
    const Bytes src = flat(static_cast<std::uint16_t>(128U << shift), 12);
    EXPECT_EQ(lines(2, blue_kept), bgr16_cc(src, 6, 2, 0, shift, square));
    EXPECT_EQ(lines(2, blue_kept), bgr16_cc(src, 6, 2, 1, shift, square));
    EXPECT_EQ(lines(2, red_kept), bgr16_cc(src, 6, 2, 2, shift, square));
    EXPECT_EQ(lines(2, red_kept), bgr16_cc(src, 6, 2, 3, shift, square));
  }
}

TEST(Raw16ToBGR16_CC, TheKeptChannelIsLookedUpTwice) {
  Words table(0x10000);
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<std::uint16_t>(i + 1);
  const Correction next = Correction::words(table, table.size());
  EXPECT_EQ(lines(2, {11, 11, 11, 12, 11, 11, 12, 11, 11, 12, 11, 11}),
            bgr16_cc(flat(10, 8), 4, 2, 0, 0, next));
  EXPECT_EQ(lines(2, {11, 11, 11, 11, 11, 12, 11, 11, 12, 11, 11, 12}),
            bgr16_cc(flat(10, 8), 4, 2, 3, 0, next));
}

TEST(Raw16ToBGR16_CC, AMatrixGetsItsOutputBack) {
  // Blue = 2 * red + blue on a flat 100: 300, and then 2 * 100 + 300.
  const Correction floats = Correction::floats(1, {1, 0, 0, 0, 1, 0, 2, 0, 1}, 0, 0);
  const Correction fixed = Correction::fixed_matrix(3, {1024, 0, 0, 0, 1024, 0, 2048, 0, 1024});
  const Words expected = lines(2, {300, 100, 100, 500, 100, 100, 500, 100, 100, 500, 100, 100});
  for (std::uint32_t shift : {0U, 2U}) {
    const Bytes src = flat(static_cast<std::uint16_t>(100U << shift), 8);
    EXPECT_EQ(expected, bgr16_cc(src, 4, 2, 0, shift, floats));
    EXPECT_EQ(expected, bgr16_cc(src, 4, 2, 0, shift, fixed));
  }
  // In the odd column phase row 0 runs again: red = red + 2 * blue.
  const Correction red = Correction::floats(1, {1, 0, 2, 0, 1, 0, 0, 0, 1}, 0, 0);
  EXPECT_EQ(lines(2, {100, 100, 300, 100, 100, 500, 100, 100, 500, 100, 100, 500}),
            bgr16_cc(flat(100, 8), 4, 2, 2, 0, red));
}

TEST(Raw16ToBGR16_CC, GammaThenMatrixOnceMore) {
  // Squares of 256ths: 128 becomes 64; blue = 2 * 64. The second pixel's blue, 128, starts over.
  const Correction both = Correction::floats(5, {1, 0, 0, 0, 1, 0, 0, 0, 2}, 2, 256);
  EXPECT_EQ(lines(2, {128, 64, 64, 128, 64, 64, 128, 64, 64, 128, 64, 64}),
            bgr16_cc(flat(128, 8), 4, 2, 0, 0, both));
  // Blue = 4 * 64 = 256, a whole: its square is 256, four times that 1024.
  const Correction more = Correction::floats(5, {1, 0, 0, 0, 1, 0, 0, 0, 4}, 2, 256);
  EXPECT_EQ(lines(2, {256, 64, 64, 1024, 64, 64, 1024, 64, 64, 1024, 64, 64}),
            bgr16_cc(flat(128, 8), 4, 2, 0, 0, more));
}

TEST(Raw16ToBGR16_CC, FloatsAreTruncatedAtSixtyFourBits) {
  const auto red = [](float factor) {
    return bgr16_cc(flat(1, 8), 4, 2, 0, 0, Correction::floats(1, {factor, 0, 0, 0, 1, 0, 0, 0, 1}, 0, 0))[2];
  };
  EXPECT_EQ(65535, red(-1));
  EXPECT_EQ(0, red(65536));
  EXPECT_EQ(1, red(65537));
  EXPECT_EQ(256, red(2147483904.0F));  // 2^31 + 256
  EXPECT_EQ(0xFF00, red(-2147483904.0F));
  EXPECT_EQ(512, red(4294967808.0F));       // 2^32 + 512
  EXPECT_EQ(0x8000, red(274877939712.0F));  // 2^38 + 2^15
  EXPECT_EQ(0, red(1e30F));
  EXPECT_EQ(0, red(-1e30F));
}

TEST(Raw16ToBGR16_CC, TheFixedMatrixSaturatesAndWrapsAtThirtyTwoBits) {
  const auto red = [](std::uint16_t sample, std::int32_t factor) {
    return bgr16_cc(flat(sample, 8), 4, 2, 0, 0,
                    Correction::fixed_matrix(3, {factor, 0, 0, 0, 1024, 0, 0, 0, 1024}))[2];
  };
  EXPECT_EQ(65535, red(65535, 1024));
  EXPECT_EQ(65535, red(65535, 1025));
  EXPECT_EQ(65535, red(32768, 2048));
  EXPECT_EQ(65534, red(32767, 2048));
  EXPECT_EQ(0, red(1, -1));  // towards minus infinity, so negative
  EXPECT_EQ(0, red(1023, 1));
  EXPECT_EQ(1, red(1024, 1));
  EXPECT_EQ(65535, red(1, 0x7FFFFFFF));
  EXPECT_EQ(0, red(2, 0x40000000));        // 2^31 is a negative sum
  EXPECT_EQ(0, red(4, 0x40000000));        // 2^32 wraps to nothing
  EXPECT_EQ(4097, red(1025, 0x00400001));  // 2^32 + 2^22 + 1025 loses its first term
}

TEST(Raw16ToY16_CC, WithoutAShiftEveryPixelIsCorrectedOnce) {
  const Correction square = Correction::gamma(2, 65535);
  const Words dst = y16_cc(flat(0x8000, 24), 12, 2, 0, 0, square);
  EXPECT_EQ(Words(24, dst[0]), dst);
  // 64 of 256: (64 * 248) >> 8.
  EXPECT_EQ(Words(16, 62), y16_cc(flat(128, 16), 8, 2, 3, 0, Correction::gamma(2, 256)));
}

TEST(Raw16ToY16_CC, WithAShiftTheFreshChannelsOfTheSecondPixelStayRaw) {
  const Correction square = Correction::gamma(2, 256);
  const Bytes src = flat(256, 12);
  // First pixel 64 * 248 >> 8; second one with blue 64, else 128: 30400 >> 8; with red 64: 26816 >> 8.
  EXPECT_EQ(lines(2, {62, 118, 62, 118, 118, 118}), y16_cc(src, 6, 2, 0, 1, square));
  EXPECT_EQ(lines(2, {62, 118, 62, 118, 118, 118}), y16_cc(src, 6, 2, 1, 1, square));
  EXPECT_EQ(lines(2, {62, 104, 62, 104, 104, 104}), y16_cc(src, 6, 2, 2, 1, square));
  EXPECT_EQ(lines(2, {62, 104, 62, 104, 104, 104}), y16_cc(src, 6, 2, 3, 1, square));
}

TEST(Raw16ToY16_CC, TheFirstPixelOfAStepIsDarkerUnderAShift) {
  const Words dst = y16_cc(flat(0x8000, 24), 12, 2, 0, 1, Correction::gamma(2, 65535));
  for (std::size_t x = 0; x < 10; x += 2) EXPECT_LT(dst[x], dst[x + 1]);
}

TEST(Raw16ToY16_CC, WithAShiftAMatrixKeepsThePixelBefore) {
  // Even phase, flat 128: R' = 64, G' = 32, B' = 128 * 7 = 896; kept: 64 + 2 * 32 + 4 * 128 = 640.
  // Luma (64 * 77 + 32 * 150 + 896 * 21) >> 8 = 111, (128 * 77 + 128 * 150 + 640 * 21) >> 8 = 166.
  const Correction blue = Correction::floats(1, {0.5F, 0, 0, 0, 0.25F, 0, 1, 2, 4}, 0, 0);
  const Correction fixed_blue = Correction::fixed_matrix(3, {512, 0, 0, 0, 256, 0, 1024, 2048, 4096});
  const Bytes src = flat(128 << 2, 8);
  EXPECT_EQ(lines(2, {111, 166, 166, 166}), y16_cc(src, 4, 2, 0, 2, blue));
  EXPECT_EQ(lines(2, {111, 166, 166, 166}), y16_cc(src, 4, 2, 0, 2, fixed_blue));
  // Odd phase: R' = 896, G' = 32, B' = 64; kept: 4 * 128 + 2 * 32 + 64 = 640.
  // Luma (896 * 77 + 32 * 150 + 64 * 21) >> 8 = 293, (640 * 77 + 128 * 150 + 128 * 21) >> 8 = 278.
  const Correction red = Correction::floats(1, {4, 2, 1, 0, 0.25F, 0, 0, 0, 0.5F}, 0, 0);
  const Correction fixed_red = Correction::fixed_matrix(3, {4096, 2048, 1024, 0, 256, 0, 0, 0, 512});
  EXPECT_EQ(lines(2, {293, 278, 278, 278}), y16_cc(src, 4, 2, 2, 2, red));
  EXPECT_EQ(lines(2, {293, 278, 278, 278}), y16_cc(src, 4, 2, 2, 2, fixed_red));
}

TEST(Raw16ToY16_CC, WithAShiftGammaThenMatrixKeepsThePixelBefore) {
  // Flat 128 of 256, squared 64. R' = 32, G' = 16, B' = 64 + 128 + 256 = 448. Squares of these: 4, 1, and 64
  // of the raw 128; kept: 4 + 2 * 1 + 4 * 64 = 262.
  const Correction both = Correction::floats(5, {0.5F, 0, 0, 0, 0.25F, 0, 1, 2, 4}, 2, 256);
  // (32 * 77 + 16 * 150 + 448 * 21) >> 8 = 55, (128 * 227 + 262 * 21) >> 8 = 134.
  EXPECT_EQ(lines(2, {55, 134, 134, 134}), y16_cc(flat(256, 8), 4, 2, 0, 1, both));
}

TEST(Raw16ToY16_CC, WithAShiftATableIsUsedOnTheRawKeptChannel) {
  Words table(0x10000);
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<std::uint16_t>(2 * i);
  const Correction twice = Correction::words(table, table.size());
  // (20 * 248) >> 8 = 19; (10 * 227 + 20 * 21) >> 8 = 10; (20 * 77 + 10 * 171) >> 8 = 12.
  EXPECT_EQ(lines(2, {19, 10, 10, 10}), y16_cc(flat(20, 8), 4, 2, 0, 1, twice));
  EXPECT_EQ(lines(2, {19, 12, 12, 12}), y16_cc(flat(20, 8), 4, 2, 2, 1, twice));
  EXPECT_EQ(Words(8, 19), y16_cc(flat(10, 8), 4, 2, 0, 0, twice));
}

/// 0 alone takes the form without a shift; 32 shifts by nothing and keeps the second pixel's quirk.
TEST(Raw16ToY16_CC, ShiftThirtyTwoIsNotShiftZero) {
  const Correction square = Correction::gamma(2, 256);
  EXPECT_EQ(lines(2, {62, 118, 118, 118}), y16_cc(flat(128, 8), 4, 2, 0, 32, square));
  EXPECT_EQ(Words(8, 62), y16_cc(flat(128, 8), 4, 2, 0, 0, square));
}

TEST(Raw16ToY16_CC, AnIdentityIsThePlainKernelAtEveryShift) {
  const Correction floats = Correction::floats(1, support::kIdentity, 0, 0);
  const Correction fixed = Correction::fixed_matrix(3, support::kFixedIdentity);
  const Bytes src = frame({1, 70, 0xFFFF, 500, 4000, 9, 1000, 0x8000, 3, 65000, 12, 0xFFFE});
  for (std::uint32_t shift = 0; shift <= 8; ++shift) {
    for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
      const Words plain = y16(src, 6, 2, pattern, shift);
      EXPECT_EQ(plain, y16_cc(src, 6, 2, pattern, shift, floats));
      EXPECT_EQ(plain, y16_cc(src, 6, 2, pattern, shift, fixed));
    }
  }
}

}  // namespace
