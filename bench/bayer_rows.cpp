// The rows of the bayer room.
#include "entry_rows.h"
#include "quorvane/quorvane.h"

namespace {
constexpr uint32_t kByte = kTwelfths;
}

const std::vector<EntryRow>& bayer_rows() {
  static const std::vector<EntryRow> rows = {
      // The four orders differ in which line and which column a window starts with.
      {"Raw8ToBGR", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR>},
      {"Raw8ToBGR_gbrg", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR, 1>},
      {"Raw8ToBGR_grbg", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR, 2>},
      {"Raw8ToBGR_bggr", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR, 3>},
      {"Raw8ToBGR_scalar", kByte, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         scalar_raw8_to_bgr(dst, src, width, height);
       }},
      {"Raw8ToY8", kByte, kByte, call_mosaic<QVN_Raw8ToY8>},
      {"Raw8ToY8_bggr", kByte, kByte, call_mosaic<QVN_Raw8ToY8, 3>},
      {"Raw8ToBGR_mono", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR_mono>},
      {"Raw16ToBGR", 2 * kByte, 3 * kByte, call_mosaic<QVN_Raw16ToBGR>},
      {"Raw16ToBGR_bggr", 2 * kByte, 3 * kByte, call_mosaic<QVN_Raw16ToBGR, 3>},
      {"Raw8ToBGR_3x3", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR_3x3>},
      {"Raw8ToBGR_3x3_bggr", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR_3x3, 3>},
      {"Raw8ToBGR_IntYUV422", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR_IntYUV422>},
      {"Raw8ToBGR_IntLCAA", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR_IntLCAA>},
      {"Raw8ToBGR_IntLCAAV", kByte, 3 * kByte, call_mosaic<QVN_Raw8ToBGR_IntLCAAV>},
  };
  return rows;
}
