// The exported functions of the correction room.
#include "correction/corrected_8bit.h"
#include "correction/correction_entry.h"
#include "frame/call_frame.h"

using namespace qvn;

// Neither pointer is tested.
uint32_t QVN_CreateColorCorrectionMatrix_Int8(const float* matrix, ColorCorrection** result) {
  return run_entry(__func__, {}, [&] { *result = create_matrix(CcMatrixInt8, matrix); });
}

uint32_t QVN_CreateColorCorrectionMatrix_Int16(const float* matrix, ColorCorrection** result) {
  return run_entry(__func__, {}, [&] { *result = create_matrix(CcMatrixInt16, matrix); });
}

uint32_t QVN_DestroyColorCorrection(ColorCorrection* object) {
  return run_entry(__func__, {}, [&] {
    switch (destroy_color_correction(object)) {
      case Destroyed::kReleased:
        return QVN_OK;
      case Destroyed::kNoObject:
        return QVN_E_PARAM1;
      case Destroyed::kFailed:
        return QVN_E_ABORTED;
    }
    return QVN_E_UNCLASSIFIED;
  });
}

uint32_t QVN_Raw8ToBGR_CC(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                          BayerPattern pattern, const ColorCorrection* cc) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    return guarded_correction([&] { return raw8_to_bgr_corrected(dst, src, width, height, internal, cc); });
  });
}

uint32_t QVN_Raw8ToY8_CC(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                         BayerPattern pattern, const ColorCorrection* cc) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    return guarded_correction([&] { return raw8_to_y8_corrected(dst, src, width, height, internal, cc); });
  });
}
