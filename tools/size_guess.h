// A guess at the size of a headerless frame: from the file's name, or from its length and the sizes that
// cameras and their sensors have.
#pragma once

#include <optional>

#include "formats.h"

namespace qvn::tool {

struct SizeGuess {
  Size size;
  std::string reason;  // "by its name", or "by its length, which also fits ..."
};

/// Nothing if neither tells.
std::optional<SizeGuess> guess_size(const std::string& path, std::uint64_t length,
                                    const SourceFormat& format);

/// "raw8 640x480, raw16be 640x240", with every format; empty if none fits. For a message.
std::string what_fits(std::uint64_t length);

}  // namespace qvn::tool
