// What the tool says about itself and the library: the listing of formats, and which library file is in use.
#pragma once

#include <string>

namespace qvn::tool {

/// Formats with their methods and targets, targets, Bayer orders and file formats, for a person to read.
std::string list_formats();

/// Version word, the library file that the loader took, and that file's instruction-set level.
std::string describe_version();

}  // namespace qvn::tool
