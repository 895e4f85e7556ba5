// The library in a WebAssembly program. It has no file of its own to read the version record from, so the
// record is part of the code; and the program's file has no name that it could know.
#include "frame/platform.h"

namespace qvn {

bool read_own_version(VersionRecord& record) {
  constexpr std::array<uint16_t, 4> kVersion = {QUORVANE_VERSION_MAJOR, QUORVANE_VERSION_MINOR,
                                                QUORVANE_VERSION_PATCH, QUORVANE_VERSION_TWEAK};
  record = {kVersion, kVersion};
  return true;
}

OwnPath read_own_path() { return {}; }

}  // namespace qvn
