#pragma once

#include <initializer_list>
#include <string>

#include "support/run_program.h"

namespace velmara::testing_support {

/// Whether a program is installed.
inline bool hasTool(const std::string& name) {
  return runProgram({"sh", "-c", "command -v \"$0\"", name}).exitCode == 0;
}

/// What a program prints (its output, then its errors), and whether it ended well.
struct ToolOutput {
  bool ok = false;
  std::string text;
};

/// Runs a program, the words after its name passed as they are.
inline ToolOutput runTool(std::initializer_list<std::string> words) {
  const ProgramResult result = runProgram(words);
  return {result.exitCode == 0, result.output + result.errors};
}

}  // namespace velmara::testing_support
