/// Every conversion of the library as the C header tells it: its call, the bytes that it reads and writes,
/// and sizes around its limits. Written from the C header alone, so that the checked one can be held against
/// it.
#pragma once

#include <quorvane.hpp>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace bindings {

/// What one call is given beside its buffers.
struct Selection {
  std::uint32_t pattern = 0;
  std::uint32_t target = 1;
  std::uint32_t bits = 16;
  std::uint32_t alignment = 1;
  std::uint32_t order = 1;
  std::uint32_t shift = 0;
  const quorvane::Correction* correction = nullptr;

  quorvane::Arguments arguments() const {
    return {static_cast<quorvane::Pattern>(pattern),
            static_cast<quorvane::Target>(target),
            {bits, static_cast<quorvane::Alignment>(alignment), static_cast<quorvane::ByteOrder>(order)},
            {shift},
            correction};
  }
};

struct Known {
  const quorvane::Entry* entry;
  /// Planes lie one behind the other at `plane` bytes.
  std::function<std::uint32_t(std::uint8_t* dst, std::uint8_t* src, std::uint32_t w, std::uint32_t h,
                              const Selection& with)>
      call;
  std::uint32_t group;        ///< pixels of the source that share
  std::uint32_t group_bytes;  ///< bytes
  std::uint32_t pixel_bytes;  ///< of the picture; 0: those of the target
  std::vector<quorvane::Size> good;
  std::vector<quorvane::Size> bad;
  bool cut = true;  ///< into bands
  std::vector<std::uint32_t> targets = {1};
  bool has_pattern = false;
  bool has_shift = false;
  bool has_form = false;
  bool overwrites = false;
  std::uint32_t planes = 1;

  std::uint32_t bytes_of_pixel(const Selection& with) const {
    constexpr std::uint32_t kBytes[] = {1, 3, 4, 1, 2, 2, 2, 6};
    return pixel_bytes != 0 ? pixel_bytes : kBytes[with.target];
  }
  std::size_t line(quorvane::Size size, const Selection& with) const {
    return std::size_t{size.width} * bytes_of_pixel(with);
  }
  std::size_t source_line(quorvane::Size size) const { return std::size_t{size.width} / group * group_bytes; }
  std::size_t source_bytes(quorvane::Size size) const {
    return static_cast<std::size_t>(size.pixels()) / group * group_bytes;
  }
  /// Of one plane.
  std::size_t bytes(quorvane::Size size, const Selection& with) const {
    const bool odd_uyvy = pixel_bytes == 0 && with.target == 4 && size.pixels() % 2 == 1;
    return static_cast<std::size_t>(size.pixels()) * bytes_of_pixel(with) + (odd_uyvy ? 1 : 0);
  }
};

inline void PrintTo(const Known& known, std::ostream* out) { *out << known.entry->name; }

const std::vector<Known>& known_entries();

/// Everything that one entry is called with: each target, each pattern, some shifts and forms.
std::vector<Selection> selections(const Known& known);

}  // namespace bindings
