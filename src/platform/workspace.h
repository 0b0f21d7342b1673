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

  /// Brings a window of ours back from the dock, to the front and into focus.
  virtual void showInFront(QObject& window) = 0;
};

/// The MIME type of a file by its contents and name, "application/octet-stream" when nothing is
/// known; empty when there is no such file. The path is in the system's own bytes. Any thread.
std::string typeOfFile(const std::string& path);

/// Whether a MIME type is one of an image. Any thread.
bool typeConformsToImage(std::string_view mimeType);

}  // namespace velmara
