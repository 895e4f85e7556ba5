// The conversions: which library function turns a source format into a picture by which method.
//
// A new method is one row in conversion_table.cpp; a function whose arguments are of a new form also needs a
// small adapter there.
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
  std::string_view planes;  // a letter for each picture, if it is several
};

/// Which frames a function takes, beyond whole groups of its format.
struct SizeRule {
  std::uint32_t width_step = 1;  // the width must be a multiple of it
  std::uint32_t height_step = 1;
  Size least{1, 1};
  std::uint32_t least_pixels = 1;
};

struct Conversion {
  std::string_view format;
  std::string_view method;
  std::string_view target;
  std::string_view entry;  // the library function
  SizeRule size;
  /// Planes lie in `dst` one behind the other. `src` may be changed.
  std::uint32_t (*run)(std::uint8_t* dst, std::uint8_t* src, const Frame& frame);
};

const std::vector<Conversion>& conversions();
const std::vector<Target>& targets();
const Target& find_target(std::string_view name);

/// Every conversion of a format, in the order in which they are listed and shown.
std::vector<const Conversion*> conversions_of(const SourceFormat& format);

/// Empty `method` or `target`: the format's first. Throws Failure and says what there is instead.
const Conversion& find_conversion(const SourceFormat& format, const std::string& method,
                                  const std::string& target);

/// "even width, at least 2x2", or "any".
std::string size_rule(const Conversion& conversion);
/// Whether the function takes frames of that size.
bool takes_size(const Conversion& conversion, Size size);

/// Runs one: a picture, or one for each plane. The frame stays whole whatever the library does with its
/// source. Throws Failure for a size that the function does not take, and for every status but success, with
/// the library's text.
std::vector<Picture> convert(const Frame& frame, const Conversion& conversion);

}  // namespace qvn::tool
