// The library's own file on systems with ELF files.
//
// The version record is a note in the library's own image, which `readelf -n` shows. It is looked up at run
// time in the image that holds this code, so a file without the note loads as one without a record.
#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <cstring>

#include "frame/platform.h"

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

}  // namespace qvn
