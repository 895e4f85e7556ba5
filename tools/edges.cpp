// The table of edges by function, and the filling.
#include "edges.h"

#include <algorithm>
#include <array>
#include <utility>

#include "failure.h"

namespace qvn::tool {
namespace {

constexpr Edges k2x2{.right = 1, .bottom = 1};
constexpr Edges k2x2Exchanged{.right = 1, .bottom = 1, .swaps_before_last = true};
constexpr Edges kTwoColumns{.right = 2, .bottom = 1};
constexpr Edges k3x3{.left = 1, .top = 1, .right = 1, .bottom = 1};
constexpr Edges kHalves{.right = 1, .bottom = 1, .half_end = 4};
constexpr Edges kBinned{.right = 1, .bottom = 2};
constexpr Edges kFourLines{.right = 1, .bottom = 4};

constexpr std::array<std::pair<std::string_view, Edges>, 33> kEdges{{
    {"QVN_Raw8ToBGR", k2x2},
    {"QVN_Raw8ToBGR_CC", k2x2},
    {"QVN_Raw8ToBGR_mono", k2x2},
    {"QVN_Raw8ToY8", k2x2},
    {"QVN_Raw8ToY8_CC", k2x2},
    {"QVN_Raw8ToBGR_3x3", k3x3},
    {"QVN_Raw8ToBGR_IntYUV422", k2x2},
    {"QVN_Raw8ToBGR_IntLCAA", kHalves},
    {"QVN_Raw8ToBGR_IntLCAAV", k2x2},
    {"QVN_Raw8ImageTransform", k2x2Exchanged},
    {"QVN_Raw8ImageTransform_3x3", k3x3},
    {"QVN_Raw8ImageTransform_IntYUV422", k2x2},
    {"QVN_Raw8ImageTransform_IntLCAA", kHalves},
    {"QVN_Raw8ImageTransform_IntLCAAV", k2x2},
    {"QVN_Raw12ToBGR", k2x2},
    {"QVN_Raw12ToBGR_CC", k2x2},
    {"QVN_Raw12ToBGR16", k2x2},
    {"QVN_Raw12ToBGR16_CC", k2x2},
    {"QVN_Raw12ImageTransform", k2x2},
    {"QVN_Raw16ToBGR", k2x2},
    {"QVN_Raw16ToBGR16", kTwoColumns},
    {"QVN_Raw16ToBGR16_CC", kTwoColumns},
    {"QVN_Raw16ToY16", kTwoColumns},
    {"QVN_Raw16ToY16_CC", kTwoColumns},
    {"QVN_Raw16ImageTransform", k2x2},
    {"QVN_Raw16ImageTransformEx", k2x2},
    {"QVN_IRaw8CYGMToBGR", kFourLines},
    {"QVN_IRaw8CYGMToBGR_3x3", k3x3},
    {"QVN_IRaw8CYGMToMono", k2x2},
    {"QVN_IRaw8CYGMToBGR_Bin", kBinned},
    {"QVN_IRaw8CYGMImageTransform", k2x2},
    {"QVN_IRaw8CYGMImageTransform_3x3", k3x3},
    {"QVN_IRaw8CYGMImageTransform_Bin", kBinned},
}};

/// Copies pixels or groups of them inside a picture.
class Units {
 public:
  Units(std::uint8_t* bytes, std::uint32_t columns, std::uint32_t unit_bytes)
      : bytes_(bytes), columns_(columns), unit_bytes_(unit_bytes) {}

  void copy(std::uint32_t to_x, std::uint32_t to_y, std::uint32_t from_x, std::uint32_t from_y) {
    std::copy_n(at(from_x, from_y), unit_bytes_, at(to_x, to_y));
  }

 private:
  std::uint8_t* at(std::uint32_t x, std::uint32_t y) {
    return bytes_ + (std::size_t{y} * columns_ + x) * unit_bytes_;
  }

  std::uint8_t* bytes_;
  std::uint32_t columns_;
  std::uint32_t unit_bytes_;
};

}  // namespace

std::optional<Edges> edges_of(std::string_view entry) {
  const auto* const found =
      std::find_if(kEdges.begin(), kEdges.end(), [&](const auto& row) { return row.first == entry; });
  return found == kEdges.end() ? std::nullopt : std::optional<Edges>(found->second);
}

void fill_edges(std::vector<std::uint8_t>& bytes, Size size, std::uint32_t pixel_bytes, bool in_pairs,
                const Edges& edges, const Pattern& pattern) {
  const std::uint32_t group = in_pairs ? 2 : 1;
  const auto groups = [&](std::uint32_t pixels) { return (pixels + group - 1) / group; };
  const std::uint32_t columns = size.width / group;
  const bool swapped = edges.swaps_before_last && (pattern.name == "grbg" || pattern.name == "bggr");
  const std::uint32_t left = groups(edges.left);
  const std::uint32_t right = groups(edges.right + (swapped ? 1 : 0));
  if (columns <= left + right || size.height <= edges.top + edges.bottom) {
    throw Failure("--edges fill: expected a frame with pixels inside its edges, found " + to_text(size));
  }
  Units units(bytes.data(), columns, pixel_bytes * group);
  const std::uint32_t last_x = columns - 1 - right;
  const std::uint32_t last_y = size.height - 1 - edges.bottom;
  // The end of the first half is in the middle of the frame: its pixels take those of the line above.
  const std::uint32_t seam = size.height / 2 - 1;
  const std::uint32_t seam_width = groups(edges.half_end);
  if (seam_width > 0 && seam > 0 && columns > seam_width) {
    for (std::uint32_t x = columns - seam_width; x < columns; ++x) {
      units.copy(x, seam, x, seam - 1);
      units.copy(x, size.height - 1, x, size.height - 2);
    }
  }
  for (std::uint32_t y = 0; y < size.height; ++y) {
    const std::uint32_t from_y = std::clamp(y, edges.top, last_y);
    for (std::uint32_t x = 0; x < columns; ++x) {
      const std::uint32_t from_x = std::clamp(x, left, last_x);
      if (from_x != x || from_y != y) {
        units.copy(x, y, from_x, from_y);
      }
    }
  }
}

}  // namespace qvn::tool
