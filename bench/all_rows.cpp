// The rows of all rooms.
#include "entry_rows.h"

std::vector<EntryRow> all_rows() {
  std::vector<EntryRow> all;
  for (const auto* rows : {&bayer_rows(), &convert_rows(), &correction_rows(), &transform_rows(),
                           &cygm_rows(), &utility_rows()}) {
    all.insert(all.end(), rows->begin(), rows->end());
  }
  return all;
}
