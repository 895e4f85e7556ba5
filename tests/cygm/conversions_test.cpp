/// QVN_IRaw8CYGMToBGR_Bin, QVN_IRaw8CYGMToBGR, QVN_IRaw8CYGMToBGR_3x3 and QVN_IRaw8CYGMToMono: against the
/// slow reference over whole arenas and between inaccessible pages.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "reference/cygm.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Only parities count in the grey conversion, and nothing at all in the others.
constexpr std::uint32_t kPhases[] = {0, 1, 2, 3, 4, 5, 7, 0x7FFFFFFD, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};

struct Entry {
  const char* name;
  std::uint32_t (*library)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t);
  void (*reference)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t);
  std::uint32_t smallest_width;
  std::uint32_t smallest_height;  ///< that has an outcome, with memory around the frame
  std::uint32_t height_step;
  std::uint32_t inner_height;  ///< the smallest that stays inside the frame
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

constexpr std::array<Entry, 4> kEntries = {{
    {"Bin",
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t /*phase*/) { return QVN_IRaw8CYGMToBGR_Bin(dst, src, width, height); },
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t /*phase*/) { reference::IRaw8CYGMToBGR_Bin(dst, src, width, height); },
     3, 0, 1, 4},
    {"Cells", QVN_IRaw8CYGMToBGR, reference::IRaw8CYGMToBGR, 1, 4, 1, 8},
    {"Neighbourhoods", QVN_IRaw8CYGMToBGR_3x3, reference::IRaw8CYGMToBGR_3x3, 2, 4, 2, 4},
    {"Mono", QVN_IRaw8CYGMToMono, reference::IRaw8CYGMToMono, 1, 1, 1, 2},
}};

std::uint32_t any_phase(support::Random& random) {
  const std::uint32_t kind = random.below(2 * std::size(kPhases));
  return kind < std::size(kPhases) ? kPhases[kind] : static_cast<std::uint32_t>(random.next());
}

/// `frame_height` is the number of lines of the two buffers, where it is not `height`.
testing::AssertionResult matches(const Entry& entry, std::uint32_t width, std::uint32_t height,
                                 std::uint32_t phase, support::Random& random, std::size_t dst_offset = 0,
                                 std::size_t src_offset = 0, std::uint32_t frame_height = 0) {
  if (frame_height == 0) frame_height = height;
  // Small and odd heights copy rows from before the frame and write up to four behind it, and read two
  // lines of fields that have none.
  const std::size_t line = std::size_t{3} * width;
  const support::Room dst{.size = line * frame_height,
                          .line_bytes = line,
                          .before = (line + 127) / 64 * 64 + dst_offset,
                          .behind = 4 * line + 64};
  const support::Room src{.size = std::size_t{width} * frame_height,
                          .line_bytes = width,
                          .before = 64 + src_offset,
                          .behind = std::size_t{4} * width + 64};
  auto same = support::same_effect(
      dst, src, random,
      [&](std::uint8_t* out, const std::uint8_t* in) { return entry.library(out, in, width, height, phase); },
      [&](std::uint8_t* out, const std::uint8_t* in) { entry.reference(out, in, width, height, phase); });
  if (same) return same;
  return same << "; width " << width << ", height " << height << ", phase " << phase << ", offsets "
              << dst_offset << " and " << src_offset;
}

class CygmConversion : public testing::TestWithParam<Entry> {
 protected:
  static std::vector<std::uint32_t> heights(std::uint32_t last) {
    std::vector<std::uint32_t> all;
    for (std::uint32_t height = GetParam().smallest_height; height <= last;
         height += GetParam().height_step) {
      all.push_back(height);
    }
    return all;
  }

