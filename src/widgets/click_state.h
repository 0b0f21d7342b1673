#pragma once

namespace velmara {

/// Which mouse events make a button send its action. With none the button is inert: it looks as
/// always, and swallows the click.
enum ActionMask : int { kSendsOnNothing = 0, kSendsOnLeftMouseDown = 2 };

/// What a press and a release of a button work on. An image button is disabled while it is pressed.
struct ClickState {
  bool enabled = true;
  bool isMouseDown = false;
  int state = 0;
  int actionMask = kSendsOnLeftMouseDown;
  bool disablesWhilePressed = true;
};

/// A press: begins, unless the button is disabled or inert. Returns whether it began.
inline bool beginClick(ClickState& click) {
  if (!click.enabled || click.actionMask == kSendsOnNothing) return false;
  click.isMouseDown = true;
  if (click.disablesWhilePressed) click.enabled = false;
  return true;
}

/// A release, only of a press that began. Returns whether the action is to be sent, after which
/// finishClick is due. A release outside, or of a button that became inert meanwhile, sends nothing
/// and leaves the state alone; what the press disabled is enabled again.
inline bool releaseClick(ClickState& click, bool inside) {
  if (!click.isMouseDown) return false;
  click.isMouseDown = false;
  const bool mayClick = click.enabled || click.disablesWhilePressed;
  const bool sends = inside && mayClick && click.actionMask != kSendsOnNothing;
  if (!sends && click.disablesWhilePressed) click.enabled = true;
  return sends;
}

/// What follows the action: the state flips (0 becomes 1, anything else 0), and the button is
/// enabled again if that is wished at once.
inline void finishClick(ClickState& click, bool enableImmediately) {
  click.state = click.state == 0 ? 1 : 0;
  if (enableImmediately) click.enabled = true;
}

}  // namespace velmara
