/// The mono and RGB runs: against the slow reference for every count, every sample and every colour, between
/// inaccessible pages, and against numbers worked out by hand.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <bit>
#include <cstring>
#include <vector>

#include "reference/mono_rgb.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/runs.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using support::Run;

/// The Ex forms with their three further arguments bound.
Run bgr_ex(std::uint32_t swap, std::uint32_t alignment, std::uint32_t bits) {
  return {"Y16ToBGREx_" + std::to_string(swap) + "_" + std::to_string(alignment) + "_" + std::to_string(bits),
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            return QVN_Y16ToBGREx(dst, src, count, swap, alignment, bits);
          },
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            reference::Y16ToBGREx(dst, src, count, swap, alignment, bits);
          },
          1,
          2,
          3};
}

Run y8_ex(std::uint32_t swap, std::uint32_t alignment, std::uint32_t bits) {
  return {"Y16ToY8Ex_" + std::to_string(swap) + "_" + std::to_string(alignment) + "_" + std::to_string(bits),
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            return QVN_Y16ToY8Ex(dst, src, count, swap, alignment, bits);
          },
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            reference::Y16ToY8Ex(dst, src, count, swap, alignment, bits);
          },
          1,
          2,
          1};
}

Run rgb8_to_bgr() { return {"RGB8ToBGR", QVN_RGB8ToBGR, reference::RGB8ToBGR, 1, 3, 3}; }
Run rgb8_to_y8() { return {"RGB8ToY8", QVN_RGB8ToY8, reference::RGB8ToY8, 1, 3, 1}; }
Run y16_to_bgr() { return {"Y16ToBGR", QVN_Y16ToBGR, reference::Y16ToBGR, 1, 2, 3}; }
Run y16_to_y8() { return {"Y16ToY8", QVN_Y16ToY8, reference::Y16ToY8, 1, 2, 1}; }

class MonoRgb : public testing::TestWithParam<Run> {};

INSTANTIATE_TEST_SUITE_P(
    Entries, MonoRgb,
    testing::Values(rgb8_to_bgr(), rgb8_to_y8(), Run{"Y8ToBGR", QVN_Y8ToBGR, reference::Y8ToBGR, 1, 1, 3},
                    y16_to_bgr(), y16_to_y8(),
                    Run{"Y16ToY8_MMX", QVN_Y16ToY8_MMX, reference::Y16ToY8_MMX, 1, 2, 1, 8}, bgr_ex(0, 0, 16),
                    bgr_ex(1, 0, 16), bgr_ex(0, 1, 12), bgr_ex(1, 1, 12), bgr_ex(1, 1, 8), bgr_ex(1, 1, 9),
                    bgr_ex(1, 1, 4), y8_ex(0, 0, 16), y8_ex(1, 0, 16), y8_ex(0, 1, 12), y8_ex(1, 1, 12),
                    y8_ex(1, 1, 8), y8_ex(1, 1, 9), y8_ex(1, 1, 4)),
    support::run_name);

TEST_P(MonoRgb, EqualsReferenceForEveryCount) { support::expect_equal_for_every_count(GetParam()); }

TEST_P(MonoRgb, NeedsNoAlignment) { support::expect_no_need_of_alignment(GetParam()); }

TEST_P(MonoRgb, TouchesNothingOutsideOfItsPixels) { support::expect_nothing_touched_outside(GetParam()); }

TEST_P(MonoRgb, CountZeroTouchesNothing) { support::expect_nothing_touched_below_a_group(GetParam()); }

TEST_P(MonoRgb, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(64);
  for (std::uint32_t count : {0U, 8U, 12U}) {
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, count));
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), count));
    EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, count));
  }
  EXPECT_EQ(Bytes(64), bytes);
}

/// All 65,536 samples.
const Bytes& every_sample() {
  static const Bytes samples = [] {
    Bytes all;
    for (unsigned value = 0; value < 65536; ++value) {
      all.push_back(static_cast<std::uint8_t>(value >> 8));
      all.push_back(static_cast<std::uint8_t>(value & 0xFF));
    }
    return all;
  }();
  return samples;
}

TEST(Mono16, PlainFormsEqualReferenceForEverySample) {
  ASSERT_TRUE(support::same_output(y16_to_bgr(), every_sample()));
  ASSERT_TRUE(support::same_output(y16_to_y8(), every_sample()));
}

