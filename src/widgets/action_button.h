#pragma once

#include <QAbstractButton>

#include "widgets/image_provider.h"

namespace velmara {

/// Which mouse events make a button send its action. With none the button is inert: it looks as
/// always, and swallows the click.
enum ActionMask : int { kSendsOnNothing = 0, kSendsOnLeftMouseDown = 2 };

/// What our buttons drawn from images share: a two-valued state, a tag, an action that can be
/// switched off without a change of looks, the keyboard, and names for assistive tools. Space,
/// Return and Enter, and assistive tools, operate a button by the same guards as the mouse.
/// A button takes the focus by Tab only. The first line of its tool tip is its accessible name, the
/// rest its description.
class ActionButton : public QAbstractButton {
  Q_OBJECT

 public:
  /// Off, enabled, without a tag; `images` must outlive it.
  explicit ActionButton(QWidget* parent = nullptr, ImageProvider& images = bundleImages());

  /// 0 off, 1 on. Setting it sends nothing.
  int state() const { return state_; }
  void setState(int state);

  /// A number of the owner's.
  int tag() const { return tag_; }
  void setTag(int tag) { tag_ = tag; }

  /// What the button acts on; kSendsOnNothing makes it deaf.
  int actionMask() const { return actionMask_; }
  void setActionMask(int mask);

  /// Whether a click would be taken: a press in progress disables a button of the image kind.
  bool isEnabled() const { return enabled_; }
  /// Enables or disables it, also during a press.
  void setEnabled(bool enabled);

  /// Whether a press is under way.
  bool isMouseDown() const { return isMouseDown_; }

  /// Sends the action as a click would, without a click.
  void sendAction() { Q_EMIT actionSent(this); }

  /// Where its pictures come from.
  ImageProvider& images() const { return *images_; }

 Q_SIGNALS:
  /// The action. The sender may be deleted by what is connected.
  void actionSent(velmara::ActionButton* sender);

 protected:
  /// A release inside the button of a press that began: sends the action, and changes the state
  /// before or after it as the kind of button does.
  virtual void completeClick() = 0;

  /// What begins and ends a click; `inside` says whether the release was on the button.
  void press();
  void release(bool inside);

  /// Keeps the mouse from what lies under a disabled button.
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void nextCheckState() override {}

  /// Draws the ring around a button that has the focus.
  void drawFocusRing(QPainter& painter) const;

  /// Makes the widget's own enabled flag follow the button's.
  void applyEnabled();

  /// What a press and a release work on. An image button is disabled while it is pressed.
  bool enabled_ = true;
  bool isMouseDown_ = false;
  int state_ = 0;
  bool disablesWhilePressed_ = true;

 private:
  void operate();

  ImageProvider* images_;
  int tag_ = 0;
  int actionMask_ = kSendsOnLeftMouseDown;
  bool pressedByKey_ = false;
  bool applyingEnabled_ = false;
};

}  // namespace velmara
