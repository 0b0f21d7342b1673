#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "session/batch/batch_targets.h"
#include "session/denoise_parameters.h"

namespace velmara::cli {

/// `velmara denoise`.
struct DenoiseOptions {
  /// Photos and folders.
  std::vector<std::string> inputs;
  /// A file with more of them, "-" for standard input.
  std::optional<std::string> filesFrom;
  bool isRecursive = false;
  /// Only every `second`th photo, from the `first`th (counted from 1) on.
  std::optional<std::pair<std::size_t, std::size_t>> part;

  DenoiseMode mode = DenoiseMode::automatic();
  /// Given by --template, --search and --sigma together.
  std::optional<FilterParameters> explicitParameters;
  /// With those: the decoded file goes to the filter as it is, and the result is written as it
  /// comes.
  bool isBare = false;
  /// The deep method in place of the levels' filter.
  bool isDeep = false;
  bool referenceEngine = false;

  /// The file "-" is standard output.
  BatchNaming naming;
  /// PNG files with the photo beside the result, and with what was taken from it.
  std::optional<std::string> comparison;
  std::optional<std::string> residual;

  /// Photos worked on at once.
  std::optional<int> jobs;
  bool quiet = false;
  bool details = false;
  bool json = false;
};

/// `velmara info`.
struct InfoOptions {
  std::vector<std::string> inputs;
  /// The SVG file for a picture of the noise.
  std::optional<std::string> plot;
  bool json = false;
};

/// `velmara calibrate`.
struct CalibrateOptions {
  bool json = false;
};

/// `velmara formats`.
struct FormatsOptions {};

/// Nothing to do but to print and end: help, version or wrong usage.
struct PrintAndExit {
  std::string text;
  int exitCode = 0;
};

using Command =
    std::variant<DenoiseOptions, InfoOptions, CalibrateOptions, FormatsOptions, PrintAndExit>;

/// What the words after the program's name ask for. Wrong usage gives exit code 2 and the reason.
Command parseCommandLine(int argc, const char* const* argv);

/// A window that is asked for.
struct WindowStart {
  /// The absolute path of the photo in it, in the system's own bytes; empty if there is none.
  std::string photo;
  /// Whether it is a window of its own, where another one is open.
  bool isNewWindow = false;
};

/// The window that the words after the program's name ask for: there are none, but for
/// --new-window, or the first of the others is a file and neither a command nor an option. Nothing
/// if they are for the command line.
std::optional<WindowStart> windowStart(int argc, const char* const* argv);

}  // namespace velmara::cli
