/// Functions over runs of pixels.
#include <quorvane/quorvane.h>

#include "digest/sheet.h"

namespace digest {
namespace {

/// Bytes of a pixel at most, on either side.
constexpr std::size_t kPixel = 6;

using Conversion = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t);
struct NamedConversion {
  const char* name;
  Conversion convert;
};
constexpr NamedConversion kConversions[] = {
    {"QVN_YUV444ToBGR", QVN_YUV444ToBGR}, {"QVN_YUV422ToBGR", QVN_YUV422ToBGR},
    {"QVN_YUV411ToBGR", QVN_YUV411ToBGR}, {"QVN_RGB8ToBGR", QVN_RGB8ToBGR},
    {"QVN_RGB8ToY8", QVN_RGB8ToY8},       {"QVN_Y8ToBGR", QVN_Y8ToBGR},
    {"QVN_Y16ToBGR", QVN_Y16ToBGR},       {"QVN_Y16ToY8", QVN_Y16ToY8},
    {"QVN_Y16ToY8_MMX", QVN_Y16ToY8_MMX},
};

using Transform = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, TransformTarget);
struct NamedTransform {
  const char* name;
  Transform transform;
};
constexpr NamedTransform kTransforms[] = {
    {"QVN_RGB8ImageTransform", QVN_RGB8ImageTransform},
    {"QVN_RGBA8ImageTransform", QVN_RGBA8ImageTransform},
    {"QVN_YUV444ImageTransform", QVN_YUV444ImageTransform},
    {"QVN_YUV422ImageTransform", QVN_YUV422ImageTransform},
    {"QVN_YUV411ImageTransform", QVN_YUV411ImageTransform},
    {"QVN_Y8ImageTransform", QVN_Y8ImageTransform},
    {"QVN_Y16ImageTransform", QVN_Y16ImageTransform},
    {"QVN_Y12ImageTransform", QVN_Y12ImageTransform},
};

using Layout = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                 std::uint32_t, std::uint32_t);

/// Bytes are big-endian samples; words are written in the host's order, which order 0 reads.
template <typename Call>
void add_samples(Digest& digest, std::uint32_t big_endian, std::uint32_t count, Call call) {
  if (big_endian != 0) {
    add_call<std::uint8_t, std::uint8_t>(digest, kPixel * count, 2 * std::size_t{count}, call);
  } else {
    add_call<std::uint8_t, std::uint16_t>(digest, kPixel * count, count, call);
  }
}

void add_layouts(Sheet& sheet, const std::string& name, Layout convert) {
  for (const std::uint32_t swap : {0U, 1U}) {
    for (const std::uint32_t alignment : {0U, 1U}) {
      const std::string selectors =
          " byteSwap " + std::to_string(swap) + " alignment " + std::to_string(alignment);
      sheet.line(name + selectors, [&](Digest& digest) {
        for (const std::uint32_t bits : {8U, 9U, 10U, 12U, 14U, 16U, 24U}) {
          for (const std::uint32_t count : kCounts) {
            add_samples(digest, swap, count, [&](std::uint8_t* dst, const std::uint8_t* src) {
              return convert(dst, src, count, swap, alignment, bits);
            });
          }
        }
      });
    }
  }
}

/// A destination of words holds its values in the host's order, one of bytes does not.
template <typename DstNumber>
void add_y16_ex(Digest& digest, std::uint32_t target, const SampleFormatBlock& format, std::uint32_t count) {
  const auto call = [&](DstNumber* dst, const std::uint8_t* src) {
    return QVN_Y16ImageTransformEx(static_cast<std::uint8_t*>(static_cast<void*>(dst)), src, count, target,
                                   &format);
  };
  if (format.byteOrder == 1) {
    add_call<DstNumber, std::uint8_t>(digest, kPixel * count, 2 * std::size_t{count}, call);
  } else {
    add_call<DstNumber, std::uint16_t>(digest, kPixel * count, count, call);
  }
}

}  // namespace

void add_runs(Sheet& sheet) {
  for (const auto& [name, convert] : kConversions) {
    sheet.line(name, [&, convert = convert](Digest& digest) {
      for (const std::uint32_t count : kCounts) {
        add_call<std::uint8_t, std::uint8_t>(
            digest, kPixel * count, kPixel * count,
            [&](std::uint8_t* dst, const std::uint8_t* src) { return convert(dst, src, count); });
      }
    });
  }

  add_layouts(sheet, "QVN_Y16ToBGREx", QVN_Y16ToBGREx);
  add_layouts(sheet, "QVN_Y16ToY8Ex", QVN_Y16ToY8Ex);

  for (const auto& [name, transform] : kTransforms) {
    for (std::uint32_t target = 0; target < 8; ++target) {
      sheet.line(name + (" target " + std::to_string(target)), [&, transform = transform](Digest& digest) {
        for (std::uint32_t count : kCounts) {
          if (transform == QVN_Y12ImageTransform) count &= ~1U;
          add_call<std::uint8_t, std::uint8_t>(
              digest, kPixel * count, kPixel * count,
              [&](std::uint8_t* dst, const std::uint8_t* src) { return transform(dst, src, count, target); });
        }
      });
    }
  }

  for (const std::uint32_t order : {0U, 1U}) {
    for (std::uint32_t target = 0; target < 8; ++target) {
      const std::string selectors =
          " byteOrder " + std::to_string(order) + " target " + std::to_string(target);
      sheet.line("QVN_Y16ImageTransformEx" + selectors, [&](Digest& digest) {
        for (const std::uint32_t count : kCounts) {
          for (const std::uint32_t bits : {0U, 10U, 11U, 12U, 13U, 14U, 15U, 16U}) {
            const SampleFormatBlock format = {0, bits == 0 ? 0U : 1U, bits, order, 0};
            if (target < 5) {
              add_y16_ex<std::uint8_t>(digest, target, format, count);
            } else {
              add_y16_ex<std::uint16_t>(digest, target, format, count);
            }
          }
        }
      });
    }
  }
}

}  // namespace digest
