#pragma once

#include "cli/options.h"
#include "cli/progress_line.h"
#include "engine/engine_environment.h"

namespace velmara::cli {

/// The engine's surroundings on the command line: the global queue, the main queue, the log, and a
/// progress line that follows its rows. The progress line must outlive the engine.
EngineEnvironment commandLineEngine(const DenoiseOptions& options, ProgressLine& progress);

/// The same without progress, for measuring.
EngineEnvironment measuringEngine();

}  // namespace velmara::cli
