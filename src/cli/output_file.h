#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"

namespace velmara::cli {

/// The files that one call of the program may write: none of its inputs, none that is there already
/// unless replacing is allowed, and none twice.
class OutputFiles {
 public:
  OutputFiles(const std::vector<std::string>& inputs, bool mayReplace);

  /// Whether a path may be written, asked before the work of making its contents is done. "-" is
  /// standard output and always allowed.
  Status check(const std::string& path) const;

  /// Writes a file whole or not at all (or everything to standard output).
  Status write(const std::string& path, std::span<const std::uint8_t> bytes);

 private:
  using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;  // device and inode

  std::set<FileIdentity> inputs_;
  std::set<FileIdentity> written_;
  bool mayReplace_;
};

}  // namespace velmara::cli
