// Checked calls of what is no conversion: queries, flips, fields, packed samples, lines resampled, the SIS.
#pragma once

#include <cmath>
#include <limits>

#include "quorvane/call.hpp"

namespace quorvane {

/// The product version a.b.c.d as bytes; 0: the library could not read its version record.
inline std::uint32_t version() {
  std::uint32_t word = 0;
  QVN_GetVersion(&word);
  return word;
}

inline TechnoInfo techno_info() {
  TechnoInfo info{};
  QVN_GetTechnoInfo(&info);
  return info;
}

inline Result<std::uint32_t> attempt_bits_per_pixel(ColorCodingId code) {
  std::uint32_t bits = 0;
  const std::uint32_t status = QVN_GetBitsPerPixel(code, &bits);
  if (status != QVN_OK) {
    return detail::refusal(Cause::kArgument, status, "QVN_GetBitsPerPixel",
                           detail::found("a known pixel format code", code));
  }
  return bits;
}
inline std::uint32_t bits_per_pixel(ColorCodingId code) { return attempt_bits_per_pixel(code).value(); }
inline std::uint32_t bits_per_pixel(ColorCoding code) {
  return bits_per_pixel(static_cast<ColorCodingId>(code));
}

namespace detail {

inline Result<void> enough(std::string_view entry, Cause cause, const char* what, std::uint64_t wanted,
                           std::size_t size) {
  if (size >= wanted) {
    return {};
  }
  return refusal(cause, QVN_E_UNCLASSIFIED, entry,
                 found("a " + std::string(what) + " of " + std::to_string(wanted) + " bytes", size));
}

inline Result<void> good_size(std::string_view entry, Size size) {
  if (size.pixels() <= kMaxPixels) {
    return {};
  }
  return refusal(Cause::kSize, QVN_E_UNCLASSIFIED, entry,
                 found("at most " + std::to_string(kMaxPixels) + " pixels", size.pixels()));
}

/// `unless_equal`: works in place.
inline Result<void> apart(std::string_view entry, const void* dst, std::uint64_t dst_bytes, const void* src,
                          std::uint64_t src_bytes, bool unless_equal = false) {
  const auto* const to = static_cast<const std::uint8_t*>(dst);
  const auto* const from = static_cast<const std::uint8_t*>(src);
  const std::less<> before;
  if (dst_bytes == 0 || src_bytes == 0 || !before(to, from + src_bytes) || !before(from, to + dst_bytes) ||
      (unless_equal && to == from)) {
    return {};
  }
  return refusal(Cause::kOverlap, QVN_E_UNCLASSIFIED, entry, "expected buffers that do not overlap");
}

/// The first failure of several checks.
template <class... Checks>
Result<void> all_of(const Checks&... checks) {
  Result<void> first;
  const auto keep = [&](const auto& check) {
    if (first) {
      first = check();
    }
  };
  (keep(checks), ...);
  return first;
}

}  // namespace detail

/// QVN_Flip. `size.width` counts elements, which for the YUV formats are two bytes whatever a pixel has.
inline Result<void> attempt_flip(Destination buffer, Size size, Axis axis, ColorCodingId code) {
  constexpr std::string_view kName = "QVN_Flip";
  // Codes without an element of their own are bytes on the vertical axis, and refused on the others.
  const std::uint64_t element = code == 6 || code == 8                                             ? 6
                                : code == 4                                                        ? 3
                                : (code >= 1 && code <= 3) || code == 5 || code == 7 || code == 10 ? 2
                                                                                                   : 1;
  Result<void> checked = detail::all_of([&] { return detail::good_size(kName, size); },
                                        [&] {
                                          return detail::enough(kName, Cause::kDestination, "buffer",
                                                                size.pixels() * element, buffer.size());
                                        });
  if (!checked) {
    return checked;
  }
  return detail::guarded(kName, [&] {
    return QVN_Flip(buffer.data(), size.width, size.height, static_cast<std::uint32_t>(axis), code);
  });
}
inline void flip(Destination buffer, Size size, Axis axis, ColorCoding code) {
  attempt_flip(buffer, size, axis, static_cast<ColorCodingId>(code)).value();
}

/// QVN_FlipVertical.
inline Result<void> attempt_flip_vertical(Destination buffer, std::uint32_t line_bytes,
                                          std::uint32_t height) {
  constexpr std::string_view kName = "QVN_FlipVertical";
  const std::uint64_t bytes = std::uint64_t{line_bytes} * height;
  if (bytes > std::numeric_limits<std::uint32_t>::max()) {
    return detail::refusal(Cause::kSize, QVN_E_UNCLASSIFIED, kName, detail::found("less than 4 GiB", bytes));
  }
  if (Result<void> checked = detail::enough(kName, Cause::kDestination, "buffer", bytes, buffer.size());
      !checked) {
    return checked;
  }
  return detail::guarded(kName, [&] { return QVN_FlipVertical(buffer.data(), line_bytes, height); });
}
inline void flip_vertical(Destination buffer, std::uint32_t line_bytes, std::uint32_t height) {
  attempt_flip_vertical(buffer, line_bytes, height).value();
}

/// QVN_InterlacedToProgressive. Works in place.
inline Result<void> attempt_weave(Destination dst, Source src, Size size) {
  constexpr std::string_view kName = "QVN_InterlacedToProgressive";
  Result<void> checked = detail::all_of(
      [&] { return detail::good_size(kName, size); },
      [&] { return detail::enough(kName, Cause::kDestination, "destination", size.pixels(), dst.size()); },
      [&] { return detail::enough(kName, Cause::kSource, "source", size.pixels(), src.size()); },
      [&] { return detail::apart(kName, dst.data(), size.pixels(), src.data(), size.pixels(), true); });
  if (!checked) {
    return checked;
  }
  return detail::guarded(kName, [&] {
    return size.pixels() == 0 ? QVN_OK
                              : QVN_InterlacedToProgressive(dst.data(), src.data(), size.width, size.height);
  });
}
inline void weave(Destination dst, Source src, Size size) { attempt_weave(dst, src, size).value(); }

namespace detail {

/// Samples go by pairs: one more than an odd number is read and written.
template <auto F>
Result<void> unpack(std::string_view name, Destination dst, Source src, Size size, std::uint64_t bytes) {
  const std::uint64_t samples = size.pixels() + size.pixels() % 2;
  const std::uint64_t packed = samples / 2 * 3;
  Result<void> checked =
      all_of([&] { return good_size(name, size); },
             [&] { return enough(name, Cause::kDestination, "destination", samples * bytes, dst.size()); },
             [&] { return enough(name, Cause::kSource, "source", packed, src.size()); },
             [&] { return apart(name, dst.data(), samples * bytes, src.data(), packed); });
  if (!checked) {
    return checked;
  }
  return guarded(name,
                 [&] { return samples == 0 ? QVN_OK : F(dst.data(), src.data(), size.width, size.height); });
}

}  // namespace detail

/// QVN_Packed12BitTo8Bit.
inline Result<void> attempt_unpack12_to_8(Destination dst, Source src, Size size) {
  return detail::unpack<QVN_Packed12BitTo8Bit>("QVN_Packed12BitTo8Bit", dst, src, size, 1);
}
inline void unpack12_to_8(Destination dst, Source src, Size size) {
  attempt_unpack12_to_8(dst, src, size).value();
}

/// QVN_Packed12BitTo16Bit: big-endian samples with their bits at the top.
inline Result<void> attempt_unpack12_to_16(Destination dst, Source src, Size size) {
  return detail::unpack<QVN_Packed12BitTo16Bit>("QVN_Packed12BitTo16Bit", dst, src, size, 2);
}
inline void unpack12_to_16(Destination dst, Source src, Size size) {
  attempt_unpack12_to_16(dst, src, size).value();
}

/// QVN_GetResampledScanlineLength.
inline std::int32_t resampled_length(std::int32_t length, float source_rate, float rate) {
  std::int32_t result = 0;
  QVN_GetResampledScanlineLength(&result, length, source_rate, rate);
  return result;
}

/// Lines of elements for resample(); lengths and pitches count elements, a pitch of 0 is the length.
struct ResampledLines {
  std::int32_t length;
  std::int32_t source_length;
  std::int32_t count;
  float rate;
  float source_rate;
  std::uint32_t element_bytes = 1;  ///< 1 to 6
  ResampleBy method = ResampleBy::kNearest;
  std::int32_t pitch = 0;
  std::int32_t source_pitch = 0;
};

/// QVN_ResampleScanlinesEx, whose 1 for success is no failure here.
inline Result<void> attempt_resample(Destination dst, Source src, const ResampledLines& lines) {
  constexpr std::string_view kName = "QVN_ResampleScanlinesEx";
  const auto refuse = [&](Cause cause, std::uint32_t status, const char* text) {
    return detail::refusal(cause, status, kName, text);
  };
  if (lines.element_bytes < 1 || lines.element_bytes > 6) {
    return refuse(Cause::kArgument, QVN_E_PARAM10, "expected elements of 1 to 6 bytes");
  }
  if (static_cast<std::uint32_t>(lines.method) > 1) {
    return refuse(Cause::kArgument, QVN_E_PARAM11, "expected nearest or linear");
  }
  if (!(lines.rate > 0) || !(lines.source_rate > 0) || !std::isfinite(lines.rate) ||
      !std::isfinite(lines.source_rate)) {
    return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED, "expected rates above 0");
  }
  if (lines.length < 1 || lines.source_length < 1 || lines.count < 0) {
    return refuse(Cause::kSize, QVN_E_UNCLASSIFIED, "expected lengths of at least 1 and no negative count");
  }
  const std::int32_t pitch = lines.pitch == 0 ? lines.length : lines.pitch;
  const std::int32_t source_pitch = lines.source_pitch == 0 ? lines.source_length : lines.source_pitch;
  if (pitch < lines.length || source_pitch < lines.source_length) {
    return refuse(Cause::kPitch, QVN_E_UNCLASSIFIED, "expected pitches of at least a line");
  }
  if (lines.count == 0) {
    return {};
  }
  // Positions rise along a line. Linear stops at the length of its output, not at that of the source.
  const bool linear = lines.method == ResampleBy::kLinear;
  const std::int32_t limit = linear ? lines.length : lines.source_length;
  const float step = lines.source_rate / lines.rate;
  const double last = std::floor(double{step} * (lines.length - 1) + 0.5);
  // Beyond 32 bits an index starts over from 0 and may hit any element.
  const auto read = static_cast<std::uint64_t>(last < limit ? last + 1 : limit);
  if (linear && read > static_cast<std::uint64_t>(lines.source_length)) {
    return refuse(Cause::kSize, QVN_E_UNCLASSIFIED,
                  "expected a source line as long as the output is read, since linear stops there only");
  }
  const auto bytes = [&](std::int32_t line, std::uint64_t length) {
    return (static_cast<std::uint64_t>(lines.count - 1) * static_cast<std::uint64_t>(line) + length) *
           lines.element_bytes;
  };
  const std::uint64_t written = bytes(pitch, static_cast<std::uint64_t>(lines.length));
  const std::uint64_t source = bytes(source_pitch, read);
  Result<void> checked = detail::all_of(
      [&] { return detail::enough(kName, Cause::kDestination, "destination", written, dst.size()); },
      [&] { return detail::enough(kName, Cause::kSource, "source", source, src.size()); },
      [&] { return detail::apart(kName, dst.data(), written, src.data(), source); });
  if (!checked) {
    return checked;
  }
  return detail::guarded(kName, [&] {
    const std::uint32_t status = QVN_ResampleScanlinesEx(
        dst.data(), src.data(), lines.length, pitch, lines.source_length, source_pitch, lines.count,
        lines.source_rate, lines.rate, lines.element_bytes, static_cast<ResampleMethod>(lines.method));
    return status == 1 ? QVN_OK : status;
  });
}
inline void resample(Destination dst, Source src, const ResampledLines& lines) {
  attempt_resample(dst, src, lines).value();
}

