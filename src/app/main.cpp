#include "cli/run_command_line.h"

int main(int argc, char** argv) {
  return velmara::cli::runCommandLine(argc, argv);
}
