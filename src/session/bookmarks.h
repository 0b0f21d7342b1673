#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/user_defaults.h"
#include "session/photo_file.h"

namespace velmara {

/// The list of remembered photos under "savedPaths". On this system a bookmark is the path in the
/// file system's own bytes: it can be made of a file that is there, and be resolved whether the
/// file still is or not. Main thread.

/// Writes the list from the photos, in their order, and synchronises. The first photo of which no
/// bookmark can be made is left out, and every later one with it: the error is never forgotten.
void saveBookmarkPathsFromTableView(const std::vector<PhotoFile>& arraySelectedImagesToProcess,
                                    UserDefaults& defaults);

/// One remembered photo.
struct SavedPath {
  /// In the system's own bytes.
  std::string path;
  /// Carried along as it was stored, invalid if there is none; nothing in the program stores any.
  QVariant state;

  friend bool operator==(const SavedPath&, const SavedPath&) = default;
};

/// The remembered photos in their order; entries that cannot be resolved are left out. No file
/// needs an access to be started before it is read on this system, so `startAccess` changes
/// nothing.
std::vector<SavedPath> savedPathsFromUserDefaults(bool startAccess, const UserDefaults& defaults);

/// Appends the records of the remembered photos that are still there and not in the trash to the
/// list; if any was skipped, the stored list is rewritten from it. Returns the path of the photo to
/// open, which is the list's last; nothing for an empty list.
std::optional<std::string> loadLastWorkedImageFromDefaults(
    std::vector<PhotoFile>& arraySelectedImagesToProcess, UserDefaults& defaults,
    const std::function<bool(const std::string& path)>& isInTrash);

}  // namespace velmara
