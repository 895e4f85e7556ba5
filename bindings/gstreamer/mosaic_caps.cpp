#include "mosaic_caps.h"

#include <array>

namespace quorvane::gst {
namespace {

struct Order {
  std::string_view name;
  Pattern pattern;
};
constexpr std::array kOrders{Order{"bggr", Pattern::kBggr}, Order{"gbrg", Pattern::kGbrg},
                             Order{"grbg", Pattern::kGrbg}, Order{"rggb", Pattern::kRggb}};

struct Depth {
  std::string_view suffix;
  std::string_view format;
  std::uint32_t bits;
};
constexpr std::array kDepths{
    Depth{"", "raw8", 16},        Depth{"10le", "raw16le", 10}, Depth{"10be", "raw16be", 10},
    Depth{"12le", "raw16le", 12}, Depth{"12be", "raw16be", 12}, Depth{"14le", "raw16le", 14},
    Depth{"14be", "raw16be", 14}, Depth{"16le", "raw16le", 16}, Depth{"16be", "raw16be", 16}};

std::optional<Input> named(std::string_view name) {
  for (const Order& order : kOrders) {
    for (const Depth& depth : kDepths) {
      if (name.starts_with(order.name) && name.substr(order.name.size()) == depth.suffix) {
        return Input{depth.format, order.pattern, depth.bits};
      }
    }
  }
  return std::nullopt;
}

}  // namespace

const std::vector<std::string>& mosaic_names() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (const Depth& depth : kDepths) {
      for (const Order& order : kOrders) {
        all.push_back(std::string(order.name) += depth.suffix);
      }
    }
    return all;
  }();
  return names;
}

std::optional<Input> mosaic_of(const GstStructure* fields, Samples samples, std::uint32_t bits) {
  const char* const name = gst_structure_get_string(fields, "format");
  std::optional<Input> input = name == nullptr ? std::nullopt : named(name);
  if (!input) {
    return input;
  }
  int pixel_bits = 0;
  int depth = 0;
  const bool told = gst_structure_get_int(fields, "bpp", &pixel_bits) != FALSE;
  switch (samples) {
    case Samples::kAsCapsSay:
      if (told && pixel_bits == 12) {
        input->format = "raw12packed";
      } else if (told && pixel_bits == 16 && input->format == "raw8") {
        input->format = "raw16le";
        input->bits =
            gst_structure_get_int(fields, "depth", &depth) != FALSE ? static_cast<std::uint32_t>(depth) : 16;
      }
      return input;
    case Samples::k8:
      input->format = "raw8";
      return input;
    case Samples::k12Packed:
      input->format = "raw12packed";
      return input;
    case Samples::k12p:
      input->format = "raw12p";
      return input;
    case Samples::k12Csi2:
      input->format = "raw12csi2";
      return input;
    case Samples::k16Little:
      input->format = "raw16le";
      break;
    case Samples::k16Big:
      input->format = "raw16be";
      break;
  }
  input->bits = bits;
  return input;
}

}  // namespace quorvane::gst
