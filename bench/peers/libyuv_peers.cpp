// libyuv.
#include <libyuv.h>

#include "peers/peers.h"

namespace {

struct Frame {
  int width, height;
  int pitch(int bytes) const { return width * bytes; }
};

// A conversion of one packed format into another, by libyuv's usual seven arguments.
template <auto kFunction, int kFrom, int kTo>
void packed(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const Frame frame{static_cast<int>(width), static_cast<int>(height)};
  kFunction(src, frame.pitch(kFrom), dst, frame.pitch(kTo), frame.width, frame.height);
}

void split(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const Frame frame{static_cast<int>(width), static_cast<int>(height)};
  const size_t plane = size_t{width} * height;
  libyuv::SplitRGBPlane(src, frame.pitch(3), dst, frame.width, dst + plane, frame.width, dst + 2 * plane,
                        frame.width, frame.width, frame.height);
}

void top_bytes(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const Frame frame{static_cast<int>(width), static_cast<int>(height)};
  constexpr int kSixteenBits = 256;  // sample * scale >> 16
  libyuv::Convert16To8Plane(reinterpret_cast<const uint16_t*>(src), frame.width, dst, frame.width,
                            kSixteenBits, frame.width, frame.height);
}

template <libyuv::FilterMode kFilter, int kNumerator, int kDenominator>
void scale(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const Frame frame{static_cast<int>(width), static_cast<int>(height)};
  const int length = frame.width / kDenominator * kNumerator;
  libyuv::ScalePlane(src, frame.width, frame.width, frame.height, dst, length, length, frame.height, kFilter);
}

template <libyuv::FilterMode kFilter>
void scale_words(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const Frame frame{static_cast<int>(width), static_cast<int>(height)};
  const int length = frame.width / 4 * 5;
  libyuv::ScalePlane_16(reinterpret_cast<const uint16_t*>(src), frame.width, frame.width, frame.height,
                        reinterpret_cast<uint16_t*>(dst), length, length, frame.height, kFilter);
}

// A negative height turns the picture upside down.
void upside_down(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const Frame frame{static_cast<int>(width), static_cast<int>(height)};
  libyuv::CopyPlane(src, frame.width, dst, frame.width, frame.width, -frame.height);
}

void weave(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const Frame frame{static_cast<int>(width), static_cast<int>(height)};
  const int lines = frame.height / 2;
  libyuv::CopyPlane(src + size_t{width} * (height / 2), frame.width, dst, frame.pitch(2), frame.width, lines);
  libyuv::CopyPlane(src, frame.width, dst + width, frame.pitch(2), frame.width, lines);
}

}  // namespace

void add_libyuv(std::vector<Peer>& peers) {
  using namespace libyuv;
  const auto add = [&](const char* row, const char* name, Conversion conversion) {
    peers.push_back({row, name, std::move(conversion)});
  };
  // There is no way from YUV to three bytes a pixel in one call.
  add("YUV422ToBGR", "libyuv-ARGB", packed<UYVYToARGB, 2, 4>);
  add("YUV422ImageTransform_BGRA", "libyuv", packed<UYVYToARGB, 2, 4>);
  for (const char* row : {"RGB8ToBGR", "RGB8ImageTransform_BGR"}) {
    add(row, "libyuv", packed<RAWToRGB24, 3, 3>);
  }
  add("RGB8ImageTransform_BGRA", "libyuv", packed<RAWToARGB, 3, 4>);
  add("RGBA8ImageTransform_BGR", "libyuv", packed<ARGBToRAW, 4, 3>);
  add("RGBA8ImageTransform_BGRA", "libyuv", packed<ABGRToARGB, 4, 4>);
  for (const char* row : {"RGB8ToY8", "RGB8ImageTransform_Y8", "RGB8ImageTransform_Y8Rounded"}) {
    add(row, "libyuv", packed<RAWToJ400, 3, 1>);
  }
  add("RGBA8ImageTransform_Y8", "libyuv", packed<ABGRToJ400, 4, 1>);
  add("Y8ToBGR", "libyuv-ARGB", packed<J400ToARGB, 1, 4>);
  add("Y8ImageTransform_BGRA", "libyuv", packed<J400ToARGB, 1, 4>);
  for (const char* row : {"Y16ToY8", "Y16ToY8_MMX", "Y16ToY8Ex_top", "Y16ImageTransformEx_Y8",
                          "Y16ImageTransformEx_be_Y8", "Y16ImageTransformEx_top_Y8"}) {
    add(row, "libyuv", top_bytes);
  }
  add("Y16ImageTransformEx_be_Y16", "libyuv", packed<SwapUVPlane, 2, 2>);
  add("RGB8ToRGBYPlanes_no_luma", "libyuv", split);

  add("ResampleScanlines_nearest_1", "libyuv", scale<kFilterNone, 5, 4>);
  add("ResampleScanlines_nearest_2", "libyuv", scale_words<kFilterNone>);
  add("ResampleScanlines_nearest_half_1", "libyuv", scale<kFilterNone, 1, 2>);
  add("ResampleScanlines_linear_1", "libyuv", scale<kFilterLinear, 5, 4>);
  add("Flip_horizontal_1", "libyuv-copy", packed<MirrorPlane, 1, 1>);
  add("Flip_horizontal_2", "libyuv-copy", packed<MirrorUVPlane, 2, 2>);
  add("Flip_horizontal_3", "libyuv-copy", packed<RGB24Mirror, 3, 3>);
  for (const char* row : {"Flip_vertical_1", "FlipVertical"}) add(row, "libyuv-copy", upside_down);
  add("InterlacedToProgressive", "libyuv", weave);
}
