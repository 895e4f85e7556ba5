// The exported functions of the transform room.
#include "frame/call_frame.h"
#include "transform/interpolations.h"
#include "transform/mosaics.h"
#include "transform/runs.h"

using namespace qvn;

namespace {

uint32_t run_pixels(const char* name, const ByTarget<PixelRun>& runs, uint8_t* dst, const uint8_t* src,
                    uint32_t count, TransformTarget target) {
  return run_entry(name, {dst, src}, [&] {
    return run_target(runs, target, [&](PixelRun run) { return run(dst, src, count); });
  });
}

uint32_t run_2x2(const char* name, const ByTarget<Mosaic2x2>& mosaics, uint8_t* dst, const uint8_t* src,
                 uint32_t width, uint32_t height, TransformTarget target, BayerPattern pattern) {
  return run_bayer_entry(name, dst, src, pattern, [&](uint32_t internal) {
    return run_target(mosaics, target, [&](const Mosaic2x2& mosaic) {
      demosaic_2x2(*mosaic, dst, src, width, height, internal);
    });
  });
}

uint32_t run_filter(const char* name, ChromaFilter filter, uint8_t* dst, uint8_t* src, uint32_t width,
                    uint32_t height, TransformTarget target, BayerPattern pattern) {
  return run_bayer_entry(name, dst, src, pattern, [&](uint32_t internal) {
    return run_target(kInterpolations, target, [&](const InterpolationTarget* to) {
      run_interpolation(filter, *to, dst, src, width, height, internal);
    });
  });
}

}  // namespace

uint32_t QVN_RGB8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kRgb8Runs, dst, src, count, target);
}

uint32_t QVN_RGBA8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kRgba8Runs, dst, src, count, target);
}

uint32_t QVN_YUV444ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kYuv444Runs, dst, src, count, target);
}

uint32_t QVN_YUV422ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kYuv422Runs, dst, src, count, target);
}

uint32_t QVN_YUV411ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kYuv411Runs, dst, src, count, target);
}

uint32_t QVN_Y8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kY8Runs, dst, src, count, target);
}

uint32_t QVN_Y16ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kY16Runs, dst, src, count, target);
}

uint32_t QVN_Y16ImageTransformEx(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target,
                                 const SampleFormatBlock* format) {
  constexpr SampleFormatBlock kBigEndian = {0, 0, 0, 1, 0};
  return run_entry(__func__, {dst, src}, [&] {
    return run_layout(kY16LayoutRuns, format == nullptr ? kBigEndian : *format, target,
                      [&](PixelRun run) { return run(dst, src, count); });
  });
}

uint32_t QVN_Y12ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count, TransformTarget target) {
  return run_pixels(__func__, kY12Runs, dst, src, count, target);
}

uint32_t QVN_Raw8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                TransformTarget target, BayerPattern pattern) {
  return run_2x2(__func__, kRaw8Mosaics, dst, src, width, height, target, pattern);
}

uint32_t QVN_Raw8ImageTransform_3x3(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                    TransformTarget target, BayerPattern pattern) {
  return run_bayer_entry(__func__, dst, src, pattern, [&](uint32_t internal) {
    return run_target(kRaw8Mosaics3x3, target, [&](const Mosaic3x3& mosaic) {
      demosaic_3x3(*mosaic, dst, src, width, height, internal);
      return true;
    });
  });
}

uint32_t QVN_Raw8ImageTransform_IntYUV422(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                          TransformTarget target, BayerPattern pattern) {
  return run_filter(__func__, ChromaFilter::kPair, dst, src, width, height, target, pattern);
}

uint32_t QVN_Raw8ImageTransform_IntLCAA(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                        TransformTarget target, BayerPattern pattern) {
  return run_filter(__func__, ChromaFilter::kBox4, dst, src, width, height, target, pattern);
}

uint32_t QVN_Raw8ImageTransform_IntLCAAV(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                         TransformTarget target, BayerPattern pattern) {
  return run_filter(__func__, ChromaFilter::kBlock8, dst, src, width, height, target, pattern);
}

uint32_t QVN_Raw12ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                 TransformTarget target, BayerPattern pattern) {
  return run_2x2(__func__, kRaw12Mosaics, dst, src, width, height, target, pattern);
}

uint32_t QVN_Raw16ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                 TransformTarget target, BayerPattern pattern) {
  return run_2x2(__func__, kRaw16Mosaics, dst, src, width, height, target, pattern);
}

// The block is tested and holds the pattern.
uint32_t QVN_Raw16ImageTransformEx(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                   TransformTarget target, const SampleFormatBlock* format) {
  constexpr uint32_t kFormat = 5;  // argument, from 0
  return run_entry(__func__, {dst, src}, [&] {
    if (format == nullptr) return refused_argument(kFormat);
    return run_layout(kRaw16LayoutMosaics, *format, target, [&](const Mosaic2x2& mosaic) {
      demosaic_2x2(*mosaic, dst, src, width, height, internal_pattern(format->pattern));
    });
  });
}
