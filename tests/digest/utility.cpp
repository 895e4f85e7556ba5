/// Resampling, flips, interlaced and packed frames, the SIS.
#include <quorvane/quorvane.h>

#include <algorithm>
#include <limits>

#include "digest/sheet.h"

namespace digest {
namespace {

struct Rates {
  float src;
  float dst;
};
constexpr Rates kRates[] = {{1, 1}, {2, 1}, {1, 2}, {3, 7}, {0.7F, 0.3F}, {640, 641}};
constexpr std::int32_t kLengths[] = {1, 5, 64, 333};

void add_lengths(Sheet& sheet) {
  sheet.line("QVN_GetResampledScanlineLength", [](Digest& digest) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const Rates& rates : {Rates{1, 1}, Rates{2, 1}, Rates{3, 7}, Rates{0, 1}, Rates{0, 0},
                               Rates{1, kInfinity}, Rates{-1.5F, 1}, Rates{1e-9F, 1}}) {
      for (const std::int32_t length : {-641, -5, -3, 0, 1, 4, 640, 641, 16777217}) {
        std::int32_t result = 0;
        digest.add(QVN_GetResampledScanlineLength(&result, length, rates.src, rates.dst));
        digest.add(result);
      }
    }
  });
}

/// `resample(dst, src, dst length, src length, rates)` over all lengths and rates, with room for four lines.
template <typename Resample>
void add_resampled(Digest& digest, std::uint32_t type, Resample resample) {
  for (const Rates& rates : kRates) {
    for (const std::int32_t dst_length : kLengths) {
      for (const std::int32_t src_length : kLengths) {
        const auto dst_line = std::size_t{type} * static_cast<std::size_t>(dst_length + 3);
        // The linear method reads up to the first dst_length elements.
        const auto src_line =
            std::size_t{type} * static_cast<std::size_t>(std::max(dst_length, src_length) + 2);
        add_call<std::uint8_t, std::uint8_t>(digest, 4 * dst_line, 4 * src_line,
                                             [&](std::uint8_t* dst, const std::uint8_t* src) {
                                               return resample(dst, src, dst_length, src_length, rates);
                                             });
      }
    }
  }
}

void add_resampling(Sheet& sheet) {
  for (const std::uint32_t method : {0U, 1U, 2U}) {
    for (std::uint32_t type = 0; type < 8; ++type) {
      const std::string selectors = " type " + std::to_string(type) + " method " + std::to_string(method);
      sheet.line("QVN_ResampleScanlines" + selectors, [=](Digest& digest) {
        add_resampled(digest, type,
                      [=](std::uint8_t* dst, const std::uint8_t* src, std::int32_t dst_length,
                          std::int32_t src_length, const Rates& rates) {
                        return QVN_ResampleScanlines(dst, src, dst_length, src_length, 3, rates.src,
                                                     rates.dst, type, method);
                      });
      });
      // Output lines from the last one up, with gaps between them.
      sheet.line("QVN_ResampleScanlinesEx" + selectors, [=](Digest& digest) {
        add_resampled(digest, type,
                      [=](std::uint8_t* dst, const std::uint8_t* src, std::int32_t dst_length,
                          std::int32_t src_length, const Rates& rates) {
                        const std::int32_t dst_pitch = dst_length + 3;
                        return QVN_ResampleScanlinesEx(
                            dst + std::size_t{3} * type * static_cast<std::size_t>(dst_pitch), src,
                            dst_length, -dst_pitch, src_length, std::max(dst_length, src_length) + 2, 4,
                            rates.src, rates.dst, type, method);
                      });
      });
    }
  }
}

constexpr Size kFlipped[] = {{1, 1}, {1, 2}, {2, 3}, {31, 4}, {64, 5}, {131, 6}};

void add_flips(Sheet& sheet) {
  for (std::uint32_t axis = 0; axis < 5; ++axis) {
    sheet.line("QVN_Flip axis " + std::to_string(axis), [=](Digest& digest) {
      for (std::uint32_t code = 0; code < 144; ++code) {
        for (const auto& [width, height] : kFlipped) {
          Buffer<std::uint8_t> frame(std::size_t{6} * width * height, width);
          digest.add(QVN_Flip(frame.data(), width, height, axis, code));
          digest.add(frame);
        }
      }
    });
  }
  sheet.line("QVN_FlipVertical", [](Digest& digest) {
    for (const auto& [width, height] : kFlipped) {
      Buffer<std::uint8_t> frame(std::size_t{width} * height, width);
      digest.add(QVN_FlipVertical(frame.data(), width, height));
      digest.add(frame);
    }
  });
}

using Rearrangement = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t);

void add_rearrangement(Sheet& sheet, const char* name, Rearrangement rearrange) {
  sheet.line(name, [=](Digest& digest) {
    for (const auto& [width, height] : {Size{1, 1}, Size{7, 3}, Size{34, 5}, Size{62, 4}, Size{322, 6}}) {
      const std::size_t samples = std::size_t{width} * height + 1;
      add_call<std::uint8_t, std::uint8_t>(
          digest, 2 * samples, 2 * samples,
          [&, width = width, height = height](std::uint8_t* dst, const std::uint8_t* src) {
            return rearrange(dst, src, width, height);
          });
    }
  });
}

}  // namespace

void add_utility(Sheet& sheet) {
  add_lengths(sheet);
  add_resampling(sheet);
  add_flips(sheet);
  add_rearrangement(sheet, "QVN_InterlacedToProgressive", QVN_InterlacedToProgressive);
  sheet.line("QVN_InterlacedToProgressive in place", [](Digest& digest) {
    for (const auto& [width, height] : kFrames) {
      Buffer<std::uint8_t> frame(std::size_t{width} * height, width);
      digest.add(QVN_InterlacedToProgressive(frame.data(), frame.data(), width, height));
      digest.add(frame);
    }
  });
  add_rearrangement(sheet, "QVN_Packed12BitTo8Bit", QVN_Packed12BitTo8Bit);
  add_rearrangement(sheet, "QVN_Packed12BitTo16Bit", QVN_Packed12BitTo16Bit);
  for (const std::uint32_t kind : {0U, 1U, 2U, 3U}) {
    sheet.line("QVN_GetSIS kind " + std::to_string(kind), [=](Digest& digest) {
      for (const std::uint32_t code : {0U, 1U, 2U, 4U, 5U, 6U, 9U, 10U, 131U, 132U, 133U, 141U}) {
        for (const std::int32_t position : {0, 1, 3, 39, 40, 1000, -1, -7, -12, -13, -60, -200}) {
          add_call<std::uint8_t, std::uint8_t>(digest, 52, std::size_t{6} * 64 * 40,
                                               [&](std::uint8_t* dst, const std::uint8_t* frame) {
                                                 return QVN_GetSIS(dst, frame, 64, 40, code, position, kind);
                                               });
        }
      }
    });
  }
}

}  // namespace digest
