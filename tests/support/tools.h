#pragma once

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <sys/wait.h>

namespace velmara::testing_support {

/// A word as the shell has to see it.
inline std::string quoted(const std::string& word) {
  std::string text("'");
  for (const char c : word) {
    if (c == '\'') text.append("'\\'");
    text.push_back(c);
  }
  text.push_back('\'');
  return text;
}

/// Whether a program is installed.
inline bool hasTool(const std::string& name) {
  return std::system(("command -v " + quoted(name) + " >/dev/null 2>&1").c_str()) == 0;
}

/// What a program prints (both streams), and whether it ended well.
struct ToolOutput {
  bool ok = false;
  std::string text;
};

/// Runs a program, the words after its name passed as they are.
inline ToolOutput runTool(std::initializer_list<std::string> words) {
  std::string line;
  for (const std::string& word : words) line += quoted(word) + " ";
  ToolOutput output;
  FILE* pipe = ::popen((line + "2>&1 </dev/null").c_str(), "r");
  if (pipe == nullptr) return output;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
    output.text.push_back(static_cast<char>(c));
  }
  const int status = ::pclose(pipe);
  output.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return output;
}

}  // namespace velmara::testing_support
