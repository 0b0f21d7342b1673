#include "app/main_screen/screen_controls.h"

#include <QSlider>

#include "widgets/action_button.h"

namespace velmara {
namespace {

// The mouse events that send a button's action: the left button going down, or none.
constexpr int kOnLeftMouseDown = 2;
constexpr int kOnNoEvent = 0;

}  // namespace

void ScreenControls::setButton(Control control, ActionButton* button) {
  buttons_[static_cast<unsigned>(control)] = button;
}

void ScreenControls::apply(const ControlStates& states) {
  states_ = states;
  for (unsigned i = 0; i < kControlCount; ++i) {
    ActionButton* button = buttons_[i];
    if (button == nullptr) continue;
    const auto control = static_cast<Control>(i);
    button->setActionMask(states.inert.contains(control) ? kOnNoEvent : kOnLeftMouseDown);
    button->setEnabled(!states.disabled.contains(control));
  }
  if (slider_ != nullptr) slider_->setEnabled(states.isAlive(Control::sliderCustomDenoise));
}

void ScreenControls::click(Control control) const {
  ActionButton* target = button(control);
  if (target != nullptr && states_.isAlive(control)) target->click();
}

}  // namespace velmara
