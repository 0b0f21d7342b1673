#include "support/network_namespace.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <sched.h>

#include "support/run_program.h"

namespace velmara::testing_support {

std::string enterNewNetwork() {
  if (runProgram({"ip", "-V"}).exitCode != 0) return "the program ip (iproute2) is not installed";
  if (::unshare(CLONE_NEWNET) != 0) {
    return std::string("a network namespace needs root: ") + std::strerror(errno);
  }
  ip("link set lo up");
  // Pairs of interfaces stand for cables; some kernels are built without them.
  if (runProgram({"ip", "link", "add", "probe0", "type", "veth"}).exitCode != 0) {
    return "the kernel has no veth interfaces";
  }
  ip("link del probe0");
  return {};
}

void ip(const std::string& words) {
  ipBatch(words);
}

void ipBatch(const std::string& lines) {
  const ScratchFolder folder;
  writeFile(folder.file("batch"), lines);
  const ProgramResult result = runProgram({"ip", "-batch", folder.file("batch")});
  EXPECT_EQ(result.exitCode, 0) << result.errors;
}

}  // namespace velmara::testing_support
