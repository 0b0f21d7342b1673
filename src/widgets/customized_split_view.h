#pragma once

#include "widgets/split_view.h"

namespace velmara {

/// The before/after line: a split view with a line 6 points thick that carries a grip. The grip is
/// yellow while the line has the keyboard's focus.
class CustomizedSplitView : public SplitView {
  Q_OBJECT

 public:
  explicit CustomizedSplitView(QWidget* parent = nullptr, Scheduler& timers = eventLoopTimers(),
                               const Clock& clock = systemClock());

  double dividerThickness() const override { return 6.0; }
  void drawDividerInRect(QPainter& painter, const QRectF& rect) override;

  /// The same as the base class draws.
  void drawRect(QPaintEvent* event) { SplitView::paintEvent(event); }

 protected:
  void paintEvent(QPaintEvent* event) override { drawRect(event); }
};

}  // namespace velmara
