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
#include "options.h"
#include "rearrange_commands.h"
#include "scene.h"
#include "sheet.h"

namespace qvn::tool {
namespace {

constexpr int kFailed = 2;

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
  PictureOptions picture;
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
                {&format, scene.size, &pattern, form, false, format.sample(scene, pattern, form)});
  });
}

/// An option that must not be empty: further on an empty text stands for one that is not given.
void add_text(CLI::App& app, const std::string& name, std::string& text, const std::string& description) {
  app.add_option(name, text, description)->check([](const std::string& told) -> std::string {
    return told.empty() ? "expected a value, found none" : "";
  });
}

void add_corrections(CLI::App& command, PictureOptions& picture) {
  add_text(command, "--shift", picture.shift, "Low bits that raw16be to bgr16 or y16 drops, 0 to 16 [0]");
  CLI::Option_group& library = *command.add_option_group(
      "Correction by the library",
      "Method 2x2 of raw8, raw12packed and raw16be; what it does is kept as it is. raw16be to bgr16 corrects "
      "one colour of every second pixel twice, to y16 with a shift it leaves two of them as they are");
  add_text(library, "--matrix", picture.correction.matrix,
           "a,b,...,i in floating point: rows make red, green and blue of red, green and blue. No clamp: "
           "what is brighter than white or darker than black wraps");
  add_text(library, "--matrix-fixed", picture.correction.matrix_fixed,
           "The same with 10 fraction bits. raw8: only levels 0 to 31 come out. raw12packed to bgr: wraps "
           "at 256. The others stop at 0 and 65535");
  add_text(library, "--gamma", picture.correction.gamma,
           "Exponent of a power law over the sample's range; with --matrix, before it");
  add_text(library, "--table", picture.correction.table,
           "File of whole numbers with white space between, one for each level: 256, 4096 or 65536");
  CLI::Option_group& tool =
      *command.add_option_group("Correction by the tool",
                                "Rounds, and stops at black and white. In this order: --black and --wb on "
                                "the frame, the conversion with the library's correction, --matrix-clamped "
                                "and --stretch on the picture");
  add_text(tool, "--black", picture.black, "Level to subtract from every sample of a mosaic");
  add_text(tool, "--wb", picture.white_balance,
           "Gains r,g,b for a mosaic's samples, or auto: all three colours as bright as the brightest");
  add_text(tool, "--matrix-clamped", picture.matrix_clamped,
           "a,b,...,i, as --matrix, on the finished picture");
  tool.add_flag(
      "--stretch", picture.stretch,
      "Spread 12 bits, or what --shift leaves, over the 16 of the picture; else it is as dark as it is");
}

void add_convert(CLI::App& app, FrameOptions& input, ConvertOptions& how, OutputOptions& output) {
  CLI::App& command = *app.add_subcommand("convert", "Convert a frame to a picture");
  add_input(command, input);
  add_output(command, output, "png, ppm, pgm, or raw for the library's own bytes");
  command.add_option("--method", how.method, "Method, see qvn formats [the format's first]");
  command.add_option("--to", how.target, "Target, see qvn formats [the method's first]");
  add_corrections(command, how.picture);
  command.callback([&] {
    const Frame frame = read_frame(input);
    const Conversion& conversion = find_conversion(*frame.format, how.method, how.target);
    const Target& target = find_target(conversion.target);
    const bool raw = wants_raw_bytes(output.path, output.file_format);
    if (!raw) {
      check_picture_name(output.path, output.file_format, target.channels, target.planes);
    }
    const Converted converted = run_conversion(frame, conversion, how.picture);
    if (raw) {
      if (how.picture.stretch || !how.picture.matrix_clamped.empty()) {
        throw Failure(
            "expected a picture for --stretch or --matrix-clamped, found the library's own bytes as output");
      }
      write_output(output.path, converted.bytes);
    } else {
      const std::vector<Picture> pictures = make_pictures(converted, frame.size, conversion, how.picture);
      if (target.planes.empty()) {
        write_picture(output.path, output.file_format, pictures.front());
      } else {
        write_pictures(output.path, output.file_format, pictures, target.planes);
      }
    }
    if (!converted.note.empty()) {
      std::cerr << "qvn: " << converted.note << '\n';
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
  add_rearrange_commands(app);
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
