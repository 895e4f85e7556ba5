#include "every/entry.h"

namespace every {

const std::vector<Entry>& table() {
  static const std::vector<Entry> all = [] {
    std::vector<Entry> entries;
    for (const auto part :
         {query_entries, run_entries, plane_entries, mosaic_entries, cygm_entries, corrected_entries,
          utility_entries, run_transform_entries, mosaic_transform_entries}) {
      for (const Entry& entry : part()) entries.push_back(entry);
    }
    return entries;
  }();
  return all;
}

}  // namespace every
