#pragma once

#include <QCache>
#include <QColorTransform>
#include <QImage>
#include <QPair>
#include <QPoint>

#include <vector>

#include "base/geometry.h"
#include "base/image.h"
#include "preview/scaled_picture.h"

namespace velmara {

/// Turns pictures into what the screen shows: sRGB, in the layout that is drawn fastest. The
/// filter's own numbers are never touched by it.
class ScreenColors {
 public:
  ScreenColors() = default;
  /// From a profile's colours; from sRGB where there is none or it cannot be used.
  explicit ScreenColors(const ColorProfile& profile);

  /// A copy of the bitmap for drawing. Null for a bitmap that is not valid.
  QImage imageFor(const Bitmap& bitmap) const;

 private:
  bool converts_ = false;
  QColorTransform transform_;
};

/// A piece of a shown picture as it goes to the screen.
struct ScreenTile {
  /// Its top-left pixel in the picture.
  QPoint place;
  /// In the screen's colours.
  QImage image;
};

/// A scaled picture in the screen's colours with the tiles of it that were looked at lately, so
/// that dragging it about renders only what comes into sight. Views that show the same picture
/// share it. Any thread may use it, one at a time: it is filled on a worker and then belongs to the
/// main thread.
class ScreenTiles {
 public:
  /// Of a tile, in pixels.
  static constexpr int kTileSide = 128;
  /// What is kept at least, in kilobytes; the tiles in sight are kept beyond it.
  static constexpr qsizetype kKeptKilobytes = qsizetype{64} * 1024;

  /// Nothing is rendered yet.
  ScreenTiles(ScaledPicture picture, ScreenColors colors);

  /// The tiles that together cover a rectangle of the picture, row by row, rendered now if they are
  /// not at hand. What cannot be rendered for lack of memory is left out.
  std::vector<ScreenTile> imagesOver(const PixelRect& visible);

  /// Of tiles, in sight or not.
  qsizetype kilobytesHeld() const { return tiles_.totalCost(); }

 private:
  PixelRect rectOf(const PixelRect& places) const;
  void render(const PixelRect& places);

  ScaledPicture picture_;
  ScreenColors colors_;
  /// By row and column; rectangles of places are counted in tiles.
  QCache<QPair<int, int>, QImage> tiles_;
};

}  // namespace velmara