TEST(Mono16, ExFormsEqualReferenceForEverySampleAndLayout) {
  std::vector<std::uint32_t> depths = support::numbers(0, 44);
  for (std::uint32_t bits : {71U, 72U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) depths.push_back(bits);
  for (std::uint32_t swap : {0U, 1U, 0x100U}) {
    for (std::uint32_t alignment : {0U, 1U, 2U, 0x101U}) {
      for (std::uint32_t bits : depths) {
        if (alignment != 1 && bits > 16) continue;
        ASSERT_TRUE(support::same_output(bgr_ex(swap, alignment, bits), every_sample()))
            << "byteSwap " << swap << ", alignment " << alignment << ", bits " << bits;
        ASSERT_TRUE(support::same_output(y8_ex(swap, alignment, bits), every_sample()))
            << "byteSwap " << swap << ", alignment " << alignment << ", bits " << bits;
      }
    }
  }
}

TEST(Mono16, ExFormsCutAtBitEightAreThePlainForms) {
  const Bytes& src = every_sample();
  Bytes plain(3 * 65536);
  Bytes ex(3 * 65536);
  QVN_Y16ToBGR(plain.data(), src.data(), 65536);
  for (std::uint32_t alignment : {0U, 1U, 7U}) {
    QVN_Y16ToBGREx(ex.data(), src.data(), 65536, 1, alignment, 16);
    EXPECT_EQ(plain, ex);
  }
}

Bytes convert(const Run& run, const Bytes& src) {
  const auto count = static_cast<std::uint32_t>(src.size() / run.group_bytes_in);
  Bytes dst(run.bytes_out(count), 0xA5);
  EXPECT_EQ(QVN_OK, run.library(dst.data(), src.data(), count));
  return dst;
}

TEST(Y16ToBGR, WorkedSamples) {
  EXPECT_EQ((Bytes{255, 255, 255}), convert(y16_to_bgr(), {0xFF, 0xFF}));
  EXPECT_EQ((Bytes{0x11, 0x10, 0x11}), convert(y16_to_bgr(), {0x10, 0xC0}));
  EXPECT_EQ((Bytes{0x10, 0x10, 0x11}), convert(y16_to_bgr(), {0x10, 0x80}));
  EXPECT_EQ((Bytes{0x11, 0x10, 0x10}), convert(y16_to_bgr(), {0x10, 0x40}));
  EXPECT_EQ((Bytes{0x10, 0x10, 0x10}), convert(y16_to_bgr(), {0x10, 0x3F}));
  EXPECT_EQ((Bytes{0xFF, 0xFE, 0xFF}), convert(y16_to_bgr(), {0xFE, 0xC0}));
}

TEST(Y16ToY8, WorkedSamples) {
  EXPECT_EQ(Bytes{0xFF}, convert(y16_to_y8(), {0xFE, 0x80}));
  EXPECT_EQ(Bytes{0xFF}, convert(y16_to_y8(), {0xFF, 0x80}));
  EXPECT_EQ(Bytes{0xFE}, convert(y16_to_y8(), {0xFE, 0x7F}));
}

TEST(Y16ToBGREx, WorkedSamples) {
  // 8 bits: the low byte of the word, no push.
  EXPECT_EQ((Bytes{0xFE, 0xFE, 0xFE}), convert(bgr_ex(1, 1, 8), {0xFF, 0xFE}));
  // 9 bits: bits 8..1, pushed in red alone, by bit 0.
  EXPECT_EQ((Bytes{0x80, 0x80, 0x81}), convert(bgr_ex(1, 1, 9), {0x01, 0x01}));
  // 12 bits: bits 11..4; bit 3 pushes red, bit 2 blue.
  EXPECT_EQ((Bytes{0x23, 0x23, 0x24}), convert(bgr_ex(1, 1, 12), {0xF2, 0x38}));
  EXPECT_EQ((Bytes{0x24, 0x23, 0x23}), convert(bgr_ex(1, 1, 12), {0x02, 0x34}));
  EXPECT_EQ((Bytes{0xFF, 0xFF, 0xFF}), convert(bgr_ex(1, 1, 12), {0x0F, 0xFF}));
  // Below 8 bits nothing is left.
  EXPECT_EQ((Bytes{0, 0, 0}), convert(bgr_ex(1, 1, 7), {0xFF, 0xFF}));
  EXPECT_EQ((Bytes{0, 0, 0}), convert(bgr_ex(1, 1, 0), {0xFF, 0xFF}));
  // 20 bits: bits 15..12, pushed by bits 11 and 10.
  EXPECT_EQ((Bytes{0x0B, 0x0A, 0x0B}), convert(bgr_ex(1, 1, 20), {0xAC, 0x00}));
  // 24 bits: a shift of 16 leaves nothing, but bit 15 still pushes red and bit 14 blue.
  EXPECT_EQ((Bytes{1, 0, 1}), convert(bgr_ex(1, 1, 24), {0xC0, 0x00}));
}

TEST(Y16ToY8Ex, HostOrderIsTheHosts) {
  const Bytes src = {0x80, 0x12};
  const bool little = std::endian::native == std::endian::little;
  // Little-endian: 0x1280 is cut at bit 8 and pushed by bit 7 of the first byte. Big-endian: 0x8012.
  EXPECT_EQ(Bytes{static_cast<std::uint8_t>(little ? 0x13 : 0x80)}, convert(y8_ex(0, 0, 16), src));
  EXPECT_EQ(Bytes{0x80}, convert(y8_ex(1, 0, 16), src));
}

TEST(Y16ToY8Ex, DropBitHasNoPart) {
  EXPECT_EQ(Bytes{0x23}, convert(y8_ex(1, 1, 12), {0x02, 0x34}));
  EXPECT_EQ(Bytes{0x24}, convert(y8_ex(1, 1, 12), {0x02, 0x38}));
}

TEST(Y16ToY8_MMX, RefusesCountsThatAreNoMultipleOfEight) {
  const Bytes src(64, 0x80);
  Bytes dst(32, 0xA5);
  for (std::uint32_t count = 0; count < 32; ++count) {
    if (count % 8 == 0) continue;
    EXPECT_EQ(QVN_E_PARAM3, QVN_Y16ToY8_MMX(dst.data(), src.data(), count));
    EXPECT_EQ(QVN_E_PARAM1, QVN_Y16ToY8_MMX(nullptr, nullptr, count));
    EXPECT_EQ(QVN_E_PARAM2, QVN_Y16ToY8_MMX(dst.data(), nullptr, count));
  }
  EXPECT_EQ(QVN_E_PARAM3, QVN_Y16ToY8_MMX(dst.data(), src.data(), 12));
  EXPECT_EQ(QVN_OK, QVN_Y16ToY8_MMX(dst.data(), src.data(), 0));
  EXPECT_EQ(Bytes(32, 0xA5), dst);
}

TEST(RGB8ToBGR, WorksInPlace) {
  support::Random random(1);
  for (std::uint32_t count : support::run_counts()) {
    Bytes frame(std::size_t{3} * count + 64);
    random.fill(frame.data(), frame.size());
    Bytes expected = frame;
    reference::RGB8ToBGR(expected.data(), frame.data(), count);
    ASSERT_EQ(QVN_OK, QVN_RGB8ToBGR(frame.data(), frame.data(), count));
    ASSERT_EQ(expected, frame) << "count " << count;
  }
}

TEST(RGB8ToBGR, WorksInPlaceWithoutTouchingMore) {
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t count : support::numbers(1, 300)) {
      support::GuardedBuffer frame(std::size_t{3} * count, flush);
      support::Random random(count);
      random.fill(frame.data(), frame.size());
      Bytes expected(frame.size());
      reference::RGB8ToBGR(expected.data(), frame.data(), count);
      ASSERT_EQ(QVN_OK, QVN_RGB8ToBGR(frame.data(), frame.data(), count));
      ASSERT_EQ(0, std::memcmp(expected.data(), frame.data(), frame.size())) << "count " << count;
    }
  }
}

