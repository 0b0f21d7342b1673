#pragma once

#include "cli/options.h"

namespace velmara::cli {

/// Prints the record, the noise level and the automatic parameters of photos. Returns the exit
/// code: 0 all well, 1 some could not be read. Not on the main thread.
int runInfo(const InfoOptions& options);

/// Measures this machine's filter speed on the shipped test picture and prints it. Returns 0, or 1
/// if the test picture cannot be read. Not on the main thread.
int runCalibrate(const CalibrateOptions& options);

}  // namespace velmara::cli
