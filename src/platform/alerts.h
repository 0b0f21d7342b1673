#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velmara {

/// A question or a message to the user. Texts are UTF-8 and already translated.
struct Alert {
  std::string messageText;
  std::string informativeText;

  /// From the default one on, which Return presses. With none, the user sees "OK".
  std::vector<std::string> buttons;
};

/// Shows alerts. The answer is the index of the button pressed; Escape and closing the alert answer
/// with the last button. Main thread.
class AlertPresenter {
 public:
  using Completion = std::function<void(int button)>;

  virtual ~AlertPresenter() = default;

  /// Shows the alert and waits for the answer in an event loop of its own.
  virtual int runModal(const Alert& alert) = 0;

  /// Shows the alert on the main window and returns; the completion is called exactly once.
  virtual void beginSheet(const Alert& alert, Completion completion) = 0;
};

}  // namespace velmara
