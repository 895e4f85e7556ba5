// Load and unload: the fixed order of the static initialisers, the notification that reads the version word,
// and the exit list.
//
// A platform's loader functions call these; tests call them again. Not safe against concurrent calls of
// entries, apart from notify(), which only rewrites the version word with the same value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "frame/platform.h"

namespace qvn {

using Release = void (*)();
using VersionReader = bool (*)(VersionRecord& record);

// What unload has to release, in order of registration.
class ExitList {
 public:
  void add(Release release);
  void run_in_reverse();
  std::span<const Release> registered() const { return {releases_.data(), count_}; }

 private:
  std::array<Release, 4> releases_ = {};
  size_t count_ = 0;
};

extern ExitList exit_list;

// The memory that the version line is formatted in comes from the process heap, from here to the release.
void bind_string_support();
void release_string_support();

// The product version a.b.c.d as bytes. A part above 255 spills into the next one up.
constexpr uint32_t version_word_of(const std::array<uint16_t, 4>& parts) {
  uint32_t word = 0;
  for (const uint32_t part : parts) word = word << 8 | part;
  return word;
}

void run_initialisers();
void run_exit_list();

// The work of every notification alike: read the version word, and write the version line if there is a
// logger. Without a version record the word keeps its value. Always 1: a missing record stops no load.
int notify(VersionReader read_version = read_own_version);

// The initialisers, then the notification; the notification once more, then the exit list. For a platform
// whose loader does not notify by itself.
void load_library();
void unload_library();

}  // namespace qvn
