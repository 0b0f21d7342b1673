#include "widgets/img_button.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStringList>

#include <algorithm>

namespace velmara {
namespace {

// The font of this desktop that stands for a title font.
QFont fontFor(const TitleFont& font) {
  QFont result = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  if (font.face == TitleFont::Face::kLucidaGrande) {
    result.setFamilies({QStringLiteral("Lucida Grande"), QStringLiteral("Noto Sans"),
                        QStringLiteral("DejaVu Sans"), QStringLiteral("Sans Serif")});
  }
  result.setPixelSize(font.size);
  result.setBold(font.bold);
  return result;
}

void drawPart(QPainter& painter, const QRectF& target, const QPixmap& image) {
  if (image.isNull() || target.isEmpty()) return;
  painter.drawPixmap(target, image, QRectF(QPointF(), QSizeF(image.size())));
}

// A three-part image over the bounds; images that are missing draw nothing.
void drawThreePartImage(QPainter& painter, const QRectF& bounds, const QPixmap& start,
                        const QPixmap& middle, const QPixmap& end) {
  const ThreePartRects rects = threePartRects(bounds, start.deviceIndependentSize().width(),
                                              end.deviceIndependentSize().width());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  drawPart(painter, rects.start, start);
  drawPart(painter, rects.middle, middle);
  drawPart(painter, rects.end, end);
}

void drawTitle(QPainter& painter, const ChosenTitle& title) {
  if (title.text.isEmpty()) return;
  int flags = Qt::AlignTop | Qt::TextDontClip;
  flags |= title.attributes.centred ? Qt::AlignHCenter : Qt::AlignLeft;
  if (title.attributes.wordWraps) flags |= Qt::TextWordWrap;
  painter.setFont(fontFor(title.attributes.font));
  painter.setPen(title.attributes.color);
  painter.drawText(title.rect, flags, title.text);
}

}  // namespace

QSizeF measureTitle(const QString& text, const TitleFont& font) {
  const QFontMetricsF metrics(fontFor(font));
  const QStringList lines = text.split(QLatin1Char('\n'));
  double width = 0.0;
  for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
  return {width, metrics.height() + static_cast<double>(lines.size() - 1) * metrics.lineSpacing()};
}

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
  isMouseDown_ = false;
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
  state_ = state_ == 0 ? 1 : 0;
  if (enableImmediately) enabled_ = true;
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
  const auto named = [&](const QString& name) {
    return images().imageNamed(name, devicePixelRatioF());
  };
  const QRectF bounds = rect();
  const bool on = state() != 0;
  mTitle = oTitle = text();
  colorText = titleColorFor(*this, isEnabled(), on);
  const ImageButtonPattern pattern = patternFor(*this, isEnabled(), on, isMouseDown());
  pattern_St = named(pattern.start);
  pattern_Mdl = named(pattern.middle);
  pattern_En = named(pattern.end);
  drawThreePartImage(painter, bounds, pattern_St, pattern_Mdl, pattern_En);

  rectText = rectTextM = rectTextNoM = bounds;
  // The search for a size loads a font for each it tries.
  if (!oTitle.isEmpty()) layoutTitle(*this, bounds, false, measureTitle);
  if (canBreakTitle(*this)) layoutTitle(*this, bounds, true, measureTitle);
  const ChosenTitle chosen = chooseTitle(*this, isMouseDown());
  rectText = chosen.rect;
  drawTitle(painter, chosen);

  if (isMouseHover && !on) {
    // The hover image is the right cap of the overlay only.
    drawThreePartImage(painter, bounds, named(imgOnState_St), named(imgOnState_Md),
                       named(imgMouseHover));
  }
  drawFocusRing(painter);
}

}  // namespace velmara
