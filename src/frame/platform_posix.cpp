// The POSIX side of the platform seam.
//
// The version record is an ELF note in the library's own image, which `readelf -n` shows. It is looked up at
// run time in the image that holds this code, so a file without the note loads as one without a record.
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <pthread.h>
#include <sys/syscall.h>
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

constexpr char kNoteOwner[] = "Quorvane";
constexpr uint32_t kVersionNoteType = 1;

// Note fields are padded to words; the structure spells the padding of the owner's 9 bytes out.
struct VersionNote {
  uint32_t owner_size;
  uint32_t description_size;
  uint32_t type;
  char owner[(sizeof kNoteOwner + 3) / 4 * 4];
  VersionRecord record;
};
static_assert(sizeof(VersionNote) == 12 + 12 + 16, "a note has no gaps");

[[gnu::section(".note.quorvane.version"), gnu::used, gnu::aligned(4)]] const VersionNote version_note = {
    sizeof kNoteOwner,
    sizeof(VersionRecord),
    kVersionNoteType,
    "Quorvane",
    {{QUORVANE_VERSION_MAJOR, QUORVANE_VERSION_MINOR, QUORVANE_VERSION_PATCH, QUORVANE_VERSION_TWEAK},
     {QUORVANE_VERSION_MAJOR, QUORVANE_VERSION_MINOR, QUORVANE_VERSION_PATCH, QUORVANE_VERSION_TWEAK}}};

// The loader tells addresses as numbers.
const std::byte* address_in(const dl_phdr_info& image, uintptr_t offset) {
  const auto address = static_cast<uintptr_t>(image.dlpi_addr) + offset;
  return reinterpret_cast<const std::byte*>(address);  // NOLINT(performance-no-int-to-ptr)
}

bool image_holds(const dl_phdr_info& image, const void* address) {
  for (size_t i = 0; i < image.dlpi_phnum; ++i) {
    const auto& segment = image.dlpi_phdr[i];
    if (segment.p_type != PT_LOAD) continue;
    const auto distance = reinterpret_cast<uintptr_t>(address) -
                          reinterpret_cast<uintptr_t>(address_in(image, segment.p_vaddr));
    if (distance < segment.p_memsz) return true;
  }
  return false;
}

// The notes of one segment, one behind the other: header, owner, description, the latter two padded.
bool find_record(const std::byte* notes, size_t size, size_t alignment, VersionRecord& record) {
  const auto padded = [alignment](size_t length) { return (length + alignment - 1) / alignment * alignment; };
  ElfW(Nhdr) header;
  while (size >= sizeof header) {
    std::memcpy(&header, notes, sizeof header);
    const size_t description = padded(sizeof header + header.n_namesz);
    const size_t whole = description + header.n_descsz;
    if (whole > size) return false;
    if (header.n_type == kVersionNoteType && header.n_namesz == sizeof kNoteOwner &&
        header.n_descsz == sizeof record &&
        std::memcmp(notes + sizeof header, kNoteOwner, sizeof kNoteOwner) == 0) {
      std::memcpy(&record, notes + description, sizeof record);
      return true;
    }
    if (padded(whole) >= size) return false;
    notes += padded(whole);
    size -= padded(whole);
  }
  return false;
}

struct Search {
  VersionRecord* record;
  bool found;
};

int search_image(dl_phdr_info* image, size_t, void* argument) {
  if (!image_holds(*image, &version_note)) return 0;
  auto& search = *static_cast<Search*>(argument);
  for (size_t i = 0; i < image->dlpi_phnum && !search.found; ++i) {
    const auto& segment = image->dlpi_phdr[i];
    if (segment.p_type != PT_NOTE) continue;
    search.found = find_record(address_in(*image, segment.p_vaddr), segment.p_memsz,
                               segment.p_align == 8 ? 8 : 4, *search.record);
  }
  return 1;
}

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

bool read_own_version(VersionRecord& record) {
  Search search = {&record, false};
  dl_iterate_phdr(search_image, &search);
  return search.found;
}

OwnPath read_own_path() {
  OwnPath path = {};
  Dl_info image;
  if (dladdr(&version_note, &image) != 0 && image.dli_fname != nullptr) {
    std::strncpy(path.data(), image.dli_fname, path.size() - 1);
  }
  return path;
}

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

uint32_t thread_id() { return static_cast<uint32_t>(syscall(SYS_gettid)); }

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
