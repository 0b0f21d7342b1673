#pragma once

#include "base/job_control.h"

namespace velmara::cli {

inline constexpr int kInterrupted = 130;

/// From here on Ctrl-C (and a closed terminal, and a polite kill) ends the program with exit code
/// kInterrupted.
void endOnInterrupt();

/// What an interrupt cancels. From the first call on whoever has called ends the program, except
/// that a second interrupt still does so at once.
JobControl& cancelledByInterrupt();

}  // namespace velmara::cli
