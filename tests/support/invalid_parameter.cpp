/// On Windows the handler is the one in ucrtbase.dll, elsewhere a signal's.
#include "support/invalid_parameter.h"

#include <gtest/gtest.h>

#include <csignal>

#ifdef _WIN32
#include <windows.h>

#include <cstdint>
#endif

namespace support {
namespace {

volatile std::sig_atomic_t reports = 0;

#ifdef _WIN32

using Handler = void (*)(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t);

void set_handler(Handler handler) {
  const HMODULE runtime = LoadLibraryA("ucrtbase.dll");
  const FARPROC set = GetProcAddress(runtime, "_set_invalid_parameter_handler");
  reinterpret_cast<Handler (*)(Handler)>(reinterpret_cast<void*>(set))(handler);
}

#endif

}  // namespace

#ifdef _WIN32

CountedReports::CountedReports() : before_(nullptr) {
  reports = 0;
  set_handler(
      [](const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t) { reports = reports + 1; });
}

CountedReports::~CountedReports() { set_handler(nullptr); }

bool EndedByReport::operator()(int exit_status) const {
  return static_cast<unsigned>(exit_status) == 0xC000000DU;
}

#else

CountedReports::CountedReports() : before_(nullptr) {
  reports = 0;
  before_ = std::signal(SIGABRT, [](int) { reports = reports + 1; });
}

CountedReports::~CountedReports() { std::signal(SIGABRT, before_); }

bool EndedByReport::operator()(int exit_status) const {
  return testing::KilledBySignal(SIGABRT)(exit_status);
}

#endif

int CountedReports::count() const { return reports; }

}  // namespace support
