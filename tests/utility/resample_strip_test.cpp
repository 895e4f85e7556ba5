/// Planned strips against one element at a time: every element, lengths around vectors, groups and strips,
/// rates that need each number of windows or none. Source lines are exactly as long as their largest index.
#include "utility/resample_strip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <vector>

#include "support/guard.h"
#include "support/random.h"
#include "utility/resample.h"

namespace qvn {
namespace {

/// Enough for a plan.
constexpr int32_t kLines = 17;

struct Rates {
  float src, dst;
};

constexpr Rates kRates[] = {{1, 1},       {1, 2},   {4, 5}, {5, 4},  {2, 1},  {3, 1},
                            {4, 1},       {5, 1},   {9, 1}, {20, 1}, {1, 9},  {7, 3},
                            {3.3F, 2.1F}, {100, 1}, {0, 1}, {1, 0},  {-1, 1}, {1e10F, 1}};

/// What every index stays below, for nearest.
constexpr int32_t kSrcLength = 3000;

/// Elements that a line must have, worked out by the plain kernel's rule for the largest index.
size_t source_elements(Rates rates, int32_t length, bool linear) {
  const double step = rates.src / rates.dst;
  const auto limit = static_cast<uint32_t>((linear ? length : kSrcLength) - 1);
  uint32_t largest = 0;
  for (int32_t i = 0; i < length; ++i) {
    const double nearest = step * i + 0.5;
    const bool fits = nearest > -9e18 && nearest < 9e18;
    const uint32_t index = fits ? static_cast<uint32_t>(static_cast<int64_t>(nearest)) : 0;
    largest = std::max(largest, std::min(index, limit));
  }
  return size_t{largest} + 1;
}

struct Case {
  uint32_t element;
  bool linear;
};

void PrintTo(const Case& which, std::ostream* out) {
  *out << (which.linear ? "linear " : "nearest ") << which.element;
}

class ResampleStrip : public testing::TestWithParam<Case> {
 protected:
  ResampleKernel kernel() const {
    return GetParam().linear ? linear_kernel(GetParam().element) : nearest_kernel(GetParam().element);
  }
  ResampleKernel plain() const {
    return GetParam().linear ? linear_kernel_plain(GetParam().element)
                             : nearest_kernel_plain(GetParam().element);
  }

  /// Every line a part of one arena, the last one at a closed page.
  void compare(Rates rates, int32_t length, int32_t dst_pitch, support::Flush flush) {
    const auto [element, linear] = GetParam();
    const size_t src_elements = source_elements(rates, length, linear);
    support::GuardedBuffer src(src_elements * kLines * element, flush);
    random_.fill(src.data(), src.size());
    const size_t lines_between = kLines - 1;
    const size_t dst_bytes =
        (lines_between * static_cast<size_t>(dst_pitch) + static_cast<size_t>(length)) * element;
    support::GuardedBuffer dst(dst_bytes, flush);
    std::vector<uint8_t> expected(dst_bytes);
    random_.fill(dst.data(), dst_bytes);
    std::copy_n(dst.data(), dst_bytes, expected.begin());
    Resampling lines{expected.data(), src.data(), length,
                     dst_pitch,       kSrcLength, static_cast<int32_t>(src_elements),
                     kLines,          rates.src,  rates.dst};
    plain()(lines);
    lines.dst = dst.data();
    kernel()(lines);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), dst.data()))
        << "rates " << rates.src << " " << rates.dst << ", length " << length << ", pitch " << dst_pitch;
  }

  support::Random random_{1};
};

TEST_P(ResampleStrip, EqualsThePlainKernelForEveryRate) {
  for (const Rates rates : kRates) {
    for (const int32_t length : {1, 2, 15, 16, 17, 31, 32, 33, 63, 64, 65, 127, 128, 129, 150, 333, 1000}) {
      compare(rates, length, length, support::Flush::kEnd);
      compare(rates, length, length + 3, support::Flush::kBegin);
    }
  }
}

TEST_P(ResampleStrip, EqualsThePlainKernelBeyondOneStrip) {
  const auto strip = static_cast<int32_t>(16384 / GetParam().element);
  for (const Rates rates : {Rates{4, 5}, Rates{1, 9}}) {
    for (const int32_t length : {strip - 70, strip - 1, strip, strip + 1, strip + 200, 2 * strip + 10}) {
      compare(rates, length, length, support::Flush::kEnd);
    }
  }
}

/// Later lines win where lines overlap.
TEST_P(ResampleStrip, OverlappingLinesAreWrittenInOrder) {
  const auto strip = static_cast<int32_t>(16384 / GetParam().element);
  for (const int32_t length : {100, strip + 100}) {
    for (const int32_t pitch : {0, 1, length / 2}) compare({4, 5}, length, pitch, support::Flush::kEnd);
  }
}

INSTANTIATE_TEST_SUITE_P(All, ResampleStrip,
                         testing::Values(Case{1, false}, Case{2, false}, Case{3, false}, Case{4, false},
                                         Case{5, false}, Case{6, false}, Case{1, true}, Case{2, true},
                                         Case{3, true}, Case{4, true}, Case{5, true}, Case{6, true}),
                         [](const auto& info) {
                           return (info.param.linear ? "Linear" : "Nearest") +
                                  std::to_string(info.param.element);
                         });

/// All pairs of bytes with weights from all over their range.
TEST(BlendPairs, EqualsTheSumOfProducts) {
  if (!kVectorRows) GTEST_SKIP() << "no vectors here";
  std::vector<uint16_t> weights;
  for (uint32_t weight = 0; weight <= 1024; weight += 31) weights.push_back(static_cast<uint16_t>(weight));
  weights.insert(weights.end(), {1, 2, 511, 512, 513, 1022, 1023, 1024});
  uint8_t before[kLaneBytes], own[kLaneBytes], blended[kLaneBytes];
  uint16_t words[kLaneBytes];
  for (const uint16_t weight : weights) {
    std::fill_n(words, size_t{kLaneBytes}, weight);
    for (uint32_t p = 0; p < 256; ++p) {
      for (uint32_t s = 0; s < 256; s += kLaneBytes) {
        for (uint32_t i = 0; i < kLaneBytes; ++i) {
          before[i] = static_cast<uint8_t>(p);
          own[i] = static_cast<uint8_t>(s + i);
        }
        const Bytes ps = load<Bytes>(before), ss = load<Bytes>(own);
        store(blended, blend_pairs(interleave_low(ps, ss), interleave_high(ps, ss),
                                   reinterpret_cast<const uint8_t*>(words)));
        for (uint32_t i = 0; i < kLaneBytes; ++i) {
          ASSERT_EQ(blended[i], (own[i] * uint32_t{weight} + p * (1024U - weight)) >> 10)
              << "before " << p << ", own " << s + i << ", weight " << weight;
        }
      }
    }
  }
}

}  // namespace
}  // namespace qvn
