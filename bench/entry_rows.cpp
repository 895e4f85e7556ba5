// The rows of the benchmark, by room.
#include "entry_rows.h"

#include <cstddef>

#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = 12;  // entry_rows.h counts in twelfths, so that packed formats come out whole

// Plane `index` of the planes that lie one behind the other in dst.
uint8_t* plane(uint8_t* dst, uint32_t width, uint32_t height, size_t index) {
  return dst + index * width * height;
}

}  // namespace

const std::vector<EntryRow>& entry_rows() {
  static const std::vector<EntryRow> rows = {
      {"Raw8ToBGR", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw8ToBGR(dst, src, width, height, 0);
       }},
      {"Raw8ToBGR_scalar", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         scalar_raw8_to_bgr(dst, src, width, height);
       }},
      {"Raw8ToY8", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw8ToY8(dst, src, width, height, 0);
       }},
      {"Raw8ToBGR_mono", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw8ToBGR_mono(dst, src, width, height, 0);
       }},
      {"Raw16ToBGR", 2 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw16ToBGR(dst, src, width, height, 0);
       }},
      {"Raw8ToBGR_3x3", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw8ToBGR_3x3(dst, src, width, height, 0);
       }},
      {"Raw8ToBGR_IntYUV422", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw8ToBGR_IntYUV422(dst, src, width, height, 0);
       }},
      {"Raw8ToBGR_IntLCAA", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw8ToBGR_IntLCAA(dst, src, width, height, 0);
       }},
      {"Raw8ToBGR_IntLCAAV", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw8ToBGR_IntLCAAV(dst, src, width, height, 0);
       }},
      {"IRaw8CYGMToBGR_Bin", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMToBGR_Bin(dst, src, width, height);
       }},
      {"IRaw8CYGMToBGR", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMToBGR(dst, src, width, height, 0);
       }},
      {"IRaw8CYGMToBGR_3x3", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMToBGR_3x3(dst, src, width, height, 0);
       }},
      {"IRaw8CYGMToMono", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMToMono(dst, src, width, height, 0);
       }},
      {"IRaw8CYGMImageTransform_Bin_Y8", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, 0);
       }},
      {"IRaw8CYGMImageTransform_Bin_BGR", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, 1);
       }},
      {"IRaw8CYGMImageTransform_Bin_BGRA", kByte, 4 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, 2);
       }},
      {"IRaw8CYGMImageTransform_Bin_Y8Rounded", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, 3);
       }},
      {"IRaw8CYGMImageTransform_Bin_YUV422", kByte, 2 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, 4);
       }},
      {"IRaw8CYGMImageTransform_Y8", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform(dst, src, width, height, 0, 0);
       }},
      {"IRaw8CYGMImageTransform_BGR", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform(dst, src, width, height, 1, 0);
       }},
      {"IRaw8CYGMImageTransform_BGRA", kByte, 4 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform(dst, src, width, height, 2, 0);
       }},
      {"IRaw8CYGMImageTransform_Y8Rounded", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform(dst, src, width, height, 3, 0);
       }},
      {"IRaw8CYGMImageTransform_YUV422", kByte, 2 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform(dst, src, width, height, 4, 0);
       }},
      {"IRaw8CYGMImageTransform_3x3_Y8", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_3x3(dst, src, width, height, 0, 0);
       }},
      {"IRaw8CYGMImageTransform_3x3_BGR", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_3x3(dst, src, width, height, 1, 0);
       }},
      {"IRaw8CYGMImageTransform_3x3_BGRA", kByte, 4 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_3x3(dst, src, width, height, 2, 0);
       }},
      {"IRaw8CYGMImageTransform_3x3_Y8Rounded", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_IRaw8CYGMImageTransform_3x3(dst, src, width, height, 3, 0);
       }},
      {"YUV444ToBGR", 3 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV444ToBGR(dst, src, width * height);
       }},
      {"YUV422ToBGR", 2 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV422ToBGR(dst, src, width * height);
       }},
      {"YUV411ToBGR", kByte + kByte / 2, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV411ToBGR(dst, src, width * height);
       }},
      {"RGB8ToBGR", 3 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_RGB8ToBGR(dst, src, width * height);
       }},
      {"RGB8ToY8", 3 * kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_RGB8ToY8(dst, src, width * height);
       }},
      {"Y8ToBGR", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Y8ToBGR(dst, src, width * height);
       }},
      {"Y16ToBGR", 2 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Y16ToBGR(dst, src, width * height);
       }},
      {"Y16ToBGREx", 2 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Y16ToBGREx(dst, src, width * height, 0, 1, 12);
       }},
      {"Y16ToY8", 2 * kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Y16ToY8(dst, src, width * height);
       }},
      {"Y16ToY8Ex", 2 * kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Y16ToY8Ex(dst, src, width * height, 0, 1, 12);
       }},
      {"Y16ToY8_MMX", 2 * kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Y16ToY8_MMX(dst, src, width * height);
       }},
      {"YUV444ToRGBPlanes", 3 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV444ToRGBPlanes(plane(dst, width, height, 0), plane(dst, width, height, 1),
                               plane(dst, width, height, 2), src, width, height);
       }},
      {"YUV422ToRGBPlanes", 2 * kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV422ToRGBPlanes(plane(dst, width, height, 0), plane(dst, width, height, 1),
                               plane(dst, width, height, 2), src, width, height);
       }},
      {"YUV411ToRGBPlanes", kByte + kByte / 2, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV411ToRGBPlanes(plane(dst, width, height, 0), plane(dst, width, height, 1),
                               plane(dst, width, height, 2), src, width, height);
       }},
      {"YUV444ToRGBYPlanes", 3 * kByte, 4 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV444ToRGBYPlanes(plane(dst, width, height, 0), plane(dst, width, height, 1),
                                plane(dst, width, height, 2), plane(dst, width, height, 3), src, width,
                                height);
       }},
      {"YUV422ToRGBYPlanes", 2 * kByte, 4 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV422ToRGBYPlanes(plane(dst, width, height, 0), plane(dst, width, height, 1),
                                plane(dst, width, height, 2), plane(dst, width, height, 3), src, width,
                                height);
       }},
      {"YUV411ToRGBYPlanes", kByte + kByte / 2, 4 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_YUV411ToRGBYPlanes(plane(dst, width, height, 0), plane(dst, width, height, 1),
                                plane(dst, width, height, 2), plane(dst, width, height, 3), src, width,
                                height);
       }},
      {"RGB8ToRGBYPlanes", 3 * kByte, 4 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_RGB8ToRGBYPlanes(plane(dst, width, height, 0), plane(dst, width, height, 1),
                              plane(dst, width, height, 2), plane(dst, width, height, 3), src, width, height);
       }},
  };
  return rows;
}
