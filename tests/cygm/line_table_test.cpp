/// The memory that conversions of complementary mosaics take: the 3x3 ones a table of line addresses for the
/// length of a call, whose failure leaves the entry as the exception it is, and the others none.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <new>
#include <vector>

#include "frame/failing_new.h"
#include "quorvane/quorvane.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kWidth = 34;
constexpr std::uint32_t kHeight = 16;

struct Call {
  const char* name;
  std::uint32_t (*run)(std::uint8_t* dst, const std::uint8_t* src);
};

constexpr std::array<Call, 5> kWithTable = {{
    {"3x3", [](auto* dst, auto* src) { return QVN_IRaw8CYGMToBGR_3x3(dst, src, kWidth, kHeight, 0); }},
    {"3x3 to target 0",
     [](auto* dst, auto* src) { return QVN_IRaw8CYGMImageTransform_3x3(dst, src, kWidth, kHeight, 0, 0); }},
    {"3x3 to target 1",
     [](auto* dst, auto* src) { return QVN_IRaw8CYGMImageTransform_3x3(dst, src, kWidth, kHeight, 1, 0); }},
    {"3x3 to target 2",
     [](auto* dst, auto* src) { return QVN_IRaw8CYGMImageTransform_3x3(dst, src, kWidth, kHeight, 2, 0); }},
    {"3x3 to target 3",
     [](auto* dst, auto* src) { return QVN_IRaw8CYGMImageTransform_3x3(dst, src, kWidth, kHeight, 3, 0); }},
}};

constexpr std::array<Call, 6> kWithout = {{
    {"binned", [](auto* dst, auto* src) { return QVN_IRaw8CYGMToBGR_Bin(dst, src, kWidth, kHeight); }},
    {"2x2", [](auto* dst, auto* src) { return QVN_IRaw8CYGMToBGR(dst, src, kWidth, kHeight, 0); }},
    {"mono", [](auto* dst, auto* src) { return QVN_IRaw8CYGMToMono(dst, src, kWidth, kHeight, 0); }},
    {"binned to target 4",
     [](auto* dst, auto* src) { return QVN_IRaw8CYGMImageTransform_Bin(dst, src, kWidth, kHeight, 4); }},
    {"2x2 to target 2",
     [](auto* dst, auto* src) { return QVN_IRaw8CYGMImageTransform(dst, src, kWidth, kHeight, 2, 0); }},
    {"2x2 to target 4",
     [](auto* dst, auto* src) { return QVN_IRaw8CYGMImageTransform(dst, src, kWidth, kHeight, 4, 0); }},
}};

class CygmLineTable : public testing::Test {
 protected:
  void TearDown() override { support::fail_allocation(0); }

  Bytes src_ = Bytes(std::size_t{kWidth} * kHeight, 100);
  Bytes dst_ = Bytes(std::size_t{4} * kWidth * kHeight, 0xA5);
};

TEST_F(CygmLineTable, IsOneAllocationThatIsGivenBack) {
  for (const Call& call : kWithTable) {
    const std::size_t count = support::allocation_count();
    const long live = support::live_allocations();
    EXPECT_EQ(call.run(dst_.data(), src_.data()), QVN_OK) << call.name;
    EXPECT_EQ(support::allocation_count() - count, 1U) << call.name;
    EXPECT_EQ(support::live_allocations(), live) << call.name;
  }
}

TEST_F(CygmLineTable, FailureLeavesTheEntryBeforeAnyPixel) {
  for (const Call& call : kWithTable) {
    const long live = support::live_allocations();
    support::fail_allocation(1);
    EXPECT_THROW(call.run(dst_.data(), src_.data()), std::bad_alloc) << call.name;
    support::fail_allocation(0);
    EXPECT_EQ(dst_, Bytes(dst_.size(), 0xA5)) << call.name;
    EXPECT_EQ(support::live_allocations(), live) << call.name;
  }
}

TEST_F(CygmLineTable, IsNotMadeForARefusedCall) {
  const std::size_t count = support::allocation_count();
  EXPECT_EQ(QVN_IRaw8CYGMToBGR_3x3(nullptr, src_.data(), kWidth, kHeight, 0), QVN_E_PARAM1);
  EXPECT_EQ(QVN_IRaw8CYGMToBGR_3x3(dst_.data(), nullptr, kWidth, kHeight, 0), QVN_E_PARAM2);
  EXPECT_EQ(QVN_IRaw8CYGMImageTransform_3x3(dst_.data(), src_.data(), kWidth, kHeight, 4, 0),
            QVN_E_NOT_IMPLEMENTED);
  EXPECT_EQ(support::allocation_count(), count);
}

TEST_F(CygmLineTable, NoOtherConversionTakesMemory) {
  for (const Call& call : kWithout) {
    const std::size_t count = support::allocation_count();
    EXPECT_EQ(call.run(dst_.data(), src_.data()), QVN_OK) << call.name;
    EXPECT_EQ(support::allocation_count(), count) << call.name;
  }
}

}  // namespace
