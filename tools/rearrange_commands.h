// The subcommands that rearrange frames: flip, weave, unpack, resample and sis.
#pragma once

#include <CLI/CLI.hpp>

namespace qvn::tool {

void add_rearrange_commands(CLI::App& app);

}  // namespace qvn::tool
