// Frames from a camera, GigE Vision or USB3 Vision, through Aravis: grabbed, converted, saved. PREFIX0.ppm is
// the first picture and PREFIX0.raw the frame that it was made of, for `qvn convert`, and so on.
//
//     c++ -std=c++20 -O2 grab.cpp -o grab $(pkg-config --cflags --libs aravis-0.8 quorvane)
//     ./grab PREFIX [FRAMES [CAMERA [PIXEL_FORMAT]]]
//
// CAMERA is a name that arv-tool-0.8 prints, or an address; without one, the first that is found. Without a
// camera at hand, `arv-fake-gv-camera-0.8 -i 127.0.0.1 &` makes one, for `./grab first 1 127.0.0.1 BayerRG8`.
// Debian has the library in libaravis-dev (with libusb-1.0-0-dev), the tool in aravis-tools-cli, the made-up
// camera in aravis-tools.
#include <arv.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <quorvane.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using quorvane::Pattern;

/// What a camera's pixel format is called here.
struct Known {
  ArvPixelFormat code;
  std::string_view format;
  std::uint32_t bits = 16;  // of 16-bit samples that count
  Pattern pattern = Pattern::kRggb;
};

const std::array kKnown{
    Known{ARV_PIXEL_FORMAT_MONO_8, "y8"},
    Known{ARV_PIXEL_FORMAT_MONO_10, "y16le", 10},
    Known{ARV_PIXEL_FORMAT_MONO_12, "y16le", 12},
    Known{ARV_PIXEL_FORMAT_MONO_14, "y16le", 14},
    Known{ARV_PIXEL_FORMAT_MONO_12_PACKED, "y12packed"},
    Known{ARV_PIXEL_FORMAT_MONO_16, "y16le"},
    Known{ARV_PIXEL_FORMAT_BAYER_RG_8, "raw8", 16, Pattern::kRggb},
    Known{ARV_PIXEL_FORMAT_BAYER_GB_8, "raw8", 16, Pattern::kGbrg},
    Known{ARV_PIXEL_FORMAT_BAYER_GR_8, "raw8", 16, Pattern::kGrbg},
    Known{ARV_PIXEL_FORMAT_BAYER_BG_8, "raw8", 16, Pattern::kBggr},
    Known{ARV_PIXEL_FORMAT_BAYER_RG_10, "raw16le", 10, Pattern::kRggb},
    Known{ARV_PIXEL_FORMAT_BAYER_GB_10, "raw16le", 10, Pattern::kGbrg},
    Known{ARV_PIXEL_FORMAT_BAYER_GR_10, "raw16le", 10, Pattern::kGrbg},
    Known{ARV_PIXEL_FORMAT_BAYER_BG_10, "raw16le", 10, Pattern::kBggr},
    Known{ARV_PIXEL_FORMAT_BAYER_RG_12, "raw16le", 12, Pattern::kRggb},
    Known{ARV_PIXEL_FORMAT_BAYER_GB_12, "raw16le", 12, Pattern::kGbrg},
    Known{ARV_PIXEL_FORMAT_BAYER_GR_12, "raw16le", 12, Pattern::kGrbg},
    Known{ARV_PIXEL_FORMAT_BAYER_BG_12, "raw16le", 12, Pattern::kBggr},
    Known{ARV_PIXEL_FORMAT_BAYER_RG_12_PACKED, "raw12packed", 16, Pattern::kRggb},
    Known{ARV_PIXEL_FORMAT_BAYER_GB_12_PACKED, "raw12packed", 16, Pattern::kGbrg},
    Known{ARV_PIXEL_FORMAT_BAYER_GR_12_PACKED, "raw12packed", 16, Pattern::kGrbg},
    Known{ARV_PIXEL_FORMAT_BAYER_BG_12_PACKED, "raw12packed", 16, Pattern::kBggr},
    Known{ARV_PIXEL_FORMAT_BAYER_RG_12P, "raw12p", 16, Pattern::kRggb},
    Known{ARV_PIXEL_FORMAT_BAYER_GB_12P, "raw12p", 16, Pattern::kGbrg},
    Known{ARV_PIXEL_FORMAT_BAYER_GR_12P, "raw12p", 16, Pattern::kGrbg},
    Known{ARV_PIXEL_FORMAT_BAYER_BG_12P, "raw12p", 16, Pattern::kBggr},
    Known{ARV_PIXEL_FORMAT_BAYER_RG_16, "raw16le", 16, Pattern::kRggb},
    Known{ARV_PIXEL_FORMAT_BAYER_GB_16, "raw16le", 16, Pattern::kGbrg},
    Known{ARV_PIXEL_FORMAT_BAYER_GR_16, "raw16le", 16, Pattern::kGrbg},
    Known{ARV_PIXEL_FORMAT_BAYER_BG_16, "raw16le", 16, Pattern::kBggr},
    Known{ARV_PIXEL_FORMAT_YUV_411_PACKED, "uyyvyy411"},
    Known{ARV_PIXEL_FORMAT_YUV_422_PACKED, "uyvy"},
    Known{ARV_PIXEL_FORMAT_YUV_422_YUYV_PACKED, "yuyv"},
    Known{ARV_PIXEL_FORMAT_YUV_444_PACKED, "yuv444"},
    Known{ARV_PIXEL_FORMAT_RGB_8_PACKED, "rgb8"},
};

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using Owned = std::unique_ptr<T, Unref>;

