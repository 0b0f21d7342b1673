#pragma once

#include <QImage>
#include <QWidget>

#include <memory>

#include "base/geometry.h"
#include "preview/views/screen_tiles.h"

namespace velmara {

/// Shows a picture, or a place in a much larger one, pixel for pixel: a pixel of the picture is one
/// device pixel, whatever the screen's scale. The view covers its container and draws nothing where
/// there is no picture. The mouse goes through it to the view below.
class PictureView : public QWidget {
  Q_OBJECT

 public:
  /// Shows nothing.
  explicit PictureView(QWidget* parent = nullptr);

  /// Shows a picture whose top-left pixel lies at the frame's, in device pixels from the view's
  /// top-left corner, and of which no more is seen than the frame holds. Of a tiled picture only
  /// what is seen is rendered.
  void showPicture(std::shared_ptr<ScreenTiles> picture, const PixelRect& frame);
  void showPicture(const QImage& picture, const PixelRect& frame);
  /// Moves what is shown.
  void moveTo(const PixelRect& frame);
  /// Shows nothing.
  void clear();

  /// Whether something is shown, and where, in device pixels.
  bool hasPicture() const { return tiles_ != nullptr || !image_.isNull(); }
  const PixelRect& frame() const { return frame_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintTiles(QPainter& painter, const PixelRect& visible);

  std::shared_ptr<ScreenTiles> tiles_;
  QImage image_;
  PixelRect frame_;
};

}  // namespace velmara
