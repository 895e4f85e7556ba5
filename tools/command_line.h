// From the words of a command line to a subcommand that is run.
#pragma once

namespace qvn::tool {

/// Exit statuses; a signal's own number tells the rest.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 2;

/// Parses, runs, and says on standard error what went wrong. Nothing is thrown.
int run_command_line(int argc, char** argv);

}  // namespace qvn::tool