/// Aravis' way to fail, as ours.
class Errors {
 public:
  ~Errors() { g_clear_error(&error_); }
  GError** out() { return &error_; }
  void check() const {
    if (error_ != nullptr) {
      throw std::runtime_error(error_->message);
    }
  }

 private:
  GError* error_ = nullptr;
};

void write(const std::string& name, const std::string& header, std::span<const std::uint8_t> bytes) {
  std::ofstream file(name, std::ios::binary);
  file << header;
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) {
    throw std::runtime_error("cannot write " + name);
  }
}

void save(ArvBuffer* buffer, const std::string& prefix) {
  const ArvPixelFormat code = arv_buffer_get_image_pixel_format(buffer);
  const auto* const known =
      std::find_if(kKnown.begin(), kKnown.end(), [&](const Known& row) { return row.code == code; });
  if (known == kKnown.end()) {
    throw std::runtime_error("no conversion for the camera's pixel format, number " + std::to_string(code) +
                             "; another one may be named behind the camera");
  }
  const quorvane::Frame frame{known->format,
                              {static_cast<std::uint32_t>(arv_buffer_get_image_width(buffer)),
                               static_cast<std::uint32_t>(arv_buffer_get_image_height(buffer))},
                              known->pattern,
                              known->bits};
  std::size_t bytes = 0;
  const void* const data = arv_buffer_get_data(buffer, &bytes);

  // The frame may be longer than its pixels: it may carry other data behind them.
  const quorvane::Source source(data, bytes, 0);
  std::vector<std::uint8_t> picture = quorvane::convert(source, frame, {.target = "bgr"});
  quorvane::rgb8_to_bgr(picture, picture, frame.size);  // in place: a PPM has red first
  const std::string size = std::to_string(frame.size.width) + " " + std::to_string(frame.size.height);
  write(prefix + ".ppm", "P6 " + size + " 255\n", picture);
  write(prefix + ".raw", "",
        {source.data(), quorvane::frame_bytes(*quorvane::find_format(frame.format), frame.size)});
  std::cout << prefix << ".ppm " << frame.format << ' ' << size << '\n';
}

void grab(const std::string& prefix, unsigned long frames, const char* name, const char* pixel_format) {
  Errors errors;
  const Owned<ArvCamera> camera(arv_camera_new(name, errors.out()));
  errors.check();
  if (pixel_format != nullptr) {
    arv_camera_set_pixel_format_from_string(camera.get(), pixel_format, errors.out());
    errors.check();
  }
  const guint payload = arv_camera_get_payload(camera.get(), errors.out());
  errors.check();
  const Owned<ArvStream> stream(arv_camera_create_stream(camera.get(), nullptr, nullptr, errors.out()));
  errors.check();
  constexpr int kBuffers = 4;
  for (int i = 0; i < kBuffers; ++i) {
    arv_stream_push_buffer(stream.get(), arv_buffer_new(payload, nullptr));
  }
  arv_camera_start_acquisition(camera.get(), errors.out());
  errors.check();

  constexpr guint64 kPatience = 5'000'000;  // microseconds
  for (unsigned long i = 0; i < frames;) {
    ArvBuffer* const buffer = arv_stream_timeout_pop_buffer(stream.get(), kPatience);
    if (buffer == nullptr) {
      throw std::runtime_error(
          "the camera sends nothing; a firewall may keep its packets out, or its address is not of this "
          "network");
    }
    const Owned<ArvBuffer> returned(ARV_BUFFER(g_object_ref(buffer)));
    if (arv_buffer_get_status(buffer) == ARV_BUFFER_STATUS_SUCCESS) {  // else a packet was lost
      save(buffer, prefix + std::to_string(i++));
    }
    arv_stream_push_buffer(stream.get(), buffer);
  }
  arv_camera_stop_acquisition(camera.get(), errors.out());
  errors.check();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 5) {
    std::cerr << "usage: grab PREFIX [FRAMES [CAMERA [PIXEL_FORMAT]]]\n";
    return 2;
  }
  try {
    grab(argv[1], argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1, argc > 3 ? argv[3] : nullptr,
         argc > 4 ? argv[4] : nullptr);
  } catch (const std::exception& failure) {
    std::cerr << "grab: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
