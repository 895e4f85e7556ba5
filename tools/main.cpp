// The command-line tool.
#include "command_line.h"
#include "process.h"

int main(int argc, char** argv) {
  qvn::tool::prepare_process();
  return qvn::tool::run_command_line(argc, argv);
}
