// The library linked into a program on Windows. Its file is the program's, whose version resource tells of
// the program, so the record is part of the code; and the program's loader notifies nobody, so the runtime's
// start and end do.
#include <cstdlib>

#include "frame/platform.h"
#include "frame/start_up.h"

namespace qvn {
namespace {

// First in the runtime's exit list, so that it is left last, behind the program's own static objects;
// functions marked as destructors would come before these.
[[gnu::constructor(101)]] void on_runtime_start() {
  load_library();
  std::atexit(unload_library);
}

}  // namespace

bool read_own_version(VersionRecord& record) {
  constexpr std::array<uint16_t, 4> kVersion = {QUORVANE_VERSION_MAJOR, QUORVANE_VERSION_MINOR,
                                                QUORVANE_VERSION_PATCH, QUORVANE_VERSION_TWEAK};
  record = {kVersion, kVersion};
  return true;
}

}  // namespace qvn
