// The library as a file of its own on Windows.
//
// The version record is the VERSIONINFO resource of the file. The loader's notification reads it again for
// processes and threads, on attach and detach alike; the kinds are not told apart and thread notifications
// stay on.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <memory>

#include "frame/platform.h"
#include "frame/start_up.h"

namespace qvn {
namespace {

// Parts come in pairs, the more significant one in the high half.
std::array<uint16_t, 4> parts_of(DWORD high, DWORD low) {
  return {HIWORD(high), LOWORD(high), HIWORD(low), LOWORD(low)};
}

// The runtime calls these around the notifications of the process: initialisers before the attach, the exit
// list after the detach.
[[gnu::constructor(101)]] void on_runtime_start() { run_initialisers(); }

[[gnu::destructor(101)]] void on_runtime_end() { run_exit_list(); }

}  // namespace

bool read_own_version(VersionRecord& record) {
  const OwnPath path = read_own_path();
  DWORD handle = 0;
  const DWORD size = GetFileVersionInfoSizeA(path.data(), &handle);
  if (size == 0) return false;
  const auto block = std::make_unique<std::byte[]>(size);
  GetFileVersionInfoA(path.data(), 0, size, block.get());
  void* fixed_part = nullptr;
  UINT fixed_size = 0;
  VerQueryValueA(block.get(), "\\", &fixed_part, &fixed_size);
  if (fixed_part == nullptr) return false;
  const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(fixed_part);
  record.product = parts_of(fixed.dwProductVersionMS, fixed.dwProductVersionLS);
  record.file = parts_of(fixed.dwFileVersionMS, fixed.dwFileVersionLS);
  return true;
}

}  // namespace qvn

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return qvn::notify(); }
