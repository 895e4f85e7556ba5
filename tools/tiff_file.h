// TIFF files of grey and colour pictures, 8 and 16 bits a sample, encoded in memory.
#pragma once

#include "frame.h"

namespace qvn::tool {

/// Not compressed: every reader takes them.
std::vector<std::uint8_t> encode_tiff(const Picture& picture);

}  // namespace qvn::tool
