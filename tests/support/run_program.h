#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/scratch_folder.h"

namespace velmara::testing_support {

/// What a program left behind when it ended.
struct ProgramResult {
  /// 127 for one that cannot be started, 128 + the signal for one that a signal ended.
  int exitCode = 127;
  std::string output;
  std::string errors;
};

/// Runs a program without a shell (words may hold anything) and without a terminal, its standard
/// input empty, and waits for its end.
inline ProgramResult runProgram(const std::vector<std::string>& words,
                                const std::string& folder = "/") {
  const ScratchFolder scratch;
  const std::string files[] = {"/dev/null", scratch.file("output"), scratch.file("errors")};
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  for (int fd = 0; fd < 3; ++fd) {
    const int flags = fd == 0 ? O_RDONLY : O_WRONLY | O_CREAT;
    ::posix_spawn_file_actions_addopen(&actions, fd, files[fd].c_str(), flags, 0600);
  }
  ::posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  pid_t child = 0;
  ProgramResult result;
  if (::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0) {
    int status = 0;
    ::waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  ::posix_spawn_file_actions_destroy(&actions);
  result.output = contentsOf(files[1]);
  result.errors = contentsOf(files[2]);
  return result;
}

/// Whether a program is installed.
inline bool hasTool(const std::string& name) {
  return runProgram({"sh", "-c", "command -v \"$0\"", name}).exitCode == 0;
}

}  // namespace velmara::testing_support
