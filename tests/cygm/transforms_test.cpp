/// QVN_IRaw8CYGMImageTransform_Bin, QVN_IRaw8CYGMImageTransform and QVN_IRaw8CYGMImageTransform_3x3: every
/// target against the slow reference over whole arenas and between inaccessible pages.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "reference/cygm_transform.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

struct Entry {
  const char* name;
  std::uint32_t (*library)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                           std::uint32_t);
  void (*reference)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                    std::uint32_t);
  std::uint32_t targets;
  std::uint32_t smallest_width;
  std::uint32_t smallest_height;  ///< that has an outcome, with memory around the frame
  std::uint32_t height_step;
  bool leaves;  ///< the frame, in odd widths
};

constexpr Entry kBin = {"Bin",
                        [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                           std::uint32_t height, std::uint32_t target, std::uint32_t /*phase*/) {
                          return QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, target);
                        },
                        [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                           std::uint32_t height, std::uint32_t target, std::uint32_t /*phase*/) {
                          reference::IRaw8CYGMImageTransform_Bin(dst, src, width, height, target);
                        },
                        5,
                        3,
                        0,
                        1,
                        false};
constexpr Entry kCells = {
    "Cells", QVN_IRaw8CYGMImageTransform, reference::IRaw8CYGMImageTransform, 5, 2, 0, 1, true};
constexpr Entry kNeighbourhoods = {"Neighbourhoods",
                                   QVN_IRaw8CYGMImageTransform_3x3,
                                   reference::IRaw8CYGMImageTransform_3x3,
                                   4,
                                   2,
                                   4,
                                   2,
                                   false};

struct Case {
  Entry entry;
  std::uint32_t target;
};

std::string name_of(const Case& test) {
  return std::string(test.entry.name) + "Target" + std::to_string(test.target);
}

void PrintTo(const Case& test, std::ostream* out) { *out << name_of(test); }

std::vector<Case> all_cases() {
  std::vector<Case> all;
  for (const Entry& entry : {kBin, kCells, kNeighbourhoods}) {
    for (std::uint32_t target = 0; target < entry.targets; ++target) all.push_back({entry, target});
  }
  return all;
}

testing::AssertionResult matches(const Case& test, std::uint32_t width, std::uint32_t height,
                                 support::Random& random, std::size_t dst_offset = 0,
                                 std::size_t src_offset = 0, std::uint32_t frame_height = 0) {
  // The phase counts for nothing.
  const std::uint32_t phase =
      random.below(2) == 0 ? random.below(4) : static_cast<std::uint32_t>(random.next());
  if (frame_height == 0) frame_height = height;
  // Small heights write up to four rows behind the frame, odd widths a pixel or group behind a row; heights
  // that are no multiple of four read up to a line behind the frame.
  const std::size_t line = reference::cygm_pitch(width, test.target);
  const support::Room dst{
      .size = line * frame_height, .line_bytes = line, .before = 64 + dst_offset, .behind = 4 * line + 64};
  const support::Room src{.size = std::size_t{width} * frame_height,
                          .line_bytes = width,
                          .before = 64 + src_offset,
                          .behind = std::size_t{4} * width + 64};
  auto same = support::same_effect(
      dst, src, random,
      [&](std::uint8_t* out, const std::uint8_t* in) {
        return test.entry.library(out, in, width, height, test.target, phase);
      },
      [&](std::uint8_t* out, const std::uint8_t* in) {
        test.entry.reference(out, in, width, height, test.target, phase);
      });
  if (same) return same;
  return same << "; width " << width << ", height " << height << ", phase " << phase << ", offsets "
              << dst_offset << " and " << src_offset;
}

class CygmTransform : public testing::TestWithParam<Case> {
 protected:
  static std::vector<std::uint32_t> widths() {
    std::vector<std::uint32_t> all = support::frame_widths();
    std::erase_if(all, [](std::uint32_t width) { return width < GetParam().entry.smallest_width; });
    return all;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, CygmTransform, testing::ValuesIn(all_cases()),
                         [](const auto& info) { return name_of(info.param); });

TEST_P(CygmTransform, EqualsReferenceAtEveryHeight) {
  support::Random random(1);
  for (std::uint32_t width : widths()) {
    if (width > 70) continue;
    const Entry& entry = GetParam().entry;
    for (std::uint32_t height = entry.smallest_height; height <= 24; height += entry.height_step) {
      ASSERT_TRUE(matches(GetParam(), width, height, random));
    }
  }
}

TEST_P(CygmTransform, EqualsReferenceAtEveryWidth) {
  support::Random random(2);
  for (std::uint32_t width : widths()) {
    for (std::uint32_t height : {4U, 8U, 12U}) ASSERT_TRUE(matches(GetParam(), width, height, random));
  }
}

TEST_P(CygmTransform, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 240U}, std::pair{1288U, 12U}, std::pair{2049U, 8U}}) {
    ASSERT_TRUE(matches(GetParam(), width, height, random));
  }
}

