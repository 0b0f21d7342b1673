#include "app/sheets/page_dots.h"

#include <QMouseEvent>
#include <QPainter>

#include "widgets/style.h"

namespace velmara {
namespace {

constexpr int kPitch = 18;
constexpr double kDiameter = 8.0;

}  // namespace

PageDots::PageDots(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PageDots::setPages(int count, int selected) {
  count_ = count;
  selected_ = selected;
  setAccessibleName(tr("Page %1 of %2").arg(selected + 1).arg(count));
  updateGeometry();
  update();
}

QSize PageDots::sizeHint() const {
  return {count_ * kPitch, kPitch};
}

QRectF PageDots::dot(int index) const {
  QRectF place(0.0, 0.0, kDiameter, kDiameter);
  place.moveCenter(QPointF(index * kPitch + kPitch / 2.0, height() / 2.0));
  return place;
}

void PageDots::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(style::kTextDim, 1.2));
  for (int i = 0; i < count_; ++i) {
    painter.setBrush(i == selected_ ? QBrush(style::kDark) : Qt::NoBrush);
    painter.drawEllipse(dot(i));
  }
}

void PageDots::mousePressEvent(QMouseEvent* event) {
  const int index = static_cast<int>(event->position().x()) / kPitch;
  if (event->button() == Qt::LeftButton && index < count_) Q_EMIT pageChosen(index);
}

}  // namespace velmara
