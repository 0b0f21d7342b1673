#pragma once

#include <QEnterEvent>

#include "widgets/action_button.h"
#include "widgets/image_button_layout.h"

namespace velmara {

/// Measures a title with the fonts of this desktop.
QSizeF measureTitle(const QString& text, const TitleFont& font);

/// A push and toggle button drawn entirely from named images: for each state a left cap, a
/// stretched middle and a right cap, with a title over it. The button's title is its text(). A
/// click sends the action and then flips the state; a press in progress disables the button.
/// After a change of public fields, call update().
class IMGButton : public ActionButton, public ImageButtonFields {
  Q_OBJECT

 public:
  /// Off, without images or a title.
  explicit IMGButton(QWidget* parent = nullptr, ImageProvider& images = bundleImages());

  // clang-format off
  /// Sets all images, on state first, and forgets a press in progress.
  void setButtonImages(
      const QString& imgOnState_St, const QString& imgOnState_Md, const QString& imgOnState_En,
      const QString& imgOnStateDwn_St, const QString& imgOnStateDwn_Md, const QString& imgOnStateDwn_En,
      const QString& imgOnStateDis_St, const QString& imgOnStateDis_Md, const QString& imgOnStateDis_En,
      const QString& imgOffState_St, const QString& imgOffState_Md, const QString& imgOffState_En,
      const QString& imgOffStateDwn_St, const QString& imgOffStateDwn_Md, const QString& imgOffStateDwn_En,
      const QString& imgOffStateDis_St, const QString& imgOffStateDis_Md, const QString& imgOffStateDis_En);

  /// Sets the same images for the on and the off state.
  void setButtonsImages(
      const QString& imgState_St, const QString& imgState_Md, const QString& imgState_En,
      const QString& imgStateDwn_St, const QString& imgStateDwn_Md, const QString& imgStateDwn_En,
      const QString& imgStateDis_St, const QString& imgStateDis_Md, const QString& imgStateDis_En);
  // clang-format on

  /// Makes the button follow the pointer over its visible rectangle while the application is
  /// active; done once when it is made.
  void createTrackingArea();

  /// Shows the pointing hand over the button.
  void resetCursorRects();

  /// What the toolkit's events lead to.
  void mouseEntered();
  void mouseExited();
  void mouseDown(QMouseEvent* event);
  void mouseUp(QMouseEvent* event);

  /// Finds the title's attributes for one layout; see layoutTitle.
  void getAttributesForRect(const QRectF& rect, bool multi);

  /// An older one-layout form, not used by drawing; see layoutTitleOlder. Breaks and sets the title
  /// itself when isMultiLine is set.
  TextAttributes getAttributesForRect(const QRectF& rect);

  /// As large as the images of the off state ask for, with the title beside no image.
  QSize sizeHint() const override;

 protected:
  void completeClick() override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace velmara
