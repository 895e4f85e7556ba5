/// The call frame in every entry: its line in the log, under its own name and before any check, and in the
/// Bayer entries the pattern swap, which hangs on the version word at the time of the call.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <new>
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

/// A creator tests nothing; its object goes back without a second line.
std::uint32_t create(std::uint32_t (*creator)(const float*, ColorCorrection**)) {
  const float matrix[9] = {};
  ColorCorrection* object = nullptr;
  const std::uint32_t status = creator(matrix, &object);
  ::operator delete(object);
  return status;
}

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
    {"QVN_CreateColorCorrectionMatrix_Int8", QVN_OK,
     [] { return create(QVN_CreateColorCorrectionMatrix_Int8); }},
    {"QVN_CreateColorCorrectionMatrix_Int16", QVN_OK,
     [] { return create(QVN_CreateColorCorrectionMatrix_Int16); }},
    {"QVN_DestroyColorCorrection", QVN_E_PARAM1, [] { return QVN_DestroyColorCorrection(nullptr); }},
    {"QVN_Raw8ToBGR_CC", QVN_E_PARAM1, [] { return QVN_Raw8ToBGR_CC(nullptr, nullptr, 4, 4, 0, nullptr); }},
    {"QVN_Raw8ToY8_CC", QVN_E_PARAM1, [] { return QVN_Raw8ToY8_CC(nullptr, nullptr, 4, 4, 0, nullptr); }},
    {"QVN_Raw12ToBGR", QVN_E_PARAM1, [] { return QVN_Raw12ToBGR(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw12ToBGR_CC", QVN_E_PARAM1, [] { return QVN_Raw12ToBGR_CC(nullptr, nullptr, 4, 4, 0, nullptr); }},
    {"QVN_Raw12ToBGR16", QVN_E_PARAM1, [] { return QVN_Raw12ToBGR16(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_Raw12ToBGR16_CC", QVN_E_PARAM1,
     [] { return QVN_Raw12ToBGR16_CC(nullptr, nullptr, 4, 4, 0, nullptr); }},
    {"QVN_Raw16ToBGR16", QVN_E_PARAM1, [] { return QVN_Raw16ToBGR16(nullptr, nullptr, 4, 4, 0, 17); }},
    {"QVN_Raw16ToBGR16_CC", QVN_E_PARAM1,
     [] { return QVN_Raw16ToBGR16_CC(nullptr, nullptr, 4, 4, 0, 17, nullptr); }},
    {"QVN_Raw16ToY16", QVN_E_PARAM1, [] { return QVN_Raw16ToY16(nullptr, nullptr, 4, 4, 0, 17); }},
    {"QVN_Raw16ToY16_CC", QVN_E_PARAM1,
     [] { return QVN_Raw16ToY16_CC(nullptr, nullptr, 4, 4, 0, 17, nullptr); }},
    {"QVN_RGB8ImageTransform", QVN_E_PARAM1, [] { return QVN_RGB8ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_RGBA8ImageTransform", QVN_E_PARAM1, [] { return QVN_RGBA8ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_YUV444ImageTransform", QVN_E_PARAM1,
     [] { return QVN_YUV444ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_YUV422ImageTransform", QVN_E_PARAM1,
     [] { return QVN_YUV422ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_YUV411ImageTransform", QVN_E_PARAM1,
     [] { return QVN_YUV411ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_Y8ImageTransform", QVN_E_PARAM1, [] { return QVN_Y8ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_Y16ImageTransform", QVN_E_PARAM1, [] { return QVN_Y16ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_Y12ImageTransform", QVN_E_PARAM1, [] { return QVN_Y12ImageTransform(nullptr, nullptr, 4, 9); }},
    {"QVN_Y16ImageTransformEx", QVN_E_PARAM1,
     [] { return QVN_Y16ImageTransformEx(nullptr, nullptr, 4, 9, nullptr); }},
    {"QVN_Raw8ImageTransform", QVN_E_PARAM1,
     [] { return QVN_Raw8ImageTransform(nullptr, nullptr, 4, 4, 9, 0); }},
    {"QVN_Raw8ImageTransform_3x3", QVN_E_PARAM1,
     [] { return QVN_Raw8ImageTransform_3x3(nullptr, nullptr, 4, 4, 9, 0); }},
    {"QVN_Raw8ImageTransform_IntYUV422", QVN_E_PARAM1,
     [] { return QVN_Raw8ImageTransform_IntYUV422(nullptr, nullptr, 4, 4, 9, 0); }},
    {"QVN_Raw8ImageTransform_IntLCAA", QVN_E_PARAM1,
     [] { return QVN_Raw8ImageTransform_IntLCAA(nullptr, nullptr, 4, 4, 9, 0); }},
    {"QVN_Raw8ImageTransform_IntLCAAV", QVN_E_PARAM1,
     [] { return QVN_Raw8ImageTransform_IntLCAAV(nullptr, nullptr, 4, 4, 9, 0); }},
    {"QVN_Raw12ImageTransform", QVN_E_PARAM1,
     [] { return QVN_Raw12ImageTransform(nullptr, nullptr, 4, 4, 9, 0); }},
    {"QVN_Raw16ImageTransform", QVN_E_PARAM1,
     [] { return QVN_Raw16ImageTransform(nullptr, nullptr, 4, 4, 9, 0); }},
    {"QVN_Raw16ImageTransformEx", QVN_E_PARAM1,
     [] { return QVN_Raw16ImageTransformEx(nullptr, nullptr, 4, 4, 9, nullptr); }},
    {"QVN_IRaw8CYGMToBGR_Bin", QVN_E_PARAM1, [] { return QVN_IRaw8CYGMToBGR_Bin(nullptr, nullptr, 4, 4); }},
    {"QVN_IRaw8CYGMToBGR", QVN_E_PARAM1, [] { return QVN_IRaw8CYGMToBGR(nullptr, nullptr, 4, 8, 0); }},
    {"QVN_IRaw8CYGMToBGR_3x3", QVN_E_PARAM1,
     [] { return QVN_IRaw8CYGMToBGR_3x3(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_IRaw8CYGMToMono", QVN_E_PARAM1, [] { return QVN_IRaw8CYGMToMono(nullptr, nullptr, 4, 4, 0); }},
    {"QVN_IRaw8CYGMImageTransform_Bin", QVN_E_PARAM1,
     [] { return QVN_IRaw8CYGMImageTransform_Bin(nullptr, nullptr, 4, 4, 99); }},
    {"QVN_IRaw8CYGMImageTransform", QVN_E_PARAM1,
     [] { return QVN_IRaw8CYGMImageTransform(nullptr, nullptr, 4, 4, 99, 0); }},
    {"QVN_IRaw8CYGMImageTransform_3x3", QVN_E_PARAM1,
     [] { return QVN_IRaw8CYGMImageTransform_3x3(nullptr, nullptr, 4, 4, 4, 0); }},
    {"QVN_InterlacedToProgressive", QVN_E_PARAM1,
     [] { return QVN_InterlacedToProgressive(nullptr, nullptr, 4, 4); }},
    {"QVN_Packed12BitTo8Bit", QVN_E_PARAM1, [] { return QVN_Packed12BitTo8Bit(nullptr, nullptr, 4, 4); }},
    {"QVN_Packed12BitTo16Bit", QVN_E_PARAM1, [] { return QVN_Packed12BitTo16Bit(nullptr, nullptr, 4, 4); }},
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

const ColorCorrection* identity() {
  static const ColorCorrectionFloat object = {CcMatrixFloat, 0, {1, 0, 0, 0, 1, 0, 0, 0, 1}, 1, 1};
  return reinterpret_cast<const ColorCorrection*>(&object);
}

/// Pictures of words have twice the bytes that there is room for.
template <typename Convert>
std::uint32_t upper_half(std::uint8_t* dst, std::uint32_t width, std::uint32_t height, Convert convert) {
  std::vector<std::uint16_t> words(std::size_t{3} * width * height);
  const std::uint32_t status = convert(words.data());
  std::memcpy(dst, words.data(), words.size());
  return status;
}

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
    {"QVN_Raw8ToBGR_CC", [](auto* dst, auto* src, auto w, auto h,
                            auto p) { return QVN_Raw8ToBGR_CC(dst, src, w, h, p, identity()); }},
    {"QVN_Raw8ToY8_CC", [](auto* dst, auto* src, auto w, auto h,
                           auto p) { return QVN_Raw8ToY8_CC(dst, src, w, h, p, identity()); }},
    {"QVN_Raw12ToBGR",
     [](auto* dst, auto* src, auto w, auto h, auto p) { return QVN_Raw12ToBGR(dst, src, w, h, p); }},
    {"QVN_Raw12ToBGR_CC", [](auto* dst, auto* src, auto w, auto h,
                             auto p) { return QVN_Raw12ToBGR_CC(dst, src, w, h, p, identity()); }},
    {"QVN_Raw12ToBGR16",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return upper_half(dst, w, h, [&](auto* words) { return QVN_Raw12ToBGR16(words, src, w, h, p); });
     }},
    {"QVN_Raw12ToBGR16_CC",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return upper_half(dst, w, h,
                         [&](auto* words) { return QVN_Raw12ToBGR16_CC(words, src, w, h, p, identity()); });
     }},
    {"QVN_Raw16ToBGR16",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return upper_half(dst, w, h, [&](auto* words) { return QVN_Raw16ToBGR16(words, src, w, h, p, 3); });
     }},
    {"QVN_Raw16ToBGR16_CC",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return upper_half(
           dst, w, h, [&](auto* words) { return QVN_Raw16ToBGR16_CC(words, src, w, h, p, 3, identity()); });
     }},
    {"QVN_Raw16ToY16",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return upper_half(dst, w, h, [&](auto* words) { return QVN_Raw16ToY16(words, src, w, h, p, 3); });
     }},
    {"QVN_Raw16ToY16_CC",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return upper_half(dst, w, h,
                         [&](auto* words) { return QVN_Raw16ToY16_CC(words, src, w, h, p, 3, identity()); });
     }},
    {"QVN_Raw8ImageTransform", [](auto* dst, auto* src, auto w, auto h,
                                  auto p) { return QVN_Raw8ImageTransform(dst, src, w, h, 1, p); }},
    {"QVN_Raw8ImageTransform_3x3", [](auto* dst, auto* src, auto w, auto h,
                                      auto p) { return QVN_Raw8ImageTransform_3x3(dst, src, w, h, 1, p); }},
    {"QVN_Raw8ImageTransform_IntYUV422",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return QVN_Raw8ImageTransform_IntYUV422(dst, src, w, h, 1, p);
     }},
    {"QVN_Raw8ImageTransform_IntLCAA",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return QVN_Raw8ImageTransform_IntLCAA(dst, src, w, h, 1, p);
     }},
    {"QVN_Raw8ImageTransform_IntLCAAV",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       return QVN_Raw8ImageTransform_IntLCAAV(dst, src, w, h, 1, p);
     }},
    {"QVN_Raw12ImageTransform", [](auto* dst, auto* src, auto w, auto h,
                                   auto p) { return QVN_Raw12ImageTransform(dst, src, w, h, 1, p); }},
    {"QVN_Raw16ImageTransform", [](auto* dst, auto* src, auto w, auto h,
                                   auto p) { return QVN_Raw16ImageTransform(dst, src, w, h, 1, p); }},
    {"QVN_Raw16ImageTransformEx",
     [](auto* dst, auto* src, auto w, auto h, auto p) {
       const SampleFormatBlock block = {0, 0, 16, 1, p};
       return QVN_Raw16ImageTransformEx(dst, src, w, h, 1, &block);
     }},
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
