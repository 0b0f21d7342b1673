#pragma once

#include "cli/options.h"
#include "engine/engine_environment.h"

namespace velmara::cli {

/// Denoises the photos one after another; a bad one does not stop the others. Prints what it did
/// to standard output (to standard error where that carries a picture) and faults to standard
/// error. Returns the exit code: 0 all well, 1 some failed, kInterrupted after an interrupt, which
/// leaves no file that is not whole. Not on the main thread.
int runDenoise(const DenoiseOptions& options);

/// The engine's surroundings on the command line: the global queue, the main queue and the log.
EngineEnvironment commandLineEngine(bool isReference = false);

}  // namespace velmara::cli
