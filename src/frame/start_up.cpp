// The order of life. kLoadOrder names every static initialiser of the library in the order in which they run;
// nothing else in the library is initialised at run time, so no order between files is left to chance.
#include "frame/start_up.h"

#include <cstdio>
#include <memory>

#include "convert/yuv_tables.h"
#include "frame/error_text.h"
#include "frame/logger.h"
#include "frame/process_state.h"

namespace qvn {

constinit std::atomic<uint32_t> version_word = 0;
constinit Logger* process_logger = nullptr;
constinit ExitList exit_list;

namespace {

using Text = std::unique_ptr<char[]>;
using TextMemory = Text (*)(size_t size);

constinit TextMemory take_text_memory = nullptr;

using Initialiser = void (*)();
constexpr Initialiser kLoadOrder[] = {
    bind_string_support, build_yuv_tables, build_error_text_map,
    build_yuv_tables,  // finds its guard cleared
};

Text version_line(const OwnPath& path, const VersionRecord& record) {
  const auto& product = record.product;
  const auto& file = record.file;
  const auto print = [&](char* line, size_t size) {
    return static_cast<size_t>(std::snprintf(
        line, size, "File %s (Prod. version %u.%u.%u.%u, File version %u.%u.%u.%u)", path.data(), product[0],
        product[1], product[2], product[3], file[0], file[1], file[2], file[3]));
  };
  const size_t size = print(nullptr, 0) + 1;
  Text line = take_text_memory(size);
  print(line.get(), size);
  return line;
}

}  // namespace

void ExitList::add(Release release) { releases_.at(count_++) = release; }

void ExitList::run_in_reverse() {
  while (count_ > 0) releases_[--count_]();
}

void bind_string_support() {
  take_text_memory = [](size_t size) { return std::make_unique<char[]>(size); };
  exit_list.add(release_string_support);
}

void release_string_support() { take_text_memory = nullptr; }

void run_initialisers() {
  for (const Initialiser initialise : kLoadOrder) initialise();
}

void run_exit_list() { exit_list.run_in_reverse(); }

int notify(VersionReader read_version) {
  const OwnPath path = read_own_path();
  VersionRecord record;
  if (!read_version(record)) return 1;
  version_word.store(version_word_of(record.product), std::memory_order_relaxed);
  const Text line = version_line(path, record);
  if (process_logger != nullptr) process_logger->Log(kInfo, line.get());
  return 1;
}

void load_library() {
  run_initialisers();
  notify();
}

void unload_library() {
  notify();
  run_exit_list();
}

}  // namespace qvn
