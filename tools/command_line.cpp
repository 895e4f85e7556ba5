// The only file that includes the parser, which takes long to compile. It knows words alone: values are
// texts, and the subcommands make of them what they are.
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <new>

#include "about.h"
#include "commands.h"
#include "failure.h"
#include "process.h"

namespace qvn::tool {
namespace {

constexpr const char* kFooter =
    "Exit statuses: 0, all output is whole; 2, one sentence on standard error says what was expected and "
    "what "
    "was\nfound, and no file was changed, but for those frames of a batch that went well; 129, 130 and 143, "
    "as "
    "shells\ntell them, for an end by SIGHUP, SIGINT and SIGTERM, which leaves no half file either.";

void add_option(CLI::App& command, const Option& option) {
  if (option.flag != nullptr) {
    command.add_flag(option.name, *option.flag, option.about);
    return;
  }
  CLI::Option* added = nullptr;
  if (option.texts != nullptr) {
    added = command.add_option(option.name, *option.texts, option.about);
  } else {
    added = command.add_option(option.name, *option.text, option.about);
    if (!option.text->empty()) {
      added->capture_default_str();
    }
  }
  added->required(option.required);
  if (option.name.front() == '-') {
    // Further on an empty text stands for one that is not told.
    added->check([](const std::string& told) -> std::string {
      return told.empty() ? "expected a value, found an empty one" : "";
    });
  }
}

void add_command(CLI::App& app, const Command& command, const std::vector<Group>& groups) {
  CLI::App& added = *app.add_subcommand(command.name, command.about);
  for (const Option& option : command.options) {
    if (option.group.empty()) {
      add_option(added, option);
    }
  }
  for (const Group& group : groups) {
    CLI::Option_group* titled = nullptr;
    for (const Option& option : command.options) {
      if (option.group == group.name) {
        titled = titled == nullptr ? added.add_option_group(group.name, group.about) : titled;
        add_option(*titled, option);
      }
    }
  }
  added.callback(command.run);
}

/// A word that is no subcommand is named; the parser would only say that one is missing.
std::string parse_trouble(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  if (!app.get_subcommands().empty()) {
    return error.what();
  }
  std::vector<std::string> names;
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    names.push_back(command->get_name());
  }
  return "expected a subcommand, " + one_of(names) + ", found " + (argc > 1 ? quoted(argv[1]) : "none");
}

int run(int argc, char** argv) {
  CLI::App app("Convert frames of industrial cameras to pictures, byte for byte as the Quorvane library does",
               "qvn");
  app.set_version_flag("--version", [] { return describe_version(); });
  app.require_subcommand(1);
  app.footer(kFooter);
  const CommandLine line = all_commands();
  for (const Command& command : line.commands) {
    add_command(app, command, line.groups);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      if (!std::cout.flush()) {
        throw Failure("cannot write standard output");
      }
      return kDone;
    }
    say(parse_trouble(app, error, argc, argv) + " (see qvn --help)");
    return kFailed;
  }
  return kDone;
}

}  // namespace

int run_command_line(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    say("not enough memory");
  } catch (const std::exception& error) {
    say(error.what());
  }
  return kFailed;
}

}  // namespace qvn::tool
