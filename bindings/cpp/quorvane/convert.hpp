// One call for every source: a table of conversions by format, method and target, with the names that the
// command-line tool and the other bindings use, and convert() over it.
//
//     quorvane::convert(picture, bytes, {.format = "raw12p", .size = {1920, 1080}}, {.target = "bgr16"});
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "quorvane/clamped_matrix.hpp"
#include "quorvane/conversions.hpp"

namespace quorvane {

/// How a camera lays its samples down.
struct Format {
  std::string_view name;
  std::string_view about;
  Layout layout;
  bool mosaic = false;    ///< has a Bayer pattern
  bool has_form = false;  ///< has a SampleForm, of which the format gives the order
  ByteOrder order = ByteOrder::kBigEndian;
  std::string_view read_as = {};  ///< the format whose conversions serve it, after `repack`
  detail::Repack repack = nullptr;
};

/// A form of picture.
struct PictureForm {
  std::string_view name;
  Target target = Target::kY8;  ///< its number in functions that offer several
  std::uint32_t pixel_bytes = 1;
  std::uint32_t channels = 1;
  std::uint32_t depth = 8;
  std::uint32_t planes = 1;
};

/// A row of the table. Of one format and target, the first method is the default; of one method, the first
/// target.
struct Way {
  std::string_view format;
  std::string_view method;
  std::string_view target;
  const Entry* entry = nullptr;
  const Entry* corrected = nullptr;  ///< the same with a correction of the library, if there is one
  bool reads_form = false;           ///< bits and alignment of a SampleForm count
  std::uint32_t bits = 8;            ///< of a sample that comes out, without a shift
};

namespace detail {

inline void repack_12p(std::uint8_t* bytes, std::size_t count) {
  for (std::size_t i = 0; i + 3 <= count; i += 3) {
    const std::uint32_t even = bytes[i] | (bytes[i + 1] & 15U) << 8;
    bytes[i + 1] = static_cast<std::uint8_t>((even & 15U) | (bytes[i + 1] & 0xF0U));
    bytes[i] = static_cast<std::uint8_t>(even >> 4);
  }
}

inline void repack_12csi2(std::uint8_t* bytes, std::size_t count) {
  for (std::size_t i = 0; i + 3 <= count; i += 3) {
    std::swap(bytes[i + 1], bytes[i + 2]);
  }
}

inline void swap_words(std::uint8_t* bytes, std::size_t count) {
  for (std::size_t i = 0; i + 2 <= count; i += 2) {
    std::swap(bytes[i], bytes[i + 1]);
  }
}

// The library knows little-endian samples as the order of a little-endian host.
constexpr bool kLittleEndianHost = std::endian::native == std::endian::little;
constexpr ByteOrder kLittleOrder = kLittleEndianHost ? ByteOrder::kHost : ByteOrder::kBigEndian;
constexpr Repack kLittleRepack = kLittleEndianHost ? nullptr : &swap_words;

inline constexpr std::array kFormats{
    Format{"raw8", "Bayer mosaic, 1 byte a sample", kOneByte, true},
    Format{"raw12packed", "Bayer mosaic, 12 bits: even 11..4, odd 3..0 and even 3..0, odd 11..4", kPacked12,
           true},
    Format{"raw12p", "Bayer mosaic, 12 bits: even 7..0, odd 3..0 and even 11..8, odd 11..4", kPacked12, true,
           false, ByteOrder::kBigEndian, "raw12packed", &repack_12p},
    Format{"raw12csi2", "Bayer mosaic, 12 bits: even 11..4, odd 11..4, odd 3..0 and even 3..0", kPacked12,
           true, false, ByteOrder::kBigEndian, "raw12packed", &repack_12csi2},
    Format{"raw16be", "Bayer mosaic, 2 bytes a sample, first byte most significant", kTwoBytes, true, true},
    Format{"raw16le",
           "Bayer mosaic, 2 bytes a sample, first byte least significant",
           kTwoBytes,
           true,
           true,
           kLittleOrder,
           {},
           kLittleRepack},
    Format{"iraw8-cygm", "cyan, yellow, green and magenta mosaic in two fields, that of the odd lines first",
           kOneByte},
    Format{"iraw8-cygm-binned", "the same sensor with lines added in pairs", kOneByte},
    Format{"yuv444", "U, Y, V, 1 byte each", kThreeBytes},
    Format{"uyvy", "YUV 4:2:2: U, Y, V, Y for 2 pixels", kYuv422},
    Format{"yuyv", "YUV 4:2:2: Y, U, Y, V for 2 pixels", kYuv422, false, false, ByteOrder::kBigEndian, "uyvy",
           &swap_words},
    Format{"uyyvyy411", "YUV 4:1:1: U, Y, Y, V, Y, Y for 4 pixels", kYuv411},
    Format{"y8", "grey, 1 byte a sample", kOneByte},
    Format{"y12packed", "grey, 12 bits as in raw12packed", kPacked12},
    Format{"y12p", "grey, 12 bits as in raw12p", kPacked12, false, false, ByteOrder::kBigEndian, "y12packed",
           &repack_12p},
    Format{"y12csi2", "grey, 12 bits as in raw12csi2", kPacked12, false, false, ByteOrder::kBigEndian,
           "y12packed", &repack_12csi2},
    Format{"y16be", "grey, 2 bytes a sample, first byte most significant", kTwoBytes, false, true},
    Format{"y16le",
           "grey, 2 bytes a sample, first byte least significant",
           kTwoBytes,
           false,
           true,
           kLittleOrder,
           {},
           kLittleRepack},
    Format{"rgb8", "R, G, B, 1 byte each", kThreeBytes},
    Format{"rgba8", "R, G, B and an opacity, 1 byte each", kFourBytes},
};

inline constexpr std::array kPictureForms{
    PictureForm{"bgr", Target::kBgr, 3, 3, 8},
    PictureForm{"bgra", Target::kBgra, 4, 4, 8},
    PictureForm{"grey-bgr", Target::kBgr, 3, 3, 8},
    PictureForm{"y8", Target::kY8, 1, 1, 8},
    PictureForm{"y8-709", Target::kY8Rec709, 1, 1, 8},
    PictureForm{"uyvy", Target::kUyvy, 2, 3, 8},
    PictureForm{"bgr16", Target::kBgr16, 6, 3, 16},
    PictureForm{"y16", Target::kY16, 2, 1, 16},
    PictureForm{"y16-709", Target::kY16Rec709, 2, 1, 16},
    PictureForm{"planes", Target::kY8, 1, 1, 8, 3},
    PictureForm{"planes-y", Target::kY8, 1, 1, 8, 4},
};

inline constexpr std::array kSingleWays{
    Way{"raw8", "2x2", "bgr", &raw8_to_bgr, &raw8_to_bgr_cc},
    Way{"raw8", "3x3", "bgr", &raw8_to_bgr_3x3},
    Way{"raw8", "yuv422", "bgr", &raw8_to_bgr_yuv422},
    Way{"raw8", "lcaa", "bgr", &raw8_to_bgr_lcaa},
    Way{"raw8", "lcaav", "bgr", &raw8_to_bgr_lcaav},
    Way{"raw8", "2x2", "grey-bgr", &raw8_to_grey_bgr},
    Way{"raw8", "2x2", "y8", &raw8_to_y8, &raw8_to_y8_cc},
    Way{"raw12packed", "2x2", "bgr", &raw12_to_bgr, &raw12_to_bgr_cc},
    Way{"raw12packed", "2x2", "bgr16", &raw12_to_bgr16, &raw12_to_bgr16_cc, false, 12},
    Way{"raw16be", "2x2", "bgr", &raw16_to_bgr},
    Way{"raw16be", "2x2", "bgr16", &raw16_to_bgr16, &raw16_to_bgr16_cc, false, 16},
    Way{"raw16be", "2x2", "y16", &raw16_to_y16, &raw16_to_y16_cc, false, 16},
    Way{"iraw8-cygm", "2x2", "bgr", &cygm_to_bgr},
    Way{"iraw8-cygm", "3x3", "bgr", &cygm_to_bgr_3x3},
    Way{"iraw8-cygm", "mono", "grey-bgr", &cygm_to_grey_bgr},
    Way{"iraw8-cygm-binned", "bin", "bgr", &cygm_binned_to_bgr},
    Way{"yuv444", "direct", "bgr", &yuv444_to_bgr},
    Way{"yuv444", "direct", "planes", &yuv444_to_rgb_planes},
    Way{"yuv444", "direct", "planes-y", &yuv444_to_rgby_planes},
    Way{"uyvy", "direct", "bgr", &yuv422_to_bgr},
    Way{"uyvy", "direct", "planes", &yuv422_to_rgb_planes},
    Way{"uyvy", "direct", "planes-y", &yuv422_to_rgby_planes},
    Way{"uyyvyy411", "direct", "bgr", &yuv411_to_bgr},
    Way{"uyyvyy411", "direct", "planes", &yuv411_to_rgb_planes},
    Way{"uyyvyy411", "direct", "planes-y", &yuv411_to_rgby_planes},
    Way{"y8", "direct", "bgr", &y8_to_bgr},
    Way{"y16be", "direct", "y8", &y16_to_y8_ex, nullptr, true},
    Way{"y16be", "direct", "bgr", &y16_to_bgr_ex, nullptr, true},
    Way{"y16le", "direct", "y8", &y16_to_y8_ex, nullptr, true},
    Way{"y16le", "direct", "bgr", &y16_to_bgr_ex, nullptr, true},
    Way{"rgb8", "direct", "bgr", &rgb8_to_bgr},
    Way{"rgb8", "direct", "y8", &rgb8_to_y8},
    Way{"rgb8", "direct", "planes", &rgb8_to_rgb_planes},
    Way{"rgb8", "direct", "planes-y", &rgb8_to_rgby_planes},
};

/// Functions that offer several targets, as a method of their own.
inline constexpr std::array kSelectingWays{
    Way{"raw8", "transform", {}, &raw8_transform},
    Way{"raw8", "transform-3x3", {}, &raw8_transform_3x3},
    Way{"raw8", "transform-yuv422", {}, &raw8_transform_yuv422},
    Way{"raw8", "transform-lcaa", {}, &raw8_transform_lcaa},
    Way{"raw8", "transform-lcaav", {}, &raw8_transform_lcaav},
    Way{"raw12packed", "transform", {}, &raw12_transform},
    Way{"raw16be", "transform", {}, &raw16_transform},
    Way{"raw16be", "transform-ex", {}, &raw16_transform_ex, nullptr, true},
    Way{"raw16le", "transform-ex", {}, &raw16_transform_ex, nullptr, true},
    Way{"iraw8-cygm", "transform", {}, &cygm_transform},
    Way{"iraw8-cygm", "transform-3x3", {}, &cygm_transform_3x3},
    Way{"iraw8-cygm-binned", "transform-bin", {}, &cygm_binned_transform},
    Way{"yuv444", "transform", {}, &yuv444_transform},
    Way{"uyvy", "transform", {}, &yuv422_transform},
    Way{"uyyvyy411", "transform", {}, &yuv411_transform},
    Way{"y8", "transform", {}, &y8_transform},
    Way{"y12packed", "transform", {}, &y12_transform},
    Way{"y16be", "transform", {}, &y16_transform},
    Way{"y16be", "transform-ex", {}, &y16_transform_ex, nullptr, true},
    Way{"y16le", "transform-ex", {}, &y16_transform_ex, nullptr, true},
    Way{"rgb8", "transform", {}, &rgb8_transform},
    Way{"rgba8", "transform", {}, &rgba8_transform},
};

/// The order in which a selecting function's targets are listed.
inline constexpr std::array<std::string_view, 8> kTargetOrder{"bgr16", "y16", "y16-709", "bgr",
                                                              "bgra",  "y8",  "y8-709",  "uyvy"};

template <class Row>
const Row* find(std::span<const Row> rows, std::string_view name) {
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.name == name; });
  return row == rows.end() ? nullptr : &*row;
}

}  // namespace detail

