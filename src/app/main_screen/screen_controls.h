#pragma once

#include <QPointer>
#include <QWidget>

#include <array>

#include "session/controls.h"

class QSlider;

namespace velmara {

class ActionButton;

/// The main screen's buttons and its slider, by what the run state calls them. Main thread.
class ScreenControls {
 public:
  /// Tells which widget a control is; not owned.
  void setButton(Control control, ActionButton* button);
  void setSlider(QSlider* slider);
  /// Where the focus stays while a run has disabled the control that had it.
  void setFocusRefuge(QWidget* refuge) { refuge_ = refuge; }

  /// Null if there is none.
  ActionButton* button(Control control) const { return buttons_[static_cast<unsigned>(control)]; }

  /// Makes the controls what the states say: disabled ones grey and deaf, inert ones only deaf.
  void apply(const ControlStates& states);
  /// Those that were applied last.
  const ControlStates& states() const { return states_; }

  /// Does what a click on the button does, if it would do anything: for shortcuts and menus.
  void click(Control control) const;

  /// The focus that was taken away does not come back any more.
  void forgetFocus() { lostFocus_.clear(); }

 private:
  bool isDisabledBy(const ControlStates& states, const QWidget* control) const;

  std::array<ActionButton*, kControlCount> buttons_{};
  QSlider* slider_ = nullptr;
  QWidget* refuge_ = nullptr;
  QPointer<QWidget> lostFocus_;
  ControlStates states_;
};

}  // namespace velmara
