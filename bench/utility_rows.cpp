// The rows of the utility room.
#include "entry_rows.h"
#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = 12;

// Lines stretched to five quarters of their length.
template <uint32_t kElement, uint32_t kMethod>
void stretch(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const auto length = static_cast<int32_t>(width);
  QVN_ResampleScanlines(dst, src, length / 4 * 5, length, static_cast<int32_t>(height), 4, 5, kElement,
                        kMethod);
}

// Lines shrunk to half their length.
template <uint32_t kElement>
void halve(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const auto length = static_cast<int32_t>(width);
  QVN_ResampleScanlines(dst, src, length / 2, length, static_cast<int32_t>(height), 2, 1, kElement, 0);
}

template <uint32_t kAxis, uint32_t kCode>
void flip(uint8_t* dst, uint8_t*, uint32_t width, uint32_t height) {
  QVN_Flip(dst, width, height, kAxis, kCode);
}

constexpr uint32_t kMono8 = 0, kRgb8 = 4, kMono16 = 5, kRgb16 = 6;

}  // namespace

const std::vector<EntryRow>& utility_rows() {
  static const std::vector<EntryRow> rows = {
      {"ResampleScanlines_nearest_1", kByte, kByte * 5 / 4, stretch<1, 0>},
      {"ResampleScanlines_nearest_2", 2 * kByte, 2 * kByte * 5 / 4, stretch<2, 0>},
      {"ResampleScanlines_nearest_3", 3 * kByte, 3 * kByte * 5 / 4, stretch<3, 0>},
      {"ResampleScanlines_nearest_6", 6 * kByte, 6 * kByte * 5 / 4, stretch<6, 0>},
      {"ResampleScanlines_nearest_half_1", kByte, kByte / 2, halve<1>},
      {"ResampleScanlines_nearest_half_3", 3 * kByte, 3 * kByte / 2, halve<3>},
      {"ResampleScanlines_linear_1", kByte, kByte * 5 / 4, stretch<1, 1>},
      {"ResampleScanlines_linear_2", 2 * kByte, 2 * kByte * 5 / 4, stretch<2, 1>},
      {"ResampleScanlines_linear_3", 3 * kByte, 3 * kByte * 5 / 4, stretch<3, 1>},
      {"ResampleScanlines_linear_6", 6 * kByte, 6 * kByte * 5 / 4, stretch<6, 1>},
      {"Flip_horizontal_1", kByte, kByte, flip<1, kMono8>},
      {"Flip_horizontal_2", 2 * kByte, 2 * kByte, flip<1, kMono16>},
      {"Flip_horizontal_3", 3 * kByte, 3 * kByte, flip<1, kRgb8>},
      {"Flip_horizontal_6", 6 * kByte, 6 * kByte, flip<1, kRgb16>},
      {"Flip_both_1", kByte, kByte, flip<3, kMono8>},
      {"Flip_both_3", 3 * kByte, 3 * kByte, flip<3, kRgb8>},
      {"FlipVertical", kByte, kByte, flip<2, kMono8>},
      {"InterlacedToProgressive", kByte, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_InterlacedToProgressive(dst, src, width, height);
       }},
      {"InterlacedToProgressive_in_place", kByte, kByte,
       [](uint8_t* dst, uint8_t*, uint32_t width, uint32_t height) {
         QVN_InterlacedToProgressive(dst, dst, width, height);
       }},
      {"Packed12BitTo8Bit", kByte + kByte / 2, kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Packed12BitTo8Bit(dst, src, width, height);
       }},
      {"Packed12BitTo16Bit", kByte + kByte / 2, 2 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Packed12BitTo16Bit(dst, src, width, height);
       }},
  };
  return rows;
}
