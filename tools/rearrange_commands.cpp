// Options of the subcommands that rearrange frames. Each one's options live as long as its callback.
#include "rearrange_commands.h"

#include <cmath>
#include <iostream>
#include <memory>

#include "failure.h"
#include "files.h"
#include "formats.h"
#include "numbers.h"
#include "options.h"
#include "rearrange.h"

namespace qvn::tool {
namespace {

constexpr const char* kFrameFiles = "raw, pgm, ppm or png";

struct Flip {
  FrameOptions input;
  OutputOptions output;
  std::string axis;
};

void add_flip(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("flip", "Mirror a frame");
  const auto options = std::make_shared<Flip>();
  add_input(command, options->input);
  add_output(command, options->output, kFrameFiles);
  command.add_option("--axis", options->axis, "horizontal, vertical or both")->required();
  command.callback([options] {
    const Axis axis = find_axis(options->axis);
    const Frame frame = read_frame(options->input);
    const Frame flipped = flip_frame(frame, axis);
    write_frame(options->output.path, options->output.file_format, flipped);
    if (flipped.pattern != frame.pattern) {
      std::cerr << "qvn: the Bayer order is " << flipped.pattern->name << " now\n";
    }
  });
}

struct Weave {
  FrameOptions input;
  OutputOptions output;
};

void add_weave(CLI::App& app) {
  CLI::App& command =
      *app.add_subcommand("weave", "Bring the lines of an interlaced frame into display order");
  const auto options = std::make_shared<Weave>();
  add_input(command, options->input);
  add_output(command, options->output, kFrameFiles);
  command.callback([options] {
    write_frame(options->output.path, options->output.file_format, weave_fields(read_frame(options->input)));
  });
}

struct Unpack {
  FrameOptions input;
  OutputOptions output;
  std::string to_bits = "16";
};

void add_unpack(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("unpack", "Give packed 12-bit samples bytes of their own");
  const auto options = std::make_shared<Unpack>();
  add_input(command, options->input);
  add_output(command, options->output, kFrameFiles);
  command
      .add_option("--to-bits", options->to_bits,
                  "16, big-endian with the sample at the top, or 8, the top bits alone")
      ->capture_default_str();
  command.callback([options] {
    if (options->to_bits != "8" && options->to_bits != "16") {
      throw Failure("--to-bits: expected 8 or 16, found " + tool::quoted(options->to_bits));
    }
    write_frame(options->output.path, options->output.file_format,
                unpack_samples(read_frame(options->input), options->to_bits == "8" ? 8 : 16));
  });
}

struct Resample {
  FrameOptions input;
  OutputOptions output;
  Resampling how;
  std::string width;
  std::string method = "nearest";
};

void check_rate(const std::string& option, float rate) {
  if (!std::isfinite(rate) || rate <= 0) {
    throw Failure(option + ": expected a number above 0, found " + std::to_string(rate));
  }
}

void add_resample(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("resample", "Stretch or shrink the lines of a frame");
  const auto options = std::make_shared<Resample>();
  add_input(command, options->input);
  add_output(command, options->output, kFrameFiles);
  command.add_option("--rate", options->how.source_rate, "Sampling rate of the frame's lines")->required();
  command.add_option("--to-rate", options->how.picture_rate, "Sampling rate of the result's lines")
      ->required();
  command.add_option("--width", options->width,
                     "Pixels of a line of the result [by the rates, up to a multiple of 4]");
  command
      .add_option("--method", options->method,
                  "nearest, or linear, which is made for stretching: it reads no more pixels of a line than "
                  "the result has, and blends the bytes of 16-bit samples one by one")
      ->capture_default_str();
  command.callback([options] {
    if (options->method != "nearest" && options->method != "linear") {
      throw Failure("--method: expected nearest or linear, found " + tool::quoted(options->method));
    }
    check_rate("--rate", options->how.source_rate);
    check_rate("--to-rate", options->how.picture_rate);
    options->how.linear = options->method == "linear";
    if (!options->width.empty()) {
      options->how.width =
          static_cast<std::uint32_t>(parse_whole("--width", options->width, 1, std::int64_t{kMaxPixels}));
    }
    write_frame(options->output.path, options->output.file_format,
                resample_lines(read_frame(options->input), options->how));
  });
}

struct Sis {
  FrameOptions input;
  std::string output = "-";
  std::string position;
  std::string kind = "1";
};

void add_sis(CLI::App& app) {
  CLI::App& command =
      *app.add_subcommand("sis", "Copy out the block of bytes that a camera wrote into a frame");
  const auto options = std::make_shared<Sis>();
  add_input(command, options->input);
  command.add_option("OUT", options->output, "File to write; - is standard output")->capture_default_str();
  command
      .add_option("--position", options->position,
                  "Line on which the block starts, or, below 0, pixels before the frame's end")
      ->required();
  command.add_option("--kind", options->kind, "1, 12 bytes, or 2, 52 bytes")->capture_default_str();
  command.callback([options] {
    const std::int64_t position =
        parse_whole("--position", options->position, -std::int64_t{kMaxPixels}, std::int64_t{kMaxPixels});
    const std::int64_t kind = parse_whole("--kind", options->kind, 1, 2);
    write_output(options->output, read_sis(read_frame(options->input), static_cast<std::int32_t>(position),
                                           static_cast<std::uint32_t>(kind)));
  });
}

}  // namespace

void add_rearrange_commands(CLI::App& app) {
  add_flip(app);
  add_weave(app);
  add_unpack(app);
  add_resample(app);
  add_sis(app);
}

}  // namespace qvn::tool
