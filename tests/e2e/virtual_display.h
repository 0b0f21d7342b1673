#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <memory>
#include <string>
#include <vector>

#include "e2e/child_process.h"
#include "support/scratch_folder.h"

namespace velmara::e2e {

/// Whether the programs that a display of our own needs are installed.
bool canMakeDisplay();

/// An X server of our own with a window manager, its mouse and its keyboard. Its screen lies in a
/// file, so looking at it costs no round trip; the pointer is not drawn on it.
class VirtualDisplay {
 public:
  explicit VirtualDisplay(const QSize& size);

  /// Whether it came up.
  bool isReady() const { return isReady_; }
  /// "DISPLAY" for the programs on it.
  const std::string& name() const { return name_; }

  /// What stands in a rectangle of the screen now.
  QImage screen(const QRect& place) const;

  // Mouse and keys, as a hand would use them.
  void moveTo(const QPoint& place) const;
  void release() const { ask({"xdotool", "mouseup", "1"}); }
  /// Presses at one place and moves on to another by small steps; the button stays down.
  void dragTo(const QPoint& from, const QPoint& to, int steps = 8) const;
  /// Keys by name, one after another: "ctrl+o" or "Return".
  void keys(const std::vector<std::string>& keys) const;
  void type(const std::string& text) const;

  /// What a tool that works on this display prints.
  std::string ask(const std::vector<std::string>& words) const;
  /// The window that has the keyboard, by its number; empty for none.
  std::string activeWindow() const;
  /// Waits until its title holds a text.
  bool waitForActive(const std::string& title, bool isActive = true) const;

 private:
  bool startServer(const QSize& size);
  bool startWindowManager();

  testing_support::ScratchFolder folder_;
  std::string name_;
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> windowManager_;
  bool isReady_ = false;
};

}  // namespace velmara::e2e
