#include "widgets/noise_gauge_view.h"

#include <QPainter>
#include <QPolygonF>

#include "widgets/style.h"

namespace velmara {
namespace {

constexpr int kBars = 10;
constexpr double kBarWidth = 5.0;
constexpr double kGap = 2.0;
constexpr double kBarHeight = 9.0;
constexpr double kMarkHeight = 4.0;
constexpr double kMarkGap = 1.0;
constexpr QSize kSize(static_cast<int>(kBars*(kBarWidth + kGap) - kGap) + 2,
                      static_cast<int>(kBarHeight + kMarkGap + kMarkHeight) + 2);

}  // namespace

void drawNoiseGauge(QPainter& painter, const QRectF& frame, int asked, int chosen) {
  const double width = kBars * (kBarWidth + kGap) - kGap;
  const QPointF origin(frame.left() + (frame.width() - width) / 2.0,
                       frame.top() + (frame.height() - kSize.height()) / 2.0 + 1.0);
  painter.save();
  painter.setPen(Qt::NoPen);
  for (int bar = 1; bar <= kBars; ++bar) {
    const QRectF place(origin.x() + (bar - 1) * (kBarWidth + kGap), origin.y(), kBarWidth,
                       kBarHeight);
    painter.fillRect(place, bar <= chosen ? style::kDark : style::kBorder);
    if (bar != asked) continue;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(style::kFocusRing);
    const double middle = place.center().x();
    const double top = place.bottom() + kMarkGap;
    painter.drawPolygon(QPolygonF({{middle, top},
                                   {middle - kMarkHeight, top + kMarkHeight},
                                   {middle + kMarkHeight, top + kMarkHeight}}));
    painter.setRenderHint(QPainter::Antialiasing, false);
  }
  painter.restore();
}

NoiseGaugeView::NoiseGaugeView(QWidget* parent) : QWidget(parent) {
  setFixedSize(kSize);
}

void NoiseGaugeView::setValues(int asked, int chosen, const QString& text) {
  asked_ = asked;
  chosen_ = chosen;
  setToolTip(text);
  setAccessibleDescription(text);
  update();
}

QSize NoiseGaugeView::sizeHint() const {
  return kSize;
}

void NoiseGaugeView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawNoiseGauge(painter, rect(), asked_, chosen_);
}

}  // namespace velmara
