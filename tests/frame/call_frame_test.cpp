/// The call frame in every entry: its line in the log, under its own name and before any check, and in the
/// Bayer entries the pattern swap, which hangs on the version word at the time of the call.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "frame/test_logger.h"
#include "quorvane/quorvane.h"

namespace {

using support::Installed;
using support::line_of;
using support::TestLogger;

struct Call {
  const char* name;
  std::uint32_t status;
  std::uint32_t (*run)();
};

/// Null pointers all over, where an entry survives them.
const std::vector<Call> kRefusedCalls = {
    {"QVN_GetErrorInfo", QVN_E_PARAM2, [] { return QVN_GetErrorInfo(0, nullptr, 0); }},
    {"QVN_YUV444ToBGR", QVN_E_PARAM1, [] { return QVN_YUV444ToBGR(nullptr, nullptr, 4); }},
    {"QVN_YUV422ToBGR", QVN_E_PARAM1, [] { return QVN_YUV422ToBGR(nullptr, nullptr, 4); }},
    {"QVN_YUV411ToBGR", QVN_E_PARAM1, [] { return QVN_YUV411ToBGR(nullptr, nullptr, 4); }},
    {"QVN_RGB8ToBGR", QVN_E_PARAM1, [] { return QVN_RGB8ToBGR(nullptr, nullptr, 4); }},
    {"QVN_RGB8ToY8", QVN_E_PARAM1, [] { return QVN_RGB8ToY8(nullptr, nullptr, 4); }},
    {"QVN_Y8ToBGR", QVN_E_PARAM1, [] { return QVN_Y8ToBGR(nullptr, nullptr, 4); }},
    {"QVN_Y16ToBGR", QVN_E_PARAM1, [] { return QVN_Y16ToBGR(nullptr, nullptr, 4); }},
    {"QVN_Y16ToBGREx", QVN_E_PARAM1, [] { return QVN_Y16ToBGREx(nullptr, nullptr, 4, 1, 1, 12); }},
    {"QVN_Y16ToY8", QVN_E_PARAM1, [] { return QVN_Y16ToY8(nullptr, nullptr, 4); }},
    {"QVN_Y16ToY8Ex", QVN_E_PARAM1, [] { return QVN_Y16ToY8Ex(nullptr, nullptr, 4, 1, 1, 12); }},
    {"QVN_Y16ToY8_MMX", QVN_E_PARAM1, [] { return QVN_Y16ToY8_MMX(nullptr, nullptr, 3); }},
    {"QVN_YUV444ToRGBPlanes", QVN_E_PARAM1,
     [] { return QVN_YUV444ToRGBPlanes(nullptr, nullptr, nullptr, nullptr, 4, 4); }},
    {"QVN_YUV422ToRGBPlanes", QVN_E_PARAM1,
     [] { return QVN_YUV422ToRGBPlanes(nullptr, nullptr, nullptr, nullptr, 4, 4); }},
    {"QVN_YUV411ToRGBPlanes", QVN_E_PARAM1,
     [] { return QVN_YUV411ToRGBPlanes(nullptr, nullptr, nullptr, nullptr, 4, 4); }},
    {"QVN_YUV444ToRGBYPlanes", QVN_E_PARAM1,
     [] { return QVN_YUV444ToRGBYPlanes(nullptr, nullptr, nullptr, nullptr, nullptr, 4, 4); }},
    {"QVN_YUV422ToRGBYPlanes", QVN_E_PARAM1,
     [] { return QVN_YUV422ToRGBYPlanes(nullptr, nullptr, nullptr, nullptr, nullptr, 4, 4); }},
    {"QVN_YUV411ToRGBYPlanes", QVN_OK,
     [] { return QVN_YUV411ToRGBYPlanes(nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0); }},
    {"QVN_RGB8ToRGBYPlanes", QVN_E_PARAM1,
     [] { return QVN_RGB8ToRGBYPlanes(nullptr, nullptr, nullptr, nullptr, nullptr, 4, 4); }},
    {"QVN_Raw8ToBGR", QVN_E_PARAM1, [] { return QVN_Raw8ToBGR(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw8ToBGR_mono", QVN_E_PARAM1, [] { return QVN_Raw8ToBGR_mono(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw8ToY8", QVN_E_PARAM1, [] { return QVN_Raw8ToY8(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw16ToBGR", QVN_E_PARAM1, [] { return QVN_Raw16ToBGR(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw8ToBGR_3x3", QVN_E_PARAM1, [] { return QVN_Raw8ToBGR_3x3(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw8ToBGR_IntYUV422", QVN_E_PARAM1,
     [] { return QVN_Raw8ToBGR_IntYUV422(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw8ToBGR_IntLCAA", QVN_E_PARAM1, [] { return QVN_Raw8ToBGR_IntLCAA(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw8ToBGR_IntLCAAV", QVN_E_PARAM1,
     [] { return QVN_Raw8ToBGR_IntLCAAV(nullptr, nullptr, 4, 4, 0); }},
};

TEST(CallFrameLine, StandsBeforeTheChecksUnderTheEntrysName) {
  for (const Call& call : kRefusedCalls) {
    TestLogger logger;
    const Installed installed(logger);
    EXPECT_EQ(call.run(), call.status) << call.name;
    EXPECT_EQ(logger.lines(),
              std::vector<std::string>{line_of("DEBUG  ", std::string("Entered method ") + call.name)});
  }
}

TEST(CallFrameLine, IsAtLevelFourInEveryEntry) {
  for (const Call& call : kRefusedCalls) {
    TestLogger logger;
    logger.threshold = 3;
    const Installed installed(logger);
    call.run();
    EXPECT_TRUE(logger.lines().empty()) << call.name;
  }
}

using BayerEntry = std::uint32_t (*)(std::uint8_t*, std::uint8_t*, std::uint32_t, std::uint32_t,
                                     std::uint32_t);

const std::vector<std::pair<const char*, BayerEntry>> kBayerEntries = {
    {"QVN_Raw8ToBGR",
     [](auto* dst, auto* src, auto w, auto h, auto p) { return QVN_Raw8ToBGR(dst, src, w, h, p); }},
    {"QVN_Raw8ToBGR_mono",
     [](auto* dst, auto* src, auto w, auto h, auto p) { return QVN_Raw8ToBGR_mono(dst, src, w, h, p); }},
    {"QVN_Raw8ToY8",
     [](auto* dst, auto* src, auto w, auto h, auto p) { return QVN_Raw8ToY8(dst, src, w, h, p); }},
    {"QVN_Raw16ToBGR",
     [](auto* dst, auto* src, auto w, auto h, auto p) { return QVN_Raw16ToBGR(dst, src, w, h, p); }},
    {"QVN_Raw8ToBGR_3x3",
     [](auto* dst, auto* src, auto w, auto h, auto p) { return QVN_Raw8ToBGR_3x3(dst, src, w, h, p); }},
    {"QVN_Raw8ToBGR_IntYUV422", QVN_Raw8ToBGR_IntYUV422},
    {"QVN_Raw8ToBGR_IntLCAA", QVN_Raw8ToBGR_IntLCAA},
    {"QVN_Raw8ToBGR_IntLCAAV", QVN_Raw8ToBGR_IntLCAAV},
};

/// Gives the version word back when a test ends.
class CallFrameSwap : public testing::Test {
 protected:
  void TearDown() override { qvn::version_word = 0x02010200; }

  /// A frame in which every window has other colours under each pattern.
  static std::vector<std::uint8_t> picture(BayerEntry entry, std::uint32_t pattern) {
    constexpr std::uint32_t kWidth = 8, kHeight = 6;
    std::vector<std::uint8_t> src(std::size_t{2} * kWidth * kHeight), dst(std::size_t{3} * kWidth * kHeight);
    for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<std::uint8_t>(i * i * 7 + i / 8 * 50);
    EXPECT_EQ(entry(dst.data(), src.data(), kWidth, kHeight, pattern), QVN_OK);
    return dst;
  }
};

TEST_F(CallFrameSwap, HangsOnTheVersionWordInEveryBayerEntry) {
  for (const auto& [name, entry] : kBayerEntries) {
    qvn::version_word = 0x02010200;
    std::array<std::vector<std::uint8_t>, 4> swapped;
    for (std::uint32_t pattern = 0; pattern < 4; ++pattern) swapped[pattern] = picture(entry, pattern);
    ASSERT_NE(swapped[1], swapped[2]) << name;
    for (const std::uint32_t word : {0u, 0x0100FFFFu, 0x01010000u}) {
      qvn::version_word = word;
      const bool swaps = word == 0x01010000u;
      EXPECT_EQ(picture(entry, 0), swapped[0]) << name;
      EXPECT_EQ(picture(entry, 1), swapped[swaps ? 1 : 2]) << name << std::hex << " at version " << word;
      EXPECT_EQ(picture(entry, 2), swapped[swaps ? 2 : 1]) << name << std::hex << " at version " << word;
      EXPECT_EQ(picture(entry, 3), swapped[3]) << name;
    }
  }
}

}  // namespace
