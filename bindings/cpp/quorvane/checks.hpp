// What is tested before the library is called: selectors, sizes, the lengths and pitches of buffers, and
// whether they overlap. What the tests find out stays with them, for the call.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "quorvane/entry.hpp"
#include "quorvane/options.hpp"

namespace quorvane::detail {

/// Brings a line of samples to the order that the library reads.
using Repack = void (*)(std::uint8_t* bytes, std::size_t count);

inline std::string found(const std::string& expected, std::uint64_t found) {
  return "expected " + expected + ", found " + std::to_string(found);
}

/// The arguments of a call. Its buffers are there after prepare().
class CheckedCall {
 public:
  CheckedCall(const Entry& entry, const Arguments& arguments, const Options& options, Size size,
              Repack repack)
      : entry_(entry),
        arguments_(arguments),
        options_(options),
        size_(size),
        repack_(repack),
        pixel_bytes_(entry.pixel_bytes != 0 ? entry.pixel_bytes : bytes_of(arguments.target)) {}

  /// Tests everything and takes the buffers.
  Result<void> prepare(const std::array<Destination, 4>& dst, const Source& src) {
    if (Result<void> checked = check_selectors(); !checked) {
      return checked;
    }
    if (Result<void> checked = check_size(); !checked) {
      return checked;
    }
    source_line_ = size_.width / entry_.source.group * entry_.source.bytes;
    line_ = std::size_t{size_.width} * pixel_bytes_;
    if (Result<void> checked = check_source(src); !checked) {
      return checked;
    }
    for (std::size_t plane = 0; plane < entry_.planes; ++plane) {
      if (Result<void> checked = check_destination(dst[plane], plane); !checked) {
        return checked;
      }
    }
    return check_overlap();
  }

 protected:
  bool tight() const { return tight_; }
  bool flat() const { return entry_.lines == Lines::kRun && tight(); }
  bool can_be_cut() const { return entry_.lines != Lines::kNotCut; }

  const Entry& entry_;
  const Arguments& arguments_;
  const Options& options_;
  Size size_;
  Repack repack_;
  std::uint32_t pixel_bytes_;
  std::uint32_t source_line_ = 0;
  std::size_t line_ = 0;
  const std::uint8_t* src_ = nullptr;
  std::size_t source_pitch_ = 0;
  std::size_t source_bytes_ = 0;
  std::array<std::uint8_t*, 4> dst_{};
  std::array<std::size_t, 4> pitches_{};
  std::array<std::size_t, 4> bytes_{};
  bool tight_ = true;
  bool in_place_ = false;

 private:
  Failure refuse(Cause cause, std::uint32_t status, const std::string& text) const {
    return refusal(cause, status, entry_.name, text);
  }

