// The subcommands as data: what each takes and what it runs. The command line's parser, the help and the
// shells' completions follow from it.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qvn::tool {

struct Option {
  std::string name;  // "--size", "-o,--output", or "IN" for one that is told by its place
  std::string about;
  // One of these is where its value goes. A text that is not empty is shown as what it is unless told.
  std::string* text = nullptr;
  std::vector<std::string>* texts = nullptr;  // several values
  bool* flag = nullptr;
  bool required = false;
  std::vector<std::string> words = {};  // what a shell offers as its value; else files
  std::string group = {};               // a heading of the help
};

struct Command {
  std::string name;
  std::string about;
  std::vector<Option> options;
  std::function<void()> run;  // throws Failure
};

struct Group {
  std::string name;
  std::string about;
};

struct CommandLine {
  std::vector<Command> commands;
  std::vector<Group> groups;
};

/// All of them. Values live as long as the commands.
CommandLine all_commands();

Command chart_command();
Command convert_command();
Command sheet_command();
Command formats_command();
Command status_command();
Command bits_command();
Command completion_command();
std::vector<Command> rearrange_commands();
std::vector<Group> correction_groups();

}  // namespace qvn::tool
