/// Complementary mosaics.
///
/// Heights below those here run away or read far before the frame, and so does an odd height of the 3x3
/// functions. Odd widths and heights that are no multiple of 4 reach into the lines around.
#include "reference/cygm.h"
#include "every/entry.h"
#include "reference/cygm_transform.h"

namespace every {
namespace {

constexpr Sizes kBinned = {.width_step = 1, .least_width = 3, .height_step = 1, .least_height = 4};
constexpr Sizes kCells = {.width_step = 1, .least_width = 4, .height_step = 1, .least_height = 8};
constexpr Sizes kNeighbourhoods = {.width_step = 1, .least_width = 4, .height_step = 2, .least_height = 4};
constexpr Sizes kGrey = {.width_step = 1, .least_width = 2, .height_step = 1, .least_height = 2};

bool is_whole(const Call& c) { return c.width % 2 == 0 && c.width >= 4 && c.height % 4 == 0; }

Shape bgr(const Call& c) { return one_to_one(3 * pixels(c), pixels(c)); }
Shape by_target(const Call& c) { return one_to_one(target_bytes(c.target) * pixels(c), pixels(c)); }

template <auto library, auto reference, std::uint32_t kTargets>
Entry transform(std::string_view name, Sizes sizes, WithoutMemory without_memory) {
  return {.name = name,
          .takes = kTarget | kPattern,
          .sizes = sizes,
          .tight = is_whole,
          .shape = by_target,
          .library =
              [](const Call& c, const Buffers& b) {
                return library(b.dst[0], b.src, c.width, c.height, c.target, c.pattern);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                if (c.target >= kTargets) return QVN_E_NOT_IMPLEMENTED;
                reference(b.dst[0], b.src, c.width, c.height, c.target, c.pattern);
                return QVN_OK;
              },
          .without_memory = without_memory};
}

template <auto library, auto reference>
Entry conversion(std::string_view name, Sizes sizes, bool (*tight)(const Call&),
                 WithoutMemory without_memory = WithoutMemory::kNeverNeeds) {
  return {.name = name,
          .takes = kPattern,
          .sizes = sizes,
          .tight = tight,
          .shape = bgr,
          .library = [](const Call& c,
                        const Buffers& b) { return library(b.dst[0], b.src, c.width, c.height, c.pattern); },
          .reference =
              [](const Call& c, const Buffers& b) {
                reference(b.dst[0], b.src, c.width, c.height, c.pattern);
                return QVN_OK;
              },
          .without_memory = without_memory};
}

/// The binned functions have no phase.
std::uint32_t to_bgr_bin(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                         std::uint32_t height, std::uint32_t) {
  return QVN_IRaw8CYGMToBGR_Bin(dst, src, width, height);
}
void bgr_bin_reference(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                       std::uint32_t) {
  reference::IRaw8CYGMToBGR_Bin(dst, src, width, height);
}
std::uint32_t transform_bin(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                            std::uint32_t height, std::uint32_t target, std::uint32_t) {
  return QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, target);
}
void transform_bin_reference(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                             std::uint32_t height, std::uint32_t target, std::uint32_t) {
  reference::IRaw8CYGMImageTransform_Bin(dst, src, width, height, target);
}

}  // namespace

std::vector<Entry> cygm_entries() {
  return {
      conversion<to_bgr_bin, bgr_bin_reference>("QVN_IRaw8CYGMToBGR_Bin", kBinned, is_whole),
      conversion<QVN_IRaw8CYGMToBGR, reference::IRaw8CYGMToBGR>("QVN_IRaw8CYGMToBGR", kCells, is_whole),
      conversion<QVN_IRaw8CYGMToBGR_3x3, reference::IRaw8CYGMToBGR_3x3>(
          "QVN_IRaw8CYGMToBGR_3x3", kNeighbourhoods, is_whole, WithoutMemory::kThrows),
      conversion<QVN_IRaw8CYGMToMono, reference::IRaw8CYGMToMono>(
          "QVN_IRaw8CYGMToMono", kGrey, [](const Call& c) { return c.height % 2 == 0; }),
      transform<transform_bin, transform_bin_reference, 5>("QVN_IRaw8CYGMImageTransform_Bin", kBinned,
                                                           WithoutMemory::kNeverNeeds),
      transform<QVN_IRaw8CYGMImageTransform, reference::IRaw8CYGMImageTransform, 5>(
          "QVN_IRaw8CYGMImageTransform", kCells, WithoutMemory::kNeverNeeds),
      transform<QVN_IRaw8CYGMImageTransform_3x3, reference::IRaw8CYGMImageTransform_3x3, 4>(
          "QVN_IRaw8CYGMImageTransform_3x3", kNeighbourhoods, WithoutMemory::kThrows),
  };
}

}  // namespace every
