// Calls a few functions of the library once each, on a small frame, for counting their instructions. Prints
// their names in the order of the calls. None of them calls another exported function.
#include <quorvane/quorvane.h>

#include <cstdio>
#include <vector>

namespace {

constexpr uint32_t kWidth = 320, kHeight = 48, kPixels = kWidth * kHeight;

const ColorCorrectionFloat kMatrix = {
    CcMatrixFloat, 0, {1.4F, -0.3F, -0.1F, -0.2F, 1.3F, -0.1F, 0, -0.4F, 1.4F}, 0, 0};
const ColorCorrectionFixed kFixed = {CcMatrixInt16, {1400, -300, -76, -200, 1300, -76, 0, -400, 1424}};

template <class Record>
const ColorCorrection* object(const Record& record) {
  return reinterpret_cast<const ColorCorrection*>(&record);
}

struct Buffers {
  std::vector<uint8_t> src = std::vector<uint8_t>(8 * kPixels), dst = std::vector<uint8_t>(8 * kPixels);
  Buffers() {
    uint32_t state = 1;
    for (uint8_t& byte : src) {
      state = state * 1664525 + 1013904223;
      byte = static_cast<uint8_t>(state >> 24);
    }
  }
};

struct Kernel {
  const char *function, *choice;
  void (*call)(uint8_t* dst, uint8_t* src);
};

uint16_t* words(uint8_t* dst) { return reinterpret_cast<uint16_t*>(dst); }

constexpr SampleFormatBlock kTwelveBits = {0, 1, 12, 0, 0};

const Kernel kKernels[] = {
    {"QVN_Raw8ToBGR", "", [](uint8_t* dst, uint8_t* src) { QVN_Raw8ToBGR(dst, src, kWidth, kHeight, 0); }},
    {"QVN_Raw8ToY8", "", [](uint8_t* dst, uint8_t* src) { QVN_Raw8ToY8(dst, src, kWidth, kHeight, 0); }},
    {"QVN_Raw8ToBGR_3x3", "",
     [](uint8_t* dst, uint8_t* src) { QVN_Raw8ToBGR_3x3(dst, src, kWidth, kHeight, 0); }},
    {"QVN_Raw8ImageTransform", "_YUV422",
     [](uint8_t* dst, uint8_t* src) { QVN_Raw8ImageTransform(dst, src, kWidth, kHeight, 4, 0); }},
    {"QVN_Raw12ToBGR16", "",
     [](uint8_t* dst, uint8_t* src) { QVN_Raw12ToBGR16(words(dst), src, kWidth, kHeight, 0); }},
    {"QVN_Raw16ToBGR16", "_shift4",
     [](uint8_t* dst, uint8_t* src) { QVN_Raw16ToBGR16(words(dst), src, kWidth, kHeight, 0, 4); }},
    {"QVN_Raw16ImageTransformEx", "_BGRA",
     [](uint8_t* dst, uint8_t* src) {
       QVN_Raw16ImageTransformEx(dst, src, kWidth, kHeight, 2, &kTwelveBits);
     }},
    {"QVN_Raw8ToBGR_CC", "_float",
     [](uint8_t* dst, uint8_t* src) { QVN_Raw8ToBGR_CC(dst, src, kWidth, kHeight, 0, object(kMatrix)); }},
    {"QVN_Raw16ToBGR16_CC", "_fixed",
     [](uint8_t* dst, uint8_t* src) {
       QVN_Raw16ToBGR16_CC(words(dst), src, kWidth, kHeight, 0, 0, object(kFixed));
     }},
    {"QVN_YUV422ToBGR", "", [](uint8_t* dst, uint8_t* src) { QVN_YUV422ToBGR(dst, src, kPixels); }},
    {"QVN_RGB8ToY8", "", [](uint8_t* dst, uint8_t* src) { QVN_RGB8ToY8(dst, src, kPixels); }},
    {"QVN_RGB8ToBGR", "", [](uint8_t* dst, uint8_t* src) { QVN_RGB8ToBGR(dst, src, kPixels); }},
    {"QVN_Y16ToY8", "", [](uint8_t* dst, uint8_t* src) { QVN_Y16ToY8(dst, src, kPixels); }},
    {"QVN_IRaw8CYGMToBGR", "",
     [](uint8_t* dst, uint8_t* src) { QVN_IRaw8CYGMToBGR(dst, src, kWidth, kHeight, 0); }},
    {"QVN_IRaw8CYGMToBGR_3x3", "",
     [](uint8_t* dst, uint8_t* src) { QVN_IRaw8CYGMToBGR_3x3(dst, src, kWidth, kHeight, 0); }},
    {"QVN_Packed12BitTo16Bit", "",
     [](uint8_t* dst, uint8_t* src) { QVN_Packed12BitTo16Bit(dst, src, kWidth, kHeight); }},
    {"QVN_ResampleScanlinesEx", "_linear",
     [](uint8_t* dst, uint8_t* src) {
       QVN_ResampleScanlinesEx(dst, src, kWidth / 4 * 5, kWidth / 4 * 5, kWidth, kWidth, kHeight, 4, 5, 1, 1);
     }},
    {"QVN_Flip", "_horizontal_3", [](uint8_t* dst, uint8_t*) { QVN_Flip(dst, kWidth, kHeight, 1, 4); }},
    // Last, since it destroys its source.
    {"QVN_Raw8ToBGR_IntLCAAV", "",
     [](uint8_t* dst, uint8_t* src) { QVN_Raw8ToBGR_IntLCAAV(dst, src, kWidth, kHeight, 0); }},
};

}  // namespace

int main() {
  Buffers buffers;
  for (const Kernel& kernel : kKernels) {
    kernel.call(buffers.dst.data(), buffers.src.data());
    std::printf("%s %s%s\n", kernel.function, kernel.function + sizeof("QVN_") - 1, kernel.choice);
  }
  return 0;
}