  static std::vector<std::uint32_t> widths() {
    std::vector<std::uint32_t> all = support::frame_widths();
    all.insert(all.begin(), 1);
    std::erase_if(all, [](std::uint32_t width) { return width < GetParam().smallest_width; });
    return all;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, CygmConversion, testing::ValuesIn(kEntries),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(CygmConversion, EqualsReferenceAtEveryHeight) {
  support::Random random(1);
  for (std::uint32_t width : widths()) {
    if (width > 70) continue;
    for (std::uint32_t height : heights(24)) {
      ASSERT_TRUE(matches(GetParam(), width, height, any_phase(random), random));
    }
  }
}

TEST_P(CygmConversion, EqualsReferenceAtEveryWidth) {
  support::Random random(2);
  for (std::uint32_t width : widths()) {
    for (std::uint32_t height : {4U, 8U, 12U, 16U}) {
      ASSERT_TRUE(matches(GetParam(), width, height, any_phase(random), random));
    }
  }
}

TEST_P(CygmConversion, EqualsReferenceInEveryPhase) {
  support::Random random(3);
  for (std::uint32_t width : {2U, 3U, 4U, 5U, 16U, 17U, 33U, 34U, 66U, 70U}) {
    if (width < GetParam().smallest_width) continue;
    for (std::uint32_t height : {4U, 8U, 10U, 12U}) {
      for (std::uint32_t phase : kPhases) ASSERT_TRUE(matches(GetParam(), width, height, phase, random));
    }
  }
}

TEST_P(CygmConversion, EqualsReferenceOnCameraSizes) {
  support::Random random(4);
  for (auto [width, height] : {std::pair{640U, 480U}, std::pair{1288U, 20U}, std::pair{2049U, 8U}}) {
    ASSERT_TRUE(matches(GetParam(), width, height, any_phase(random), random));
  }
}

TEST_P(CygmConversion, NeedsNoAlignment) {
  support::Random random(5);
  for (std::uint32_t width : {4U, 6U, 16U, 35U, 66U, 130U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        ASSERT_TRUE(matches(GetParam(), width, 8, any_phase(random), random, dst_offset, src_offset));
      }
    }
  }
}

TEST_P(CygmConversion, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(6);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : widths()) {
      for (std::uint32_t height : {2U, 4U, 8U, 12U}) {
        if (height < GetParam().inner_height || width < 2) continue;
        support::GuardedBuffer src(std::size_t{width} * height, flush);
        support::GuardedBuffer dst(std::size_t{3} * width * height, flush);
        random.fill(src.data(), src.size());
        random.fill(dst.data(), dst.size());
        Bytes expected(dst.data(), dst.data() + dst.size());
        GetParam().reference(expected.data(), src.data(), width, height, 0);
        ASSERT_EQ(QVN_OK, GetParam().library(dst.data(), src.data(), width, height, 0));
        ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
            << "width " << width << ", height " << height;
      }
    }
  }
}

TEST_P(CygmConversion, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(256, 0xA5);
  for (std::uint32_t phase : kPhases) {
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, 8, 8, phase));
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), 8, 8, phase));
    EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 8, 8, phase));
    EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 0, 0, phase));
  }
  EXPECT_EQ(Bytes(256, 0xA5), bytes);
}

/// Half the lines are a signed number in a binned frame: beyond 2^31 lines no block is made, and the four
/// rows that every frame has are made from where the product of width and height, cut to 32 bits, puts the
/// second field.
TEST(CygmConversionSizes, BinnedLinesAreCountedAsSigned) {
  support::Random random(7);
  for (std::uint32_t height : {0x80000004U, 0x80000008U, 0x80000010U}) {
    for (std::uint32_t width : {4U, 6U, 34U}) {
      ASSERT_TRUE(matches(kEntries[0], width, height, 0, random, 0, 0, height & 0xFF));
    }
  }
}

/// A height of 0 leaves the grey conversion the copy of its last row, if the phase has a row in it; without
/// one the number of rows wraps.
TEST(CygmConversionSizes, MonoOfNoLinesWithARowPhaseCopiesOneRow) {
  support::Random random(8);
  for (std::uint32_t width : {2U, 3U, 16U, 70U}) {
    for (std::uint32_t phase : kPhases) {
      if (phase < 2) continue;
      ASSERT_TRUE(matches(kEntries[3], width, 0, phase, random));
    }
  }
}

}  // namespace
