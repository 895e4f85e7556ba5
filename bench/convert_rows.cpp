// The rows of the convert room.
#include "entry_rows.h"
#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = kTwelfths;
constexpr uint32_t kYuv411 = kByte + kByte / 2;

// Planes that lie one behind the other in dst.
template <auto kEntry>
void rgb_planes(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const size_t plane = size_t{width} * height;
  kEntry(dst, dst + plane, dst + 2 * plane, src, width, height);
}
template <auto kEntry>
void rgby_planes(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const size_t plane = size_t{width} * height;
  kEntry(dst, dst + plane, dst + 2 * plane, dst + 3 * plane, src, width, height);
}
void rgb_planes_alone(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const size_t plane = size_t{width} * height;
  QVN_RGB8ToRGBYPlanes(dst, dst + plane, dst + 2 * plane, nullptr, src, width, height);
}

// Samples of any order and alignment, at `kBits` bits.
template <auto kEntry, uint32_t kSwap, uint32_t kAlignment, uint32_t kBits>
void any(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(dst, src, width * height, kSwap, kAlignment, kBits);
}

}  // namespace

const std::vector<EntryRow>& convert_rows() {
  static const std::vector<EntryRow> rows = {
      {"YUV444ToBGR", 3 * kByte, 3 * kByte, call_run<QVN_YUV444ToBGR>},
      {"YUV422ToBGR", 2 * kByte, 3 * kByte, call_run<QVN_YUV422ToBGR>},
      {"YUV411ToBGR", kYuv411, 3 * kByte, call_run<QVN_YUV411ToBGR>},
      {"RGB8ToBGR", 3 * kByte, 3 * kByte, call_run<QVN_RGB8ToBGR>},
      {"RGB8ToY8", 3 * kByte, kByte, call_run<QVN_RGB8ToY8>},
      {"Y8ToBGR", kByte, 3 * kByte, call_run<QVN_Y8ToBGR>},
      {"Y16ToBGR", 2 * kByte, 3 * kByte, call_run<QVN_Y16ToBGR>},
      {"Y16ToBGREx", 2 * kByte, 3 * kByte, any<QVN_Y16ToBGREx, 0, 1, 12>},
      {"Y16ToBGREx_swapped", 2 * kByte, 3 * kByte, any<QVN_Y16ToBGREx, 1, 1, 12>},
      {"Y16ToBGREx_top", 2 * kByte, 3 * kByte, any<QVN_Y16ToBGREx, 0, 0, 16>},
      {"Y16ToBGREx_swapped_top", 2 * kByte, 3 * kByte, any<QVN_Y16ToBGREx, 1, 0, 16>},
      {"Y16ToY8", 2 * kByte, kByte, call_run<QVN_Y16ToY8>},
      {"Y16ToY8Ex", 2 * kByte, kByte, any<QVN_Y16ToY8Ex, 0, 1, 12>},
      {"Y16ToY8Ex_swapped", 2 * kByte, kByte, any<QVN_Y16ToY8Ex, 1, 1, 12>},
      {"Y16ToY8Ex_top", 2 * kByte, kByte, any<QVN_Y16ToY8Ex, 0, 0, 16>},
      {"Y16ToY8Ex_swapped_top", 2 * kByte, kByte, any<QVN_Y16ToY8Ex, 1, 0, 16>},
      {"Y16ToY8_MMX", 2 * kByte, kByte, call_run<QVN_Y16ToY8_MMX>},
      {"YUV444ToRGBPlanes", 3 * kByte, 3 * kByte, rgb_planes<QVN_YUV444ToRGBPlanes>},
      {"YUV422ToRGBPlanes", 2 * kByte, 3 * kByte, rgb_planes<QVN_YUV422ToRGBPlanes>},
      {"YUV411ToRGBPlanes", kYuv411, 3 * kByte, rgb_planes<QVN_YUV411ToRGBPlanes>},
      {"YUV444ToRGBYPlanes", 3 * kByte, 4 * kByte, rgby_planes<QVN_YUV444ToRGBYPlanes>},
      {"YUV422ToRGBYPlanes", 2 * kByte, 4 * kByte, rgby_planes<QVN_YUV422ToRGBYPlanes>},
      {"YUV411ToRGBYPlanes", kYuv411, 4 * kByte, rgby_planes<QVN_YUV411ToRGBYPlanes>},
      {"RGB8ToRGBYPlanes", 3 * kByte, 4 * kByte, rgby_planes<QVN_RGB8ToRGBYPlanes>},
      {"RGB8ToRGBYPlanes_no_luma", 3 * kByte, 3 * kByte, rgb_planes_alone},
  };
  return rows;
}
