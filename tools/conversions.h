// The conversions: which library function turns a source format into a picture by which method.
//
// A new method is one row in conversions.cpp; a function whose arguments are of a new form also needs a small
// adapter there.
#pragma once

#include "formats.h"
#include "frame.h"

namespace qvn::tool {

/// A form of picture that the library writes.
struct Target {
  std::string_view name;
  std::string_view about;
  std::uint32_t channels;
  std::uint32_t depth;
};

struct Conversion {
  std::string_view format;
  std::string_view method;
  std::string_view target;
  std::string_view entry;       // the library function
  std::uint32_t width_step;     // the width must be a multiple of it
  std::uint32_t smallest_side;  // the fewest columns and lines
  std::uint32_t (*run)(std::uint8_t* dst, std::uint8_t* src, const Frame& frame);
};

const std::vector<Target>& targets();
const Target& find_target(std::string_view name);

/// Every conversion of a format, in the order in which they are listed and shown.
std::vector<const Conversion*> conversions_of(const SourceFormat& format);

/// Empty `method` or `target`: the format's first. Throws Failure and says what there is instead.
const Conversion& find_conversion(const SourceFormat& format, const std::string& method,
                                  const std::string& target);

/// "even", "a multiple of 4", or "any".
std::string width_rule(const Conversion& conversion);
/// Whether the function takes frames of that size.
bool takes_size(const Conversion& conversion, Size size);

/// Runs one. The frame stays whole whatever the library does with its source. Throws Failure for a size that
/// the function does not take, and for every status but success, with the library's text.
Picture convert(const Frame& frame, const Conversion& conversion);

}  // namespace qvn::tool
