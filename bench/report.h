// What a run leaves behind: a JSON file of its circumstances and rows, and the comparison of two such files.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

using Json = nlohmann::ordered_json;

// Kind of run, date, processor, level of the library that the loader took, compiler and flags.
Json context(const std::string& run);

// Throws std::runtime_error with one sentence if the file cannot be written or read.
void write_report(const std::string& path, const Json& context, const Json& rows);
Json read_report(const std::string& path);

// Prints the rows that both runs have and that changed by more than their noise, the largest change first,
// and returns how many became slower. Rows are compared by their ratio to memcpy, which survives a machine
// that is busier or another one; rows without such a ratio by their time.
int compare(const Json& before, const Json& after);
