// The rows of the utility room.
#include "entry_rows.h"
#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = kTwelfths;

// Lines stretched to five quarters of their length.
template <uint32_t kElement, uint32_t kMethod>
void stretch(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const auto length = static_cast<int32_t>(width);
  QVN_ResampleScanlines(dst, src, length / 4 * 5, length, static_cast<int32_t>(height), 4, 5, kElement,
                        kMethod);
}

// The same, upside down.
void stretch_at_pitches(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const auto length = static_cast<int32_t>(width), lines = static_cast<int32_t>(height);
  QVN_ResampleScanlinesEx(dst, src + size_t{width} * (height - 1), length / 4 * 5, length / 4 * 5, length,
                          -length, lines, 4, 5, 1, 0);
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
      {"ResampleScanlines_nearest_half_2", 2 * kByte, kByte, halve<2>},
      {"ResampleScanlines_nearest_half_6", 6 * kByte, 3 * kByte, halve<6>},
      {"ResampleScanlines_nearest_4", 4 * kByte, 4 * kByte * 5 / 4, stretch<4, 0>},
      {"ResampleScanlines_nearest_5", 5 * kByte, 5 * kByte * 5 / 4, stretch<5, 0>},
      {"ResampleScanlines_linear_1", kByte, kByte * 5 / 4, stretch<1, 1>},
      {"ResampleScanlines_linear_2", 2 * kByte, 2 * kByte * 5 / 4, stretch<2, 1>},
      {"ResampleScanlines_linear_3", 3 * kByte, 3 * kByte * 5 / 4, stretch<3, 1>},
      {"ResampleScanlines_linear_4", 4 * kByte, 4 * kByte * 5 / 4, stretch<4, 1>},
      {"ResampleScanlines_linear_5", 5 * kByte, 5 * kByte * 5 / 4, stretch<5, 1>},
      {"ResampleScanlines_linear_6", 6 * kByte, 6 * kByte * 5 / 4, stretch<6, 1>},
      {"ResampleScanlinesEx_nearest_1", kByte, kByte * 5 / 4, stretch_at_pitches},
      {"Flip_horizontal_1", kByte, kByte, flip<1, kMono8>},
      {"Flip_horizontal_2", 2 * kByte, 2 * kByte, flip<1, kMono16>},
      {"Flip_horizontal_3", 3 * kByte, 3 * kByte, flip<1, kRgb8>},
      {"Flip_horizontal_6", 6 * kByte, 6 * kByte, flip<1, kRgb16>},
      {"Flip_both_1", kByte, kByte, flip<3, kMono8>},
      {"Flip_both_2", 2 * kByte, 2 * kByte, flip<3, kMono16>},
      {"Flip_both_3", 3 * kByte, 3 * kByte, flip<3, kRgb8>},
      {"Flip_both_6", 6 * kByte, 6 * kByte, flip<3, kRgb16>},
      {"Flip_vertical_1", kByte, kByte, flip<2, kMono8>},
      {"FlipVertical", kByte, kByte,
       [](uint8_t* dst, uint8_t*, uint32_t width, uint32_t height) { QVN_FlipVertical(dst, width, height); }},
      {"InterlacedToProgressive", kByte, kByte, call_frame<QVN_InterlacedToProgressive>},
      {"InterlacedToProgressive_in_place", kByte, kByte,
       [](uint8_t* dst, uint8_t*, uint32_t width, uint32_t height) {
         QVN_InterlacedToProgressive(dst, dst, width, height);
       }},
      {"Packed12BitTo8Bit", kByte + kByte / 2, kByte, call_frame<QVN_Packed12BitTo8Bit>},
      {"Packed12BitTo16Bit", kByte + kByte / 2, 2 * kByte, call_frame<QVN_Packed12BitTo16Bit>},
  };
  return rows;
}
