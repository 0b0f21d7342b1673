#pragma once

#include "widgets/action_button.h"

namespace velmara {

/// A toolbar button with one icon a state. It follows the desktop's own push buttons: a toggle
/// flips its state before it sends its action, and a press does not disable it.
class IconButton : public ActionButton {
  Q_OBJECT

 public:
  /// Off, without an icon.
  explicit IconButton(QWidget* parent = nullptr, ImageProvider& images = bundleImages());

  /// Takes the images NAME, NAME_selected, NAME_yellow_selected and NAME_disabled for the off, on,
  /// hovered and disabled look.
  void setIconName(const QString& name);

  /// A button that does not toggle keeps the state its owner gives it. Buttons toggle by default.
  void setToggles(bool toggles) { toggles_ = toggles; }

  QSize sizeHint() const override;

 protected:
  void completeClick() override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString imageToDraw() const;

  QString iconName_;
  bool toggles_ = true;
  bool isMouseHover_ = false;
};

}  // namespace velmara