/// QVN_GetSIS.
inline Result<void> attempt_sis(Destination dst, Source frame, Size size, ColorCodingId code,
                                std::int32_t position, SisKind kind) {
  constexpr std::string_view kName = "QVN_GetSIS";
  Result<std::uint32_t> bits = attempt_bits_per_pixel(code);
  if (!bits) {
    return bits.failure();
  }
  const std::uint64_t frame_bits = std::uint64_t{size.pixels()} * bits.value();
  if (size.pixels() > kMaxPixels || frame_bits > std::numeric_limits<std::uint32_t>::max()) {
    return detail::refusal(Cause::kSize, QVN_E_UNCLASSIFIED, kName,
                           detail::found("a frame of less than 2^32 bits", frame_bits));
  }
  // A start outside of the frame could come back into it where products wrap.
  const std::int64_t start = position >= 0 ? std::int64_t{size.width} * position
                                           : static_cast<std::int64_t>(size.pixels()) + position;
  if (start < 0 || start >= static_cast<std::int64_t>(size.pixels())) {
    return detail::refusal(Cause::kArgument, QVN_E_UNCLASSIFIED, kName,
                           "expected a position in the frame, found " + std::to_string(position));
  }
  const std::uint64_t block = kind == SisKind::k52Bytes ? 52 : 12;
  Result<void> checked = detail::all_of(
      [&] { return detail::enough(kName, Cause::kDestination, "destination", block, dst.size()); },
      [&] { return detail::enough(kName, Cause::kSource, "frame", frame_bits / 8, frame.size()); });
  if (!checked) {
    return checked;
  }
  return detail::guarded(kName, [&] {
    return QVN_GetSIS(dst.data(), frame.data(), size.width, size.height, code, position,
                      static_cast<std::uint32_t>(kind));
  });
}
inline void sis(Destination dst, Source frame, Size size, ColorCoding code, std::int32_t position,
                SisKind kind) {
  attempt_sis(dst, frame, size, static_cast<ColorCodingId>(code), position, kind).value();
}

}  // namespace quorvane
