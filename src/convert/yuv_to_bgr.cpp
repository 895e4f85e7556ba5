// The packed YUV rows that end in BGR.
#include "convert/yuv_to_bgr.h"

#include "convert/adjustable.h"

namespace qvn {

void yuv444_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) { yuv_to_packed<Yuv444, PutBgr>(dst, src, n); }

void yuv422_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) { yuv_to_packed<Yuv422, PutBgr>(dst, src, n); }

void yuv411_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) { yuv_to_packed<Yuv411, PutBgr>(dst, src, n); }

bool YUV422ToBGRAdjustable(uint8_t* dst, const uint8_t* src, uint32_t count, float hue, float saturation) {
  return YUV422ToTargetAdjustable<PutBgr>(dst, src, count, hue, saturation);
}

}  // namespace qvn