inline std::span<const Format> formats() { return detail::kFormats; }
inline std::span<const PictureForm> picture_forms() { return detail::kPictureForms; }
/// Null where there is none of that name.
inline const Format* find_format(std::string_view name) { return detail::find(formats(), name); }
inline const PictureForm* find_picture_form(std::string_view name) {
  return detail::find(picture_forms(), name);
}

/// The whole table.
inline const std::vector<Way>& ways() {
  static const std::vector<Way> table = [] {
    std::vector<Way> rows(detail::kSingleWays.begin(), detail::kSingleWays.end());
    for (const Way& selecting : detail::kSelectingWays) {
      for (const std::string_view name : detail::kTargetOrder) {
        const PictureForm& form = *find_picture_form(name);
        if ((selecting.entry->targets >> static_cast<std::uint32_t>(form.target) & 1) != 0) {
          rows.push_back(selecting);
          rows.back().target = name;
          rows.back().bits = form.depth;
        }
      }
    }
    return rows;
  }();
  return table;
}

namespace detail {

inline std::string one_of(const std::vector<std::string_view>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    text += i == 0 ? "" : i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  return text;
}

inline void add_once(std::vector<std::string_view>& names, std::string_view name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) {
    names.push_back(name);
  }
}

}  // namespace detail

/// The row of a format; an empty method or target is the format's first.
inline Result<const Way*> find_way(std::string_view format, std::string_view method = {},
                                   std::string_view target = {}) {
  const auto unknown = [](const std::string& what, std::string_view name, const std::string& expected) {
    return detail::refusal(Cause::kArgument, QVN_E_NOT_IMPLEMENTED, "quorvane",
                           "unknown " + what + " '" + std::string(name) + "', expected " + expected);
  };
  std::vector<std::string_view> names;
  const Format* const known = find_format(format);
  if (known == nullptr) {
    for (const Format& row : formats()) {
      names.push_back(row.name);
    }
    return unknown("format", format, detail::one_of(names));
  }
  const std::string_view read_as = known->read_as.empty() ? known->name : known->read_as;
  std::vector<std::string_view> methods;
  for (const Way& way : ways()) {
    if (way.format != read_as) {
      continue;
    }
    detail::add_once(methods, way.method);
    if (method.empty() || way.method == method) {
      if (target.empty() || way.target == target) {
        return &way;
      }
      detail::add_once(names, way.target);
    }
  }
  if (names.empty()) {
    return unknown("method", method, detail::one_of(methods));
  }
  return unknown("target", target, detail::one_of(names));
}

