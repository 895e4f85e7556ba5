// Options that several subcommands share.
#pragma once

#include "commands.h"
#include "frame_reader.h"

namespace qvn::tool {

struct OutputOptions {
  std::string path;
  std::string file_format;
};

/// OUT and --out-format; `formats` are what the latter may be.
std::vector<Option> output_options(OutputOptions& output, const std::vector<std::string>& formats);
Option out_format_option(std::string& text, const std::vector<std::string>& formats);
/// How a frame's samples lie, for reading one and for making one.
std::vector<Option> sample_options(FrameOptions& input);
/// --from, --size and how the samples lie.
std::vector<Option> frame_options(FrameOptions& input);
/// IN and the same.
std::vector<Option> input_options(FrameOptions& input);

std::vector<std::string> format_names();

/// One list behind the other.
std::vector<Option> joined(std::vector<std::vector<Option>> lists);

}  // namespace qvn::tool
