#pragma once

#include <string>

namespace velmara {

/// What the trash test needs to know about the user and the place of a file.
struct TrashPlaces {
  std::string loginUser;
  unsigned userId = 0;
  /// $XDG_DATA_HOME, by default ~/.local/share.
  std::string dataHome;
  /// Where the volume that holds the file is mounted, "/" or "/media/card".
  std::string volumeRoot;
};

/// The facts for a path, asked of the system.
TrashPlaces trashPlacesFor(const std::string& path);

/// Whether the path, in lower case, lies in "/users/USER/.trash/". The user's name is not lowered,
/// so only lower-case names match.
bool hasUserTrashPrefix(const std::string& path, const std::string& loginUser);

/// Whether the absolute path lies in a trash folder of the desktop: Trash in the data home, or
/// .Trash-UID or .Trash/UID at the top of the file's volume. The folder itself lies not in it.
/// (freedesktop.org trash standard 1.0)
bool isInDesktopTrash(const std::string& path, const TrashPlaces& places);

/// Whether either of the two holds.
bool isInTrash(const std::string& path, const TrashPlaces& places);

}  // namespace velmara
