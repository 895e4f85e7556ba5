// The Windows side of the platform seam, apart from what a library of its own file and one that is linked
// into a program do differently: platform_windows_dll.cpp and platform_windows_static.cpp.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <new>

#include "frame/platform.h"

namespace qvn {
namespace {

HMODULE own_module() {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const char*>(&own_module), &module);
  return module;
}

}  // namespace

OwnPath read_own_path() {
  OwnPath path = {};
  GetModuleFileNameA(own_module(), path.data(), static_cast<DWORD>(path.size()));
  path.back() = '\0';  // old systems leave a cut path without a terminator
  return path;
}

void write_system_text(uint32_t code, char* buffer, uint32_t size) {
  constexpr DWORD kNeutralUserDefault = 0x400;
  FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, kNeutralUserDefault, buffer, size, nullptr);
}

// The handler is the process's one in ucrtbase.dll, whichever runtime the library itself is linked to. A
// process without that file has no handler.
void report_invalid_parameter() {
  using Handler = void (*)(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t);
  using GetHandler = Handler (*)();
  constexpr UINT kInvalidParameterStatus = 0xC000000D;
  Handler handler = nullptr;
  if (const HMODULE runtime = GetModuleHandleA("ucrtbase.dll"); runtime != nullptr) {
    const FARPROC found = GetProcAddress(runtime, "_get_invalid_parameter_handler");
    if (found != nullptr) handler = reinterpret_cast<GetHandler>(reinterpret_cast<void*>(found))();
  }
  if (handler == nullptr) {
    TerminateProcess(GetCurrentProcess(), kInvalidParameterStatus);
  } else {
    handler(nullptr, nullptr, nullptr, 0, 0);
  }
}

uint32_t process_id() { return GetCurrentProcessId(); }

uint32_t thread_id() { return GetCurrentThreadId(); }

int64_t read_counter() {
  LARGE_INTEGER count;
  QueryPerformanceCounter(&count);
  return count.QuadPart;
}

namespace {
CRITICAL_SECTION* section_in(std::array<std::byte, 64>& storage) {
  static_assert(sizeof(CRITICAL_SECTION) <= 64 && alignof(CRITICAL_SECTION) <= alignof(std::max_align_t));
  return std::launder(reinterpret_cast<CRITICAL_SECTION*>(storage.data()));
}
}  // namespace

CriticalSection::CriticalSection() : system_lock_{} {
  InitializeCriticalSection(new (system_lock_.data()) CRITICAL_SECTION);
}

CriticalSection::~CriticalSection() { DeleteCriticalSection(section_in(system_lock_)); }

void CriticalSection::enter() { EnterCriticalSection(section_in(system_lock_)); }

void CriticalSection::leave() { LeaveCriticalSection(section_in(system_lock_)); }

}  // namespace qvn
