#include "widgets/img_button.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>

#include "widgets/image_button_paint.h"

namespace velmara {

IMGButton::IMGButton(QWidget* parent, ImageProvider& images) : ActionButton(parent, images) {
  createTrackingArea();
  resetCursorRects();
}

// clang-format off
void IMGButton::setButtonImages(
    const QString& onSt, const QString& onMd, const QString& onEn,
    const QString& onDwnSt, const QString& onDwnMd, const QString& onDwnEn,
    const QString& onDisSt, const QString& onDisMd, const QString& onDisEn,
    const QString& offSt, const QString& offMd, const QString& offEn,
    const QString& offDwnSt, const QString& offDwnMd, const QString& offDwnEn,
    const QString& offDisSt, const QString& offDisMd, const QString& offDisEn) {
  click_.isMouseDown = false;
  imgOnState_St = onSt;       imgOnState_Md = onMd;       imgOnState_En = onEn;
  imgOnStateDwn_St = onDwnSt; imgOnStateDwn_Md = onDwnMd; imgOnStateDwn_En = onDwnEn;
  imgOnStateDis_St = onDisSt; imgOnStateDis_Md = onDisMd; imgOnStateDis_En = onDisEn;
  imgOffState_St = offSt;       imgOffState_Md = offMd;       imgOffState_En = offEn;
  imgOffStateDwn_St = offDwnSt; imgOffStateDwn_Md = offDwnMd; imgOffStateDwn_En = offDwnEn;
  imgOffStateDis_St = offDisSt; imgOffStateDis_Md = offDisMd; imgOffStateDis_En = offDisEn;
  updateGeometry();
  update();
}

void IMGButton::setButtonsImages(
    const QString& st, const QString& md, const QString& en,
    const QString& dwnSt, const QString& dwnMd, const QString& dwnEn,
    const QString& disSt, const QString& disMd, const QString& disEn) {
  setButtonImages(st, md, en, dwnSt, dwnMd, dwnEn, disSt, disMd, disEn,
                  st, md, en, dwnSt, dwnMd, dwnEn, disSt, disMd, disEn);
}
// clang-format on

void IMGButton::createTrackingArea() {
  setAttribute(Qt::WA_Hover);
}

void IMGButton::resetCursorRects() {
  setCursor(Qt::PointingHandCursor);
}

void IMGButton::mouseEntered() {
  isMouseHover = true;
  update();
}

void IMGButton::mouseExited() {
  isMouseHover = false;
  update();
}

void IMGButton::mouseDown(QMouseEvent* event) {
  ActionButton::mousePressEvent(event);
}

void IMGButton::mouseUp(QMouseEvent* event) {
  ActionButton::mouseReleaseEvent(event);
}

void IMGButton::completeClick() {
  const QPointer<IMGButton> alive(this);
  sendAction();
  if (!alive) return;
  finishClick(click_, enableImmediately);
  applyEnabled();
}

void IMGButton::getAttributesForRect(const QRectF& rect, bool multi) {
  layoutTitle(*this, rect, multi, measureTitle);
}

TextAttributes IMGButton::getAttributesForRect(const QRectF& rect) {
  if (isMultiLine) setText(splitIntoTwoLines(text(), multiLineStr));
  return layoutTitleOlder(*this, text(), rect.size(), measureTitle);
}

QSize IMGButton::sizeHint() const {
  double width = 0.0;
  double height = 0.0;
  for (const QString& name : {imgOffState_St, imgOffState_Md, imgOffState_En}) {
    const QSizeF size = images().imageNamed(name, 1.0).deviceIndependentSize();
    width += size.width();
    height = std::max(height, size.height());
  }
  return QSizeF(width, height).toSize();
}

void IMGButton::enterEvent(QEnterEvent* event) {
  ActionButton::enterEvent(event);
  if (QGuiApplication::applicationState() == Qt::ApplicationActive) mouseEntered();
}

void IMGButton::leaveEvent(QEvent* event) {
  ActionButton::leaveEvent(event);
  mouseExited();
}

void IMGButton::mousePressEvent(QMouseEvent* event) {
  mouseDown(event);
}

void IMGButton::mouseReleaseEvent(QMouseEvent* event) {
  mouseUp(event);
}

void IMGButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const ImageButtonDrawing drawing{
      .enabled = isEnabled(), .on = state() != 0, .isMouseDown = isMouseDown()};
  paintImageButton(painter, rect(), text(), drawing, *this, images());
  drawFocusRing(painter);
}

}  // namespace velmara
