#pragma once

#include <QWidget>

#include <string>
#include <vector>

#include "preview/drop/drop_delegate.h"

namespace velmara {

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
  explicit FileDraggingView(QWidget* parent = nullptr);

  /// Not owned: set to null before it goes.
  void setDelegate(DropDelegate* delegate) { delegate_ = delegate; }
  DropDelegate* delegate() const { return delegate_; }

  /// Whether the focus ring is drawn. Setting it always asks for a redraw.
  bool isHighlighted() const { return isHighlighted_; }
  void setHighlighted(bool highlighted);

 protected:
  /// The files of a drag are all images.
  virtual void draggedImagesEntered() {}

  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void handOver(const std::vector<std::string>& paths);

  DropDelegate* delegate_ = nullptr;
  bool isHighlighted_ = false;
  bool isDragAccepted_ = false;
};

}  // namespace velmara
