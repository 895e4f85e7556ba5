// The subcommand `chart`.
#include <charconv>
#include <cmath>
#include <memory>

#include "camera_names.h"
#include "failure.h"
#include "formats.h"
#include "frame_file.h"
#include "options.h"
#include "scene.h"

namespace qvn::tool {
namespace {

struct Chart {
  FrameOptions frame;
  OutputOptions output;
  std::string scene;
  std::string seed = "1";
  std::string noise = "1.5";
};

std::uint64_t parse_seed(const std::string& text) {
  std::uint64_t seed = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, seed);
  if (parsed.ec != std::errc{} || parsed.ptr != end) {
    throw Failure("--seed: expected a whole number below 2^64, found " + quoted(text));
  }
  return seed;
}

double parse_noise(const std::string& text) {
  double noise = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, noise);
  if (parsed.ec != std::errc{} || parsed.ptr != end || !(noise >= 0 && noise <= 255)) {
    throw Failure("--noise: expected 0 to 255, found " + quoted(text));
  }
  return noise;
}

void run(Chart& chart) {
  resolve_camera_name(chart.frame);
  const SourceFormat& format = find_format(chart.frame.format);
  const Pattern& pattern = find_pattern(chart.frame.pattern);
  const SampleForm form = parse_form(format, chart.frame.bits, chart.frame.align);
  const double noise = parse_noise(chart.noise);
  const std::uint64_t seed = parse_seed(chart.seed);
  const Size wanted = chart.frame.size.empty() ? Size{768, 512} : parse_size(chart.frame.size);
  SceneImage scene = chart.scene.empty() ? draw_scene(wanted) : read_scene(chart.scene);
  if (!chart.frame.size.empty() && scene.size != wanted) {
    throw Failure("--scene: expected " + to_text(wanted) + " as --size says, found " + to_text(scene.size));
  }
  static_cast<void>(frame_bytes(format, scene.size));
  if (noise > 0) {
    add_noise(scene, seed, noise);
  }
  write_frame(chart.output.path, chart.output.file_format,
              {&format, scene.size, &pattern, form, false, format.sample(scene, pattern, form)});
}

}  // namespace

Command chart_command() {
  const auto chart = std::make_shared<Chart>();
  chart->frame.format = "raw8";
  return {"chart", "Make a test frame as a camera would send it",
          joined({output_options(chart->output, {"raw", "pgm", "ppm", "png", "tiff"}),
                  {{.name = "--format",
                    .about = "Source format to make or a camera's name of one, see qvn formats",
                    .text = &chart->frame.format,
                    .words = format_names()},
                   {.name = "--size",
                    .about = "WIDTHxHEIGHT [768x512, or the scene's size]",
                    .text = &chart->frame.size,
                    .words = {"768x512", "1280x960"}}},
                  sample_options(chart->frame),
                  {{.name = "--seed", .about = "Seed of the noise", .text = &chart->seed},
                   {.name = "--noise",
                    .about = "Noise of white, in steps of 1/255; 0 is none",
                    .text = &chart->noise},
                   {.name = "--scene",
                    .about = "PPM to look at instead of the built-in scene",
                    .text = &chart->scene}}}),
          [chart] { run(*chart); }};
}

}  // namespace qvn::tool
