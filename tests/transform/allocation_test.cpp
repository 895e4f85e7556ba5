/// Memory of the transforms: the interpolating ones take one scratch frame of a known size and give it back,
/// each with its own answer to a failure; the others take none.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <new>
#include <vector>

#include "frame/failing_new.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Entry = std::uint32_t (*)(std::uint8_t*, std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                                std::uint32_t);

constexpr std::uint32_t kWidth = 10;
constexpr std::uint32_t kHeight = 6;

/// Two buffers with what they held before.
struct Buffers {
  Buffers() : dst(std::size_t{4} * kWidth * kHeight), src(std::size_t{kWidth} * kHeight) {
    for (std::size_t i = 0; i < dst.size(); ++i) dst[i] = static_cast<std::uint8_t>(i * 7 + 1);
    for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<std::uint8_t>(i * 13 + 5);
    dst_before = dst;
    src_before = src;
  }
  bool untouched() const { return dst == dst_before && src == src_before; }

  Bytes dst, src, dst_before, src_before;
};

struct Scratch {
  Entry entry;
  std::size_t bytes_a_pixel;
};

constexpr std::array<Scratch, 3> kInterpolating = {{{QVN_Raw8ImageTransform_IntYUV422, 3},
                                                    {QVN_Raw8ImageTransform_IntLCAA, 4},
                                                    {QVN_Raw8ImageTransform_IntLCAAV, 3}}};

TEST(TransformScratch, IsOneFrameOfItsSizeAndIsGivenBack) {
  for (const Scratch& scratch : kInterpolating) {
    for (std::uint32_t target = 0; target < 4; ++target) {
      Buffers buffers;
      const std::size_t count_before = support::allocation_count();
      const long live_before = support::live_allocations();
      const std::uint32_t status =
          scratch.entry(buffers.dst.data(), buffers.src.data(), kWidth, kHeight, target, 0);
      const std::size_t count = support::allocation_count() - count_before;
      const long live = support::live_allocations() - live_before;
      const std::size_t size = support::last_allocation_size();
      EXPECT_EQ(count, 1U);
      EXPECT_EQ(live, 0);
      EXPECT_EQ(size, scratch.bytes_a_pixel * kWidth * kHeight);
      EXPECT_EQ(status, QVN_OK);
      EXPECT_FALSE(buffers.untouched());
    }
  }
}

TEST(TransformScratch, IsNotTakenForARefusedCall) {
  for (const Scratch& scratch : kInterpolating) {
    Buffers buffers;
    std::uint8_t* const dst = buffers.dst.data();
    std::uint8_t* const src = buffers.src.data();
    const std::size_t before = support::allocation_count();
    const std::uint32_t no_output = scratch.entry(dst, src, kWidth, kHeight, 4, 0);
    const std::uint32_t no_dst = scratch.entry(nullptr, src, kWidth, kHeight, 0, 0);
    const std::uint32_t no_src = scratch.entry(dst, nullptr, kWidth, kHeight, 0, 0);
    EXPECT_EQ(support::allocation_count(), before);
    EXPECT_EQ(no_output, QVN_E_NOT_IMPLEMENTED);
    EXPECT_EQ(no_dst, QVN_E_PARAM1);
    EXPECT_EQ(no_src, QVN_E_PARAM2);
    EXPECT_TRUE(buffers.untouched());
  }
}

/// Whatever a test ends in, later allocations go their way.
class TransformWithoutMemory : public testing::TestWithParam<std::uint32_t> {
 protected:
  void SetUp() override { live_ = support::live_allocations(); }
  void TearDown() override {
    support::fail_allocation(0);
    EXPECT_TRUE(buffers_.untouched());
  }
  std::uint32_t run(Entry entry) {
    support::fail_allocation(1);
    return entry(buffers_.dst.data(), buffers_.src.data(), kWidth, kHeight, GetParam(), 0);
  }

  Buffers buffers_;
  long live_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Targets, TransformWithoutMemory, testing::Values(0U, 1U, 2U, 3U));

TEST_P(TransformWithoutMemory, IntYUV422AnswersThatAllIsWell) {
  const std::uint32_t status = run(QVN_Raw8ImageTransform_IntYUV422);
  EXPECT_EQ(support::live_allocations(), live_);
  EXPECT_EQ(status, QVN_OK);
}

TEST_P(TransformWithoutMemory, IntLCAALetsTheErrorOut) {
  EXPECT_THROW(run(QVN_Raw8ImageTransform_IntLCAA), std::bad_alloc);
}

TEST_P(TransformWithoutMemory, IntLCAAVThrowsTheNumberOne) {
  int thrown = 0;
  try {
    run(QVN_Raw8ImageTransform_IntLCAAV);
  } catch (const int number) {
    thrown = number;
  }
  EXPECT_EQ(thrown, 1);
}

TEST(TransformMemory, OtherTransformsTakeNone) {
  Buffers buffers;
  std::uint8_t* const dst = buffers.dst.data();
  const std::uint8_t* const src = buffers.src.data();
  const SampleFormatBlock format = {0, 1, 14, 0, 1};
  constexpr std::uint32_t kCount = 12;
  const std::size_t before = support::allocation_count();
  std::uint32_t statuses = 0;
  for (std::uint32_t target = 0; target < 4; ++target) {
    statuses |= QVN_RGB8ImageTransform(dst, src, kCount, target);
    statuses |= QVN_RGBA8ImageTransform(dst, src, kCount, target);
    statuses |= QVN_YUV444ImageTransform(dst, src, kCount, target);
    statuses |= QVN_YUV422ImageTransform(dst, src, kCount, target);
    statuses |= QVN_YUV411ImageTransform(dst, src, kCount, target);
    statuses |= QVN_Y8ImageTransform(dst, src, kCount, target);
    statuses |= QVN_Y16ImageTransform(dst, src, kCount, target);
    statuses |= QVN_Y16ImageTransformEx(dst, src, kCount, target, &format);
    statuses |= QVN_Y12ImageTransform(dst, src, kCount, target);
    statuses |= QVN_Raw8ImageTransform(dst, src, kWidth, kHeight, target, 2);
    statuses |= QVN_Raw8ImageTransform_3x3(dst, src, kWidth, kHeight, target, 2);
    statuses |= QVN_Raw12ImageTransform(dst, src, kWidth, 4, target, 2);
    statuses |= QVN_Raw16ImageTransform(dst, src, kWidth, 3, target, 2);
    statuses |= QVN_Raw16ImageTransformEx(dst, src, kWidth, 3, target, &format);
  }
  EXPECT_EQ(support::allocation_count(), before);
  EXPECT_EQ(statuses, QVN_OK);
}

}  // namespace
