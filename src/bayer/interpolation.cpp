// The interpolations in the plain way, pass by pass, and the choice between passes and rows.
#include "bayer/interpolation.h"

#include <array>
#include <cstring>

#include "bayer/demosaic_2x2.h"
#include "bayer/interpolation_rows.h"
#include "convert/adjustable.h"

namespace qvn {

namespace {

constexpr size_t kPixel = 3, kU = 1, kV = 2;  // a pixel of the working frame is Y, U, V
constexpr size_t kPair = 2 * kPixel;

void put_group(uint8_t* out, uint32_t u, uint8_t y0, uint32_t v, uint8_t y1) {
  out[0] = static_cast<uint8_t>(u);
  out[1] = y0;
  out[2] = static_cast<uint8_t>(v);
  out[3] = y1;
}

void pack_pairs(uint8_t* out, const uint8_t* frame, uint32_t pairs) {
  for (uint32_t q = 0; q < pairs; ++q, out += 4, frame += kPair) {
    const auto mean = [frame](size_t c) { return uint32_t(frame[c] + frame[kPixel + c]) >> 1; };
    put_group(out, mean(kU), frame[0], mean(kV), frame[kPixel]);
  }
}

// The last two pairs have no four pixels ahead in their half: they repeat the pair before them, luma and all.
void pack_box4(uint8_t* out, const uint8_t* frame, uint32_t pairs) {
  for (uint32_t q = 0; q < pairs - 2; ++q, out += 4, frame += kPair) {
    const auto mean = [frame](size_t c) {
      return uint32_t(frame[c] + frame[kPixel + c] + frame[2 * kPixel + c] + frame[3 * kPixel + c]) >> 2;
    };
    put_group(out, mean(kU), frame[0], mean(kV), frame[kPixel]);
  }
  std::memcpy(out, out - 4, 4);
  std::memcpy(out + 4, out - 4, 4);
}

}  // namespace

void BayerToYUV444(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
  demosaic_2x2(kRaw8ToYuv444, dst, src, width, height, pattern);
}

void PackLCAAV(uint8_t* out, const uint8_t* frame, uint32_t width, uint32_t lines, LookBack look_back) {
  const uint32_t ahead = ((lines - 1) * width) >> 1;  // pairs before the last line
  const auto pitch = static_cast<ptrdiff_t>(kPixel * width);
  const uint8_t* left = frame;  // the very first left tap is the pair's own first pixel
  const uint8_t* start = frame;
  const auto pack_block = [&](const uint8_t* other) {
    const auto mean = [&](size_t c) {
      return uint32_t(left[c] + frame[c] + frame[kPixel + c] + frame[2 * kPixel + c] + other[c] +
                      other[kPixel + c] + other[2 * kPixel + c] + other[3 * kPixel + c] + 4) >>
             3;
    };
    put_group(out, mean(kU), frame[0], mean(kV), frame[kPixel]);
    left = frame + kPixel;
    out += 4;
    frame += kPair;
  };
  std::array<uint8_t, 4 * kPixel> partly_before;
  const auto pixels_above = [&]() -> const uint8_t* {
    const ptrdiff_t place = frame - start - pitch - ptrdiff_t{kPixel};
    if (look_back == LookBack::kRead || place >= 0) return start + place;
    for (size_t i = 0; i < partly_before.size(); ++i) {
      const ptrdiff_t byte = place + static_cast<ptrdiff_t>(i);
      partly_before[i] = byte < 0 ? 0 : start[byte];
    }
    return partly_before.data();
  };
  for (uint32_t q = 1; q < ahead; ++q) pack_block(frame + pitch - kPixel);
  for (uint32_t q = 1; q < width >> 1; ++q) pack_block(pixels_above());
  for (int q = 0; q < 2; ++q, out += 4, frame += kPair) {
    put_group(out, frame[kU], frame[0], frame[kV], frame[kPixel]);
  }
}

void pack_half_frame(ChromaFilter filter, uint8_t* out, const uint8_t* frame, uint32_t width, uint32_t height,
                     LookBack look_back) {
  const uint32_t pairs = ((height >> 1) * width) >> 1;
  switch (filter) {
    case ChromaFilter::kPair:
      return pack_pairs(out, frame, pairs);
    case ChromaFilter::kBox4:
      return pack_box4(out, frame, pairs);
    case ChromaFilter::kBlock8:
      return PackLCAAV(out, frame, width, height >> 1, look_back);
  }
}

namespace {

template <class Put>
constexpr InterpolationTarget target() {
  return {Put::kPixelBytes, YUV422ToTargetAdjustable<Put>, interpolate_rows<Put>};
}

// By rows if the frame and the pair allow it, else in passes, of which `working` holds the frame.
void run(ChromaFilter filter, const InterpolationTarget& target, uint8_t* dst, WorkingRows rows,
         LookBack look_back, uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
  const HueSatPair& pair = color_tables.hue_sat;
  if (runs_by_rows(width, height, target.pixel_bytes) && pair.hue == 0.0F && pair.saturation == 1.0F) {
    return target.rows(filter, dst, rows, src, width, height, pattern);
  }
  uint8_t* working = rows.first;
  BayerToYUV444(working, src, width, height, pattern);
  // With an odd height a half holds fewer pairs than are converted: the rest is what `src` holds there.
  const uint32_t pixels = (width * height) >> 1;
  const auto second_half = [=](size_t bytes) { return (width * height * static_cast<uint32_t>(bytes)) >> 1; };
  pack_half_frame(filter, src, working, width, height, look_back);
  target.convert(dst, src, pixels, pair.hue, pair.saturation);
  pack_half_frame(filter, src, working + second_half(kPixel), width, height);
  target.convert(dst + second_half(target.pixel_bytes), src, pixels, pair.hue, pair.saturation);
}

}  // namespace

constexpr InterpolationTarget kInterpolationToBgr = target<PutBgr>();
constexpr InterpolationTarget kInterpolationToBgra = target<PutBgra>();
constexpr InterpolationTarget kInterpolationToY8 = target<PutY8>();
constexpr InterpolationTarget kInterpolationToY8Rounded = target<PutY8Rounded>();

void interpolate(ChromaFilter filter, uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                 uint32_t pattern) {
  run(filter, kInterpolationToBgr, dst, {dst, kPixel * width}, LookBack::kRead, src, width, height, pattern);
}

// Nothing lies before the scratch frame; the second half has the first one there.
void interpolate(ChromaFilter filter, const InterpolationTarget& target, uint8_t* dst, uint8_t* scratch,
                 uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
  run(filter, target, dst, {scratch, 0}, LookBack::kZeros, src, width, height, pattern);
}

}  // namespace qvn
