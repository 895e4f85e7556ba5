// The POSIX side of the platform seam, apart from the library's own file: platform_elf.cpp and
// platform_wasm.cpp.
#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

#include "frame/platform.h"
#include "frame/start_up.h"
#include "quorvane/quorvane.h"

namespace qvn {
namespace {

// The text that this code has where it comes from; no POSIX system knows it.
const char* text_of(uint32_t code) {
  if (code == QVN_E_FAIL) return "Unspecified error";
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 32)
  return strerrordesc_np(static_cast<int>(code));
#else
  return nullptr;
#endif
}

}  // namespace

void write_system_text(uint32_t code, char* buffer, uint32_t size) {
  const char* text = text_of(code);
  if (text == nullptr) return;
  const size_t length = std::strlen(text) + 1;
  if (length <= size) std::memcpy(buffer, text, length);
}

// A handler may return, which std::abort would not let it. Without one only std::abort ends the process for
// sure: a thread can keep the signal from being delivered.
void report_invalid_parameter() {
  struct sigaction action = {};
  sigaction(SIGABRT, nullptr, &action);
  const bool handled = (action.sa_flags & SA_SIGINFO) != 0 || action.sa_handler != SIG_DFL;
  if (!handled) std::abort();
  (void)std::raise(SIGABRT);
}

uint32_t process_id() { return static_cast<uint32_t>(getpid()); }

uint32_t thread_id() { return static_cast<uint32_t>(gettid()); }

int64_t read_counter() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

namespace {
pthread_mutex_t* mutex_in(std::array<std::byte, 64>& storage) {
  static_assert(sizeof(pthread_mutex_t) <= 64 && alignof(pthread_mutex_t) <= alignof(std::max_align_t));
  return std::launder(reinterpret_cast<pthread_mutex_t*>(storage.data()));
}
}  // namespace

CriticalSection::CriticalSection() : system_lock_{} {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(new (system_lock_.data()) pthread_mutex_t, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

CriticalSection::~CriticalSection() { pthread_mutex_destroy(mutex_in(system_lock_)); }

void CriticalSection::enter() { pthread_mutex_lock(mutex_in(system_lock_)); }

void CriticalSection::leave() { pthread_mutex_unlock(mutex_in(system_lock_)); }

namespace {

// 101 is the first priority that a program may use: a program that links the library statically finds it
// ready before its own static initialisers run, and until its own static destructors have run.
[[gnu::constructor(101)]] void on_load() { load_library(); }

[[gnu::destructor(101)]] void on_unload() { unload_library(); }

}  // namespace
}  // namespace qvn
