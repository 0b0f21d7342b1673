#pragma once

#include <QPointF>

#include "preview/drop/file_dragging_view.h"

namespace velmara {

/// The drop target of an empty window: it rings itself while photos hover over it, tells its
/// delegate of single clicks and of drags with the left button, and invites to drop or open a
/// photo.
class DraggingView : public FileDraggingView {
  Q_OBJECT

 public:
  explicit DraggingView(QWidget* parent = nullptr);

 protected:
  void draggedImagesEntered() override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void countPress(const QMouseEvent& event);

  /// Which click in a row the last press was; the toolkit itself counts to two only.
  int clickCount_ = 0;
  quint64 pressedAt_ = 0;
  QPointF pressedWhere_;
};

}  // namespace velmara
