// The conversions: which library function turns a source format into a picture by which method.
//
// A new method is one row in conversion_table.cpp; a function whose arguments are of a new form also needs a
// small adapter there.
#pragma once

#include <quorvane/quorvane.h>

#include "correction.h"
#include "formats.h"
#include "frame.h"

namespace qvn::tool {

/// A form of picture that the library writes.
struct Target {
  std::string_view name;
  std::string_view about;
  TransformTarget selector;  // its number in functions that offer several
  std::uint32_t pixel_bytes;
  std::uint32_t channels;  // of the picture that is made of it
  std::uint32_t depth;
  std::string_view planes = {};  // a letter for each picture, if it is several
};

/// Which frames a function takes, beyond whole groups of its format.
struct SizeRule {
  std::uint32_t width_step = 1;  // the width must be a multiple of it
  std::uint32_t height_step = 1;
  Size least{1, 1};
  std::uint32_t least_pixels = 1;
  std::uint32_t pixel_step = 1;  // the number of pixels must be a multiple of it
};

/// What a function is called with beside its buffers and the frame.
struct Call {
  TransformTarget target;
  std::uint32_t shift;
  const ColorCorrection* correction;
};

/// Planes lie in `dst` one behind the other. `src` may be changed.
using Run = std::uint32_t (*)(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call);

/// The same conversion with an object of the library between window and picture.
struct Corrected {
  std::string_view entry;
  Run run;
  CorrectionLimits limits;  // without a shift
};

/// The methods that know where samples lie, of formats whose other methods do not or know less of it.
inline constexpr std::string_view kTransformEx = "transform-ex";

struct Conversion {
  std::string_view format;
  std::string_view method;
  std::string_view target;
  std::string_view entry;  // the library function
  SizeRule size;
  Run run;
  std::uint32_t bits = 16;   // of a 16-bit sample that comes out, without a shift
  bool takes_shift = false;  // --shift
  bool reads_form = false;   // --bits and --align
  Corrected corrected = {};  // no function: none
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

/// The library's own text for a status.
std::string status_text(std::uint32_t status);

/// What the command line wants beside the conversion itself; an empty text wants nothing.
struct PictureOptions {
  std::string shift;
  std::string black;
  std::string white_balance;
  std::string matrix_clamped;
  CorrectionOptions correction;
  bool stretch = false;
  std::string edges;
  std::string threads;
};

struct Converted {
  std::vector<std::uint8_t> bytes;  // as the library writes them
  std::uint32_t bits;               // that count in a sample
  std::string note;                 // what the user should know of the picture; empty: nothing
  std::string gains;                // of the white balance, if there is one
};

/// Runs one. The frame stays whole whatever the library does with its source. Throws Failure for a size that
/// the function does not take, for options that it does not know, and for every status but success, with the
/// library's text.
Converted run_conversion(const Frame& frame, const Conversion& conversion,
                         const PictureOptions& options = {});

/// A picture of it, or one for each plane. --matrix-clamped and --stretch are the picture's.
std::vector<Picture> make_pictures(const Converted& converted, Size size, const Conversion& conversion,
                                   const PictureOptions& options = {});

}  // namespace qvn::tool
