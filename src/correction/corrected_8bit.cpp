#include "correction/corrected_8bit.h"

#include "correction/corrected_2x2.h"

namespace qvn {

namespace {

template <class Put>
int32_t corrected(const Recipe2x2& plain, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern, const ColorCorrection* object) {
  if (object == nullptr) {
    demosaic_2x2(plain, dst, src, width, height, pattern);
    return 0;
  }
  return dispatch<uint8_t>(Family::kRaw8, object, {256, samples_of(width, height)}, [&](auto& rule) {
    uint8_t* last =
        corrected_lines<FetchRaw8, Put, uint8_t>(rule, dst, src, width, height, pattern, plain.columns);
    copy_last_line(last, size_t{Put::kPixelBytes} * width);
  });
}

}  // namespace

int32_t raw8_to_bgr_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                              uint32_t pattern, const ColorCorrection* object) {
  return corrected<PutBgr>(kRaw8ToBgr, dst, src, width, height, pattern, object);
}

int32_t raw8_to_y8_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                             uint32_t pattern, const ColorCorrection* object) {
  return corrected<PutY8>(kRaw8ToY8, dst, src, width, height, pattern, object);
}

}  // namespace qvn
