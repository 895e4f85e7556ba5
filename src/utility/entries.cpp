// The exported functions of the utility room. Most of them deviate from the usual call frame.
#include <memory>
#include <new>

#include "frame/call_frame.h"
#include "frame/pixel_format.h"
#include "utility/flip.h"
#include "utility/interlace.h"
#include "utility/packed12.h"
#include "utility/resample.h"
#include "utility/sis_block.h"

using namespace qvn;

namespace {

// What resampling reports when it is done: a success that is not QVN_OK, and callers test for it.
constexpr uint32_t kResampled = 1;

constexpr uint32_t kNearest = 0, kLinear = 1;
constexpr uint32_t kLargestElement = 6;

constexpr uint32_t kHorizontal = 1, kVertical = 2, kBothAxes = 3;
constexpr uint32_t kFewestLines = 2;

// Bytes that move as one when a line is reversed; 0 if such lines cannot be.
uint32_t flip_element(ColorCodingId code) {
  const PixelFormat* format = find_pixel_format(code);
  return format != nullptr ? format->flip_element : 0;
}

void flip_lines(uint8_t* buffer, uint32_t width, uint32_t height, uint32_t element) {
  const size_t line_bytes = size_t{width} * element;
  for (size_t y = 0; y < height; ++y) reverse_elements(buffer + y * line_bytes, width, element);
}

}  // namespace

uint32_t QVN_GetResampledScanlineLength(int32_t* dstLength, int32_t srcLength, float srcRate, float dstRate) {
  *dstLength = resampled_length(srcLength, srcRate, dstRate);
  return QVN_OK;
}

// No log line. Memory that is not there leaves as the exception that it is.
uint32_t QVN_ResampleScanlinesEx(uint8_t* dst, const uint8_t* src, int32_t dstLength, int32_t dstPitch,
                                 int32_t srcLength, int32_t srcPitch, int32_t lineCount, float srcRate,
                                 float dstRate, ResampleType resampleType, ResampleMethod resampleMethod) {
  if (const uint32_t status = check_pointers({dst, src}); status != QVN_OK) return status;
  if (resampleType == 0 || resampleType > kLargestElement) return QVN_E_PARAM10;
  if (resampleMethod != kNearest && resampleMethod != kLinear) return QVN_E_PARAM11;
  const ResampleKernel kernel =
      resampleMethod == kNearest ? nearest_kernel(resampleType) : linear_kernel(resampleType);
  kernel({dst, src, dstLength, dstPitch, srcLength, srcPitch, lineCount, srcRate, dstRate});
  return kResampled;
}

// The numbers of refused arguments are those of the longer function.
uint32_t QVN_ResampleScanlines(uint8_t* dst, const uint8_t* src, int32_t dstLength, int32_t srcLength,
                               int32_t lineCount, float srcRate, float dstRate, ResampleType resampleType,
                               ResampleMethod resampleMethod) {
  return QVN_ResampleScanlinesEx(dst, src, dstLength, dstLength, srcLength, srcLength, lineCount, srcRate,
                                 dstRate, resampleType, resampleMethod);
}

// No log line of its own. The height is tested before the axis, and the axis before the code, which a
// vertical flip takes whatever it is.
uint32_t QVN_Flip(uint8_t* buffer, uint32_t width, uint32_t height, uint32_t axis,
                  ColorCodingId colorCoding) {
  if (buffer == nullptr) return QVN_E_PARAM1;
  if (height < kFewestLines) return QVN_E_PARAM3;
  if (axis != kHorizontal && axis != kVertical && axis != kBothAxes) return QVN_E_PARAM4;
  const uint32_t element = flip_element(colorCoding);
  if (axis == kVertical) return QVN_FlipVertical(buffer, (element != 0 ? element : 1) * width, height);
  if (element == 0) return QVN_E_PARAM5;
  if (axis == kHorizontal) {
    flip_lines(buffer, width, height, element);
  } else {
    reverse_elements(buffer, width * height, element);
  }
  return QVN_OK;
}

// The log line comes behind the checks, against the usual order.
uint32_t QVN_FlipVertical(uint8_t* buffer, uint32_t lineBytes, uint32_t height) {
  if (buffer == nullptr) return QVN_E_PARAM1;
  if (height < kFewestLines) return QVN_E_PARAM3;
  log_entry(__func__);
  std::unique_ptr<uint8_t[]> scratch;
  try {
    scratch.reset(new uint8_t[lineBytes]);
  } catch (const std::bad_alloc&) {
    return QVN_E_OUT_OF_MEMORY;
  }
  exchange_lines(buffer, scratch.get(), lineBytes, height);
  return QVN_OK;
}

uint32_t QVN_InterlacedToProgressive(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  return run_entry(__func__, {dst, src}, [&] {
    if (dst == src) {
      weave_fields_in_place(dst, width, height);
    } else {
      weave_fields(dst, src, width, height);
    }
  });
}

// Whole pairs are unpacked, so that an odd number of samples writes one more.
uint32_t QVN_Packed12BitTo8Bit(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  return run_entry(__func__, {dst, src}, [&] {
    const uint32_t bytes = width * height;
    unpack12_to_8(dst, src, (size_t{bytes} + 1) / 2);
  });
}

uint32_t QVN_Packed12BitTo16Bit(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  return run_entry(__func__, {dst, src}, [&] {
    const uint32_t bytes = 2 * (width * height);
    unpack12_to_16(dst, src, (size_t{bytes} + 2) / 4);
  });
}

// No log line. The code is tested before the offset, the offset before the kind of block, that before the
// range.
uint32_t QVN_GetSIS(uint8_t* dst, const uint8_t* frame, uint32_t width, uint32_t height,
                    ColorCodingId colorCoding, int32_t position, uint32_t blockKind) {
  if (const uint32_t status = check_pointers({dst, frame}); status != QVN_OK) return status;
  return copy_sis_block(dst, frame, {width, height, colorCoding, position, blockKind});
}
