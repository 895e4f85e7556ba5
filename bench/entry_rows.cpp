// The rows of the benchmark, by room.
#include "entry_rows.h"

#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = 12;  // entry_rows.h counts in twelfths, so that packed formats come out whole

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
  };
  return rows;
}
