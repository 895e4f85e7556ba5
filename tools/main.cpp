// The command-line tool: its subcommands and options.
//
// Exit status 0 means that the output is whole. Anything else ends with status 2, one sentence on standard
// error, and no output file.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <iostream>
#include <new>

#include "about.h"
#include "conversions.h"
#include "failure.h"
#include "files.h"
#include "formats.h"
#include "frame_file.h"
#include "scene.h"
#include "sheet.h"

namespace qvn::tool {
namespace {

constexpr int kFailed = 2;

struct OutputOptions {
  std::string path;
  std::string file_format;
};

struct ChartOptions {
  std::string format = "raw8";
  std::string size;
  std::string pattern = "rggb";
  std::string bits;
  std::string align;
  std::string scene;
  std::string seed = "1";
  double noise = 1.5;
};

struct ConvertOptions {
  std::string method;
  std::string target;
};

/// By hand, since the parser takes -1 and numbers that are too large for whatever comes out.
std::uint64_t parse_seed(const std::string& text) {
  std::uint64_t seed = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, seed);
  if (parsed.ec != std::errc{} || parsed.ptr != end) {
    throw Failure("--seed: expected a whole number below 2^64, found " + quoted(text));
  }
  return seed;
}

void add_output(CLI::App& command, OutputOptions& output, const std::string& formats) {
  command.add_option("OUT", output.path, "File to write; - is standard output")->required();
  command.add_option("--out-format", output.file_format, formats + ", if OUT's suffix does not say so");
}

/// The options that say how a frame's samples lie, for reading one and for making one.
void add_samples(CLI::App& command, std::string& pattern, std::string& bits, std::string& align) {
  command.add_option("--pattern", pattern, "Bayer order: rggb, grbg, gbrg or bggr")->capture_default_str();
  command.add_option("--bits", bits, "Bits that count in a sample of y16be or y16le, 8 to 16 [16]");
  command.add_option("--align", align, "Where they lie: lsb, from bit 0, or msb, up to bit 15 [lsb]");
}

void add_input(CLI::App& command, FrameOptions& input) {
  command.add_option("IN", input.path, "Headerless frame, PGM or PPM to read; - is standard input")
      ->required();
  command.add_option("--from", input.format, "Source format, see qvn formats; a PGM or PPM may go without");
  command.add_option("--size", input.size, "WIDTHxHEIGHT; a PGM or PPM brings its own");
  add_samples(command, input.pattern, input.bits, input.align);
}

void add_chart(CLI::App& app, ChartOptions& chart, OutputOptions& output) {
  CLI::App& command = *app.add_subcommand("chart", "Make a test frame as a camera would send it");
  add_output(command, output, "raw, pgm, ppm or png");
  command.add_option("--format", chart.format, "Source format to make, see qvn formats")
      ->capture_default_str();
  command.add_option("--size", chart.size, "WIDTHxHEIGHT [768x512, or the scene's size]");
  add_samples(command, chart.pattern, chart.bits, chart.align);
  command.add_option("--seed", chart.seed, "Seed of the noise")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  command.add_option("--noise", chart.noise, "Noise of white, in steps of 1/255; 0 is none")
      ->capture_default_str();
  command.add_option("--scene", chart.scene, "PPM to look at instead of the built-in scene");
  command.callback([&] {
    const SourceFormat& format = find_format(chart.format);
    const Pattern& pattern = find_pattern(chart.pattern);
    const SampleForm form = parse_form(format, chart.bits, chart.align);
    if (!std::isfinite(chart.noise) || chart.noise < 0 || chart.noise > 255) {
      throw Failure("--noise: expected 0 to 255, found " + std::to_string(chart.noise));
    }
    const std::uint64_t seed = parse_seed(chart.seed);
    const Size wanted = chart.size.empty() ? Size{768, 512} : parse_size(chart.size);
    SceneImage scene = chart.scene.empty() ? draw_scene(wanted) : read_scene(chart.scene);
    if (!chart.size.empty() && scene.size != wanted) {
      throw Failure("--scene: expected " + to_text(wanted) + " as --size says, found " + to_text(scene.size));
    }
    static_cast<void>(frame_bytes(format, scene.size));
    if (chart.noise > 0) {
      add_noise(scene, seed, chart.noise);
    }
    write_frame(output.path, output.file_format,
                {&format, scene.size, &pattern, form, format.sample(scene, pattern, form)});
  });
}

void add_convert(CLI::App& app, FrameOptions& input, ConvertOptions& how, OutputOptions& output) {
  CLI::App& command = *app.add_subcommand("convert", "Convert a frame to a picture");
  add_input(command, input);
  add_output(command, output, "png, ppm or pgm");
  command.add_option("--method", how.method, "Method, see qvn formats [the format's first]");
  command.add_option("--to", how.target, "Target, see qvn formats [the method's first]");
  command.callback([&] {
    const Frame frame = read_frame(input);
    const Conversion& conversion = find_conversion(*frame.format, how.method, how.target);
    const Target& target = find_target(conversion.target);
    check_picture_name(output.path, output.file_format, target.channels, target.planes);
    const std::vector<Picture> pictures = convert(frame, conversion);
    if (target.planes.empty()) {
      write_picture(output.path, output.file_format, pictures.front());
    } else {
      write_pictures(output.path, output.file_format, pictures, target.planes);
    }
  });
}

void add_sheet(CLI::App& app, FrameOptions& input, SheetOptions& sheet, OutputOptions& output) {
  CLI::App& command =
      *app.add_subcommand("sheet", "Show a frame by every method, labelled, with enlarged crops");
  add_input(command, input);
  add_output(command, output, "png or ppm");
  command.add_option("--crop", sheet.crop, "X,Y of the enlarged part's middle [where most happens]");
  command.add_option("--zoom", sheet.zoom, "How many times it is enlarged")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  command.callback([&] {
    check_picture_name(output.path, output.file_format, 3);
    write_picture(output.path, output.file_format, make_sheet(read_frame(input), sheet));
  });
}

void add_formats(CLI::App& app) {
  app.add_subcommand("formats", "List what can be read, by which methods, and what can be written")
      ->callback([] {
        const std::string text = list_formats();
        write_output("-", {text.begin(), text.end()});
      });
}

int report(std::string sentence) {
  std::replace(sentence.begin(), sentence.end(), '\n', ' ');
  std::cerr << "qvn: " << sentence << '\n';
  return kFailed;
}

/// A word that is no subcommand is named; the parser would only say that one is missing.
std::string parse_trouble(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  if (!app.get_subcommands().empty()) {
    return error.what();
  }
  std::vector<std::string> names;
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    names.push_back(command->get_name());
  }
  return "expected a subcommand, " + one_of(names) + ", found " + (argc > 1 ? quoted(argv[1]) : "none");
}

int run(int argc, char** argv) {
  CLI::App app("Convert frames of industrial cameras to pictures, byte for byte as the Quorvane library does",
               "qvn");
  app.set_version_flag("--version", [] { return describe_version(); });
  app.require_subcommand(1);
  FrameOptions input;
  OutputOptions output;
  ChartOptions chart;
  ConvertOptions how;
  SheetOptions sheet;
  add_chart(app, chart, output);
  add_convert(app, input, how, output);
  add_sheet(app, input, sheet, output);
  add_formats(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      if (!std::cout.flush()) {
        throw Failure("cannot write standard output");
      }
      return 0;
    }
    return report(parse_trouble(app, error, argc, argv) + " (see qvn --help)");
  }
  return 0;
}

}  // namespace
}  // namespace qvn::tool

int main(int argc, char** argv) {
  try {
    return qvn::tool::run(argc, argv);
  } catch (const std::bad_alloc&) {
    return qvn::tool::report("not enough memory for this frame");
  } catch (const std::exception& error) {
    return qvn::tool::report(error.what());
  }
}
