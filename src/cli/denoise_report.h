#pragma once

#include <string>

#include "cli/options.h"
#include "session/batch/batch_run.h"

namespace velmara::cli {

/// What became of a photo that was written or skipped, with line ends: one line, or with --details
/// five.
std::string denoiseText(const std::string& photo, const BatchOutcome& outcome,
                        const DenoiseOptions& options);

/// The same of any photo as one JSON object, without the line end. docs of its keys: the footer of
/// `velmara denoise --help`.
std::string denoiseJson(const std::string& photo, const BatchOutcome& outcome,
                        const DenoiseOptions& options);

}  // namespace velmara::cli
