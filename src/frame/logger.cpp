// The line writer. A line is formatted and written under the logger's lock as a whole, since the buffers are
// the logger's; the lock is entered and left by hand, because callers depend on its staying held when an
// allocation or a sink throws.
#include "frame/logger.h"

#include <cstdio>

#include "frame/process_state.h"

namespace qvn {
namespace {

constexpr const char* kLevelWords[] = {"FATAL  ", "ERROR  ", "WARNING", "INFO   ", "DEBUG  ", "CHATTER"};

bool drops(const Logger& logger, int32_t level) { return level > logger.threshold || logger.disabled; }

}  // namespace

int32_t Logger::Log(int32_t level, const char* message) {
  Logger& installed = *process_logger;
  if (drops(installed, level)) return 0;
  installed.lock.enter();
  {
    const std::string copy(message);
    installed.WriteLine(level, copy);
  }
  installed.lock.leave();
  return 0;
}

void Logger::WriteLine(int32_t level, const std::string& message) {
  if (drops(*this, level)) return;  // the fields may have changed while this thread waited for the lock
  const char* word = level >= kFatal && level <= kChatter ? kLevelWords[level] : LevelName(level);
  if (useTime) format_time(*this, read_counter());
  const char* time = useTime ? timeText.c_str() : "";
  const uint32_t thread = thread_id();
  const uint32_t process = process_id();
  std::snprintf(formatBuffer.data(), formatBuffer.size(), lineFormat.c_str(), process, thread, time, word,
                message.c_str());
  formatResult = formatBuffer.data();
  if (sink == nullptr) return;
  sink->Write(formatResult);
  if (flushAlways || level == kFatal) sink->Flush();
}

void format_time(Logger& logger, int64_t count) {
  constexpr int64_t kUnitsPerHour = 36'000'000;
  constexpr uint32_t kUnitsPerMinute = 600'000;
  constexpr uint32_t kUnitsPerSecond = 10'000;
  const int64_t units = (count - logger.startCount) / logger.ticksPerUnit;
  const auto hours = static_cast<uint32_t>(units / kUnitsPerHour);
  const auto rest = static_cast<uint32_t>(units % kUnitsPerHour);
  const uint32_t minutes = rest / kUnitsPerMinute;
  const uint32_t seconds = rest % kUnitsPerMinute / kUnitsPerSecond;
  const uint32_t fraction = rest % kUnitsPerSecond;
  auto& buffer = logger.formatBuffer;
  std::snprintf(buffer.data(), buffer.size(), logger.timeFormat.c_str(), hours, minutes, seconds, fraction);
  logger.timeText = buffer.data();
}

// The text is put together on the stack: the writer's own copy must be the first allocation of a line.
void log_entered_method(const char* name) {
  std::array<char, 128> text;
  std::snprintf(text.data(), text.size(), "Entered method %s", name);
  process_logger->Log(kDebug, text.data());
}

}  // namespace qvn
