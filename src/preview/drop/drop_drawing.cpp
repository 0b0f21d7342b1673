#include "preview/drop/drop_drawing.h"

#include <QFont>
#include <QFontMetrics>
#include <QPaintDevice>
#include <QPainter>
#include <QPen>
#include <QPixmap>

#include <algorithm>

#include "widgets/image_provider.h"
#include "widgets/style.h"

namespace velmara {
namespace {

constexpr double kRingWidth = 6.0;
constexpr double kGapWidth = 2.0;

double lineWidth = 1.0;

void strokeInside(QPainter& painter, const QRectF& frame, const QColor& color, double width) {
  QPen pen(color, width);
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  const double half = width / 2.0;
  painter.drawRect(frame.adjusted(half, half, -half, -half));
}

constexpr double kTextScale = 1.5;
constexpr int kIconSide = 72;
// What is drawn of the icon, without the margin around it.
constexpr int kIconHeight = 44;
constexpr int kPadding = 36;
constexpr int kGap = 14;
constexpr int kRadius = 16;
constexpr int kCardAlpha = 60;
constexpr int kOutlineAlpha = 110;

QColor translucent(QColor color, int alpha) {
  color.setAlpha(alpha);
  return color;
}

QFont scaled(QFont font, double factor) {
  if (font.pointSizeF() > 0.0) {
    font.setPointSizeF(font.pointSizeF() * factor);
  } else {
    font.setPixelSize(static_cast<int>(font.pixelSize() * factor));
  }
  return font;
}

void drawCard(QPainter& painter, const QRect& card) {
  QPen outline(translucent(style::kText, kOutlineAlpha), 1.5, Qt::CustomDashLine);
  outline.setDashPattern({5.0, 4.0});
  painter.setPen(outline);
  painter.setBrush(translucent(style::kRaised, kCardAlpha));
  painter.drawRoundedRect(QRectF(card).adjusted(1.0, 1.0, -1.0, -1.0), kRadius, kRadius);
}

}  // namespace

double defaultLineWidth() {
  return lineWidth;
}

void strokeFocusRing(QPainter& painter, const QRect& frame) {
  lineWidth = kRingWidth;
  painter.save();
  painter.setBrush(Qt::NoBrush);
  strokeInside(painter, frame, style::kFocusRing, lineWidth);
  strokeInside(painter, QRectF(frame).adjusted(lineWidth, lineWidth, -lineWidth, -lineWidth),
               style::kFocusGap, kGapWidth);
  painter.restore();
}

void drawInvitation(QPainter& painter, const QRect& frame, const QString& text,
                    const QString& shortcut) {
  const QFont small = painter.font();
  const QFont large = scaled(small, kTextScale);
  const QFontMetrics largeMetrics(large, painter.device());
  const QFontMetrics smallMetrics(small, painter.device());

  const int textWidth =
      std::max(largeMetrics.horizontalAdvance(text), smallMetrics.horizontalAdvance(shortcut));
  const QSize size(textWidth + 2 * kPadding, kIconHeight + largeMetrics.height() +
                                                 smallMetrics.height() + 2 * kGap + 2 * kPadding);
  if (size.width() > frame.width() || size.height() > frame.height()) return;
  QRect card(QPoint(), size);
  card.moveCenter(frame.center());

  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  drawCard(painter, card);

  QRect line(card.left(), card.top() + kPadding, card.width(), kIconHeight);
  QRect iconPlace(0, 0, kIconSide, kIconSide);
  iconPlace.moveCenter(line.center());
  // The larger drawing, whatever the screen: the icon stands at twice its usual size.
  const QPixmap icon = bundleImages().imageNamed(QStringLiteral("open_folder"), 2.0);
  painter.drawPixmap(iconPlace, icon);

  painter.setPen(style::kText);
  painter.setFont(large);
  line.setTop(line.bottom() + 1 + kGap);
  line.setHeight(largeMetrics.height());
  painter.drawText(line, Qt::AlignCenter, text);
  painter.setFont(small);
  line.setTop(line.bottom() + 1 + kGap);
  line.setHeight(smallMetrics.height());
  painter.drawText(line, Qt::AlignCenter, shortcut);
  painter.restore();
}

}  // namespace velmara
