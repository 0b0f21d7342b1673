#pragma once

#include <QCache>
#include <QImage>
#include <QPair>
#include <QWidget>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "base/image.h"
#include "preview/tiled_picture.h"
#include "preview/views/screen_colors.h"

namespace velmara {

/// Shows a picture, or a place in a much larger one, pixel for pixel: a pixel of the picture is one
/// device pixel, whatever the screen's scale. The view covers its container and draws nothing where
/// there is no picture. The mouse goes through it to the view below.
class PictureView : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  /// The profile that the pictures' colours are meant in; they are shown as sRGB. Null for sRGB.
  void setColorProfile(const ColorProfile& profile);

  /// Shows a picture whose top-left pixel lies at the frame's, in device pixels from the view's
  /// top-left corner. Of a scaled picture only what is seen is rendered.
  void showPicture(ScaledPicture picture, const PixelRect& frame);
  void showPicture(const Bitmap& bitmap, const PixelRect& frame);
  /// Moves what is shown.
  void moveTo(const PixelRect& frame);
  /// Shows nothing.
  void clear();

  bool hasPicture() const { return tiles_.picture().isValid() || !image_.isNull(); }
  const PixelRect& frame() const { return frame_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintTiles(QPainter& painter, const PixelRect& visible);
  const QImage* imageOf(const PictureTile& tile);

  ScreenColors colors_;
  TiledPicture tiles_;
  /// Tiles as they go to the screen, by their place.
  QCache<QPair<int, int>, QImage> converted_;
  QImage image_;
  PixelRect frame_;
};

}  // namespace velmara
