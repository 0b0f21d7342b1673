#pragma once

#include <QCache>
#include <QImage>
#include <QPair>
#include <QPoint>

#include <vector>

#include "base/geometry.h"
#include "preview/tiled_picture.h"
#include "preview/views/screen_colors.h"

namespace velmara {

/// A piece of a shown picture as it goes to the screen.
struct ScreenTile {
  /// Its top-left pixel in the picture.
  QPoint place;
  QImage image;
};

/// A scaled picture in the screen's colours, of which only what was looked at lately is held. Views
/// that show the same picture share it. Any thread may use it, one at a time: it is filled on a
/// worker and then belongs to the main thread.
class ScreenTiles {
 public:
  ScreenTiles(ScaledPicture picture, ScreenColors colors);

  /// The images that together cover a rectangle of the picture, rendered now if they are not at
  /// hand. What cannot be rendered for lack of memory is left out.
  std::vector<ScreenTile> imagesOver(const PixelRect& visible);

 private:
  QImage imageOf(const PictureTile& tile);

  TiledPicture tiles_;
  ScreenColors colors_;
  /// By the tiles' places.
  QCache<QPair<int, int>, QImage> converted_;
};

}  // namespace velmara
