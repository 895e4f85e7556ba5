// The table of names, and how a name becomes options.
#include "camera_names.h"

#include <algorithm>
#include <array>

namespace qvn::tool {
namespace {

struct Order {
  std::string_view genicam;  // of the first two samples
  std::string_view v4l2;     // of the first two lines
  std::string_view pattern;
};

constexpr std::array<Order, 4> kOrders{
    {{"RG", "RGGB", "rggb"}, {"GR", "GRBG", "grbg"}, {"GB", "GBRG", "gbrg"}, {"BG", "BGGR", "bggr"}}};

struct Depth {
  std::string_view genicam;  // behind BayerRG; empty: there is no such name
  std::string_view v4l2;     // behind SRGGB, as above
  std::string_view format;
  std::string_view bits;
};

constexpr std::array<Depth, 10> kDepths{{{"8", "8", "raw8", ""},
                                         {"10", "10", "raw16le", "10"},
                                         {"12", "12", "raw16le", "12"},
                                         {"14", "14", "raw16le", "14"},
                                         {"16", "16", "raw16le", ""},
                                         {"10p", "", "raw10p", ""},
                                         {"12p", "", "raw12p", ""},
                                         {"12Packed", "", "raw12packed", ""},
                                         {"", "10P", "raw10csi2", ""},
                                         {"", "12P", "raw12csi2", ""}}};

std::vector<CameraName> make_names() {
  std::vector<CameraName> names;
  for (const Depth& depth : kDepths) {
    for (const Order& order : kOrders) {
      const auto add = [&](std::string_view start, std::string_view colours, std::string_view end) {
        if (!end.empty()) {
          names.push_back(
              {std::string(start).append(colours).append(end), depth.format, order.pattern, depth.bits});
        }
      };
      add("Bayer", order.genicam, depth.genicam);
      add("S", order.v4l2, depth.v4l2);
    }
  }
  const std::vector<CameraName> others{{"Mono8", "y8"},
                                       {"GREY", "y8"},
                                       {"Mono10", "y16le", {}, "10"},
                                       {"Y10", "y16le", {}, "10"},
                                       {"Mono12", "y16le", {}, "12"},
                                       {"Y12", "y16le", {}, "12"},
                                       {"Mono14", "y16le", {}, "14"},
                                       {"Y14", "y16le", {}, "14"},
                                       {"Mono16", "y16le"},
                                       {"Y16", "y16le"},
                                       {"Y16_BE", "y16be"},
                                       {"Mono10p", "y10p"},
                                       {"Mono12p", "y12p"},
                                       {"Mono12Packed", "y12packed"},
                                       {"Y10P", "y10csi2"},
                                       {"Y12P", "y12csi2"},
                                       {"YUV8_UYV", "yuv444"},
                                       {"YUV422_8_UYVY", "uyvy"},
                                       {"UYVY", "uyvy"},
                                       {"YUV422_8", "yuyv"},
                                       {"YUYV", "yuyv"},
                                       {"YUV411_8_UYYVYY", "uyyvyy411"},
                                       {"RGB8", "rgb8"},
                                       {"RGB24", "rgb8"},
                                       {"RGBa8", "rgba8"}};
  names.insert(names.end(), others.begin(), others.end());
  return names;
}

}  // namespace

const std::vector<CameraName>& camera_names() {
  static const std::vector<CameraName> names = make_names();
  return names;
}

void resolve_camera_name(FrameOptions& options) {
  const auto found = std::find_if(camera_names().begin(), camera_names().end(),
                                  [&](const CameraName& known) { return known.name == options.format; });
  if (found == camera_names().end()) {
    return;
  }
  options.format = found->format;
  if (options.pattern.empty()) {
    options.pattern = found->pattern;
  }
  if (options.bits.empty()) {
    options.bits = found->bits;
  }
}

}  // namespace qvn::tool