/// What bytes are.
struct Frame {
  std::string_view format;
  Size size;
  Pattern pattern = Pattern::kRggb;
  std::uint32_t bits = 16;  ///< of 16-bit samples that count
  Alignment alignment = Alignment::kLowBit;
};

/// What to make of them.
struct Recipe {
  std::string_view method = {};
  std::string_view target = {};
  Shift shift{};
  const Correction* correction = nullptr;  ///< of the library, between window and picture
  const ClampedMatrix* matrix = nullptr;   ///< on the finished colour picture
  Options options{};
};

/// Bytes of a picture without padding, all planes together.
inline std::size_t picture_bytes(const Way& way, Size size) {
  const PictureForm& form = *find_picture_form(way.target);
  return static_cast<std::size_t>(size.pixels()) * form.pixel_bytes * form.planes +
         (form.name == "uyvy" ? size.pixels() % 2 : 0);
}

/// Bytes of a frame without padding.
inline std::size_t frame_bytes(const Format& format, Size size) {
  return static_cast<std::size_t>(size.pixels() / format.layout.group) * format.layout.bytes;
}

/// Converts a frame by a row of the table. The source stays as it is. Planes lie one behind the other, each
/// with the destination's pitch.
inline Result<void> attempt_convert(const Way& way, Destination dst, Source src, const Frame& frame,
                                    const Recipe& recipe) {
  const Format* const format = find_format(frame.format);
  const PictureForm* const form = find_picture_form(way.target);
  const Entry* const entry = recipe.correction == nullptr ? way.entry : way.corrected;
  const auto refuse = [&](const std::string& text) {
    return detail::refusal(Cause::kArgument, QVN_E_NOT_IMPLEMENTED, way.entry->name, text);
  };
  if (format == nullptr || (format->read_as.empty() ? format->name : format->read_as) != way.format) {
    return refuse("expected a frame of format " + std::string(way.format) + ", found '" +
                  std::string(frame.format) + "'");
  }
  if (entry == nullptr) {
    return refuse("expected no correction, which it does not take");
  }
  if (recipe.shift.bits != 0 && !entry->takes_shift) {
    return refuse("expected no shift, which it does not take");
  }
  if (!way.reads_form && format->has_form && (frame.bits != 16)) {
    return refuse("expected samples of 16 bits, since it does not read how many count");
  }
  if (recipe.matrix != nullptr && (form->channels < 3 || form->name == "uyvy")) {
    return refuse("expected a colour picture for a matrix");
  }
  const Arguments arguments{frame.pattern,
                            form->target,
                            {frame.bits, frame.alignment, format->order},
                            recipe.shift,
                            recipe.correction};
  const std::size_t line = std::size_t{frame.size.width} * form->pixel_bytes;
  const std::size_t pitch = dst.pitch() == 0 ? line : dst.pitch();
  std::array<Destination, 4> planes{dst};
  if (form->planes > 1) {
    // The last plane may lack the padding of its last line.
    const std::size_t plane = pitch * frame.size.height;
    for (std::size_t i = 0; i < form->planes; ++i) {
      const std::size_t start = std::min(i * plane, dst.size());
      const std::size_t rest = dst.size() - start;
      planes[i] = {dst.data() + start, i + 1 == form->planes ? rest : std::min(plane, rest), dst.pitch()};
    }
  }
  const std::uint32_t bits = recipe.shift.bits < way.bits ? way.bits - recipe.shift.bits : 1;
  const std::uint32_t top = (1U << bits) - 1;
  const detail::Finish by_matrix = [&](std::uint8_t* pixels, std::size_t count) {
    if (form->depth == 16) {
      recipe.matrix->apply_to_bytes<std::uint16_t>(pixels, count, 3, 2, top);
    } else {
      recipe.matrix->apply(pixels, count, form->pixel_bytes, 2, top);
    }
  };
  return call_keeping_source(*entry, planes, src, frame.size, arguments, recipe.options,
                             {format->repack, recipe.matrix == nullptr ? nullptr : &by_matrix});
}

inline Result<void> attempt_convert(Destination dst, Source src, const Frame& frame,
                                    const Recipe& recipe = {}) {
  Result<const Way*> way = find_way(frame.format, recipe.method, recipe.target);
  if (!way) {
    return way.failure();
  }
  return attempt_convert(*way.value(), dst, src, frame, recipe);
}

inline void convert(Destination dst, Source src, const Frame& frame, const Recipe& recipe = {}) {
  attempt_convert(dst, src, frame, recipe).value();
}

/// Into memory of its own.
inline std::vector<std::uint8_t> convert(Source src, const Frame& frame, const Recipe& recipe = {}) {
  const Way& way = *find_way(frame.format, recipe.method, recipe.target).value();
  std::vector<std::uint8_t> picture(frame.size.pixels() <= kMaxPixels ? picture_bytes(way, frame.size) : 0);
  attempt_convert(way, picture, src, frame, recipe).value();
  return picture;
}

}  // namespace quorvane
