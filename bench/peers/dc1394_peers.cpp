// libdc1394.
#include <dc1394/conversions.h>

#include "peers/peers.h"

namespace {

template <dc1394bayer_method_t kMethod>
void demosaic(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  dc1394_bayer_decoding_8bit(src, dst, width, height, DC1394_COLOR_FILTER_RGGB, kMethod);
}
template <dc1394bayer_method_t kMethod>
void demosaic_words(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  dc1394_bayer_decoding_16bit(reinterpret_cast<const uint16_t*>(src), reinterpret_cast<uint16_t*>(dst), width,
                              height, DC1394_COLOR_FILTER_RGGB, kMethod, 16);
}
template <auto kFunction, dc1394color_coding_t kCoding, uint32_t kBits>
void converted(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kFunction(src, dst, width, height, DC1394_BYTE_ORDER_UYVY, kCoding, kBits);
}

}  // namespace

void add_dc1394(std::vector<Peer>& peers) {
  const auto add = [&](const char* row, const char* name, Conversion conversion) {
    peers.push_back({row, name, std::move(conversion)});
  };
  // The simple method is the 2x2 window, the bilinear one a 3x3 window.
  add("Raw8ToBGR", "libdc1394-simple", demosaic<DC1394_BAYER_METHOD_SIMPLE>);
  add("Raw8ToBGR", "libdc1394-bilinear", demosaic<DC1394_BAYER_METHOD_BILINEAR>);
  add("Raw8ToBGR_3x3", "libdc1394-bilinear", demosaic<DC1394_BAYER_METHOD_BILINEAR>);
  for (const char* row : {"Raw8ToBGR_IntYUV422", "Raw8ToBGR_IntLCAA", "Raw8ToBGR_IntLCAAV"}) {
    add(row, "libdc1394-hq-linear", demosaic<DC1394_BAYER_METHOD_HQLINEAR>);
    add(row, "libdc1394-edge-sense", demosaic<DC1394_BAYER_METHOD_EDGESENSE>);
  }
  add("Raw16ToBGR16", "libdc1394-simple", demosaic_words<DC1394_BAYER_METHOD_SIMPLE>);
  add("Raw16ToBGR16", "libdc1394-bilinear", demosaic_words<DC1394_BAYER_METHOD_BILINEAR>);

  add("YUV444ToBGR", "libdc1394", converted<dc1394_convert_to_RGB8, DC1394_COLOR_CODING_YUV444, 8>);
  add("YUV422ToBGR", "libdc1394", converted<dc1394_convert_to_RGB8, DC1394_COLOR_CODING_YUV422, 8>);
  add("YUV411ToBGR", "libdc1394", converted<dc1394_convert_to_RGB8, DC1394_COLOR_CODING_YUV411, 8>);
  add("Y8ToBGR", "libdc1394", converted<dc1394_convert_to_RGB8, DC1394_COLOR_CODING_MONO8, 8>);
  add("Y16ToBGR", "libdc1394", converted<dc1394_convert_to_RGB8, DC1394_COLOR_CODING_MONO16, 16>);
  add("Y16ToY8", "libdc1394", converted<dc1394_convert_to_MONO8, DC1394_COLOR_CODING_MONO16, 16>);
  add("Y8ImageTransform_YUV422", "libdc1394",
      converted<dc1394_convert_to_YUV422, DC1394_COLOR_CODING_MONO8, 8>);
}
