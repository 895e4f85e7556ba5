/// Part of a library of its own: a logger that is there before the loader's first notification.
#include "frame/notified_library.h"

#include <atomic>

#include "frame/test_logger.h"

namespace {

std::atomic<std::size_t> line_count = 0;
std::atomic<void (*)(const char*)> line_sink = nullptr;

class CountingSink : public qvn::LogSink {
 public:
  void Close() override {}
  void Flush() override {}
  void Write(const char* line) override {
    ++line_count;
    if (auto* const sink = line_sink.load()) sink(line);
  }
};

/// Never freed: the last notification comes when the library's static objects are gone.
[[gnu::constructor(102)]] void install_logger() {
  auto* logger = new support::TestLogger;
  logger->sink = new CountingSink;
  logger->lineFormat = "%u %u%s %s %s";
  qvn::process_logger = logger;
}

}  // namespace

extern "C" [[gnu::dllexport]] std::size_t count_lines() { return line_count; }
extern "C" [[gnu::dllexport]] void set_line_sink(void (*sink)(const char*)) { line_sink = sink; }
