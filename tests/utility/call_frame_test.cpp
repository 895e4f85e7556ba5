/// What the utilities do to the log and to memory: which of them write their name and when, what they
/// allocate, and what a failed allocation leaves behind.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "frame/failing_new.h"
#include "frame/test_logger.h"
#include "quorvane/quorvane.h"

namespace {

using support::Installed;
using support::line_of;
using support::TestLogger;
using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;

constexpr std::uint32_t kHorizontal = 1;
constexpr std::uint32_t kVertical = 2;
constexpr std::uint32_t kBoth = 3;
constexpr std::uint32_t kMono8 = 0;
constexpr std::uint32_t kMono16 = 5;
constexpr std::uint32_t kExtension = 132;

/// The lines that a call leaves in a log that takes them all.
Lines logged_by(const std::function<void()>& call) {
  TestLogger logger;
  const Installed installed(logger);
  call();
  return logger.lines();
}

Lines entered(const char* name) { return {line_of("DEBUG  ", std::string("Entered method ") + name)}; }

Bytes counting(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 7 + 1);
  return bytes;
}

TEST(UtilityLog, FlipVerticalWritesItsLineAfterItsChecks) {
  Bytes frame = counting(16);
  EXPECT_EQ(logged_by([&] { EXPECT_EQ(QVN_FlipVertical(nullptr, 4, 4), QVN_E_PARAM1); }), Lines{});
  EXPECT_EQ(logged_by([&] { EXPECT_EQ(QVN_FlipVertical(frame.data(), 4, 0), QVN_E_PARAM3); }), Lines{});
  EXPECT_EQ(logged_by([&] { EXPECT_EQ(QVN_FlipVertical(frame.data(), 4, 1), QVN_E_PARAM3); }), Lines{});
  EXPECT_EQ(logged_by([&] { EXPECT_EQ(QVN_FlipVertical(frame.data(), 4, 4), QVN_OK); }),
            entered("QVN_FlipVertical"));
}

TEST(UtilityLog, FlipWritesNoLineOfItsOwn) {
  Bytes frame = counting(32);
  const auto flip = [&](std::uint32_t height, std::uint32_t axis, std::uint32_t code) {
    return logged_by([&] { QVN_Flip(frame.data(), 4, height, axis, code); });
  };
  EXPECT_EQ(logged_by([] { QVN_Flip(nullptr, 4, 4, kVertical, kMono8); }), Lines{});
  EXPECT_EQ(flip(1, kVertical, kMono8), Lines{});
  EXPECT_EQ(flip(4, 4, kMono8), Lines{});
  EXPECT_EQ(flip(4, kHorizontal, kExtension), Lines{});
  EXPECT_EQ(flip(4, kHorizontal, kMono8), Lines{});
  EXPECT_EQ(flip(4, kBoth, kMono16), Lines{});
  EXPECT_EQ(flip(4, kVertical, kMono16), entered("QVN_FlipVertical"));
  EXPECT_EQ(flip(4, kVertical, kExtension), entered("QVN_FlipVertical"));
}

TEST(UtilityLog, FlipVerticalWritesAtLevelFour) {
  Bytes frame = counting(16);
  TestLogger logger;
  logger.threshold = 3;
  const Installed installed(logger);
  EXPECT_EQ(QVN_FlipVertical(frame.data(), 4, 4), QVN_OK);
  EXPECT_TRUE(logger.lines().empty());
}

TEST(UtilityLog, ResamplingAndBlockExtractionWriteNone) {
  Bytes dst(64);
  const Bytes src = counting(64);
  std::int32_t length = 0;
  EXPECT_EQ(logged_by([&] { QVN_GetResampledScanlineLength(&length, 10, 1, 1); }), Lines{});
  for (const std::uint32_t type : {0U, 1U}) {
    EXPECT_EQ(logged_by([&] { QVN_ResampleScanlines(dst.data(), src.data(), 8, 8, 1, 1, 1, type, 0); }),
              Lines{});
    EXPECT_EQ(
        logged_by([&] { QVN_ResampleScanlinesEx(dst.data(), src.data(), 8, 8, 8, 8, 1, 1, 1, type, 1); }),
        Lines{});
    EXPECT_EQ(logged_by([&] { QVN_GetSIS(dst.data(), src.data(), 8, 8, kMono8, 0, type); }), Lines{});
  }
  EXPECT_EQ(logged_by([&] { QVN_GetSIS(nullptr, nullptr, 8, 8, 131, 0, 1); }), Lines{});
}

