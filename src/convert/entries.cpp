// The exported functions of the convert room.
#include "convert/mono_rgb.h"
#include "convert/planes.h"
#include "convert/yuv_to_bgr.h"
#include "frame/call_frame.h"
#include "pixel/put.h"
#include "pixel/stream.h"

using namespace qvn;

namespace {

using Row = void (*)(uint8_t* dst, const uint8_t* src, size_t n);
using PlaneRow = void (*)(const Planes& planes, const uint8_t* src, size_t n);

uint32_t run_row(const char* name, Row row, uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_entry(name, {dst, src}, [&] { row(dst, src, count); });
}

// To BGR without arithmetic, which the memory alone holds up. Two pixels of the source are
// `source_pair_bytes`.
uint32_t run_bgr_row(const char* name, Row row, uint8_t* dst, const uint8_t* src, size_t source_pair_bytes,
                     uint32_t count) {
  return run_entry(name, {dst, src},
                   [&] { stream_run<PutBgr::kPixelBytes>(dst, src, source_pair_bytes, count, row); });
}

SampleOrder sample_order(uint32_t byte_swap) { return byte_swap != 0 ? SampleOrder::kBigEndian : kHostOrder; }

SampleCut sample_cut(uint32_t alignment, uint32_t bits_per_sample) {
  return alignment == 1 ? cut_low_aligned(bits_per_sample) : kCutTopByte;
}

// The number of pixels wraps at 32 bits.
uint32_t run_rgb_planes(const char* name, PlaneRow row, const Planes& planes, const uint8_t* src,
                        uint32_t width, uint32_t height) {
  return run_entry(name, {planes.r, planes.g, planes.b, src}, [&] { row(planes, src, width * height); });
}

uint32_t run_rgby_planes(const char* name, PlaneRow row, const Planes& planes, const uint8_t* src,
                         uint32_t width, uint32_t height) {
  return run_entry(name, {planes.r, planes.g, planes.b, planes.y, src},
                   [&] { row(planes, src, width * height); });
}

}  // namespace

uint32_t QVN_YUV444ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_row(__func__, yuv444_to_bgr, dst, src, count);
}

uint32_t QVN_YUV422ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_row(__func__, yuv422_to_bgr, dst, src, count);
}

uint32_t QVN_YUV411ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_row(__func__, yuv411_to_bgr, dst, src, count);
}

uint32_t QVN_RGB8ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_bgr_row(__func__, rgb8_to_bgr, dst, src, 6, count);
}

uint32_t QVN_RGB8ToY8(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_row(__func__, rgb8_to_y8, dst, src, count);
}

uint32_t QVN_Y8ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_bgr_row(__func__, y8_to_bgr, dst, src, 2, count);
}

uint32_t QVN_Y16ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_entry(__func__, {dst, src},
                   [&] { y16_to_bgr(dst, src, count, SampleOrder::kBigEndian, kCutTopByte); });
}

uint32_t QVN_Y16ToBGREx(uint8_t* dst, const uint8_t* src, uint32_t count, uint32_t byteSwap,
                        uint32_t alignment, uint32_t bitsPerSample) {
  return run_entry(__func__, {dst, src}, [&] {
    y16_to_bgr(dst, src, count, sample_order(byteSwap), sample_cut(alignment, bitsPerSample));
  });
}

uint32_t QVN_Y16ToY8(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_entry(__func__, {dst, src},
                   [&] { y16_to_y8(dst, src, count, SampleOrder::kBigEndian, kCutTopByte); });
}

uint32_t QVN_Y16ToY8Ex(uint8_t* dst, const uint8_t* src, uint32_t count, uint32_t byteSwap,
                       uint32_t alignment, uint32_t bitsPerSample) {
  return run_entry(__func__, {dst, src}, [&] {
    y16_to_y8(dst, src, count, sample_order(byteSwap), sample_cut(alignment, bitsPerSample));
  });
}

// Kept for callers of the old name: it refuses what it could do, and does no other work than QVN_Y16ToY8.
uint32_t QVN_Y16ToY8_MMX(uint8_t* dst, const uint8_t* src, uint32_t count) {
  return run_entry(__func__, {dst, src}, [&]() -> uint32_t {
    if ((count & 7) != 0) return QVN_E_PARAM3;
    y16_to_y8(dst, src, count, SampleOrder::kBigEndian, kCutTopByte);
    return QVN_OK;
  });
}

uint32_t QVN_YUV444ToRGBPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, const uint8_t* src,
                               uint32_t width, uint32_t height) {
  return run_rgb_planes(__func__, yuv444_to_planes, {dstR, dstG, dstB, nullptr}, src, width, height);
}

uint32_t QVN_YUV422ToRGBPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, const uint8_t* src,
                               uint32_t width, uint32_t height) {
  return run_rgb_planes(__func__, yuv422_to_planes, {dstR, dstG, dstB, nullptr}, src, width, height);
}

uint32_t QVN_YUV411ToRGBPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, const uint8_t* src,
                               uint32_t width, uint32_t height) {
  return run_rgb_planes(__func__, yuv411_to_planes, {dstR, dstG, dstB, nullptr}, src, width, height);
}

uint32_t QVN_YUV444ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY,
                                const uint8_t* src, uint32_t width, uint32_t height) {
  return run_rgby_planes(__func__, yuv444_to_planes, {dstR, dstG, dstB, dstY}, src, width, height);
}

uint32_t QVN_YUV422ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY,
                                const uint8_t* src, uint32_t width, uint32_t height) {
  return run_rgby_planes(__func__, yuv422_to_planes, {dstR, dstG, dstB, dstY}, src, width, height);
}

// No pointer is tested, unlike in the other six: callers leave the luma plane out with a null.
uint32_t QVN_YUV411ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY,
                                const uint8_t* src, uint32_t width, uint32_t height) {
  return run_entry(__func__, {}, [&] { yuv411_to_planes({dstR, dstG, dstB, dstY}, src, width * height); });
}

// A luma plane lets three null colour planes through the tests. It makes no luma-only call of it: the colours
// are still written, so that such a call faults on the first pixel.
uint32_t QVN_RGB8ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY, const uint8_t* src,
                              uint32_t width, uint32_t height) {
  const bool no_colours = dstR == nullptr && dstG == nullptr && dstB == nullptr;
  return run_entry(__func__, {}, [&]() -> uint32_t {
    if (dstY == nullptr || !no_colours) {
      if (const uint32_t status = check_pointers({dstR, dstG, dstB}); status != QVN_OK) return status;
    }
    if (src == nullptr) return QVN_E_PARAM5;
    rgb8_to_planes({dstR, dstG, dstB, dstY}, src, width * height);
    return QVN_OK;
  });
}
