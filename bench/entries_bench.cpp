// Entries beside memcpy. A row's number is its time divided by that of a memcpy which moves as many bytes
// (read and written), timed in turn with it in the same process: it holds on a machine whose speed drifts.
#include <CLI/CLI.hpp>
#include <barrier>
#include <cstdio>
#include <cstring>
#include <regex>
#include <thread>

#include "entry_rows.h"
#include "measure.h"
#include "report.h"

namespace {

struct Options {
  std::string filter, json;
  std::vector<std::string> sizes, compared;
  double budget = 0.15;
  bool list = false, sweep = false, threads = false;
};

// Rows that stand for their kind in the sweep over sizes and with two threads.
const char* const kRepresentatives =
    "Raw8ToBGR|Raw8ToBGR_3x3|Raw8ToBGR_IntLCAAV|Raw16ToBGR16|Raw16ToBGR16_CC_float|YUV422ToBGR|Y16ToY8";

std::vector<Size> default_sizes(const Options& options) {
  if (!options.sweep) return {{640, 480}, {1920, 1080}, {4096, 3072}};
  std::vector<Size> squares;
  for (const uint32_t power : {64U, 128U, 256U, 512U, 1024U, 2048U, 4096U, 8192U}) {
    squares.push_back({power, power});
    if (power < 8192) squares.push_back({power / 2 * 3, power / 2 * 3});
  }
  return squares;
}

std::vector<Size> sizes_of(const Options& options) {
  std::vector<Size> sizes;
  for (const std::string& text : options.sizes) sizes.push_back(parse_size(text));
  return sizes.empty() ? default_sizes(options) : sizes;
}

// The whole name with --sweep and --threads, else any part of it.
template <class Row>
std::vector<Row> chosen(const std::vector<Row>& rows, const Options& options) {
  const bool few = (options.sweep || options.threads) && options.filter.empty();
  const std::regex wanted(few ? std::string("^(") + kRepresentatives + ")$" : options.filter);
  std::vector<Row> some;
  for (const Row& row : rows) {
    if (std::regex_search(row.name, wanted)) some.push_back(row);
  }
  return some;
}

Json measured(const EntryRow& row, Size size, Frames& frames, double budget) {
  const size_t pixels = size.pixels(), moved = row.read(pixels) + row.written(pixels);
  frames.prepare(row.read(pixels), row.written(pixels), moved / 2);
  const auto times = take_turns({[&] { row.call(frames.dst(), frames.src(), size.width, size.height); },
                                 [&] {
                                   std::memcpy(frames.copy(), frames.noise(), moved / 2);
                                   asm volatile("" : : : "memory");
                                 }},
                                budget);
  const Times &ours = times[0], &copy = times[1];
  const double nanoseconds = 1e9 / static_cast<double>(pixels);
  return {{"name", row.name},
          {"width", size.width},
          {"height", size.height},
          {"bytes_moved", moved},
          {"ns_per_pixel", nanoseconds * ours.median},
          {"best_ns_per_pixel", nanoseconds * ours.best},
          {"bytes_per_second", static_cast<double>(moved) / ours.median},
          {"memcpy_ratio", ours.median / copy.median},
          {"best_memcpy_ratio", ours.best / copy.best},
          {"spread", ours.spread + copy.spread}};
}

Json run_entries(const Options& options) {
  Json results = Json::array();
  const auto rows = chosen(all_rows(), options);
  Frames frames;
  std::printf("%-44s %10s %9s %8s %9s %8s\n", "", "", "ns/pixel", "GB/s", "/memcpy", "best");
  for (const Size size : sizes_of(options)) {
    for (const EntryRow& row : rows) {
      const Json result = measured(row, size, frames, options.budget);
      std::printf("%-44s %10s %9.4f %8.2f %9.2f %8.2f\n", row.name.c_str(), text_of(size).c_str(),
                  result["ns_per_pixel"].get<double>(), result["bytes_per_second"].get<double>() / 1e9,
                  result["memcpy_ratio"].get<double>(), result["best_memcpy_ratio"].get<double>());
      std::fflush(stdout);
      results.push_back(result);
    }
  }
  return results;
}

void run_calls(const Options& options, Json& results) {
  const auto rows = chosen(call_rows(), options);
  if (!rows.empty()) std::printf("%-44s %10s %9s\n", "", "", "ns/call");
  for (const CallRow& row : rows) {
    const Times times = take_turns({row.call}, options.budget / 5)[0];
    std::printf("%-44s %10s %9.1f\n", row.name.c_str(), "", 1e9 * times.median);
    results.push_back({{"name", row.name},
                       {"ns_per_call", 1e9 * times.median},
                       {"best_ns_per_call", 1e9 * times.best},
                       {"spread", times.spread}});
  }
}

// Threads that each convert frames of their own, all starting a turn at the same moment.
class Pair {
 public:
  Pair(const EntryRow& row, Size size, size_t calls) : row_(row), size_(size), calls_(calls) {
    for (Frames& frames : frames_) frames.prepare(row.read(size.pixels()), row.written(size.pixels()), 0);
    other_ = std::thread([this] {
      while (true) {
        gate_.arrive_and_wait();
        if (done_) return;
        convert(frames_[1]);
        gate_.arrive_and_wait();
      }
    });
  }
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;
  ~Pair() {
    done_ = true;
    gate_.arrive_and_wait();
    other_.join();
  }
  void alone() { convert(frames_[0]); }
  void both() {
    gate_.arrive_and_wait();
    convert(frames_[0]);
    gate_.arrive_and_wait();
  }

