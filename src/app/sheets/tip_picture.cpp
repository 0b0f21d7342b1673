#include "app/sheets/tip_picture.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>

#include "widgets/image_provider.h"
#include "widgets/style.h"

// Resources in a static library are only linked, and registered, if somebody asks for them; the
// macro has to stand outside of any namespace.
static void registerTips() {
  Q_INIT_RESOURCE(tips);
}

namespace velmara {
namespace {

constexpr QSize kSize{520, 240};
constexpr double kBackdropRadius = 10.0;
constexpr double kTileRadius = 6.0;

// The shared hand of the five pictures. Places are in points of kSize.
class TipPainter {
 public:
  explicit TipPainter(QPainter& painter) : painter_(painter) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
  }

  void backdrop() {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(style::kSurround);
    painter_.drawRoundedRect(QRectF(QPointF(), kSize), kBackdropRadius, kBackdropRadius);
  }

  // The middle of a photo that fills the place.
  void photo(const QRectF& place, const char* name) {
    const QPixmap picture(QStringLiteral(":/tips/%1.jpg").arg(QLatin1String(name)));
    const QSizeF part = place.size().scaled(picture.size(), Qt::KeepAspectRatio);
    QRectF source(QPointF(), part);
    source.moveCenter(QRectF(picture.rect()).center());
    QPainterPath outline;
    outline.addRoundedRect(place, kTileRadius, kTileRadius);
    painter_.save();
    painter_.setClipPath(outline, Qt::IntersectClip);
    painter_.drawPixmap(place, picture, source);
    painter_.restore();
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(style::kRaised, 2.0));
    painter_.drawPath(outline);
  }

  void icon(QPointF center, const char* name, double side = 36.0) {
    QRectF place(0.0, 0.0, side, side);
    place.moveCenter(center);
    const QPixmap picture = bundleImages().imageNamed(QLatin1String(name), 2.0);
    painter_.drawPixmap(place, picture, QRectF(picture.rect()));
  }

  void disc(QPointF center, double radius, const QColor& color) {
    painter_.setPen(QPen(style::kDark, 1.2));
    painter_.setBrush(color);
    painter_.drawEllipse(center, radius, radius);
  }

  void arrow(QPointF from, QPointF to) {
    painter_.setPen(QPen(style::kRaised, 3.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawLine(from, to);
    painter_.drawPolyline(QPolygonF{to + QPointF(-9.0, -8.0), to, to + QPointF(-9.0, 8.0)});
  }

  // A light label, its text in the middle.
  void chip(const QRectF& place, const QString& text) {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(style::kRaised);
    painter_.drawRoundedRect(place, place.height() / 2.0, place.height() / 2.0);
    painter_.setPen(style::kText);
    painter_.drawText(place, Qt::AlignCenter, text);
  }

  QPainter& painter() { return painter_; }

 private:
  QPainter& painter_;
};

void drawOpen(TipPainter& tip) {
  QPainter& painter = tip.painter();
  const QRectF target(290.0, 50.0, 180.0, 140.0);
  QPen outline(style::kText, 1.6, Qt::CustomDashLine);
  outline.setDashPattern({5.0, 4.0});
  painter.setPen(outline);
  QColor card = style::kRaised;
  card.setAlpha(70);
  painter.setBrush(card);
  painter.drawRoundedRect(target, 14.0, 14.0);
  tip.icon(target.center(), "open_folder", 84.0);
  painter.save();
  painter.translate(135.0, 120.0);
  painter.rotate(-6.0);
  tip.photo({-90.0, -50.0, 180.0, 100.0}, "noisy");
  painter.restore();
  tip.arrow({240.0, 120.0}, {276.0, 120.0});
}

void drawAuto(TipPainter& tip) {
  tip.photo({24.0, 58.0, 180.0, 124.0}, "noisy");
  tip.photo({316.0, 58.0, 180.0, 124.0}, "auto");
  tip.arrow({212.0, 120.0}, {307.0, 120.0});
  tip.disc({258.0, 120.0}, 24.0, style::kAccent);
  tip.icon({258.0, 120.0}, "auto_mode", 48.0);
}

void drawLevel(TipPainter& tip) {
  constexpr double kLeft = 64.0;
  constexpr double kRight = 456.0;
  constexpr double kLine = 192.0;
  constexpr double kKnob = 0.7;
  tip.photo({24.0, 28.0, 226.0, 128.0}, "level1");
  tip.photo({270.0, 28.0, 226.0, 128.0}, "level10");
  QPainter& painter = tip.painter();
  const double knob = kLeft + kKnob * (kRight - kLeft);
  painter.setPen(QPen(style::kRaised, 4.0, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(kLeft, kLine), QPointF(kRight, kLine));
  painter.setPen(QPen(style::kDark, 4.0, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(kLeft, kLine), QPointF(knob, kLine));
  tip.disc({knob, kLine}, 9.0, style::kAccent);
  painter.setPen(style::kText);
  painter.drawText(QRectF(kLeft - 40.0, kLine + 10.0, 80.0, 24.0), Qt::AlignCenter,
                   QStringLiteral("10 %"));
  painter.drawText(QRectF(kRight - 40.0, kLine + 10.0, 80.0, 24.0), Qt::AlignCenter,
                   QStringLiteral("100 %"));
}

void drawCompare(TipPainter& tip) {
  const QRectF whole(110.0, 18.0, 300.0, 157.0);
  const double line = whole.center().x() - 20.0;
  QPainter& painter = tip.painter();
  tip.photo(whole, "noisy");
  painter.save();
  painter.setClipRect(QRectF(QPointF(line, 0.0), whole.bottomRight() + QPointF(2.0, 2.0)));
  tip.photo(whole, "level10");
  painter.restore();
  painter.setPen(QPen(style::kRaised, 2.0));
  painter.drawLine(QPointF(line, whole.top()), QPointF(line, whole.bottom()));
  tip.disc({line, whole.center().y()}, 8.0, style::kRaised);
  const std::array<const char*, 3> icons = {"single_mode", "split_mode_selected", "dual_mode"};
  double x = whole.center().x() - 48.0;
  for (const char* name : icons) {
    tip.icon({x, 208.0}, name);
    x += 48.0;
  }
}

void drawExport(TipPainter& tip) {
  constexpr std::array kFormats = {"JPEG", "TIFF", "BMP", "GIF", "PNG"};
  tip.photo({40.0, 36.0, 236.0, 168.0}, "auto");
  tip.arrow({290.0, 120.0}, {330.0, 120.0});
  tip.icon({366.0, 120.0}, "save", 72.0);
  double y = 36.0;
  for (const char* format : kFormats) {
    tip.chip({414.0, y, 76.0, 26.0}, QLatin1String(format));
    y += 35.5;
  }
}

}  // namespace

TipPicture::TipPicture(QWidget* parent) : QWidget(parent) {
  registerTips();
  setFixedSize(kSize);
}

void TipPicture::setTopic(TipTopic topic) {
  topic_ = topic;
  update();
}

QSize TipPicture::sizeHint() const {
  return kSize;
}

void TipPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  TipPainter tip(painter);
  tip.backdrop();
  switch (topic_) {
    case TipTopic::kOpen:
      return drawOpen(tip);
    case TipTopic::kAuto:
      return drawAuto(tip);
    case TipTopic::kLevel:
      return drawLevel(tip);
    case TipTopic::kCompare:
      return drawCompare(tip);
    case TipTopic::kExport:
      return drawExport(tip);
  }
}

}  // namespace velmara
