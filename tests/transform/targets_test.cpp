/// How a transform's answer comes about: what a kernel says, and outputs that have no kernel. The kernels
/// never fail; the answers to a failure are tested here with some that do.
#include "transform/targets.h"

#include <gtest/gtest.h>

namespace {

using Kernel = bool (*)();

constexpr qvn::ByTarget<Kernel> kKernels = {[] { return true; }, [] { return false; }};

std::uint32_t run(std::uint32_t target) {
  return qvn::run_target(kKernels, target, [](Kernel kernel) { return kernel(); });
}

std::uint32_t run_or_refuse(std::uint32_t target) {
  return qvn::run_target(
      kKernels, target, [](Kernel kernel) { return kernel(); }, QVN_E_NOT_IMPLEMENTED);
}

TEST(TransformTargets, AFailureIsUnclassifiedUnlessTheEntrySaysOtherwise) {
  EXPECT_EQ(run(0), QVN_OK);
  EXPECT_EQ(run(1), QVN_E_UNCLASSIFIED);
  EXPECT_EQ(run_or_refuse(0), QVN_OK);
  EXPECT_EQ(run_or_refuse(1), QVN_E_NOT_IMPLEMENTED);
}

TEST(TransformTargets, WithoutAKernelAreNotImplemented) {
  for (const std::uint32_t target : {2U, 7U, 8U, 0x100U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(run(target), QVN_E_NOT_IMPLEMENTED) << target;
    EXPECT_EQ(run_or_refuse(target), QVN_E_NOT_IMPLEMENTED) << target;
  }
}

TEST(TransformTargets, AKernelWithoutAResultSucceeds) {
  int runs = 0;
  EXPECT_EQ(qvn::run_target(kKernels, 1, [&](Kernel) { ++runs; }), QVN_OK);
  EXPECT_EQ(runs, 1);
}

}  // namespace
