/// The transforms of runs, RGB, YUV and mono, in every output: against the slow reference for every count,
/// for every sample or colour, between inaccessible pages, and against numbers worked out by hand.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <string>
#include <vector>

#include "reference/transform_runs.h"
#include "support/arena.h"
#include "support/random.h"
#include "support/runs.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using support::Run;
using Library = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t);
using Reference = bool (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t);

struct Entry {
  const char* name;
  Library library;
  Reference reference;
  std::uint32_t group_pixels;
  std::uint32_t group_bytes_in;
  std::uint32_t targets;         ///< 0 to targets - 1 are offered
  std::uint32_t count_step = 1;  ///< other counts never end
};

const std::array<Entry, 8> kEntries = {{
    {"RGB8", QVN_RGB8ImageTransform, reference::RGB8ImageTransform, 1, 3, 4},
    {"RGBA8", QVN_RGBA8ImageTransform, reference::RGBA8ImageTransform, 1, 4, 4},
    {"YUV444", QVN_YUV444ImageTransform, reference::YUV444ImageTransform, 1, 3, 4},
    {"YUV422", QVN_YUV422ImageTransform, reference::YUV422ImageTransform, 2, 4, 4},
    {"YUV411", QVN_YUV411ImageTransform, reference::YUV411ImageTransform, 4, 6, 4},
    {"Y8", QVN_Y8ImageTransform, reference::Y8ImageTransform, 1, 1, 5},
    {"Y16", QVN_Y16ImageTransform, reference::Y16ImageTransform, 1, 2, 4},
    {"Y12", QVN_Y12ImageTransform, reference::Y12ImageTransform, 2, 3, 4, 2},
}};

constexpr std::uint32_t kPixelBytes[] = {1, 3, 4, 1, 2, 2, 2, 6};

Run run_of(const Entry& entry, std::uint32_t target) {
  return {std::string(entry.name) + "_" + std::to_string(target),
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            return entry.library(dst, src, count, target);
          },
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            EXPECT_TRUE(entry.reference(dst, src, count, target));
          },
          entry.group_pixels, entry.group_bytes_in, entry.group_pixels * kPixelBytes[target],
          // An odd count writes into one byte more than a pixel of 4:2:2 has; it has a test of its own.
          target == 4 ? 2 : entry.count_step};
}

/// Alignment 0 for 0 bits, else alignment 1.
Run run_of_format(std::uint32_t target, std::uint32_t order, std::uint32_t bits) {
  const reference::SampleFormat format = {bits == 0 ? 0U : 1U, bits, order};
  const SampleFormatBlock block = {0xDEADBEEF, format.alignment, bits, order, 0xDEADBEEF};
  return {"Y16Ex_" + std::to_string(target) + "_" + std::to_string(order) + "_" + std::to_string(bits),
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            return QVN_Y16ImageTransformEx(dst, src, count, target, &block);
          },
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
            EXPECT_TRUE(reference::Y16ImageTransformEx(dst, src, count, target, &format));
          },
          1,
          2,
          kPixelBytes[target]};
}

Run run_without_format(std::uint32_t target) {
  Run run = run_of_format(target, 1, 0);
  run.name = "Y16Ex_" + std::to_string(target) + "_null";
  run.library = [target](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
    return QVN_Y16ImageTransformEx(dst, src, count, target, nullptr);
  };
  return run;
}

constexpr std::uint32_t kExTargets[] = {0, 1, 2, 3, 5, 6, 7};
constexpr std::uint32_t kDepths[] = {0, 16, 15, 14, 13, 12, 10};

std::vector<Run> all_runs() {
  std::vector<Run> runs;
  for (const Entry& entry : kEntries) {
    for (std::uint32_t target = 0; target < entry.targets; ++target) runs.push_back(run_of(entry, target));
  }
  for (std::uint32_t target : kExTargets) {
    for (std::uint32_t order : {0U, 1U}) {
      for (std::uint32_t bits : {0U, 12U, 10U}) runs.push_back(run_of_format(target, order, bits));
    }
  }
  runs.push_back(run_without_format(1));
  return runs;
}

class TransformRuns : public testing::TestWithParam<Run> {};

INSTANTIATE_TEST_SUITE_P(Entries, TransformRuns, testing::ValuesIn(all_runs()), support::run_name);

TEST_P(TransformRuns, EqualsReferenceForEveryCount) { support::expect_equal_for_every_count(GetParam()); }

TEST_P(TransformRuns, NeedsNoAlignment) { support::expect_no_need_of_alignment(GetParam()); }

TEST_P(TransformRuns, TouchesNothingOutsideOfItsGroups) {
  support::expect_nothing_touched_outside(GetParam());
}