 private:
  void convert(Frames& frames) {
    for (size_t i = 0; i < calls_; ++i) row_.call(frames.dst(), frames.src(), size_.width, size_.height);
  }
  const EntryRow& row_;
  Size size_;
  size_t calls_;
  Frames frames_[2];
  std::barrier<> gate_{2};
  bool done_ = false;
  std::thread other_;
};

// Frames a second of two threads, as a multiple of those of one.
Json run_threads(const Options& options) {
  constexpr size_t kPixelsATurn = 8'000'000;  // some milliseconds, against which the barriers are nothing
  Json results = Json::array();
  std::printf("%-44s %10s %9s %9s %8s\n", "", "", "one", "each of 2", "speed-up");
  const auto rows = chosen(all_rows(), options);
  for (const Size size : sizes_of(options)) {
    for (const EntryRow& row : rows) {
      const size_t calls = kPixelsATurn / size.pixels() + 1;
      Pair pair(row, size, calls);
      const auto times = take_turns({[&] { pair.alone(); }, [&] { pair.both(); }}, 2 * options.budget);
      const double nanoseconds = 1e9 / static_cast<double>(size.pixels() * calls);
      const double one = nanoseconds * times[0].median, two = nanoseconds * times[1].median;
      std::printf("%-44s %10s %9.4f %9.4f %8.2f\n", row.name.c_str(), text_of(size).c_str(), one, two,
                  2 * one / two);
      results.push_back({{"name", row.name},
                         {"width", size.width},
                         {"height", size.height},
                         {"one_ns_per_pixel", one},
                         {"two_ns_per_pixel", two},
                         {"ratio", two / one},
                         {"speed_up", 2 * one / two},
                         {"best_speed_up", 2 * times[0].best / times[1].best},
                         {"spread", times[0].spread + times[1].spread}});
    }
  }
  return results;
}

void list(const Options& options) {
  for (const EntryRow& row : chosen(all_rows(), options)) std::printf("%s\n", row.name.c_str());
  for (const CallRow& row : chosen(call_rows(), options)) std::printf("%s\n", row.name.c_str());
}

int run(const Options& options) {
  if (!options.compared.empty()) {
    compare(read_report(options.compared[0]), read_report(options.compared[1]));
    return 0;
  }
  if (options.list) {
    list(options);
    return 0;
  }
  const std::string kind = options.sweep ? "sweep" : options.threads ? "threads" : "entries";
  Json results = options.threads ? run_threads(options) : run_entries(options);
  if (kind == "entries" && options.sizes.empty()) run_calls(options, results);
  if (results.empty()) throw std::runtime_error("no row has a name with " + options.filter);
  if (!options.json.empty()) write_report(options.json, context(kind), results);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Every entry beside memcpy of the same number of bytes, timed in turn in one process.");
  app.add_option("--filter", options.filter, "rows whose name holds this regular expression");
  app.add_option("--sizes", options.sizes, "frame sizes, as 640x480,1920x1080")->delimiter(',');
  app.add_option("--time", options.budget, "seconds for a row and size, at least five rounds")
      ->capture_default_str();
  app.add_option("--json", options.json, "also write the rows to this file");
  app.add_option("--compare", options.compared,
                 "OLD.json NEW.json: print what changed beyond noise, run nothing")
      ->expected(2);
  app.add_flag("--list", options.list, "print the rows' names, run nothing");
  auto* sweep = app.add_flag("--sweep", options.sweep, "a few rows over squares from 64x64 to 8192x8192");
  app.add_flag("--threads", options.threads, "a few rows with two threads on frames of their own, beside one")
      ->excludes(sweep);
  CLI11_PARSE(app, argc, argv);
  try {
    return run(options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "entries_bench: %s\n", error.what());
    return 2;
  }
}
