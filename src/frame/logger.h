// The diagnostic log: a line for each call of an entry and one for the version at load.
//
// The library itself installs no logger (process_state.h); this is the line writer for a build that does. Who
// installs one derives from Logger for the level names, fills the fields, and lets process_logger point to
// it. Fields are read without synchronisation, so they are set before other threads call entries.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "frame/platform.h"

namespace qvn {

// A lower number is more severe.
enum LogLevel : int32_t { kFatal, kError, kWarning, kInfo, kDebug, kChatter };

// Where finished lines go.
class LogSink {
 public:
  virtual void Close() = 0;  // for the sink's owner; the library never calls it
  virtual void Flush() = 0;
  virtual void Write(const char* line) = 0;

 protected:
  ~LogSink() = default;
};

class Logger {
 public:
  static constexpr size_t kBufferSize = 8192;

  // The word for a level outside of 0 to 5.
  virtual const char* LevelName(int32_t level) = 0;

  // Writes a line to the installed logger, which need not be the one that this is called on. Always 0. An
  // exception leaves with the lock held.
  int32_t Log(int32_t level, const char* message);

  LogSink* sink = nullptr;   // null drops the lines after formatting
  int32_t threshold = 0;     // the highest level that is written
  bool flushAlways = false;  // flush after every line, not after fatal ones only
  std::string timeFormat;    // four numbers: hours, minutes, seconds, ten-thousandths
  std::string lineFormat;    // process id, thread id, time text, level word, message
  std::string timeText;      // the last formatted time
  bool useTime = false;      // without it a line's time text is empty
  bool disabled = false;
  const char* formatResult = nullptr;          // formatBuffer, once a line has been formatted
  std::array<char, kBufferSize> scratch = {};  // free for the owner
  std::array<char, kBufferSize> formatBuffer = {};
  CriticalSection lock;
  int32_t ticksPerUnit = 0;  // counts of read_counter() in 1/10000 s; never 0 with useTime
  int64_t startCount = 0;    // read_counter() at the time origin

 protected:
  Logger() = default;
  ~Logger() = default;

 private:
  void WriteLine(int32_t level, const std::string& message);
};

// Makes the logger's time text for a value of the counter.
void format_time(Logger& logger, int64_t count);

}  // namespace qvn
