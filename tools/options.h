// Options that several subcommands share.
#pragma once

#include "failure.h"
#include "frame_file.h"

namespace CLI {
class App;
}

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

/// A whole number from `least` to `most`, by hand, since the parser takes -1 and numbers that are too large
/// for whatever comes out. Throws Failure, which names `option`.
std::int64_t parse_whole(const std::string& option, const std::string& text, std::int64_t least,
                         std::int64_t most);

}  // namespace qvn::tool
