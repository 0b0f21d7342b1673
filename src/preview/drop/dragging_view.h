#pragma once

#include <QPointF>
#include <QWidget>

#include <string>
#include <vector>

class QMouseEvent;

namespace velmara {

/// What a drop target hands its photos and clicks to. Main thread.
class DropDelegate {
 public:
  virtual ~DropDelegate() = default;

  /// An image file was dropped; the path is in the file system's own bytes.
  virtual void photoDraggedWithPath(const std::string& path) = 0;

  /// The left button on a `DraggingView`: presses and releases of single clicks, and every drag.
  /// There is nothing to be moved where no photo is seen.
  virtual void mouseDown(QMouseEvent& /*event*/) {}
  virtual void mouseDragged(QMouseEvent& /*event*/) {}
  virtual void mouseUp(QMouseEvent& /*event*/) {}
};

/// A view that photos can be dropped on. A drag of files is accepted when each is an image by its
/// contents; a folder, an address on the web and a file of another kind are refused, which the
/// desktop shows by the cursor. A drag that is not of files at all is accepted and comes to
/// nothing.
///
/// Dropped photos reach the delegate in their order, after the drag has been answered, so that a
/// question of the delegate's does not hold up the program they come from.
class FileDraggingView : public QWidget {
  Q_OBJECT

 public:
  /// Without a delegate: nothing is taken.
  explicit FileDraggingView(QWidget* parent = nullptr);

  /// Not owned: set to null before it goes.
  void setDelegate(DropDelegate* delegate) { delegate_ = delegate; }
  DropDelegate* delegate() const { return delegate_; }

  /// Whether the focus ring is drawn. Setting it always asks for a redraw.
  bool isHighlighted() const { return isHighlighted_; }
  void setHighlighted(bool highlighted);

 Q_SIGNALS:
  /// A drag of images has entered, or what was dragged has left or was dropped.
  void imagesHover(bool hover);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void setHovered(bool hovered);
  void handOver(const std::vector<std::string>& paths);

  DropDelegate* delegate_ = nullptr;
  bool isHighlighted_ = false;
  bool isDragAccepted_ = false;
};

/// The drop target of an empty window: it rings itself while photos hover over it, tells its
/// delegate of single clicks and of drags with the left button, and invites to drop or open a
/// photo. Laid over a photo it is only the ring: drags and the mouse go to the view below.
class DraggingView : public FileDraggingView {
  Q_OBJECT

 public:
  /// Over an empty window.
  explicit DraggingView(QWidget* parent = nullptr);

  /// Whether it lies over a photo, and is only the ring.
  bool liesOverPhoto() const { return testAttribute(Qt::WA_TransparentForMouseEvents); }
  void setLiesOverPhoto(bool liesOverPhoto);

 protected:
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
