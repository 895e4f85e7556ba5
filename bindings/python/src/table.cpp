#include "table.h"

namespace quorvane::python {
namespace {

/// The formats whose rows serve a source, in this order; the second may be empty.
std::array<std::string_view, 2> rows_of(std::string_view source) {
  const Format& format = format_of(source, false);
  const std::string_view own = format.read_as.empty() ? format.name : format.read_as;
  return {own, own == "raw16le" ? "raw16be" : own == "y16le" ? "y16be" : ""};
}

[[noreturn]] void unknown(std::string_view source, const char* what, std::string_view name,
                          const std::vector<std::string_view>& known) {
  throw py::value_error(std::string(source) + ": unknown " + what + " '" + std::string(name) +
                        "', expected " + detail::one_of(known));
}

const Entry* entry_of(const Way& way, const Wish& wish) {
  return wish.correction ? way.corrected : way.entry;
}

bool serves(const Way& way, const Wish& wish) {
  const Entry* const entry = entry_of(way, wish);
  return entry != nullptr && (!wish.shift || entry->takes_shift) && (!wish.form || way.reads_form);
}

/// Says why no row serves a wish.
[[noreturn]] void refuse(const Wish& wish) {
  std::vector<std::string_view> methods;
  std::vector<std::string_view> targets;
  bool named = false;
  for (const std::string_view source : rows_of(wish.source)) {
    for (const Way& way : table()) {
      if (way.format != source) {
        continue;
      }
      detail::add_once(methods, way.method);
      if (wish.method && way.method != *wish.method) {
        continue;
      }
      detail::add_once(targets, way.target);
      named = named || !wish.target || way.target == *wish.target;
    }
  }
  if (targets.empty()) {
    unknown(wish.source, "method", *wish.method, methods);
  }
  if (!named) {
    unknown(wish.source, "target", *wish.target, targets);
  }
  std::string text = std::string(wish.source) + ": no conversion";
  text += wish.method ? " by '" + std::string(*wish.method) + "'" : "";
  text += wish.target ? " to '" + std::string(*wish.target) + "'" : "";
  text += " takes ";
  text += wish.correction ? "a correction" : "";
  text += wish.shift ? std::string(wish.correction ? " and " : "") + "a shift" : "";
  text += wish.form ? std::string(wish.correction || wish.shift ? " and " : "") + "fewer than 16 bits" : "";
  throw py::value_error(text);
}

}  // namespace

const std::vector<Way>& table() {
  static const std::vector<Way> rows = [] {
    std::vector<Way> made = ways();
    made.push_back({"y16be", "plain", "y8", &y16_to_y8});
    made.push_back({"y16be", "plain", "bgr", &y16_to_bgr});
    made.push_back({"y16be", "plain-by-eights", "y8", &y16_to_y8_mmx});
    return made;
  }();
  return rows;
}

bool is_any_order(std::string_view source) { return source == "raw16" || source == "y16"; }

const Format& format_of(std::string_view source, bool little) {
  if (source == "raw16") {
    source = little ? "raw16le" : "raw16be";
  } else if (source == "y16") {
    source = little ? "y16le" : "y16be";
  }
  const Format* const format = find_format(source);
  if (format == nullptr) {
    std::vector<std::string_view> names{"raw16", "y16"};
    for (const Format& row : formats()) {
      names.push_back(row.name);
    }
    throw py::value_error("unknown source '" + std::string(source) + "', expected " + detail::one_of(names));
  }
  return *format;
}

const Way& choose(const Wish& wish) {
  for (const std::string_view source : rows_of(wish.source)) {
    for (const Way& way : table()) {
      if (way.format == source && (!wish.method || way.method == *wish.method) &&
          (!wish.target || way.target == *wish.target) && serves(way, wish)) {
        return way;
      }
    }
  }
  refuse(wish);
}

}  // namespace quorvane::python
