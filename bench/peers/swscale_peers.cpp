// libswscale.
#include <array>
#include <memory>

#include "peers/peers.h"

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

namespace {

struct Free {
  void operator()(SwsContext* context) const { sws_freeContext(context); }
};
using Context = std::unique_ptr<SwsContext, Free>;

struct Picture {
  std::array<uint8_t*, 4> planes{};
  std::array<int, 4> pitches{};

  Picture(uint8_t* bytes, AVPixelFormat format, int width, int height) {
    av_image_fill_arrays(planes.data(), pitches.data(), bytes, format, width, height, 1);
  }
};

// A context is made for the first frame of a size and kept for the next ones, as its users do.
Conversion scaled(AVPixelFormat from, AVPixelFormat to, int flags, int numerator, int denominator) {
  struct Kept {
    Context context;
    uint32_t width = 0, height = 0;
  };
  return [=, kept = std::make_shared<Kept>()](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
    const int w = static_cast<int>(width), h = static_cast<int>(height), length = w / denominator * numerator;
    if (kept->width != width || kept->height != height) {
      kept->context.reset(sws_getContext(w, h, from, length, h, to, flags, nullptr, nullptr, nullptr));
      kept->width = width;
      kept->height = height;
    }
    const Picture in(src, from, w, h), out(dst, to, length, h);
    sws_scale(kept->context.get(), in.planes.data(), in.pitches.data(), 0, h, out.planes.data(),
              out.pitches.data());
  };
}

Conversion converted(AVPixelFormat from, AVPixelFormat to) {
  return scaled(from, to, SWS_FAST_BILINEAR, 1, 1);
}

}  // namespace

void add_swscale(std::vector<Peer>& peers) {
  av_log_set_level(AV_LOG_ERROR);
  const auto add = [&](const char* row, const char* name, Conversion conversion) {
    peers.push_back({row, name, std::move(conversion)});
  };
  // Red first: it has no way from mosaics to blue first in one step.
  const Conversion bayer8 = converted(AV_PIX_FMT_BAYER_RGGB8, AV_PIX_FMT_RGB24);
  add("Raw8ToBGR", "swscale", bayer8);
  add("Raw8ToBGR_3x3", "swscale", bayer8);
  add("Raw16ToBGR", "swscale", converted(AV_PIX_FMT_BAYER_RGGB16BE, AV_PIX_FMT_RGB24));
  for (const char* row : {"Raw16ToBGR16", "Raw16ImageTransformEx_be_BGR16"}) {
    add(row, "swscale", converted(AV_PIX_FMT_BAYER_RGGB16BE, AV_PIX_FMT_RGB48LE));
  }

  add("YUV422ToBGR", "swscale", converted(AV_PIX_FMT_UYVY422, AV_PIX_FMT_BGR24));
  add("YUV422ImageTransform_BGRA", "swscale", converted(AV_PIX_FMT_UYVY422, AV_PIX_FMT_BGRA));
  add("YUV422ToRGBPlanes", "swscale", converted(AV_PIX_FMT_UYVY422, AV_PIX_FMT_GBRP));
  for (const char* row : {"RGB8ToBGR", "RGB8ImageTransform_BGR"}) {
    add(row, "swscale", converted(AV_PIX_FMT_RGB24, AV_PIX_FMT_BGR24));
  }
  add("RGB8ImageTransform_BGRA", "swscale", converted(AV_PIX_FMT_RGB24, AV_PIX_FMT_BGRA));
  add("RGBA8ImageTransform_BGR", "swscale", converted(AV_PIX_FMT_RGBA, AV_PIX_FMT_BGR24));
  add("RGBA8ImageTransform_BGRA", "swscale", converted(AV_PIX_FMT_RGBA, AV_PIX_FMT_BGRA));
  for (const char* row : {"RGB8ToY8", "RGB8ImageTransform_Y8", "RGB8ImageTransform_Y8Rounded"}) {
    add(row, "swscale", converted(AV_PIX_FMT_RGB24, AV_PIX_FMT_GRAY8));
  }
  add("RGBA8ImageTransform_Y8", "swscale", converted(AV_PIX_FMT_RGBA, AV_PIX_FMT_GRAY8));
  add("RGB8ToRGBYPlanes_no_luma", "swscale", converted(AV_PIX_FMT_RGB24, AV_PIX_FMT_GBRP));
  for (const char* row : {"Y8ToBGR", "Y8ImageTransform_BGR"}) {
    add(row, "swscale", converted(AV_PIX_FMT_GRAY8, AV_PIX_FMT_BGR24));
  }
  add("Y8ImageTransform_BGRA", "swscale", converted(AV_PIX_FMT_GRAY8, AV_PIX_FMT_BGRA));
  add("Y8ImageTransform_YUV422", "swscale", converted(AV_PIX_FMT_GRAY8, AV_PIX_FMT_UYVY422));
  for (const char* row : {"Y16ToBGR", "Y16ImageTransformEx_be_BGR"}) {
    add(row, "swscale", converted(AV_PIX_FMT_GRAY16BE, AV_PIX_FMT_BGR24));
  }
  for (const char* row : {"Y16ToY8", "Y16ToY8_MMX", "Y16ImageTransformEx_be_Y8"}) {
    add(row, "swscale", converted(AV_PIX_FMT_GRAY16BE, AV_PIX_FMT_GRAY8));
  }
  add("Y16ImageTransformEx_be_Y16", "swscale", converted(AV_PIX_FMT_GRAY16BE, AV_PIX_FMT_GRAY16LE));
  add("Y16ImageTransformEx_be_BGR16", "swscale", converted(AV_PIX_FMT_GRAY16BE, AV_PIX_FMT_BGR48LE));

  add("ResampleScanlines_nearest_1", "swscale", scaled(AV_PIX_FMT_GRAY8, AV_PIX_FMT_GRAY8, SWS_POINT, 5, 4));
  add("ResampleScanlines_linear_1", "swscale",
      scaled(AV_PIX_FMT_GRAY8, AV_PIX_FMT_GRAY8, SWS_FAST_BILINEAR, 5, 4));
  add("ResampleScanlines_nearest_3", "swscale", scaled(AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB24, SWS_POINT, 5, 4));
  add("ResampleScanlines_linear_3", "swscale",
      scaled(AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB24, SWS_FAST_BILINEAR, 5, 4));
}
