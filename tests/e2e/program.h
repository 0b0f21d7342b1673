#pragma once

#include <QRect>

#include <memory>
#include <string>

#include "e2e/child_process.h"
#include "e2e/virtual_display.h"
#include "support/scratch_folder.h"

namespace velmara::e2e {

/// The built program on a display, as a user of his own who has no other programs: private home,
/// configuration and temporary folders.
class Program {
 public:
  /// Starts it and waits for its window; `scale` is the screen's (points to device pixels).
  explicit Program(const VirtualDisplay& display, int scale = 1);

  bool hasWindow() const { return !windowId_.empty(); }
  ChildProcess& process() { return *process_; }
  /// Starts it anew in the same home after it has ended.
  void start();
  /// Starts one more beside it, by its name and words after it.
  std::unique_ptr<ChildProcess> startWith(const std::vector<std::string>& words) const;

  /// Where its temporary files go.
  const std::string& temporaryFolder() const { return temporary_; }
  /// Of the window, in the screen's pixels.
  QRect windowRect() const;

  std::string log() const;
  /// How often a text stands in the log.
  int timesLogged(const std::string& text) const;
  /// Waits until it stands there so often.
  bool waitForLog(const std::string& text, int times = 1) const;

  /// Opens a photo through the open panel by the keyboard.
  bool openByKeyboard(const std::string& path) const;
  /// Asks for the save panel by the keyboard and confirms it with a path. A letter chooses the
  /// format whose name begins with it.
  bool saveByKeyboard(const std::string& path, const std::string& format = {}) const;
  /// Confirms the save panel that is shown.
  bool confirmSavePanel(const std::string& path, const std::string& format = {}) const;
  /// Whether the keyboard is the main window's: no sheet or alert is shown.
  bool waitForMainWindow(bool isActive = true) const;

 private:
  std::string findWindow() const;

  const VirtualDisplay& display_;
  int scale_;
  testing_support::ScratchFolder folder_;
  std::string temporary_ = folder_.file("tmp");
  std::unique_ptr<ChildProcess> process_;
  std::string windowId_;
};

}  // namespace velmara::e2e
