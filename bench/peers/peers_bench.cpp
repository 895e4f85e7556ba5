// Our entries beside other libraries' conversions of the same kind, in one process and in turn, one thread
// each, the same input. The peers' pixels are not ours, since their formulas differ: this compares the work,
// not the bytes.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <regex>

#include "entry_rows.h"
#include "measure.h"
#include "peers/peers.h"
#include "report.h"

namespace {

std::vector<Peer> all_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  add_opencv(peers);
#endif
#if QVN_PEER_LIBYUV
  add_libyuv(peers);
#endif
#if QVN_PEER_SWSCALE
  add_swscale(peers);
#endif
#if QVN_PEER_DC1394
  add_dc1394(peers);
#endif
  const auto rows = all_rows();
  for (const Peer& peer : peers) {
    const bool known =
        std::any_of(rows.begin(), rows.end(), [&](const EntryRow& row) { return row.name == peer.row; });
    if (!known) throw std::logic_error(peer.name + " stands beside no row of ours: " + peer.row);
  }
  return peers;
}

Json measured(const EntryRow& row, const std::vector<const Peer*>& peers, Size size, Frames& frames,
              double budget) {
  const size_t pixels = size.pixels(), moved = row.read(pixels) + row.written(pixels);
  // A peer may want or make a byte a pixel more than ours.
  frames.prepare(row.read(pixels) + pixels, row.written(pixels) + pixels, moved / 2);
  std::vector<Work> works = {[&] { row.call(frames.dst(), frames.src(), size.width, size.height); },
                             [&] {
                               std::memcpy(frames.copy(), frames.noise(), moved / 2);
                               asm volatile("" : : : "memory");
                             }};
  for (const Peer* peer : peers) {
    works.push_back([&, peer] { peer->conversion(frames.dst(), frames.src(), size.width, size.height); });
  }
  const auto times = take_turns(works, budget * static_cast<double>(works.size()) / 2);
  const double nanoseconds = 1e9 / static_cast<double>(pixels);
  Json others = Json::array();
  size_t fastest = 2;
  double best = times[2].best;
  for (size_t i = 2; i < times.size(); ++i) {
    if (times[i].median < times[fastest].median) fastest = i;
    best = std::min(best, times[i].best);
    others.push_back({{"name", peers[i - 2]->name}, {"ns_per_pixel", nanoseconds * times[i].median}});
  }
  return {{"name", row.name},
          {"width", size.width},
          {"height", size.height},
          {"ns_per_pixel", nanoseconds * times[0].median},
          {"memcpy_ns_per_pixel", nanoseconds * times[1].median},
          {"peers", others},
          {"fastest", peers[fastest - 2]->name},
          {"ratio", times[0].median / times[fastest].median},
          {"best_ratio", times[0].best / best},
          {"spread", times[0].spread + times[fastest].spread}};
}

void print(const Json& row, Size size) {
  std::printf("%-34s %10s %9.4f %8.2f %8.2f ", row["name"].get<std::string>().c_str(), text_of(size).c_str(),
              row["ns_per_pixel"].get<double>(), row["ratio"].get<double>(), row["best_ratio"].get<double>());
  for (const Json& peer : row["peers"]) {
    std::printf(" %s %.4f", peer["name"].get<std::string>().c_str(), peer["ns_per_pixel"].get<double>());
  }
  std::printf("\n");
  std::fflush(stdout);
}

int run(const std::string& filter, const std::vector<Size>& sizes, double budget, const std::string& json) {
  const std::vector<Peer> peers = all_peers();
  const std::regex wanted(filter);
  Json results = Json::array();
  Frames frames;
  std::printf("%-34s %10s %9s %8s %8s  peers, ns/pixel\n", "", "", "ns/pixel", "/fastest", "best");
  for (const Size size : sizes) {
    for (const EntryRow& row : all_rows()) {
      std::vector<const Peer*> beside;
      for (const Peer& peer : peers) {
        if (peer.row == row.name) beside.push_back(&peer);
      }
      if (beside.empty() || !std::regex_search(row.name, wanted)) continue;
      results.push_back(measured(row, beside, size, frames, budget));
      print(results.back(), size);
    }
  }
  if (!json.empty()) write_report(json, context("peers"), results);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::string filter, json;
  std::vector<std::string> sizes = {"640x480", "1920x1080", "4096x3072"};
  double budget = 0.15;
  CLI::App app(
      "Our entries beside other libraries' conversions of the same kind, one thread each. Their formulas "
      "differ from ours: the work is compared, not the bytes.");
  app.add_option("--filter", filter, "rows whose name holds this regular expression");
  app.add_option("--sizes", sizes, "frame sizes")->delimiter(',')->capture_default_str();
  app.add_option("--time", budget, "seconds for two conversions of a row and size")->capture_default_str();
  app.add_option("--json", json, "also write the rows to this file");
  CLI11_PARSE(app, argc, argv);
  try {
    std::vector<Size> parsed;
    for (const std::string& text : sizes) parsed.push_back(parse_size(text));
    return run(filter, parsed, budget, json);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "peers_bench: %s\n", error.what());
    return 2;
  }
}
