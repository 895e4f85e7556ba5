// The rows of the cygm room.
#include "entry_rows.h"
#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = kTwelfths;

template <uint32_t kTarget>
void binned(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, kTarget);
}
template <auto kEntry, uint32_t kTarget>
void full(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(dst, src, width, height, kTarget, 0);
}

}  // namespace

const std::vector<EntryRow>& cygm_rows() {
  static const std::vector<EntryRow> rows = {
      {"IRaw8CYGMToBGR_Bin", kByte, 3 * kByte, call_frame<QVN_IRaw8CYGMToBGR_Bin>},
      {"IRaw8CYGMToBGR", kByte, 3 * kByte, call_mosaic<QVN_IRaw8CYGMToBGR>},
      {"IRaw8CYGMToBGR_3x3", kByte, 3 * kByte, call_mosaic<QVN_IRaw8CYGMToBGR_3x3>},
      {"IRaw8CYGMToMono", kByte, 3 * kByte, call_mosaic<QVN_IRaw8CYGMToMono>},
      {"IRaw8CYGMImageTransform_Bin_Y8", kByte, kByte, binned<0>},
      {"IRaw8CYGMImageTransform_Bin_BGR", kByte, 3 * kByte, binned<1>},
      {"IRaw8CYGMImageTransform_Bin_BGRA", kByte, 4 * kByte, binned<2>},
      {"IRaw8CYGMImageTransform_Bin_Y8Rounded", kByte, kByte, binned<3>},
      {"IRaw8CYGMImageTransform_Bin_YUV422", kByte, 2 * kByte, binned<4>},
      {"IRaw8CYGMImageTransform_Y8", kByte, kByte, full<QVN_IRaw8CYGMImageTransform, 0>},
      {"IRaw8CYGMImageTransform_BGR", kByte, 3 * kByte, full<QVN_IRaw8CYGMImageTransform, 1>},
      {"IRaw8CYGMImageTransform_BGRA", kByte, 4 * kByte, full<QVN_IRaw8CYGMImageTransform, 2>},
      {"IRaw8CYGMImageTransform_Y8Rounded", kByte, kByte, full<QVN_IRaw8CYGMImageTransform, 3>},
      {"IRaw8CYGMImageTransform_YUV422", kByte, 2 * kByte, full<QVN_IRaw8CYGMImageTransform, 4>},
      {"IRaw8CYGMImageTransform_3x3_Y8", kByte, kByte, full<QVN_IRaw8CYGMImageTransform_3x3, 0>},
      {"IRaw8CYGMImageTransform_3x3_BGR", kByte, 3 * kByte, full<QVN_IRaw8CYGMImageTransform_3x3, 1>},
      {"IRaw8CYGMImageTransform_3x3_BGRA", kByte, 4 * kByte, full<QVN_IRaw8CYGMImageTransform_3x3, 2>},
      {"IRaw8CYGMImageTransform_3x3_Y8Rounded", kByte, kByte, full<QVN_IRaw8CYGMImageTransform_3x3, 3>},
  };
  return rows;
}
