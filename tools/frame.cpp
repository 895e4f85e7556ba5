// Parsing of sizes and Bayer orders. Messages name what was expected and what was found.
#include "frame.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "failure.h"

namespace qvn::tool {
namespace {

constexpr std::array<Pattern, 4> kPatterns{{{"rggb", 0}, {"grbg", 2}, {"gbrg", 1}, {"bggr", 3}}};

}  // namespace

Size checked_size(const std::string& origin, std::uint64_t width, std::uint64_t height) {
  if (width == 0 || height == 0) {
    throw Failure(origin + ": expected a width and a height of at least 1, found " + std::to_string(width) +
                  "x" + std::to_string(height));
  }
  if (width > kMaxPixels || height > kMaxPixels || width * height > kMaxPixels) {
    throw Failure(origin + ": expected at most " + std::to_string(kMaxPixels) + " pixels, found " +
                  std::to_string(width) + "x" + std::to_string(height));
  }
  return {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
}

Size parse_size(const std::string& text) {
  const char* const end = text.data() + text.size();
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  const auto first = std::from_chars(text.data(), end, width);
  if (first.ec == std::errc{} && first.ptr != end && *first.ptr == 'x') {
    const auto second = std::from_chars(first.ptr + 1, end, height);
    if (second.ec == std::errc{} && second.ptr == end) {
      return checked_size("--size", width, height);
    }
  }
  throw Failure("--size: expected WIDTHxHEIGHT such as 768x512, found " + quoted(text));
}

std::string to_text(Size size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

const Pattern& find_pattern(const std::string& name) {
  if (name.empty()) {
    return kPatterns.front();
  }
  const auto found =
      std::find_if(kPatterns.begin(), kPatterns.end(), [&](const Pattern& p) { return p.name == name; });
  if (found == kPatterns.end()) {
    throw Failure("unknown pattern " + quoted(name) + ": expected " + one_of(pattern_names()));
  }
  return *found;
}

std::vector<std::string> pattern_names() {
  std::vector<std::string> names;
  names.reserve(kPatterns.size());
  for (const Pattern& pattern : kPatterns) {
    names.emplace_back(pattern.name);
  }
  return names;
}

}  // namespace qvn::tool
