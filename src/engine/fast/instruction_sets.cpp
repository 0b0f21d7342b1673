#include "engine/fast/instruction_sets.h"

#include <hwy/highway.h>

#include <cstdint>
#include <cstdlib>

namespace velmara {
namespace {

std::vector<std::int64_t> targets() {
  return hwy::SupportedAndGeneratedTargets();
}

}  // namespace

std::vector<std::string> instructionSets() {
  hwy::SetSupportedTargetsForTest(0);
  std::vector<std::string> names;
  for (const std::int64_t target : targets()) names.emplace_back(hwy::TargetName(target));
  return names;
}

bool useInstructionSet(const std::string& name) {
  hwy::SetSupportedTargetsForTest(0);
  bool found = name.empty();
  for (const std::int64_t target : targets()) {
    if (name != hwy::TargetName(target)) continue;
    hwy::SetSupportedTargetsForTest(target);
    found = true;
    break;
  }
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  return found;
}

void useInstructionSetOfEnvironment() {
  static const bool done = [] {
    const char* name = std::getenv("VELMARA_TARGET");
    return useInstructionSet(name == nullptr ? "" : name);
  }();
  static_cast<void>(done);
}

}  // namespace velmara
