#pragma once

#include <optional>
#include <string>

#include "cli/options.h"
#include "imaging/image_writer.h"

namespace velmara::cli {

/// The format that --format calls by this name; nothing for another name.
std::optional<FileFormat> formatNamed(const std::string& name);

/// The format that a file name's extension stands for, upper or lower case.
std::optional<FileFormat> formatForPath(const std::string& path);

/// Where one photo's result goes and in which format.
struct OutputTarget {
  std::string path;
  FileFormat format = FileFormat::png;

  bool isStandardOutput() const { return path == "-"; }
};

/// The target for an input whose own format is `inputFormat` (nothing where it is none of the five
/// that are written): what the options name, else NAME-denoised.EXT in their folder or beside the
/// input. The input's own extension is kept where it fits the format.
OutputTarget outputTarget(const std::string& input, std::optional<FileFormat> inputFormat,
                          const DenoiseOptions& options);

}  // namespace velmara::cli
