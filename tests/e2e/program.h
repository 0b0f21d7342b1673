#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <memory>
#include <string>

#include "e2e/child_process.h"
#include "e2e/virtual_display.h"
#include "e2e/window_plan.h"
#include "support/scratch_folder.h"

namespace velmara::e2e {

enum class SavePanelAnswer {
  kSaves,
  /// Says yes when asked whether the file that is there is to be replaced.
  kReplaces,
};

/// The built program on a display, as a user of his own who has no other programs: private home,
/// configuration and temporary folders.
class Program {
 public:
  /// Starts it and waits for its window; `scale` is the screen's (points to device pixels).
  explicit Program(const VirtualDisplay& display, int scale = 1);

  bool hasWindow() const { return !windowId_.empty(); }
  ChildProcess& process() { return *process_; }
  /// Starts it anew in the same home after it has ended.
  void startAgain();

  const std::string& home() const { return home_; }
  /// Where its temporary files go.
  const std::string& temporaryFolder() const { return temporary_; }
  /// Of the window, in the screen's pixels.
  QRect windowRect() const;

  // What stands where, in the screen's pixels.

  QPoint middleOf(const QString& view) const;
  QRect rectOf(const QString& view) const;
  QRect previewArea() const;
  QRect leftHalf() const;
  QRect rightHalf() const;
  QRect captions() const;

  /// What the window shows in a rectangle of the screen.
  QImage seen(const QRect& place) const { return display_.screen(place); }
  /// Clicks on it and takes the pointer away, so that no tool tip covers the picture.
  void click(const QString& view) const;

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
  bool confirmSavePanel(const std::string& path, const std::string& format = {},
                        SavePanelAnswer answer = SavePanelAnswer::kSaves) const;
  /// Whether a sheet or an alert is shown: the keyboard is not the main window's.
  bool waitForSheet() const;
  bool waitForMainWindow() const;

 private:
  bool isMainWindowActive() const;
  void start();
  std::string findWindow() const;
  template <typename Part>
  QRect onScreen(Part part) const;
  const WindowPlan& planFor(const QSize& size) const;

  const VirtualDisplay& display_;
  int scale_;
  testing_support::ScratchFolder folder_;
  std::string home_;
  std::string temporary_;
  std::unique_ptr<ChildProcess> process_;
  std::string windowId_;
  mutable std::unique_ptr<WindowPlan> plan_;
  mutable QSize plannedSize_;
};

}  // namespace velmara::e2e
