// Options of the subcommands that rearrange frames. Each one's options live as long as its run.
#include <charconv>
#include <cmath>
#include <memory>

#include "failure.h"
#include "files.h"
#include "formats.h"
#include "frame_file.h"
#include "numbers.h"
#include "options.h"
#include "process.h"
#include "rearrange.h"

namespace qvn::tool {
namespace {

const std::vector<std::string>& frame_files() {
  static const std::vector<std::string> names{"raw", "pgm", "ppm", "png", "tiff"};
  return names;
}

/// Writes what a frame has become, and says so if that is another format than its file's.
void write_rearranged(const OutputOptions& output, const Frame& frame, const Frame& made) {
  write_frame(output.path, output.file_format, made);
  if (frame.in_file != nullptr) {
    say("the frame is " + std::string(frame.format->name) +
        (frame.form_told ? " --bits " + std::to_string(frame.form.bits) : "") + " now, as " +
        std::string(frame.in_file->name) + " is read");
  }
}

struct Flip {
  FrameOptions input;
  OutputOptions output;
  std::string axis;
};

Command flip_command() {
  const auto flip = std::make_shared<Flip>();
  return {"flip", "Mirror a frame",
          joined({input_options(flip->input),
                  output_options(flip->output, frame_files()),
                  {{.name = "--axis",
                    .about = "horizontal, vertical or both",
                    .text = &flip->axis,
                    .required = true,
                    .words = {"horizontal", "vertical", "both"}}}}),
          [flip] {
            const Axis axis = find_axis(flip->axis);
            const Frame frame = read_frame(flip->input);
            const Frame flipped = flip_frame(frame, axis);
            write_rearranged(flip->output, frame, flipped);
            if (flipped.pattern != frame.pattern) {
              say("the Bayer order is " + std::string(flipped.pattern->name) + " now");
            }
          }};
}

struct Weave {
  FrameOptions input;
  OutputOptions output;
};

Command weave_command() {
  const auto weave = std::make_shared<Weave>();
  return {"weave", "Bring the lines of an interlaced frame into display order",
          joined({input_options(weave->input), output_options(weave->output, frame_files())}), [weave] {
            const Frame frame = read_frame(weave->input);
            write_rearranged(weave->output, frame, weave_fields(frame));
          }};
}

struct Unpack {
  FrameOptions input;
  OutputOptions output;
  std::string to_bits = "16";
};

Command unpack_command() {
  const auto unpack = std::make_shared<Unpack>();
  return {"unpack", "Give packed 12-bit samples bytes of their own",
          joined({input_options(unpack->input),
                  output_options(unpack->output, frame_files()),
                  {{.name = "--to-bits",
                    .about = "16, big-endian with the sample at the top, or 8, the top bits alone",
                    .text = &unpack->to_bits,
                    .words = {"8", "16"}}}}),
          [unpack] {
            if (unpack->to_bits != "8" && unpack->to_bits != "16") {
              throw Failure("--to-bits: expected 8 or 16, found " + quoted(unpack->to_bits));
            }
            write_frame(unpack->output.path, unpack->output.file_format,
                        unpack_samples(read_frame(unpack->input), unpack->to_bits == "8" ? 8 : 16));
          }};
}

struct Resample {
  FrameOptions input;
  OutputOptions output;
  std::string rate;
  std::string to_rate;
  std::string width;
  std::string lines;
  std::string method = "nearest";
};

float parse_rate(const std::string& option, const std::string& text) {
  float rate = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, rate);
  if (parsed.ec != std::errc{} || parsed.ptr != end || !std::isfinite(rate) || rate <= 0) {
    throw Failure(option + ": expected a number above 0, found " + quoted(text));
  }
  return rate;
}

/// "TOP,COUNT"
LineRange parse_lines(const std::string& text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos) {
    throw Failure("--lines: expected TOP,COUNT, found " + quoted(text));
  }
  const std::int64_t most{kMaxPixels};
  return {static_cast<std::uint32_t>(parse_whole("--lines", text.substr(0, comma), 0, most)),
          static_cast<std::uint32_t>(parse_whole("--lines", text.substr(comma + 1), 1, most))};
}

void run_resample(const Resample& resample) {
  if (resample.method != "nearest" && resample.method != "linear") {
    throw Failure("--method: expected nearest or linear, found " + quoted(resample.method));
  }
  Resampling how;
  how.source_rate = parse_rate("--rate", resample.rate);
  how.picture_rate = parse_rate("--to-rate", resample.to_rate);
  how.linear = resample.method == "linear";
  if (!resample.width.empty()) {
    how.width =
        static_cast<std::uint32_t>(parse_whole("--width", resample.width, 1, std::int64_t{kMaxPixels}));
  }
  if (!resample.lines.empty()) {
    how.lines = parse_lines(resample.lines);
  }
  const Frame frame = read_frame(resample.input);
  write_rearranged(resample.output, frame, resample_lines(frame, how));
}

Command resample_command() {
  const auto resample = std::make_shared<Resample>();
  return {
      "resample", "Stretch or shrink the lines of a frame",
      joined({input_options(resample->input),
              output_options(resample->output, frame_files()),
              {{.name = "--rate",
                .about = "Sampling rate of the frame's lines",
                .text = &resample->rate,
                .required = true},
               {.name = "--to-rate",
                .about = "Sampling rate of the result's lines",
                .text = &resample->to_rate,
                .required = true},
               {.name = "--width",
                .about = "Pixels of a line of the result [by the rates, up to a multiple of 4]",
                .text = &resample->width},
               {.name = "--lines", .about = "TOP,COUNT: these lines alone [all]", .text = &resample->lines},
               {.name = "--method",
                .about = "nearest, or linear, which is made for stretching: it reads no more pixels of a "
                         "line than the result has, and blends the bytes of 16-bit samples one by one",
                .text = &resample->method,
                .words = {"nearest", "linear"}}}}),
      [resample] { run_resample(*resample); }};
}

struct Sis {
  FrameOptions input;
  std::string output = "-";
  std::string position;
  std::string kind = "1";
};

Command sis_command() {
  const auto sis = std::make_shared<Sis>();
  return {"sis", "Copy out the block of bytes that a camera wrote into a frame",
          joined({input_options(sis->input),
                  {{.name = "OUT", .about = "File to write; - is standard output", .text = &sis->output},
                   {.name = "--position",
                    .about = "Line on which the block starts, or, below 0, pixels before the frame's end",
                    .text = &sis->position,
                    .required = true},
                   {.name = "--kind",
                    .about = "1, 12 bytes, or 2, 52 bytes",
                    .text = &sis->kind,
                    .words = {"1", "2"}}}}),
          [sis] {
            const std::int64_t most{kMaxPixels};
            const std::int64_t position = parse_whole("--position", sis->position, -most, most);
            const std::int64_t kind = parse_whole("--kind", sis->kind, 1, 2);
            write_output(sis->output, read_sis(read_frame(sis->input), static_cast<std::int32_t>(position),
                                               static_cast<std::uint32_t>(kind)));
          }};
}

}  // namespace

std::vector<Command> rearrange_commands() {
  return {flip_command(), weave_command(), unpack_command(), resample_command(), sis_command()};
}

}  // namespace qvn::tool
