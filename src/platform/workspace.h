#pragma once

#include <string>
#include <string_view>

class QObject;

namespace velmara {

/// What the desktop does for the program. Main thread.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// Opens an address in the user's program for it; false when the address cannot be parsed or no
  /// program takes it. Without activation our window is to stay in front, as far as the desktop's
  /// window manager goes along.
  virtual bool openURL(const std::string& url, bool activates) = 0;

  /// Shows a file in the desktop's file manager, chosen where that can be, else its folder. The
  /// path is absolute, in the system's own bytes.
  virtual void showInFolder(const std::string& path) = 0;

  /// Brings a window of ours back from the dock, to the front and into focus.
  virtual void showInFront(QObject& window) = 0;
};

/// The MIME type of a file by its contents and name, "application/octet-stream" when nothing is
/// known; empty when there is no such file. The path is in the system's own bytes. Any thread.
std::string typeOfFile(const std::string& path);

/// Whether a MIME type is one of an image. Any thread.
bool typeConformsToImage(std::string_view mimeType);

/// The user's folder for pictures, by default ~/Pictures; it need not be there. In the system's own
/// bytes.
std::string picturesDirectory();

/// What the trash test needs to know about the user and the place of a file.
struct TrashPlaces {
  std::string loginUser;  ///< as the system has it
  unsigned userId = 0;    ///< of the process
  /// $XDG_DATA_HOME, by default ~/.local/share.
  std::string dataHome;
  /// Where the volume that holds the file is mounted, "/" or "/media/card".
  std::string volumeRoot;
};

/// The facts for a path, asked of the system.
TrashPlaces trashPlacesFor(const std::string& path);

/// Whether the absolute path lies in a trash folder of the desktop (freedesktop.org trash standard
/// 1.0: Trash in the data home, .Trash-UID or .Trash/UID at the top of the file's volume) or, in
/// lower case, in "/users/USER/.trash/". The user's name is not lowered, so only lower-case names
/// match. The folder itself lies not in it.
bool isInTrash(const std::string& path, const TrashPlaces& places);

}  // namespace velmara
