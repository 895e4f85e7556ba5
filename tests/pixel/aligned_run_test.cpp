/// Long runs go on from where their destination is aligned: every pixel once, in order, for every address.
#include "pixel/aligned_run.h"

#include <gtest/gtest.h>

#include <vector>

namespace qvn {
namespace {

struct Call {
  uint8_t* to;
  const uint8_t* from;
  size_t pixels;
};

constexpr size_t kSourcePairBytes = 3;

template <size_t kPixelBytes>
std::vector<Call> calls_of(uint8_t* dst, const uint8_t* src, size_t n) {
  std::vector<Call> calls;
  aligned_run<kPixelBytes>(dst, src, kSourcePairBytes, n,
                           [&](uint8_t* to, const uint8_t* from, size_t pixels) {
                             calls.push_back({to, from, pixels});
                           });
  return calls;
}

bool is_aligned(const uint8_t* at) { return reinterpret_cast<uintptr_t>(at) % kLaneBytes == 0; }

/// Whether a pair of pixels begins where a vector may, sooner or later.
template <size_t kPixelBytes>
bool can_be_aligned(const uint8_t* dst) {
  for (size_t x = 0; x < 2 * kLaneBytes; x += 2) {
    if (is_aligned(dst + x * kPixelBytes)) return true;
  }
  return false;
}

template <size_t kPixelBytes>
void expect_all_pixels_in_order() {
  constexpr size_t kMost = kAlignedPixels + 7;
  std::vector<uint8_t> src(kMost / 2 * kSourcePairBytes + kSourcePairBytes), dst(kMost * kPixelBytes + 128);
  for (size_t offset = 0; offset < 128; ++offset) {
    for (const size_t n : {kAlignedPixels, kMost}) {
      uint8_t* const begin = dst.data() + offset;
      size_t done = 0;
      const std::vector<Call> calls = calls_of<kPixelBytes>(begin, src.data(), n);
      for (const Call& call : calls) {
        ASSERT_EQ(call.to, begin + done * kPixelBytes) << offset;
        ASSERT_EQ(call.from, src.data() + done / 2 * kSourcePairBytes) << offset;
        ASSERT_EQ(done % 2, 0U);
        done += call.pixels;
      }
      ASSERT_EQ(done, n) << offset;
      if (!kVectorRows) continue;
      ASSERT_EQ(is_aligned(calls.back().to), can_be_aligned<kPixelBytes>(begin)) << offset;
      ASSERT_GT(calls.back().pixels, n - kLaneBytes);
    }
  }
}

TEST(AlignedRun, EveryPixelInOrder) {
  expect_all_pixels_in_order<1>();
  expect_all_pixels_in_order<2>();
  expect_all_pixels_in_order<3>();
  expect_all_pixels_in_order<4>();
  expect_all_pixels_in_order<6>();
}

TEST(AlignedRun, ShortRunsAreLeftAlone) {
  std::vector<uint8_t> dst(2 * kAlignedPixels), src(2 * kAlignedPixels);
  for (const size_t n : {size_t{0}, size_t{1}, kAlignedPixels - 1}) {
    const std::vector<Call> calls = calls_of<1>(dst.data() + 2, src.data(), n);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].to, dst.data() + 2);
    EXPECT_EQ(calls[0].pixels, n);
  }
}

}  // namespace
}  // namespace qvn
