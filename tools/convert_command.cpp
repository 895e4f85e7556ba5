// The subcommand `convert`: one frame, a batch of files, or a stream of frames.
#include <chrono>
#include <filesystem>
#include <memory>
#include <system_error>
#include <thread>

#include "batch.h"
#include "camera_names.h"
#include "converter.h"
#include "failure.h"
#include "frame_file.h"
#include "numbers.h"
#include "options.h"
#include "process.h"

namespace qvn::tool {
namespace {

constexpr const char* kByLibrary = "Correction by the library";
constexpr const char* kByTool = "Correction by the tool";
constexpr const char* kMany = "Many frames, many threads";

struct Convert {
  ConvertOptions how;
  std::vector<std::string> files;
  std::string folder;
  std::string jobs;
  std::string recipe;
  bool show_recipe = false;
  bool stream = false;
  bool again = false;
};

void tell(const Convert& convert, const Product& product) {
  if (!product.note.empty()) {
    say(product.note);
  }
  if (convert.show_recipe) {
    say("--recipe " + product.recipe);
  }
}

FrameReader open_frame(const Convert& convert, const std::string& path) {
  FrameOptions options = convert.how.frame;
  options.path = path;
  options.many = convert.stream;
  FrameReader reader(options);
  if (!reader.guess().empty()) {
    say(reader.guess());
  }
  return reader;
}

void convert_one(const Convert& convert, const std::string& input, const std::string& output) {
  FrameReader reader = open_frame(convert, input);
  const Frame frame = reader.next();
  reader.expect_end();
  const Product product = make_product(convert.how, reader, frame, output);
  write_outputs(product.files);
  tell(convert, product);
}

void convert_batch(const Convert& convert) {
  const std::string& format = convert.how.file_format;
  const std::string suffix = format.empty() ? "png" : format;
  static_cast<void>(wants_raw_bytes("a." + suffix, format));
  const std::vector<BatchItem> items =
      plan_batch(convert.files, convert.folder, suffix,
                 [&](const std::string& path) { return product_names(convert.how, path); });
  const unsigned int processors = std::max(std::thread::hardware_concurrency(), 1U);
  constexpr std::int64_t kMostJobs = 1024;
  const auto jobs = convert.jobs.empty()
                        ? processors
                        : static_cast<unsigned int>(parse_whole("--jobs", convert.jobs, 1, kMostJobs));
  std::error_code code;
  std::filesystem::create_directories(convert.folder, code);
  if (code || !std::filesystem::is_directory(convert.folder, code)) {
    throw Failure("cannot make the folder " + tool::quoted(convert.folder) + ": " +
                  (code ? code.message() : "Not a directory"));
  }
  run_batch(items, jobs, convert.again,
            [&](const BatchItem& item) { convert_one(convert, item.input, item.output); });
}

/// Frame after frame as they come; each is written before the next is read.
void convert_stream(const Convert& convert, const std::string& input, const std::string& output) {
  const bool raw = wants_raw_bytes(output, convert.how.file_format);
  const std::string form = convert.how.file_format.empty() ? suffix_of(output) : convert.how.file_format;
  if (!raw && form != "ppm" && form != "pgm") {
    throw Failure("--stream: expected raw, ppm or pgm, which may follow each other in a file, found " +
                  tool::quoted(form));
  }
  const auto start = std::chrono::steady_clock::now();
  FrameReader reader = open_frame(convert, input);
  OutputStream stream(output);
  std::size_t count = 0;
  for (; !reader.at_end(); ++count) {
    const Frame frame = reader.next();
    const Product product = make_product(convert.how, reader, frame, output);
    if (product.files.size() != 1) {
      throw Failure("--stream: expected one picture a frame, found " + std::to_string(product.files.size()));
    }
    stream.write(product.files.front().bytes);
    if (count == 0) {
      tell(convert, product);
    }
  }
  if (count == 0) {
    throw Failure((input == "-" ? "standard input" : tool::quoted(input)) + ": expected a frame, found none");
  }
  stream.finish();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  say(std::to_string(count) + " frames, " + rate_text(count, seconds.count()) + " a second");
}

void run(Convert& convert) {
  if (!convert.recipe.empty()) {
    read_recipe(convert.recipe, ingredients_of(convert.how));
  }
  resolve_camera_name(convert.how.frame);
  check_convert_options(convert.how);
  if (convert.files.empty()) {
    throw Failure("IN is required (see qvn convert --help)");
  }
  if (!convert.folder.empty()) {
    if (convert.stream) {
      throw Failure("expected --stream or --output, found both");
    }
    convert_batch(convert);
    return;
  }
  if (!convert.jobs.empty() || convert.again) {
    throw Failure(std::string(convert.again ? "--again" : "--jobs") +
                  " is for many files: expected --output with a folder, found none");
  }
  if (convert.files.size() != 2) {
    throw Failure(convert.files.size() == 1
                      ? "OUT is required (see qvn convert --help)"
                      : "expected IN and OUT, or --output with a folder for many files, found " +
                            tool::quoted(convert.files[2]) + " too");
  }
  (convert.stream ? convert_stream : convert_one)(convert, convert.files[0], convert.files[1]);
}

std::vector<Option> correction_options(PictureOptions& picture) {
  CorrectionOptions& correction = picture.correction;
  return {
      {.name = "--shift",
       .about = "Low bits that raw16be to bgr16 or y16 drops, 0 to 16 [0]",
       .text = &picture.shift},
      {.name = "--matrix",
       .about =
           "a,b,...,i in floating point: rows make red, green and blue of red, green and blue. No clamp: "
           "what is brighter than white or darker than black wraps",
       .text = &correction.matrix,
       .group = kByLibrary},
      {.name = "--matrix-fixed",
       .about =
           "The same with 10 fraction bits. raw8: only levels 0 to 31 come out. raw12packed to bgr: wraps "
           "at 256. The others stop at 0 and 65535",
       .text = &correction.matrix_fixed,
       .group = kByLibrary},
      {.name = "--gamma",
       .about = "Exponent of a power law over the sample's range; with --matrix, before it",
       .text = &correction.gamma,
       .group = kByLibrary},
      {.name = "--table",
       .about = "File of whole numbers with white space between, one for each level: 256, 4096 or 65536",
       .text = &correction.table,
       .group = kByLibrary},
      {.name = "--black",
       .about = "Level to subtract from every sample of a mosaic",
       .text = &picture.black,
       .group = kByTool},
      {.name = "--wb",
       .about = "Gains r,g,b for a mosaic's samples, or auto: all three colours as bright as the brightest",
       .text = &picture.white_balance,
       .words = {"auto"},
       .group = kByTool},
      {.name = "--matrix-clamped",
       .about = "a,b,...,i, as --matrix, on the finished picture",
       .text = &picture.matrix_clamped,
       .group = kByTool},
      {.name = "--stretch",
       .about =
           "Spread 12 bits, or what --shift leaves, over the 16 of the picture; else it is as dark as it is",
       .flag = &picture.stretch,
       .group = kByTool},
      {.name = "--edges",
       .about = "fill: pixels that the function leaves black, copied or untouched take the nearest computed "
                "one [keep]",
       .text = &picture.edges,
       .words = {"keep", "fill"},
       .group = kByTool},
  };
}

std::vector<Option> many_options(Convert& convert) {
  return {
      {.name = "-o,--output",
       .about = "Folder for the pictures of any number of INs; those that are there and no older than their "
                "frames are left alone",
       .text = &convert.folder,
       .group = kMany},
      {.name = "-j,--jobs",
       .about = "Frames at a time [the number of processors]",
       .text = &convert.jobs,
       .words = {"1", "2", "4", "8"},
       .group = kMany},
      {.name = "--threads",
       .about = "Bands that a frame is cut into, each with a thread of its own; the picture is the same [1]",
       .text = &convert.how.picture.threads,
       .words = {"1", "2", "4", "8"},
       .group = kMany},
      {.name = "--again", .about = "Make them all", .flag = &convert.again, .group = kMany},
      {.name = "--stream",
       .about = "IN holds frames one behind the other, as a pipe does, and OUT will: raw, ppm or pgm",
       .flag = &convert.stream,
       .group = kMany},
  };
}

std::vector<std::string> method_names() {
  std::vector<std::string> names;
  for (const Conversion& conversion : conversions()) {
    if (std::find(names.begin(), names.end(), conversion.method) == names.end()) {
      names.emplace_back(conversion.method);
    }
  }
  return names;
}

std::vector<std::string> target_names() {
  std::vector<std::string> names;
  for (const Target& target : targets()) {
    names.emplace_back(target.name);
  }
  return names;
}

}  // namespace

std::vector<Group> correction_groups() {
  return {
      {kByLibrary,
       "Method 2x2 of raw8, raw12packed and raw16be; what it does is kept as it is. raw16be to bgr16 "
       "corrects one colour of every second pixel twice, to y16 with a shift it leaves two of them as they "
       "are"},
      {kByTool,
       "Rounds, and stops at black and white. In this order: --black and --wb on the frame, the conversion "
       "with the library's correction, --edges, then --matrix-clamped and --stretch on the picture"},
      {kMany, "A frame that fails stops no other one"}};
}

Command convert_command() {
  const auto convert = std::make_shared<Convert>();
  ConvertOptions& how = convert->how;
  return {
      "convert", "Convert a frame to a picture, or many",
      joined({{{.name = "FILES",
                .about = "IN OUT: headerless frame, PGM or PPM to read and file to write, - is standard "
                         "input or output; or any number of INs with --output",
                .texts = &convert->files}},
              frame_options(how.frame),
              {out_format_option(how.file_format, {"png", "tiff", "ppm", "pgm", "raw"}),
               {.name = "--method",
                .about = "Method, see qvn formats [the format's first]",
                .text = &how.method,
                .words = method_names()},
               {.name = "--to",
                .about = "Target, see qvn formats [the method's first]",
                .text = &how.target,
                .words = target_names()},
               {.name = "--recipe",
                .about = "What another picture was made by, as --show-recipe printed it; options beside it "
                         "go before it",
                .text = &convert->recipe},
               {.name = "--show-recipe",
                .about = "Print the recipe of the picture on standard error",
                .flag = &convert->show_recipe}},
              correction_options(how.picture),
              many_options(*convert)}),
      [convert] { run(*convert); }};
}

}  // namespace qvn::tool
