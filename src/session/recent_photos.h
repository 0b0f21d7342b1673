#pragma once

#include <string>
#include <vector>

#include "base/result.h"

namespace velmara {

/// The photos that were opened last, in a file of their own: the settings begin anew with every
/// launch. Several windows may share the file; what each of them adds is kept. Main thread.
class RecentPhotos {
 public:
  /// Nothing is read or made yet. The path is in the system's own bytes.
  explicit RecentPhotos(std::string file);

  /// Absolute, the newest first, each once, at most 10; whether they are still there is not looked
  /// at. None where the file cannot be read.
  std::vector<std::string> paths() const;
  /// Puts a photo first. A relative path is one from the current folder.
  Status add(const std::string& path) const;
  /// Forgets them all.
  Status clear() const;

 private:
  Status write(const std::vector<std::string>& paths) const;

  std::string file_;
};

}  // namespace velmara
