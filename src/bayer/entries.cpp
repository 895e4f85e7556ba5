// The exported functions of the Bayer room.
#include "bayer/demosaic_2x2.h"
#include "bayer/demosaic_3x3.h"
#include "bayer/interpolation.h"
#include "frame/call_frame.h"

using namespace qvn;

namespace {

uint32_t run_2x2(const char* name, const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                 uint32_t height, uint32_t pattern) {
  return run_bayer_entry(name, dst, src, pattern,
                         [&](uint32_t internal) { demosaic_2x2(recipe, dst, src, width, height, internal); });
}

uint32_t run_interpolation(const char* name, ChromaFilter filter, uint8_t* dst, uint8_t* src, uint32_t width,
                           uint32_t height, uint32_t pattern) {
  return run_bayer_entry(name, dst, src, pattern,
                         [&](uint32_t internal) { interpolate(filter, dst, src, width, height, internal); });
}

}  // namespace

uint32_t QVN_Raw8ToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                       BayerPattern pattern) {
  return run_2x2(__func__, kRaw8ToBgr, dst, src, width, height, pattern);
}

uint32_t QVN_Raw8ToBGR_mono(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                            BayerPattern pattern) {
  return run_2x2(__func__, kRaw8ToGreyBgr, dst, src, width, height, pattern);
}

uint32_t QVN_Raw8ToY8(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                      BayerPattern pattern) {
  return run_2x2(__func__, kRaw8ToY8, dst, src, width, height, pattern);
}

uint32_t QVN_Raw16ToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                        BayerPattern pattern) {
  return run_2x2(__func__, kRaw16ToBgr, dst, src, width, height, pattern);
}

uint32_t QVN_Raw8ToBGR_3x3(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                           BayerPattern pattern) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    demosaic_3x3(kRaw8ToBgr3x3, dst, src, width, height, internal);
  });
}

uint32_t QVN_Raw8ToBGR_IntYUV422(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                 BayerPattern pattern) {
  return run_interpolation(__func__, ChromaFilter::kPair, dst, src, width, height, pattern);
}

uint32_t QVN_Raw8ToBGR_IntLCAA(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                               BayerPattern pattern) {
  return run_interpolation(__func__, ChromaFilter::kBox4, dst, src, width, height, pattern);
}

uint32_t QVN_Raw8ToBGR_IntLCAAV(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                BayerPattern pattern) {
  return run_interpolation(__func__, ChromaFilter::kBlock8, dst, src, width, height, pattern);
}