TEST(UtilityLog, WeavingAndUnpackingWriteTheirLine) {
  Bytes frame = counting(24);
  Bytes dst(64);
  EXPECT_EQ(logged_by([&] { QVN_InterlacedToProgressive(frame.data(), frame.data(), 6, 4); }),
            entered("QVN_InterlacedToProgressive"));
  EXPECT_EQ(logged_by([&] { QVN_InterlacedToProgressive(dst.data(), nullptr, 6, 4); }),
            entered("QVN_InterlacedToProgressive"));
  EXPECT_EQ(logged_by([&] { QVN_Packed12BitTo8Bit(dst.data(), frame.data(), 4, 4); }),
            entered("QVN_Packed12BitTo8Bit"));
  EXPECT_EQ(logged_by([&] { QVN_Packed12BitTo16Bit(dst.data(), frame.data(), 4, 4); }),
            entered("QVN_Packed12BitTo16Bit"));
}

/// Arms the n-th allocation from here on; disarms it at the end of the scope, and then knows whether blocks
/// were left behind.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t n) : live_before_(support::live_allocations()) {
    support::fail_allocation(n);
  }
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation() {
    support::fail_allocation(0);
    EXPECT_EQ(support::live_allocations(), live_before_);
  }

 private:
  long live_before_;
};

std::size_t allocations_of(const std::function<void()>& call) {
  const std::size_t before = support::allocation_count();
  call();
  return support::allocation_count() - before;
}

TEST(UtilityMemory, FlipVerticalAllocatesItsScratchLineAlone) {
  Bytes frame = counting(96);
  EXPECT_EQ(allocations_of([&] { QVN_FlipVertical(frame.data(), 24, 4); }), 1U);
  EXPECT_EQ(allocations_of([&] { QVN_Flip(frame.data(), 12, 4, kVertical, kMono16); }), 1U);
  EXPECT_EQ(allocations_of([&] { QVN_FlipVertical(frame.data(), 24, 1); }), 0U);
  EXPECT_EQ(frame, counting(96)) << "flipped twice";
}

