#pragma once

// Which instruction sets vector code is compiled for; to be included before <hwy/highway.h>.
// SSSE3 adds nothing to its neighbours, and vectors without a fixed size (SVE) cannot be members.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)

#include <string>
#include <vector>

namespace velmara {

/// Names of the instruction sets that the fast kernel is compiled for and this machine can run, the
/// best first: AVX3 (AVX-512), AVX2, SSE4, NEON, SCALAR (none at
/// all, which leaves the work to the reference).
std::vector<std::string> instructionSets();

/// Makes the fast kernel use one of them; an empty name the best. False if there is none of that
/// name. Not while requests run.
bool useInstructionSet(const std::string& name);

/// Uses what the environment variable VELMARA_TARGET names, the best if it is not set or names
/// none. Only the first call does anything.
void useInstructionSetOfEnvironment();

}  // namespace velmara
