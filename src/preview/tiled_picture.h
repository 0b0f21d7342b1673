#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <utility>
#include <vector>

#include "preview/scaled_picture.h"

namespace velmara {

/// A piece of a shown picture, in the picture's pixels.
struct PictureTile {
  PixelRect rect;
  /// 4 samples a pixel.
  Bitmap bitmap;
};

/// A shown picture with the pieces of it that were rendered lately, so that dragging it about
/// renders only what comes into sight. Any thread may use it, one at a time.
class TiledPicture {
 public:
  static constexpr int kTileSide = 128;
  /// What is kept beyond the pieces in sight, in bytes.
  static constexpr std::size_t kKept = std::size_t{32} << 20U;

  TiledPicture() = default;
  explicit TiledPicture(ScaledPicture picture) : picture_(std::move(picture)) {}
  // Tiles know their place in the list of uses: moved along, but not copied.
  TiledPicture(const TiledPicture&) = delete;
  TiledPicture& operator=(const TiledPicture&) = delete;
  TiledPicture(TiledPicture&&) = default;
  TiledPicture& operator=(TiledPicture&&) = default;
  ~TiledPicture() = default;

  const ScaledPicture& picture() const { return picture_; }

  /// The tiles that together cover a rectangle of the picture, row by row, rendered now if they are
  /// not at hand. Tiles that cannot be rendered for lack of memory are left out.
  std::vector<PictureTile> tilesOver(const PixelRect& visible);

  std::size_t bytesHeld() const { return bytes_; }

 private:
  /// Row and column; rectangles of places are counted in tiles.
  using Place = std::pair<int, int>;
  struct Entry {
    PictureTile tile;
    /// Its place in the order of use.
    std::list<Place>::iterator use;
  };

  PixelRect rectOf(const PixelRect& places) const;
  void renderMissing(const PixelRect& places);
  void render(const PixelRect& places);
  void forgetBeyond(std::size_t inSight);

  ScaledPicture picture_;
  std::map<Place, Entry> tiles_;
  /// Most lately used first.
  std::list<Place> uses_;
  std::size_t bytes_ = 0;
};

}  // namespace velmara
