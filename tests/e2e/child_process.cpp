#include "e2e/child_process.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmara::e2e {
namespace {

[[noreturn]] void become(const std::vector<std::string>& words, const Environment& environment,
                         const std::string& outputFile, int inheritedFd) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int input = ::open("/dev/null", O_RDONLY);
  const int output = ::open(outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  if (::dup2(input, STDIN_FILENO) < 0 || ::dup2(output, STDOUT_FILENO) < 0 ||
      ::dup2(output, STDERR_FILENO) < 0) {
    ::_exit(126);
  }
  if (inheritedFd >= 0) ::fcntl(inheritedFd, F_SETFD, 0);
  for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words, const Environment& environment,
                           const std::string& outputFile, int inheritedFd)
    : pid_(::fork()) {
  if (pid_ == 0) become(words, environment, outputFile, inheritedFd);
}

ChildProcess::~ChildProcess() {
  kill(SIGKILL);
}

std::optional<int> ChildProcess::exitCode() {
  int status = 0;
  if (!exitCode_ && ::waitpid(pid_, &status, WNOHANG) == pid_) {
    exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return exitCode_;
}

std::optional<int> ChildProcess::waitForEnd(Seconds deadline) {
  waitUntil([this] { return exitCode().has_value(); }, deadline);
  return exitCode_;
}

void ChildProcess::kill(int signal) {
  if (exitCode()) return;
  ::kill(pid_, signal);
  if (waitForEnd()) return;
  ::kill(pid_, SIGKILL);
  waitForEnd();
}

}  // namespace velmara::e2e
