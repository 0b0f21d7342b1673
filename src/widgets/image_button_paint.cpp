#include "widgets/image_button_paint.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>

#include <algorithm>

namespace velmara {
namespace {

void drawPart(QPainter& painter, const QRectF& target, const QPixmap& image) {
  if (image.isNull() || target.isEmpty()) return;
  painter.drawPixmap(target, image, QRectF(QPointF(), QSizeF(image.size())));
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

QSizeF measureTitle(const QString& text, const TitleFont& font) {
  const QFontMetricsF metrics(fontFor(font));
  const QStringList lines = text.split(QLatin1Char('\n'));
  double width = 0.0;
  for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
  return {width, metrics.height() + static_cast<double>(lines.size() - 1) * metrics.lineSpacing()};
}

void drawThreePartImage(QPainter& painter, const QRectF& bounds, const QPixmap& start,
                        const QPixmap& middle, const QPixmap& end) {
  const ThreePartRects rects = threePartRects(bounds, start.deviceIndependentSize().width(),
                                              end.deviceIndependentSize().width());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  drawPart(painter, rects.start, start);
  drawPart(painter, rects.middle, middle);
  drawPart(painter, rects.end, end);
}

void paintImageButton(QPainter& painter, const QRectF& bounds, const QString& title,
                      const ImageButtonDrawing& drawing, ImageButtonFields& fields,
                      const ImageProvider& images) {
  const qreal ratio = painter.device()->devicePixelRatioF();
  const auto named = [&](const QString& name) { return images.imageNamed(name, ratio); };
  fields.mTitle = title;
  fields.oTitle = title;

  fields.colorText = titleColorFor(fields, drawing.enabled, drawing.on);
  const ImageButtonPattern pattern =
      patternFor(fields, drawing.enabled, drawing.on, drawing.isMouseDown);
  fields.pattern_St = named(pattern.start);
  fields.pattern_Mdl = named(pattern.middle);
  fields.pattern_En = named(pattern.end);
  drawThreePartImage(painter, bounds, fields.pattern_St, fields.pattern_Mdl, fields.pattern_En);

  fields.rectText = fields.rectTextM = fields.rectTextNoM = bounds;
  // The search for a size loads a font for each it tries.
  if (!title.isEmpty()) layoutTitle(fields, bounds, false, measureTitle);
  if (canBreakTitle(fields)) layoutTitle(fields, bounds, true, measureTitle);
  const ChosenTitle chosen = chooseTitle(fields, drawing.isMouseDown);
  fields.rectText = chosen.rect;
  drawTitle(painter, chosen);

  if (fields.isMouseHover && !drawing.on) {
    // The hover image is the right cap of the overlay only.
    drawThreePartImage(painter, bounds, named(fields.imgOnState_St), named(fields.imgOnState_Md),
                       named(fields.imgMouseHover));
  }
}

}  // namespace velmara
