// Binary PGM (P5) and PPM (P6), 8 and 16 bits a sample.
//
// A file's samples run from 0 to its own highest value; what is read comes out scaled to the full range of 8
// or 16 bits, so that a PGM of a 12-bit sensor is as bright as it should be.
#pragma once

#include "files.h"
#include "frame.h"

namespace qvn::tool {

/// Whether the bytes begin like a PGM or PPM; the first three tell.
bool looks_like_netpbm(const std::vector<std::uint8_t>& bytes);

struct NetpbmFile {
  Picture picture;
  bool spread = false;  // the file's highest value was another than 255 or 65535
};

/// The next picture; what follows it stays to be read.
NetpbmFile read_netpbm(InputStream& input);
/// One channel gives a PGM, three a PPM.
std::vector<std::uint8_t> encode_netpbm(const Picture& picture);

}  // namespace qvn::tool
