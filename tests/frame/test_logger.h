/// A logger for tests: it keeps the lines that it is given, and is installed for as long as it lives.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "frame/logger.h"
#include "frame/process_state.h"

namespace support {

class MemorySink : public qvn::LogSink {
 public:
  void Close() override { ++closes; }
  void Flush() override { events.emplace_back("<flush>"); }
  void Write(const char* line) override {
    written_from = line;
    events.emplace_back(line);
    if (at_write) at_write();
  }

  std::vector<std::string> events;  ///< lines, and "<flush>" for each flush, in order
  const char* written_from = nullptr;
  int closes = 0;
  std::function<void()> at_write;
};

class TestLogger : public qvn::Logger {
 public:
  TestLogger() {
    sink = &memory;
    threshold = qvn::kChatter;
    lineFormat = "%u %u %s|%s|%s";
    timeFormat = "%u:%02u:%02u.%04u";
    ticksPerUnit = 100000;
  }

  const char* LevelName(int32_t level) override {
    asked_name = "level " + std::to_string(level);
    return asked_name.c_str();
  }

  std::vector<std::string>& lines() { return memory.events; }

  MemorySink memory;
  std::string asked_name;
};

/// The line that TestLogger makes of a message of the calling thread.
inline std::string line_of(const std::string& word, const std::string& message,
                           const std::string& time = "") {
  return std::to_string(qvn::process_id()) + " " + std::to_string(qvn::thread_id()) + " " + time + "|" +
         word + "|" + message;
}

/// Installs a logger for a scope.
class Installed {
 public:
  explicit Installed(qvn::Logger& logger) { qvn::process_logger = &logger; }
  Installed(const Installed&) = delete;
  Installed& operator=(const Installed&) = delete;
  ~Installed() { qvn::process_logger = nullptr; }
};

}  // namespace support
