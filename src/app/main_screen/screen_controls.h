#pragma once

#include <array>

#include "session/controls.h"

class QSlider;
class QWidget;

namespace velmara {

class ActionButton;

/// The main screen's buttons and its slider, by what the run state calls them. Main thread.
class ScreenControls {
 public:
  void setButton(Control control, ActionButton* button);
  void setSlider(QSlider* slider) { slider_ = slider; }

  ActionButton* button(Control control) const { return buttons_[static_cast<unsigned>(control)]; }

  /// Makes the controls what the states say: disabled ones grey and deaf, inert ones only deaf.
  void apply(const ControlStates& states);
  const ControlStates& states() const { return states_; }

  /// Does what a click on the button does, if it would do anything: for shortcuts and menus.
  void click(Control control) const;

 private:
  std::array<ActionButton*, kControlCount> buttons_{};
  QSlider* slider_ = nullptr;
  ControlStates states_;
};

}  // namespace velmara
