// The table of conversions, their size rules, and the one place that calls the library.
#include "conversions.h"

#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "failure.h"

namespace qvn::tool {
namespace {

/// Some interpolations look a few bytes before a buffer; this many zeros lie before source and destination.
constexpr std::size_t kMargin = 64;

/// Functions of the form (dst, src, width, height, pattern).
template <auto Entry>
std::uint32_t mosaic_entry(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  return Entry(dst, src, frame.size.width, frame.size.height, frame.pattern->code);
}

const std::vector<Conversion>& conversions() {
  static const std::vector<Conversion> table{
      {"raw8", "2x2", "bgr", "QVN_Raw8ToBGR", 2, 2, mosaic_entry<QVN_Raw8ToBGR>},
      {"raw8", "2x2", "grey-bgr", "QVN_Raw8ToBGR_mono", 1, 2, mosaic_entry<QVN_Raw8ToBGR_mono>},
      {"raw8", "2x2", "y8", "QVN_Raw8ToY8", 1, 2, mosaic_entry<QVN_Raw8ToY8>},
      {"raw16be", "2x2", "bgr", "QVN_Raw16ToBGR", 1, 2, mosaic_entry<QVN_Raw16ToBGR>},
  };
  return table;
}

void add_once(std::vector<std::string>& names, std::string_view name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) {
    names.emplace_back(name);
  }
}

void check_size(const Frame& frame, const Conversion& conversion) {
  if (takes_size(conversion, frame.size)) {
    return;
  }
  const std::string what = std::string(frame.format->name) + " by method " + std::string(conversion.method) +
                           " to " + std::string(conversion.target);
  if (std::min(frame.size.width, frame.size.height) < conversion.smallest_side) {
    const std::string side = std::to_string(conversion.smallest_side);
    throw Failure(what + ": expected a frame of at least " + side + "x" + side + ", found " +
                  to_text(frame.size));
  }
  throw Failure(what + ": expected a width that is " + width_rule(conversion) + ", found " +
                std::to_string(frame.size.width));
}

std::string status_text(std::uint32_t status) {
  std::array<char, 256> text{};
  QVN_GetErrorInfo(status, text.data(), static_cast<std::uint32_t>(text.size() - 1));
  return text.data();
}

/// The library writes blue first and words in the host's order; pictures hold red first and big-endian words.
void to_file_order(Picture& picture) {
  const std::size_t step = picture.depth / 8;
  if (picture.channels == 3) {
    for (std::size_t i = 0; i + 3 * step <= picture.bytes.size(); i += 3 * step) {
      std::swap_ranges(picture.bytes.data() + i, picture.bytes.data() + i + step,
                       picture.bytes.data() + i + 2 * step);
    }
  }
  if (step == 2 && std::endian::native == std::endian::little) {
    for (std::size_t i = 0; i + 2 <= picture.bytes.size(); i += 2) {
      std::swap(picture.bytes[i], picture.bytes[i + 1]);
    }
  }
}

}  // namespace

std::string width_rule(const Conversion& conversion) {
  if (conversion.width_step <= 2) {
    return conversion.width_step == 2 ? "even" : "any";
  }
  return "a multiple of " + std::to_string(conversion.width_step);
}

bool takes_size(const Conversion& conversion, Size size) {
  return std::min(size.width, size.height) >= conversion.smallest_side &&
         size.width % conversion.width_step == 0;
}

const std::vector<Target>& targets() {
  static const std::vector<Target> table{
      {"bgr", "colour picture, 8 bits a channel", 3, 8},
      {"grey-bgr", "luma in all three channels, 8 bits each", 3, 8},
      {"y8", "grey picture, 8 bits", 1, 8},
  };
  return table;
}

const Target& find_target(std::string_view name) {
  std::vector<std::string> names;
  for (const Target& target : targets()) {
    if (target.name == name) {
      return target;
    }
    names.emplace_back(target.name);
  }
  throw Failure("unknown target " + quoted(std::string(name)) + ": expected " + one_of(names));
}

std::vector<const Conversion*> conversions_of(const SourceFormat& format) {
  std::vector<const Conversion*> found;
  for (const Conversion& conversion : conversions()) {
    if (conversion.format == format.name) {
      found.push_back(&conversion);
    }
  }
  return found;
}

const Conversion& find_conversion(const SourceFormat& format, const std::string& method,
                                  const std::string& target) {
  const std::vector<const Conversion*> candidates = conversions_of(format);
  if (candidates.empty()) {
    throw Failure("no method converts format " + quoted(std::string(format.name)) + ": see qvn formats");
  }
  std::vector<std::string> methods;
  std::vector<std::string> reached;
  for (const Conversion* const candidate : candidates) {
    add_once(methods, candidate->method);
    if (method.empty() || candidate->method == method) {
      if (target.empty() || candidate->target == target) {
        return *candidate;
      }
      add_once(reached, candidate->target);
    }
  }
  const std::string name(format.name);
  if (!method.empty() && std::find(methods.begin(), methods.end(), method) == methods.end()) {
    throw Failure("unknown method " + quoted(method) + " for " + name + ": expected " + one_of(methods));
  }
  throw Failure("unknown target " + quoted(target) + " for " + name +
                (method.empty() ? "" : " by method " + method) + ": expected " + one_of(reached));
}

Picture convert(const Frame& frame, const Conversion& conversion) {
  check_size(frame, conversion);
  const Target& target = find_target(conversion.target);
  Picture picture{frame.size, target.channels, target.depth, {}};

  // Methods that work inside the source get a copy like all others: the frame is converted again for a sheet.
  std::vector<std::uint8_t> source(kMargin + frame.bytes.size());
  std::copy(frame.bytes.begin(), frame.bytes.end(), source.begin() + kMargin);
  picture.bytes.resize(kMargin + picture.line_bytes() * frame.size.height);

  const std::uint32_t status = conversion.run(picture.bytes.data() + kMargin, source.data() + kMargin, frame);
  if (status != QVN_OK) {
    throw Failure(std::string(conversion.entry) + " refused the frame: " + status_text(status));
  }
  picture.bytes.erase(picture.bytes.begin(), picture.bytes.begin() + kMargin);
  to_file_order(picture);
  return picture;
}

}  // namespace qvn::tool