TEST(RGB8ToY8, EqualsReferenceForEveryColour) {
  Bytes src(std::size_t{3} * 65536);
  for (unsigned red = 0; red < 256; ++red) {
    for (unsigned i = 0; i < 65536; ++i) {
      src[std::size_t{3} * i] = static_cast<std::uint8_t>(red);
      src[std::size_t{3} * i + 1] = static_cast<std::uint8_t>(i >> 8);
      src[std::size_t{3} * i + 2] = static_cast<std::uint8_t>(i & 0xFF);
    }
    ASSERT_TRUE(support::same_output(rgb8_to_y8(), src));
  }
}

TEST(RGB8ToY8, WorkedColours) {
  // The three doubles do not add up to one.
  EXPECT_EQ((Bytes{254, 0, 9}), convert(rgb8_to_y8(), {255, 255, 255, 0, 0, 0, 10, 10, 10}));
  // 0.21 * 255 = 53.55, 0.72 * 255 = 183.6, 0.07 * 255 = 17.85
  EXPECT_EQ((Bytes{53, 183, 17}), convert(rgb8_to_y8(), {255, 0, 0, 0, 255, 0, 0, 0, 255}));
}

TEST(Y8ToBGR, EverySampleThreeTimes) {
  Bytes src(256);
  Bytes expected;
  for (unsigned value = 0; value < 256; ++value) {
    src[value] = static_cast<std::uint8_t>(value);
    expected.insert(expected.end(), 3, src[value]);
  }
  Bytes dst(expected.size());
  EXPECT_EQ(QVN_OK, QVN_Y8ToBGR(dst.data(), src.data(), 256));
  EXPECT_EQ(expected, dst);
}

}  // namespace
