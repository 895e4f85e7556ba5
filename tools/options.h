// Options that several subcommands share.
#pragma once

#include <CLI/CLI.hpp>

#include "frame_file.h"

namespace qvn::tool {

struct OutputOptions {
  std::string path;
  std::string file_format;
};

/// OUT and --out-format; `formats` lists what the latter may be.
void add_output(CLI::App& command, OutputOptions& output, const std::string& formats);

/// The options that say how a frame's samples lie, for reading one and for making one.
void add_samples(CLI::App& command, std::string& pattern, std::string& bits, std::string& align);

/// IN, --from, --size and how the samples lie.
void add_input(CLI::App& command, FrameOptions& input);

}  // namespace qvn::tool