TEST(UtilityMemory, FlipVerticalTurnsAFailedScratchLineIntoAStatus) {
  for (const std::uint32_t line_bytes : {1U, 24U, 32U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    Bytes frame = counting(96);
    const Bytes before = frame;
    std::uint32_t status = 0;
    std::uint32_t through_flip = 0;
    {
      const FailingAllocation failing(1);
      status = QVN_FlipVertical(frame.data(), line_bytes, 3);
    }
    {
      const FailingAllocation failing(1);
      through_flip = QVN_Flip(frame.data(), line_bytes, 3, kVertical, kMono8);
    }
    EXPECT_EQ(status, QVN_E_OUT_OF_MEMORY);
    EXPECT_EQ(through_flip, QVN_E_OUT_OF_MEMORY);
    EXPECT_EQ(frame, before);
  }
}

TEST(UtilityMemory, ReversalsAllocateNothing) {
  Bytes frame = counting(96);
  for (const std::uint32_t code : {0U, 5U, 4U, 6U}) {
    for (const std::uint32_t axis : {kHorizontal, kBoth}) {
      EXPECT_EQ(allocations_of([&] { QVN_Flip(frame.data(), 4, 4, axis, code); }), 0U);
    }
  }
}

TEST(UtilityMemory, WeavingAllocatesInPlaceOnly) {
  Bytes frame = counting(96);
  Bytes dst(96);
  EXPECT_EQ(allocations_of([&] { QVN_InterlacedToProgressive(dst.data(), frame.data(), 24, 4); }), 0U);
  EXPECT_EQ(allocations_of([&] { QVN_InterlacedToProgressive(frame.data(), frame.data(), 24, 4); }), 1U);
  EXPECT_EQ(dst, frame);
}

/// Nothing guards the block of the in-place path, at a height of one line neither.
TEST(UtilityMemory, FailedWeavingInPlaceLeavesByException) {
  for (const std::uint32_t height : {1U, 3U, 4U}) {
    Bytes frame = counting(96);
    {
      const FailingAllocation failing(1);
      EXPECT_THROW(QVN_InterlacedToProgressive(frame.data(), frame.data(), 24, height), std::bad_alloc);
    }
    EXPECT_EQ(frame, counting(96));
  }
}

/// The first field's copy is half of width * height, a product of 32 bits.
TEST(UtilityMemory, SizeOfTheWeavingBlockWraps) {
  Bytes frame = counting(96);
  struct Size {
    std::uint32_t width, height;
    std::size_t half;
  };
  for (const Size& size :
       {Size{24, 4, 48}, Size{5, 3, 7}, Size{65536, 65537, 32768}, Size{65537, 65539, 131073}}) {
    {
      const FailingAllocation failing(1);
      EXPECT_THROW(QVN_InterlacedToProgressive(frame.data(), frame.data(), size.width, size.height),
                   std::bad_alloc);
    }
    EXPECT_EQ(support::last_allocation_size(), size.half);
  }
  EXPECT_EQ(frame, counting(96));
}

/// Each allocation of a call fails in turn, without lines to process too: the tables come first.
TEST(UtilityMemory, FailedTablesLeaveByException) {
  const Bytes src = counting(512);
  for (const std::uint32_t method : {0U, 1U}) {
    for (std::uint32_t type = 1; type <= 6; ++type) {
      for (const std::int32_t lines : {0, 1, 2}) {
        Bytes dst(512, 0xA5);
        const auto resample = [&] {
          EXPECT_EQ(
              QVN_ResampleScanlinesEx(dst.data(), src.data(), 40, 42, 40, 42, lines, 3, 4, type, method), 1U);
        };
        const auto short_entry = [&] {
          QVN_ResampleScanlines(dst.data(), src.data(), 40, 40, lines, 1, 1, type, method);
        };
        const std::size_t needed = allocations_of(resample);
        ASSERT_GE(needed, 1U);
        dst.assign(512, 0xA5);
        for (std::size_t n = 1; n <= needed; ++n) {
          const FailingAllocation failing(n);
          EXPECT_THROW(resample(), std::bad_alloc) << "allocation " << n << " of " << needed;
        }
        {
          const FailingAllocation failing(1);
          EXPECT_THROW(short_entry(), std::bad_alloc);
        }
        EXPECT_EQ(dst, Bytes(512, 0xA5));
      }
    }
  }
}

TEST(UtilityMemory, TablesLiveForOneCall) {
  const Bytes src = counting(512);
  Bytes dst(512);
  const long before = support::live_allocations();
  for (const std::uint32_t method : {0U, 1U}) {
    for (const std::int32_t lines : {-1, 0, 2}) {
      QVN_ResampleScanlines(dst.data(), src.data(), 40, 40, lines, 3, 4, 3, method);
    }
  }
  EXPECT_EQ(support::live_allocations(), before);
}

TEST(UtilityMemory, UnpackingAndBlockExtractionAllocateNothing) {
  const Bytes src = counting(512);
  Bytes dst(1024);
  std::int32_t length = 0;
  EXPECT_EQ(allocations_of([&] { QVN_Packed12BitTo8Bit(dst.data(), src.data(), 17, 20); }), 0U);
  EXPECT_EQ(allocations_of([&] { QVN_Packed12BitTo16Bit(dst.data(), src.data(), 17, 20); }), 0U);
  EXPECT_EQ(allocations_of([&] { QVN_GetSIS(dst.data(), src.data(), 16, 16, kMono8, 2, 2); }), 0U);
  EXPECT_EQ(allocations_of([&] { QVN_GetResampledScanlineLength(&length, 10, 1, 1); }), 0U);
}

}  // namespace
