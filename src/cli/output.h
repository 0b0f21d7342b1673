#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"
#include "cli/options.h"
#include "imaging/file_format.h"

namespace velmara::cli {

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

/// The device and the inode of a file.
using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;

/// The files that one call of the program may write: none of its inputs, none that is there already
/// unless replacing is allowed, and none twice.
class OutputFiles {
 public:
  OutputFiles(const std::vector<std::string>& inputs, bool mayReplace);

  bool mayReplace() const { return mayReplace_; }
  /// Whether a path may be written, asked before the work of making its contents is done. "-" is
  /// standard output and always allowed.
  Status check(const std::string& path) const;
  /// Says that a file was written.
  void wasWritten(const std::string& path);

 private:
  std::set<FileIdentity> inputs_;
  std::set<FileIdentity> written_;
  bool mayReplace_;
};

}  // namespace velmara::cli