  Result<void> check_selectors() const {
    const auto target = static_cast<std::uint32_t>(arguments_.target);
    if (entry_.pixel_bytes == 0 && (target > 7 || (entry_.targets >> target & 1) == 0)) {
      return refuse(Cause::kArgument, QVN_E_NOT_IMPLEMENTED, found("a target that it offers", target));
    }
    if (static_cast<std::uint32_t>(arguments_.pattern) > 3) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED,
                    found("one of four patterns", static_cast<std::uint32_t>(arguments_.pattern)));
    }
    if (arguments_.shift.bits > 16) {
      return refuse(Cause::kArgument, QVN_E_PARAM6, found("a shift of 0 to 16", arguments_.shift.bits));
    }
    if (options_.opaque && (entry_.pixel_bytes != 0 || arguments_.target != Target::kBgra)) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED, "expected target BGRA for an opaque picture");
    }
    return check_correction();
  }

  /// A table that is too short would end the process.
  Result<void> check_correction() const {
    if (arguments_.correction == nullptr) {
      return {};
    }
    const CorrectionRule& rule = entry_.correction;
    const std::uint32_t kind = arguments_.correction->kind();
    const bool served =
        rule.index_bits != 0 && (kind == CcMatrixFloat || kind == CcGamma || kind == CcGammaMatrix ||
                                 kind == rule.fixed_kind || kind == rule.table_kind);
    if (!served) {
      return refuse(Cause::kArgument, QVN_E_FAIL, found("a kind of correction that it serves", kind));
    }
    if (kind != rule.table_kind) {
      return {};
    }
    const std::size_t entries = arguments_.correction->table_bytes() / rule.entry_bytes;
    const std::uint32_t shift = arguments_.shift.bits > 8 ? rule.index_bits : arguments_.shift.bits;
    const std::size_t wanted = std::size_t{1} << (rule.index_bits - shift);
    if (entries < wanted) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED,
                    found("a table of " + std::to_string(wanted) + " entries", entries));
    }
    if (rule.looks_again && arguments_.correction->largest() >= entries) {
      return refuse(Cause::kArgument, QVN_E_UNCLASSIFIED,
                    found("a table of levels below its length, " + std::to_string(entries),
                          arguments_.correction->largest()));
    }
    return {};
  }

  Result<void> check_size() const {
    const SizeRule& rule = entry_.size;
    const auto fail = [&](const std::string& expected) {
      return refuse(Cause::kSize, QVN_E_UNCLASSIFIED,
                    "expected " + expected + ", found " + std::to_string(size_.width) + "x" +
                        std::to_string(size_.height));
    };
    if (size_.width < rule.least.width || size_.height < rule.least.height) {
      return fail("a frame of at least " + std::to_string(rule.least.width) + "x" +
                  std::to_string(rule.least.height));
    }
    if (size_.width % rule.width_step != 0) {
      return fail("a width that is a multiple of " + std::to_string(rule.width_step));
    }
    if (size_.height % rule.height_step != 0) {
      return fail("a height that is a multiple of " + std::to_string(rule.height_step));
    }
    if (size_.pixels() < rule.least_pixels) {
      return fail("at least " + std::to_string(rule.least_pixels) + " pixels");
    }
    if (size_.pixels() > kMaxPixels) {
      return fail("at most " + std::to_string(kMaxPixels) + " pixels");
    }
    if (size_.pixels() % rule.pixels_step != 0) {
      return fail("a number of pixels that is a multiple of " + std::to_string(rule.pixels_step));
    }
    return {};
  }

  /// Bytes of a buffer whose lines may be padded; sets `pitch`.
  Result<std::size_t> extent(const char* what, Cause cause, std::size_t told, std::size_t line,
                             bool whole_lines, std::size_t tight_bytes, std::size_t size,
                             std::size_t& pitch) const {
    pitch = told == 0 ? line : told;
    if (size_.pixels() == 0) {
      return std::size_t{0};
    }
    std::size_t wanted = tight_bytes;
    if (pitch != line && size_.height > 1) {
      if (pitch < line) {
        return refuse(
            Cause::kPitch, QVN_E_UNCLASSIFIED,
            found("lines of the " + std::string(what) + " at least " + std::to_string(line) + " bytes apart",
                  pitch));
      }
      if (!whole_lines) {
        return refuse(Cause::kPitch, QVN_E_UNCLASSIFIED,
                      found("padded lines of whole groups of pixels", size_.width));
      }
      const std::size_t before = size_.height - 1;
      if (size < line || (size - line) / before < pitch) {  // the product might wrap
        return refuse(cause, QVN_E_UNCLASSIFIED,
                      found("a " + std::string(what) + " of " + std::to_string(size_.height) + " lines, " +
                                std::to_string(pitch) + " bytes apart",
                            size));
      }
      wanted = before * pitch + line;
    } else {
      pitch = line;
    }
    if (size < wanted) {
      return refuse(cause, QVN_E_UNCLASSIFIED,
                    found("a " + std::string(what) + " of " + std::to_string(wanted) + " bytes", size));
    }
    return wanted;
  }

  Result<void> check_source(const Source& src) {
    // A mosaic's lines begin with a group of their own, those of a run do not.
    const auto bytes = static_cast<std::size_t>(
        entry_.lines == Lines::kRun ? size_.pixels() / entry_.source.group * entry_.source.bytes
                                    : std::uint64_t{source_line_} * size_.height);
    Result<std::size_t> wanted =
        extent("source", Cause::kSource, src.pitch(), source_line_, size_.width % entry_.source.group == 0,
               bytes, src.size(), source_pitch_);
    if (!wanted) {
      return wanted.failure();
    }
    src_ = src.data();
    source_bytes_ = wanted.value();
    tight_ = source_pitch_ == source_line_ && repack_ == nullptr;
    return {};
  }

  Result<void> check_destination(const Destination& dst, std::size_t plane) {
    const bool uyvy = entry_.pixel_bytes == 0 && arguments_.target == Target::kUyvy;
    // The last pixel of an odd count gets a first luma and both chroma bytes.
    const auto bytes =
        static_cast<std::size_t>(size_.pixels() * pixel_bytes_ + (uyvy ? size_.pixels() % 2 : 0));
    Result<std::size_t> wanted = extent("destination", Cause::kDestination, dst.pitch(), line_,
                                        !uyvy || size_.width % 2 == 0, bytes, dst.size(), pitches_[plane]);
    if (!wanted) {
      return wanted.failure();
    }
    dst_[plane] = dst.data();
    bytes_[plane] = wanted.value();
    tight_ = tight_ && pitches_[plane] == line_;
    if (!tight_ && size_.width % entry_.source.group != 0) {
      return refuse(Cause::kPitch, QVN_E_UNCLASSIFIED,
                    found("padded lines of whole groups of pixels", size_.width));
    }
    return {};
  }

  static bool overlap(const std::uint8_t* a, std::size_t a_bytes, const std::uint8_t* b,
                      std::size_t b_bytes) {
    const std::less<> before;
    return a_bytes != 0 && b_bytes != 0 && before(a, b + b_bytes) && before(b, a + a_bytes);
  }

  Result<void> check_overlap() {
    for (std::size_t plane = 0; plane < entry_.planes; ++plane) {
      for (std::size_t other = 0; other < plane; ++other) {
        if (overlap(dst_[plane], bytes_[plane], dst_[other], bytes_[other])) {
          return refuse(Cause::kOverlap, QVN_E_UNCLASSIFIED, "expected planes that do not overlap");
        }
      }
      if (!overlap(dst_[plane], bytes_[plane], src_, source_bytes_)) {
        continue;
      }
      const bool fits = pixel_bytes_ * entry_.source.group <= entry_.source.bytes;
      in_place_ = entry_.in_place && fits && dst_[plane] == src_ && (tight_ || pitches_[0] == source_pitch_);
      if (!in_place_) {
        return refuse(Cause::kOverlap, QVN_E_UNCLASSIFIED,
                      entry_.in_place && fits ? "expected buffers that are equal or do not overlap"
                                              : "expected buffers that do not overlap");
      }
    }
    return {};
  }
};

}  // namespace quorvane::detail
