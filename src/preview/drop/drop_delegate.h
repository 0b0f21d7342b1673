#pragma once

#include <string>

class QMouseEvent;

namespace velmara {

/// What a drop target hands its photos and clicks to. Main thread.
class DropDelegate {
 public:
  virtual ~DropDelegate() = default;

  /// An image file was dropped; the path is in the file system's own bytes.
  virtual void photoDraggedWithPath(const std::string& path) = 0;

  /// The left button on a `DraggingView`: presses and releases of single clicks, and every drag.
  virtual void mouseDown(QMouseEvent& event) = 0;
  virtual void mouseDragged(QMouseEvent& event) = 0;
  virtual void mouseUp(QMouseEvent& event) = 0;
};

}  // namespace velmara
