#pragma once

#include "cli/options.h"

namespace velmara::cli {

/// Denoises the photos one after another; a bad one does not stop the others. Prints what it did
/// to standard output (to standard error where that carries a picture) and faults to standard
/// error. Returns the exit code: 0 all well, 1 some failed. Not on the main thread.
int runDenoise(const DenoiseOptions& options);

}  // namespace velmara::cli
