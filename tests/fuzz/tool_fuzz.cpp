/// Fuzzing of the tool: its command line, and its readers of headerless, PGM and PPM files, of tables and of
/// recipes. One input is one command with one file. Whatever it is, the command ends with success or with one
/// sentence and exit status 2; anything else ends the program.
///
/// The process runs in a folder of its own. Words that are not the tool's own have no slash, so that nothing
/// outside of it is touched, and numbers of two digits at most, so that nothing takes long; the larger ones
/// that matter are drawn as they stand.
#include <fuzzer/FuzzedDataProvider.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "process.h"

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

/// Names for the file: some tell its form or its size.
const Words kFiles = {
    "frame.raw", "frame.pgm", "frame.ppm", "frame_8x6.raw", "frame_12x4_bggr.bin", "frame_raw8",
    "8x8",       "table",     "-"};
const Words kOutputs = {"out.png", "out.ppm", "out.pgm", "out.tiff", "out.raw", "out", "-", "folder", "."};
const Words kValues = {"8x6",
                       "12x4",
                       "16x2",
                       "7x3",
                       "0x8",
                       "99999x99999",
                       "16384x16385",
                       "4294967296x1",
                       "99999999999999999999x2",
                       "-8x6",
                       "8x",
                       "0",
                       "1",
                       "-1",
                       "16",
                       "4294967296",
                       "nan",
                       "inf",
                       "1e400",
                       "0.45",
                       "1,2,3",
                       "1,0,0,0,1,0,0,0,1",
                       "auto",
                       "rggb",
                       "gbrg",
                       "BayerGB10p",
                       "SRGGB12P",
                       "YUYV",
                       "3,2",
                       "",
                       ":",
                       "@table",
                       "table",
                       "low",
                       "high",
                       "12",
                       "raw8",
                       "0x88000002"};

/// A folder that goes with the process.
class Folder {
 public:
  Folder() {
    std::string name = (fs::temp_directory_path() / "qvn-fuzz-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
    fs::current_path(path_);
    fs::create_directory("folder");
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  void clear() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
      if (entry.path().filename() != "folder") fs::remove_all(entry.path());
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(path_ / "folder"))
      fs::remove_all(entry.path());
  }

 private:
  fs::path path_;
};

std::string tamed(const std::string& text) {
  std::string word;
  int digits = 0;
  for (const char letter : text) {
    if (letter == '\0' || letter == '/') continue;
    digits = std::isdigit(static_cast<unsigned char>(letter)) != 0 ? digits + 1 : 0;
    if (digits <= 2) word += letter;
  }
  return word;
}

const std::string& one_of(const Words& words, FuzzedDataProvider& input) {
  return words[input.ConsumeIntegralInRange<std::size_t>(0, words.size() - 1)];
}

std::string value(const qvn::tool::Option& option, FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
      return tamed(input.ConsumeRandomLengthString(24));
    case 1:
      return one_of(kValues, input);
    default:
      return option.words.empty() ? one_of(kValues, input) : one_of(option.words, input);
  }
}

/// "--size" of "-o,--output".
std::string long_name(const std::string& name) { return name.substr(name.rfind(',') + 1); }

Words draw_command(const qvn::tool::CommandLine& line, const std::string& file, FuzzedDataProvider& input) {
  const auto& command = line.commands[input.ConsumeIntegralInRange<std::size_t>(0, line.commands.size() - 1)];
  Words words = {"qvn", command.name};
  bool first = true;
  for (const qvn::tool::Option& option : command.options) {
    if (option.name.front() != '-') {
      words.push_back(first ? file : one_of(kOutputs, input));
      first = false;
    } else if (input.ConsumeIntegralInRange(0, 3) == 0) {
      words.push_back(long_name(option.name));
      if (option.flag == nullptr) words.push_back(value(option, input));
    }
  }
  if (command.name == "convert") words.push_back(one_of(kOutputs, input));
  // Now and then something that nobody expects there.
  if (input.ConsumeIntegralInRange(0, 7) == 0) words.push_back(tamed(input.ConsumeRandomLengthString(24)));
  return words;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qvn::tool::prepare_process();
  if (std::freopen("/dev/null", "rb", stdin) == nullptr) std::abort();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  FuzzedDataProvider input(data, size);
  const std::string file = one_of(kFiles, input);
  Words words = draw_command(qvn::tool::all_commands(), file, input);
  const std::vector<char> contents = input.ConsumeRemainingBytes<char>();
  folder.clear();
  if (file != "-") {
    std::ofstream(file, std::ios::binary)
        .write(contents.data(), static_cast<std::streamsize>(contents.size()));
  }

  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const int status = qvn::tool::run_command_line(static_cast<int>(words.size()), arguments.data());
  if (status == qvn::tool::kDone || status == qvn::tool::kFailed) return 0;
  std::fprintf(stderr, "exit status %d of", status);
  for (const std::string& word : words) std::fprintf(stderr, " '%s'", word.c_str());
  std::fprintf(stderr, "\n");
  std::abort();
}
