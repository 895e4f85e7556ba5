// The process-wide state that every entry reads: the version word and the logger pointer. Both live in
// start_up.cpp, so that a static link that takes any entry takes the start-up with it.
#pragma once

#include <atomic>
#include <cstdint>

namespace qvn {

class Logger;

// The product version a.b.c.d as bytes; 0 until the load step has read it. Rewritten with the same value on
// every load notification, hence atomic.
extern std::atomic<uint32_t> version_word;

// Null, and nothing in the library stores to it: a build or a test that wants lines installs its own.
extern Logger* process_logger;

// Writes "Entered method NAME" at debug level to the installed logger. Only called when there is one.
void log_entered_method(const char* name);

// Reached from every file with an entry in it, also where the entry reads none of the state above.
[[gnu::used]] static const void* const start_up_anchor = &version_word;

}  // namespace qvn
