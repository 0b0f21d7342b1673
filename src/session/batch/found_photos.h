#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/job_control.h"
#include "session/batch/name_pattern.h"

namespace velmara {

/// One photo of a batch.
struct BatchPhoto {
  /// In the file system's own bytes.
  std::string path = {};
  /// The folder it was found in, seen from the one that was asked for: "2024/june". Empty there and
  /// for a photo that was named itself.
  std::string subfolder = {};
};

/// Where photos are looked for.
struct PhotoSearch {
  /// Photos, taken as they are, and folders.
  std::vector<std::string> paths = {};
  /// Whether folders in folders are looked into. Links to folders are not followed, and hidden
  /// files and folders are passed over.
  bool isRecursive = false;
  /// Results of an earlier batch that lie among their photos are known by this and passed over.
  NamePattern results = {};
  /// A folder that results go to; it is not looked into. Empty where there is none.
  std::string resultFolder = {};
};

/// The photos at some paths: those named, and of folders the files with an extension that can be
/// read, by name. Each file is found once. `unreadable` is told of each folder that cannot be
/// looked into, with the reason. Any thread; ends early when the control is cancelled.
std::vector<BatchPhoto> findPhotos(
    const PhotoSearch& search,
    const std::function<void(const std::string& folder, const std::string& reason)>& unreadable,
    const JobControl& control);

}  // namespace velmara
