#include "widgets/customized_split_view.h"

#include <QPainter>

#include "widgets/style.h"

namespace velmara {

CustomizedSplitView::CustomizedSplitView(QWidget* parent, Scheduler& timers, const Clock& clock)
    : SplitView(parent, timers, clock) {}

void CustomizedSplitView::drawDividerInRect(QPainter& painter, const QRectF& rect) {
  for (const DividerFill& fill : dividerFills(rect)) painter.fillRect(fill.rect, fill.color);
  if (!hasFocus()) return;
  const double middle = rect.height() / 2;
  painter.fillRect(QRectF(rect.x() + 2, middle - 9, 2, 18), style::kAccent);
}

}  // namespace velmara
