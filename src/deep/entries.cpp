// The exported functions of the deep room.
#include "correction/correction_entry.h"
#include "deep/raw12.h"
#include "deep/raw16.h"
#include "frame/call_frame.h"

using namespace qvn;

namespace {

constexpr uint32_t kLargestShift = 16, kShiftArgument = 5;  // counted from 0

uint8_t* bytes(uint16_t* words) { return reinterpret_cast<uint8_t*>(words); }

// The plain entries refuse large shifts, after the pointers.
template <class Kernel>
uint32_t run_shifted(const char* name, uint16_t* dst, const uint8_t* src, uint32_t pattern, uint32_t shift,
                     const Kernel& kernel) {
  return run_bayer_entry(name, dst, src, pattern, [&](uint32_t internal) {
    if (shift > kLargestShift) return refused_argument(kShiftArgument);
    kernel(internal);
    return QVN_OK;
  });
}

}  // namespace

uint32_t QVN_Raw12ToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                        BayerPattern pattern) {
  return run_bayer_entry(__func__, dst, src, pattern,
                         [&](uint32_t internal) { raw12_to_bgr(dst, src, width, height, internal); });
}

uint32_t QVN_Raw12ToBGR_CC(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                           BayerPattern pattern, const ColorCorrection* cc) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    return guarded_correction([&] { return raw12_to_bgr_corrected(dst, src, width, height, internal, cc); });
  });
}

uint32_t QVN_Raw12ToBGR16(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                          BayerPattern pattern) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    raw12_to_bgr16(bytes(dst), src, width, height, internal);
  });
}

uint32_t QVN_Raw12ToBGR16_CC(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                             BayerPattern pattern, const ColorCorrection* cc) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    return guarded_correction(
        [&] { return raw12_to_bgr16_corrected(bytes(dst), src, width, height, internal, cc); });
  });
}

uint32_t QVN_Raw16ToBGR16(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                          BayerPattern pattern, uint32_t shift) {
  return run_shifted(__func__, dst, src, pattern, shift, [&](uint32_t internal) {
    raw16_to_bgr16(bytes(dst), src, width, height, internal, shift);
  });
}

// The corrected 16-bit entries test no shift, and let out what is thrown.
uint32_t QVN_Raw16ToBGR16_CC(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                             BayerPattern pattern, uint32_t shift, const ColorCorrection* cc) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    return correction_status(raw16_to_bgr16_corrected(bytes(dst), src, width, height, internal, shift, cc));
  });
}

uint32_t QVN_Raw16ToY16(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                        BayerPattern pattern, uint32_t shift) {
  return run_shifted(__func__, dst, src, pattern, shift, [&](uint32_t internal) {
    raw16_to_y16(bytes(dst), src, width, height, internal, shift);
  });
}

uint32_t QVN_Raw16ToY16_CC(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                           BayerPattern pattern, uint32_t shift, const ColorCorrection* cc) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    return correction_status(raw16_to_y16_corrected(bytes(dst), src, width, height, internal, shift, cc));
  });
}
