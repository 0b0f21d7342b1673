#pragma once

// Which instruction sets the fast kernel is compiled for; to be included before <hwy/highway.h>.
// SSSE3 adds nothing to its neighbours, and vectors without a fixed size (SVE) cannot be members.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)
