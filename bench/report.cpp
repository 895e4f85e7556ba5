#include "report.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <map>
#include <stdexcept>

#include "build_info.h"
#include "measure.h"
#include "quorvane/quorvane.h"

namespace {

std::string processor() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    const size_t colon = line.find(": ");
    if (line.rfind("model name", 0) == 0 && colon != std::string::npos) return line.substr(colon + 2);
  }
  return "unknown";
}

// The loader's choice shows in the path: .../glibc-hwcaps/LEVEL/libquorvane.so.2.
std::string level() {
  Dl_info info{};
  void* const symbol = dlsym(RTLD_DEFAULT, "QVN_GetVersion");
  if (symbol == nullptr || dladdr(symbol, &info) == 0 || info.dli_fname == nullptr) return "unknown";
  const std::string path = info.dli_fname, folder = "/glibc-hwcaps/";
  const size_t at = path.rfind(folder);
  if (at == std::string::npos) return "baseline";
  const size_t start = at + folder.size();
  return path.substr(start, path.find('/', start) - start);
}

// Bytes of the first core's data caches, the nearest first, as far as the system tells.
Json caches() {
  Json sizes = Json::array();
#ifdef _SC_LEVEL1_DCACHE_SIZE
  for (const int name : {_SC_LEVEL1_DCACHE_SIZE, _SC_LEVEL2_CACHE_SIZE, _SC_LEVEL3_CACHE_SIZE}) {
    const long size = sysconf(name);
    if (size > 0) sizes.push_back(size);
  }
#endif
  return sizes;
}

std::string today() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 16> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d", std::gmtime(&now));
  return text.data();
}

std::string key(const Json& row) {
  const std::string name = row.at("name");
  if (!row.contains("width")) return name;
  const Size size{row.at("width"), row.at("height")};
  return name + ' ' + text_of(size);
}

// The number that stands for a row: the smaller, the better.
double cost(const Json& row) {
  for (const char* name : {"memcpy_ratio", "ratio", "ns_per_call"}) {
    if (row.contains(name)) return row.at(name);
  }
  throw std::runtime_error("a row without a number: " + key(row));
}

struct Change {
  std::string key;
  double before, after;
  double ratio() const { return after / before; }
};

}  // namespace

Json context(const std::string& run) {
  const std::string here = level();
  const std::string flags = kFlags;
  uint32_t version = 0;
  QVN_GetVersion(&version);
  return {{"run", run},
          {"date", today()},
          {"processor", processor()},
          {"caches", caches()},
          {"level", here},
          {"compiler", kCompiler},
          {"flags", here == "baseline" ? flags : flags + " -march=" + here},
          {"library_version", version}};
}

void write_report(const std::string& path, const Json& context, const Json& rows) {
  std::ofstream file(path);
  file << "{\n\"context\": " << context.dump(1) << ",\n\"rows\": [\n";
  for (size_t i = 0; i < rows.size(); ++i) file << rows[i].dump() << (i + 1 < rows.size() ? ",\n" : "\n");
  file << "]\n}\n";
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

Json read_report(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  try {
    Json report = Json::parse(file);
    for (const Json& row : report.at("rows")) cost(row);
    return report;
  } catch (const Json::exception& error) {
    throw std::runtime_error(path + " is no report: " + error.what());
  }
}

int compare(const Json& before, const Json& after) {
  constexpr double kSmallestChange = 0.05;
  std::map<std::string, const Json*> old_rows;
  for (const Json& row : before.at("rows")) old_rows[key(row)] = &row;
  std::vector<Change> changes;
  size_t common = 0;
  for (const Json& row : after.at("rows")) {
    const auto found = old_rows.find(key(row));
    if (found == old_rows.end()) continue;
    ++common;
    const Json& old_row = *found->second;
    const Change change{key(row), cost(old_row), cost(row)};
    const double noise = (old_row.value("spread", 0.0) + row.value("spread", 0.0)) / 2;
    if (std::abs(std::log(change.ratio())) > std::max(kSmallestChange, noise)) changes.push_back(change);
  }
  std::sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) {
    return std::abs(std::log(a.ratio())) > std::abs(std::log(b.ratio()));
  });
  std::printf("%-52s %9s %9s %9s\n", "beyond noise", "before", "after", "ratio");
  for (const Change& change : changes) {
    std::printf("%-52s %9.3f %9.3f %9.3f %s\n", change.key.c_str(), change.before, change.after,
                change.ratio(), change.ratio() > 1 ? "slower" : "faster");
  }
  const auto slower =
      std::count_if(changes.begin(), changes.end(), [](const Change& change) { return change.ratio() > 1; });
  std::printf("%zu rows in both, %zu changed, %td slower\n", common, changes.size(), slower);
  return static_cast<int>(slower);
}
