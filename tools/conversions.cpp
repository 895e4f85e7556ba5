// Look-up of conversions by name, their size rules, and the way from a library call to finished pictures.
#include "conversions.h"

#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "failure.h"

namespace qvn::tool {
namespace {

void add_once(std::vector<std::string>& names, std::string_view name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) {
    names.emplace_back(name);
  }
}

std::string step_rule(std::uint32_t step) {
  return step == 2 ? "even" : "a multiple of " + std::to_string(step);
}

void check_size(const Frame& frame, const Conversion& conversion) {
  const SizeRule& rule = conversion.size;
  const Size size = frame.size;
  const std::string what = std::string(conversion.format) + " by method " + std::string(conversion.method) +
                           " to " + std::string(conversion.target) + ": expected ";
  if (size.width < rule.least.width || size.height < rule.least.height) {
    throw Failure(what + "a frame of at least " + to_text(rule.least) + ", found " + to_text(size));
  }
  if (size.width % rule.width_step != 0) {
    throw Failure(what + "a width that is " + step_rule(rule.width_step) + ", found " +
                  std::to_string(size.width));
  }
  if (size.height % rule.height_step != 0) {
    throw Failure(what + "a height that is " + step_rule(rule.height_step) + ", found " +
                  std::to_string(size.height));
  }
  if (size.pixels() < rule.least_pixels) {
    throw Failure(what + "at least " + std::to_string(rule.least_pixels) + " pixels, found " + to_text(size));
  }
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

std::string size_rule(const Conversion& conversion) {
  const SizeRule& rule = conversion.size;
  std::vector<std::string> parts;
  if (rule.width_step > 1) {
    parts.push_back(step_rule(rule.width_step) + " width");
  }
  if (rule.height_step > 1) {
    parts.push_back(step_rule(rule.height_step) + " height");
  }
  if (rule.least != Size{1, 1}) {
    parts.push_back("at least " + to_text(rule.least));
  }
  if (rule.least_pixels > 1) {
    parts.push_back("at least " + std::to_string(rule.least_pixels) + " pixels");
  }
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : ", ") + part;
  }
  return text.empty() ? "any" : text;
}

bool takes_size(const Conversion& conversion, Size size) {
  const SizeRule& rule = conversion.size;
  return size.width >= rule.least.width && size.height >= rule.least.height &&
         size.width % rule.width_step == 0 && size.height % rule.height_step == 0 &&
         size.pixels() >= rule.least_pixels;
}

const std::vector<Target>& targets() {
  static const std::vector<Target> table{
      {"bgr", "colour picture, 8 bits a channel", 3, 8, ""},
      {"grey-bgr", "luma in all three channels, 8 bits each", 3, 8, ""},
      {"y8", "grey picture, 8 bits", 1, 8, ""},
      {"planes", "red, green and blue as grey pictures: OUT with _r, _g, _b before its suffix", 1, 8, "rgb"},
      {"planes-y", "the same and luma: _r, _g, _b, _y", 1, 8, "rgby"},
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

std::vector<Picture> convert(const Frame& frame, const Conversion& conversion) {
  check_size(frame, conversion);
  const Target& target = find_target(conversion.target);
  const Picture empty{frame.size, target.channels, target.depth, {}};
  const std::size_t length = empty.line_bytes() * frame.size.height;
  std::vector<Picture> pictures(std::max<std::size_t>(target.planes.size(), 1), empty);

  // Methods that work inside the source get a copy like all others: the frame is converted again for a sheet.
  std::vector<std::uint8_t> source(frame.bytes);
  std::vector<std::uint8_t> result(length * pictures.size());
  const std::uint32_t status = conversion.run(result.data(), source.data(), frame);
  if (status != QVN_OK) {
    throw Failure(std::string(conversion.entry) + " refused the frame: " + status_text(status));
  }
  const std::uint8_t* start = result.data();
  for (Picture& picture : pictures) {
    picture.bytes.assign(start, start + length);
    to_file_order(picture);
    start += length;
  }
  return pictures;
}

}  // namespace qvn::tool
