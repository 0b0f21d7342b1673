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

void ScreenControls::setSlider(QSlider* slider) {
  slider_ = slider;
  QObject::connect(
      slider, &QSlider::sliderReleased, slider, [this] { apply(states_); }, Qt::QueuedConnection);
}

bool ScreenControls::isDisabledBy(const ControlStates& states, const QWidget* control) const {
  if (control == nullptr) return false;
  if (control == slider_) return !states.isAlive(Control::sliderCustomDenoise);
  for (unsigned i = 0; i < kControlCount; ++i) {
    if (control == buttons_[i]) return states.disabled.contains(static_cast<Control>(i));
  }
  return false;
}

void ScreenControls::apply(const ControlStates& states) {
  states_ = states;
  // The toolkit would hand the focus to the next control, which the next key would operate.
  QWidget* focus = refuge_ != nullptr ? refuge_->window()->focusWidget() : nullptr;
  if (isDisabledBy(states, focus) && refuge_->isVisible()) {
    lostFocus_ = focus;
    refuge_->setFocus();
  }
  for (unsigned i = 0; i < kControlCount; ++i) {
    ActionButton* button = buttons_[i];
    if (button == nullptr) continue;
    const auto control = static_cast<Control>(i);
    button->setActionMask(states.inert.contains(control) ? kOnNoEvent : kOnLeftMouseDown);
    button->setEnabled(!states.disabled.contains(control));
  }
  // A handle that is held would never learn of its release.
  if (slider_ != nullptr && !slider_->isSliderDown()) {
    slider_->setEnabled(states.isAlive(Control::sliderCustomDenoise));
  }
  if (lostFocus_ == nullptr || isDisabledBy(states, lostFocus_)) return;
  if (refuge_->window()->focusWidget() == refuge_) lostFocus_->setFocus();
  lostFocus_.clear();
}

void ScreenControls::click(Control control) const {
  ActionButton* target = button(control);
  if (target != nullptr && states_.isAlive(control)) target->click();
}

}  // namespace velmara
