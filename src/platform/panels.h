#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QObject;

namespace velmara {

/// A question or a message to the user. Texts are UTF-8 and already translated.
struct Alert {
  /// The one line that is always there.
  std::string messageText;
  /// What is said below it; may be empty.
  std::string informativeText;

  /// From the default one on, which Return presses. With none, the user sees "OK".
  std::vector<std::string> buttons;
};

/// Shows alerts. The answer is the index of the button pressed; Escape and closing the alert answer
/// with the last button. Main thread.
class AlertPresenter {
 public:
  /// Takes the index of the button that answered.
  using Completion = std::function<void(int button)>;

  virtual ~AlertPresenter() = default;

  /// Shows the alert and waits for the answer in an event loop of its own.
  virtual int runModal(const Alert& alert) = 0;

  /// Shows the alert on the main window and returns; the completion is called exactly once.
  virtual void beginSheet(const Alert& alert, Completion completion) = 0;
};

/// How an open panel is set up. File types are extensions without the dot, in the case they are
/// wanted; none means every file.
struct OpenPanelOptions {
  /// Of the panel's window; empty for the desktop's own.
  std::string title;
  /// What the panel lets the user do.
  bool canChooseFiles = true;
  bool canChooseDirectories = false;
  bool allowsMultipleSelection = false;
  bool canCreateDirectories = true;
  /// What the filter for the allowed types is called.
  std::string allowedTypesTitle;
  /// Extensions; none for every file.
  std::vector<std::string> allowedFileTypes;
};

/// How a save panel is set up.
struct SavePanelOptions {
  /// Of the panel's window; empty for the desktop's own.
  std::string title;
  /// The name that is proposed.
  std::string nameFieldStringValue;
  /// Where the panel opens that has not saved anything yet, in the system's own bytes.
  std::string directory;
  /// Whether the user may make folders in it.
  bool canCreateDirectories = true;

  /// The chosen name always ends in one of these extensions; if it does not, the first is added.
  std::vector<std::string> allowedFileTypes;

  /// A view of the caller's that is shown under the panel's fields, or null. The caller keeps it:
  /// the panel gives it back, without a parent, before the completion is called.
  QObject* accessoryView = nullptr;
};

/// A save panel that is being shown. It may outlive what it stands for: then nothing happens.
class SavePanel {
 public:
  virtual ~SavePanel() = default;

  /// Changes the allowed types; the name that stands in the field follows.
  virtual void setAllowedFileTypes(std::vector<std::string> types) = 0;

  /// Closes the panel as its cancel button does.
  virtual void cancel() = 0;
};

/// Shows panels on the main window. Each call returns at once and calls its completion exactly
/// once, later, on the main thread. Paths are in the system's own bytes. Main thread.
class Panels {
 public:
  /// The chosen paths; none when the user cancelled.
  using OpenCompletion = std::function<void(const std::vector<std::string>& paths)>;
  /// The chosen path; empty when the user cancelled.
  using SaveCompletion = std::function<void(const std::string& path)>;

  virtual ~Panels() = default;

  /// Asks for files to open.
  virtual void beginOpenPanel(const OpenPanelOptions& options, OpenCompletion completion) = 0;

  /// Asks where to save. The handle closes the panel or changes its types while it is shown.
  [[nodiscard]] virtual std::shared_ptr<SavePanel> beginSavePanel(const SavePanelOptions& options,
                                                                  SaveCompletion completion) = 0;
};

/// The name or path with an extension out of the list, as the list spells it: "a.JPG" and, where
/// the list has only that, "a.jpeg" become "a.jpg". What ends in none of them has the first one
/// added. An empty list changes nothing.
std::string withAllowedFileType(const std::string& path, const std::vector<std::string>& allowed);

/// What becomes of the name in a save panel when its types change from one list to another: an
/// extension of the old list gives way to the first of the new one.
std::string withChangedFileType(const std::string& name, const std::vector<std::string>& before,
                                const std::vector<std::string>& after);

}  // namespace velmara
