/// The runs of every source and target: vectors against one group of pixels at a time, for every length, with
/// both blocks flush against inaccessible memory, and in place where a pixel does not grow.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pixel/aligned_run.h"
#include "support/guard.h"
#include "support/random.h"
#include "transform/runs.h"

namespace qvn {
namespace {

constexpr size_t kLongest = 150;

/// The length behind n: all short ones, and the first that go on from where their stores are aligned.
constexpr size_t next_length(size_t n, size_t step) {
  return n <= kLongest && n + step > kLongest ? kAlignedPixels - 2 * step : n + step;
}
constexpr size_t kLongestAligned = kAlignedPixels + 66;
constexpr size_t kPixelBytes[] = {1, 3, 4, 1, 2, 2, 2, 6};

struct Source {
  const char* name;
  const ByTarget<PixelRun>* runs;
  size_t group_pixels, group_bytes;
  bool in_place;  // for targets of no more bytes a pixel
};

void PrintTo(const Source& source, std::ostream* out) { *out << source.name; }

const Source kSources[] = {
    {"Rgb8", &kRgb8Runs, 1, 3, true},
    {"Rgba8", &kRgba8Runs, 1, 4, true},
    {"Yuv444", &kYuv444Runs, 1, 3, true},
    {"Yuv422", &kYuv422Runs, 2, 4, false},
    {"Yuv411", &kYuv411Runs, 4, 6, false},
    {"Y8", &kY8Runs, 1, 1, true},
    {"Y16", &kY16Runs, 1, 2, true},
    {"Y12", &kY12Runs, 2, 3, true},
    {"Y16Host0", kY16LayoutRuns[0].data(), 1, 2, true},
    {"Y16Host4", &kY16LayoutRuns[0][4], 1, 2, true},
    {"Y16Host6", &kY16LayoutRuns[0][6], 1, 2, true},
    {"Y16Big0", kY16LayoutRuns[1].data(), 1, 2, true},
    {"Y16Big3", &kY16LayoutRuns[1][3], 1, 2, true},
};

class TransformRun : public testing::TestWithParam<Source> {
 protected:
  static size_t whole_groups(size_t n) { return n / GetParam().group_pixels; }

  // Short runs have no vectors.
  static void run_by_groups(PixelRun run, size_t target, uint8_t* dst, const uint8_t* src, size_t groups) {
    const Source& source = GetParam();
    for (size_t group = 0; group < groups; ++group) {
      run(dst + group * source.group_pixels * kPixelBytes[target], src + group * source.group_bytes,
          source.group_pixels);
    }
  }
};

TEST_P(TransformRun, EqualsItsGroupsOneAtATime) {
  const Source& source = GetParam();
  support::Random random(61);
  for (size_t target = 0; target < source.runs->size(); ++target) {
    const PixelRun run = (*source.runs)[target];
    if (run == nullptr || (source.runs == &kY8Runs && target == 4)) continue;
    for (size_t n = 0; n <= kLongestAligned; n = next_length(n, source.group_pixels)) {
      for (const support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
        const size_t src_bytes = whole_groups(n) * source.group_bytes, dst_bytes = n * kPixelBytes[target];
        support::GuardedBuffer src(src_bytes, flush), dst(dst_bytes, flush);
        random.fill(src.data(), src_bytes);
        random.fill(dst.data(), dst_bytes);
        std::vector<uint8_t> expected(dst.data(), dst.data() + dst_bytes);
        run_by_groups(run, target, expected.data(), src.data(), whole_groups(n));
        ASSERT_TRUE(run(dst.data(), src.data(), n));
        ASSERT_EQ(std::vector<uint8_t>(dst.data(), dst.data() + dst_bytes), expected)
            << "target " << target << ", n " << n;
      }
    }
  }
}

TEST_P(TransformRun, WorksInPlaceWhereAPixelDoesNotGrow) {
  const Source& source = GetParam();
  if (!source.in_place) GTEST_SKIP() << "not in place";
  support::Random random(62);
  for (size_t target = 0; target < source.runs->size(); ++target) {
    const PixelRun run = (*source.runs)[target];
    if (run == nullptr || source.group_pixels * kPixelBytes[target] > source.group_bytes) continue;
    for (size_t n = 0; n <= kLongestAligned; n = next_length(n, 5 * source.group_pixels)) {
      std::vector<uint8_t> src(whole_groups(n) * source.group_bytes + 4);
      random.fill(src.data(), src.size());
      for (size_t offset = 0; offset < 4; ++offset) {
        std::vector<uint8_t> buffer(src), expected(src);
        run_by_groups(run, target, expected.data() + offset, src.data() + offset, whole_groups(n));
        run(buffer.data() + offset, buffer.data() + offset, n);
        ASSERT_EQ(buffer, expected) << "target " << target << ", n " << n;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, TransformRun, testing::ValuesIn(kSources),
                         [](const auto& info) { return std::string(info.param.name); });

/// The chroma bytes of its last group are of an odd count too, and so it is not made of shorter runs.
TEST(TransformRunY8, ToYuv422WritesLumaAndZeroChroma) {
  support::Random random(63);
  for (size_t n = 0; n <= kLongest; ++n) {
    for (const support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
      const size_t dst_bytes = 2 * n + n % 2;
      support::GuardedBuffer src(n, flush), dst(dst_bytes, flush);
      random.fill(src.data(), n);
      random.fill(dst.data(), dst_bytes);
      kY8Runs[4](dst.data(), src.data(), n);
      for (size_t i = 0; i < dst_bytes; ++i) {
        ASSERT_EQ(dst.data()[i], i % 2 == 0 ? 0 : src.data()[i / 2]) << "n " << n << ", byte " << i;
      }
    }
  }
}

}  // namespace
}  // namespace qvn