TEST_P(TransformRuns, TouchesNothingBelowAGroup) {
  support::GuardedBuffer none(1, support::Flush::kEnd);
  const auto& run = GetParam();
  for (std::uint32_t count = 0; count < run.group_pixels; count += run.count_step) {
    EXPECT_EQ(QVN_OK, run.library(none.data() + 1, none.data() + 1, count));
  }
}

/// Whether the buffer of the source may be that of the destination: 4:2:2 and 4:1:1 read ahead of their
/// lumas.
bool works_in_place(const Run& run) {
  const bool reads_in_order = run.group_pixels == 1 || run.name.starts_with("Y12");
  return reads_in_order && run.group_bytes_out <= run.group_bytes_in;
}

TEST_P(TransformRuns, WorksInPlaceWherePixelsDoNotGrow) {
  if (!works_in_place(GetParam())) return;
  support::Random random(202);
  for (std::uint32_t count : GetParam().counts()) {
    if (count > 300 && count < 4096) continue;
    support::Arena expected(64, GetParam().bytes_in(count), 64);
    expected.fill(random);
    support::Arena actual(expected);
    GetParam().reference(expected.data(), expected.data(), count);
    ASSERT_EQ(QVN_OK, GetParam().library(actual.data(), actual.data(), count));
    ASSERT_TRUE(support::same_bytes("frame", expected, actual)) << "count " << count;
  }
}

/// All red, green and blue, in blocks of one red.
TEST(TransformRgb, LumaEqualsReferenceForEveryColour) {
  for (std::size_t which : {0U, 1U}) {
    const std::uint32_t step = kEntries[which].group_bytes_in;
    Bytes src(std::size_t{step} * 65536, 0xEE);
    for (std::size_t i = 0; i < 65536; ++i) {
      src[step * i + 1] = static_cast<std::uint8_t>(i >> 8);
      src[step * i + 2] = static_cast<std::uint8_t>(i);
    }
    for (unsigned red = 0; red < 256; ++red) {
      for (std::size_t i = 0; i < 65536; ++i) src[step * i] = static_cast<std::uint8_t>(red);
      ASSERT_TRUE(support::same_output(run_of(kEntries[which], 0), src)) << "red " << red;
      ASSERT_TRUE(support::same_output(run_of(kEntries[which], 3), src)) << "red " << red;
    }
  }
}

/// All pairs of chroma, with lumas that differ from pair to pair.
TEST(TransformYuv, EqualsReferenceForEveryChroma) {
  support::Random random(201);
  for (std::size_t which : {2U, 3U, 4U}) {
    const Entry& entry = kEntries[which];
    const std::size_t v_place = entry.group_bytes_in / 2 + (entry.group_pixels == 1 ? 1 : 0);
    for (unsigned u = 0; u < 256; ++u) {
      Bytes src(std::size_t{entry.group_bytes_in} * 256 * 4);
      random.fill(src.data(), src.size());
      for (std::size_t group = 0; group < 256 * 4; ++group) {
        src[group * entry.group_bytes_in] = static_cast<std::uint8_t>(u);
        src[group * entry.group_bytes_in + v_place] = static_cast<std::uint8_t>(group);
      }
      for (std::uint32_t target = 0; target < 4; ++target) {
        ASSERT_TRUE(support::same_output(run_of(entry, target), src)) << "target " << target;
      }
    }
  }
}

/// All 65,536 words; for packed 12, as bytes 0 and 2 of a group.
Bytes every_word() {
  Bytes all;
  for (unsigned value = 0; value < 65536; ++value) {
    all.push_back(static_cast<std::uint8_t>(value >> 8));
    all.push_back(static_cast<std::uint8_t>(value));
  }
  return all;
}

TEST(TransformMono, EqualsReferenceForEverySample) {
  const Bytes words = every_word();
  for (std::uint32_t target : {0U, 1U, 2U, 3U}) {
    ASSERT_TRUE(support::same_output(run_of(kEntries[6], target), words));
    for (std::uint32_t middle : {0U, 0xFFU}) {
      Bytes packed;
      for (std::size_t i = 0; i < words.size(); i += 2) {
        packed.insert(packed.end(), {words[i], static_cast<std::uint8_t>(middle), words[i + 1]});
      }
      ASSERT_TRUE(support::same_output(run_of(kEntries[7], target), packed));
    }
  }
  for (std::uint32_t target : support::numbers(0, 4)) {
    ASSERT_TRUE(support::same_output(run_of(kEntries[5], target), words));
  }
}

TEST(TransformMono, ExEqualsReferenceForEverySampleAndFormat) {
  const Bytes words = every_word();
  for (std::uint32_t target : kExTargets) {
    for (std::uint32_t order : {0U, 1U}) {
      for (std::uint32_t bits : kDepths) {
        ASSERT_TRUE(support::same_output(run_of_format(target, order, bits), words))
            << "order " << order << ", bits " << bits;
      }
    }
    ASSERT_TRUE(support::same_output(run_without_format(target), words));
  }
}

}  // namespace
