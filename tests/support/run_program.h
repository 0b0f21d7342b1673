#pragma once

#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/scratch_folder.h"

namespace velmara::testing_support {

/// What a program left behind when it ended.
struct ProgramResult {
  /// 128 + the signal for a program that a signal ended.
  int exitCode = -1;
  std::string output;
  std::string errors;
};

/// Runs a program without a shell (words may hold anything) and without a terminal, its standard
/// input empty, and waits for its end.
inline ProgramResult runProgram(const std::vector<std::string>& words,
                                const std::string& folder = "/") {
  const ScratchFolder scratch;
  const std::string outputFile = scratch.file("output");
  const std::string errorFile = scratch.file("errors");
  const pid_t child = ::fork();
  if (child == 0) {
    const auto redirect = [](const char* path, int flags, int target) {
      const int fd = ::open(path, flags, 0600);
      if (fd < 0 || ::dup2(fd, target) < 0) ::_exit(126);
    };
    redirect("/dev/null", O_RDONLY, STDIN_FILENO);
    redirect(outputFile.c_str(), O_WRONLY | O_CREAT, STDOUT_FILENO);
    redirect(errorFile.c_str(), O_WRONLY | O_CREAT, STDERR_FILENO);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    if (::chdir(folder.c_str()) != 0) ::_exit(126);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ProgramResult result;
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.output = contentsOf(outputFile);
  result.errors = contentsOf(errorFile);
  return result;
}

}  // namespace velmara::testing_support