TEST_P(CygmTransform, NeedsNoAlignment) {
  support::Random random(4);
  for (std::uint32_t width : {4U, 6U, 16U, 35U, 66U, 130U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 31U}) {
        ASSERT_TRUE(matches(GetParam(), width, 8, random, dst_offset, src_offset));
      }
    }
  }
}

TEST_P(CygmTransform, TouchesNothingOutsideOfItsBuffers) {
  const auto& [entry, target] = GetParam();
  support::Random random(5);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : widths()) {
      if (width % 2 != 0 && entry.leaves) continue;
      for (std::uint32_t height : {4U, 8U, 12U}) {
        support::GuardedBuffer src(std::size_t{width} * height, flush);
        support::GuardedBuffer dst(reference::cygm_pitch(width, target) * height, flush);
        random.fill(src.data(), src.size());
        random.fill(dst.data(), dst.size());
        Bytes expected(dst.data(), dst.data() + dst.size());
        entry.reference(expected.data(), src.data(), width, height, target, 0);
        ASSERT_EQ(QVN_OK, entry.library(dst.data(), src.data(), width, height, target, 0));
        ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
            << "width " << width << ", height " << height;
      }
    }
  }
}

TEST_P(CygmTransform, RefusesNullPointersInArgumentOrder) {
  const auto& [entry, target] = GetParam();
  Bytes bytes(256, 0xA5);
  EXPECT_EQ(QVN_E_PARAM1, entry.library(nullptr, nullptr, 8, 8, target, 1));
  EXPECT_EQ(QVN_E_PARAM1, entry.library(nullptr, bytes.data(), 8, 8, target, 1));
  EXPECT_EQ(QVN_E_PARAM2, entry.library(bytes.data(), nullptr, 8, 8, target, 1));
  EXPECT_EQ(Bytes(256, 0xA5), bytes);
}

TEST(CygmTransformTargets, OthersAreRefusedAfterThePointers) {
  Bytes dst(64 * 6, 0xA5);
  Bytes src(64, 0x3C);
  for (const Entry& entry : {kBin, kCells, kNeighbourhoods}) {
    std::vector<std::uint32_t> others = numbers(entry.targets, 40);
    for (std::uint32_t target = 0; target < 8; ++target) others.push_back(0x80000000 + target);
    others.insert(others.end(), {0x100, 0x101, 0x10001, 0x7FFFFFFF, 0xFFFFFFFF});
    for (std::uint32_t target : others) {
      EXPECT_EQ(QVN_E_PARAM1, entry.library(nullptr, nullptr, 8, 8, target, 0)) << entry.name;
      EXPECT_EQ(QVN_E_PARAM1, entry.library(nullptr, src.data(), 8, 8, target, 0)) << entry.name;
      EXPECT_EQ(QVN_E_PARAM2, entry.library(dst.data(), nullptr, 8, 8, target, 0)) << entry.name;
      EXPECT_EQ(QVN_E_NOT_IMPLEMENTED, entry.library(dst.data(), src.data(), 8, 8, target, 0))
          << entry.name << ", target " << target;
      EXPECT_EQ(QVN_E_NOT_IMPLEMENTED, entry.library(dst.data(), src.data(), 0, 0, target, 0)) << entry.name;
    }
  }
  EXPECT_EQ(Bytes(64 * 6, 0xA5), dst);
  EXPECT_EQ(Bytes(64, 0x3C), src);
}

/// As in the plain conversion of binned frames.
TEST(CygmTransformSizes, BinnedLinesAreCountedAsSigned) {
  support::Random random(6);
  for (std::uint32_t target : numbers(0, 4)) {
    for (std::uint32_t width : {4U, 6U, 34U}) {
      ASSERT_TRUE(matches({kBin, target}, width, 0x80000008, random, 0, 0, 8));
    }
  }
}

}  // namespace
