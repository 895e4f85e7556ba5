// The seam to the operating system. Everything that the library asks of a system stands here; the
// platform_*.cpp files answer it, and no other file includes a system header.
//
// The loader's notifications come from the system as well: the platform files hold the functions that the
// loader calls and pass them on to start_up.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace qvn {

// The version record of the library's own file: four parts each, from most to least significant.
struct VersionRecord {
  std::array<uint16_t, 4> product;
  std::array<uint16_t, 4> file;
};

// False, with `record` untouched, if the library's own file holds no record.
bool read_own_version(VersionRecord& record);

// A path, cut to what fits, and its terminator.
using OwnPath = std::array<char, 260>;

// The library's own file, or the program's if the library is linked into it; empty if the system can't tell.
OwnPath read_own_path();

// Writes the system's text for a code and its terminator. If there is none, or it does not fit, `buffer` is
// left alone.
void write_system_text(uint32_t code, char* buffer, uint32_t size);

// Reports an invalid parameter the way the language runtime does. By default that ends the process; if the
// host has a handler that returns, this returns too.
void report_invalid_parameter();

uint32_t process_id();
uint32_t thread_id();

// A steady high-resolution counter; how fast it counts is the platform's affair (POSIX: nanoseconds).
int64_t read_counter();

// A lock that its owner may enter again. It has no guard class on purpose: who fails between enter and leave
// keeps it.
class CriticalSection {
 public:
  CriticalSection();
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;
  ~CriticalSection();

  void enter();
  void leave();

 private:
  // Room for the system's own lock; the platform files assert that it fits.
  alignas(std::max_align_t) std::array<std::byte, 64> system_lock_;
};

}  // namespace qvn
