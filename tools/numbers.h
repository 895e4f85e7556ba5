// Numbers on the command line and in tables.
#pragma once

#include <cstdint>
#include <string>

namespace qvn::tool {

/// A whole number from `least` to `most`, by hand, since the parser takes -1 and numbers that are too large
/// for whatever comes out. Throws Failure, which names `option`.
std::int64_t parse_whole(const std::string& option, const std::string& text, std::int64_t least,
                         std::int64_t most);

}  // namespace qvn::tool
