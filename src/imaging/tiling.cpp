#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "imaging/resample.h"
#include "imaging/utils.h"

namespace velmara {
namespace {

constexpr float kOverlap = 10.0F;

/// The part of a tile that belongs to the whole picture, at the size of its place there.
Bitmap pieceOf(const Image& tile, float left, float wholeHeight, int width, int height) {
  const Size size = tile.size();
  const Bitmap& bitmap = tile.bitmap();
  const double across = bitmap.width() / size.width;
  const double up = bitmap.height() / size.height;
  const auto tileWidth = static_cast<float>(size.width);
  return drawnPart(
      bitmap,
      {left * across, 0.0, static_cast<double>(tileWidth - kOverlap) * across, wholeHeight * up},
      width, height);
}

/// Lays a piece into a canvas, its top-left corner at (left, top).
void place(const Bitmap& piece, int left, int top, BitmapBuilder& canvas) {
  for (int y = 0; y < piece.height(); ++y) {
    std::memcpy(canvas.row(top + y) + static_cast<std::size_t>(left) * 4, piece.row(y),
                piece.rowBytes());
  }
}

}  // namespace

std::vector<Image> Utils::splitImagesIntoSubImagesWithImage(const Image& image,
                                                            unsigned numberOfRows,
                                                            unsigned numberOfColumns) const {
  std::vector<Image> tiles;
  if (numberOfRows == 0 || numberOfColumns == 0 || !image.isValid()) return tiles;
  const float width = static_cast<float>(image.size().width) / static_cast<float>(numberOfColumns);
  const float height = static_cast<float>(image.size().height) / static_cast<float>(numberOfRows);
  for (unsigned row = 0; row < numberOfRows; ++row) {
    for (unsigned column = 0; column < numberOfColumns; ++column) {
      const float overlap = column > 0 ? kOverlap : 0.0F;
      tiles.push_back(
          cropImage(image, {static_cast<float>(column) * width - overlap,
                            static_cast<float>(row) * height, width + kOverlap, height}));
    }
  }
  return tiles;
}

Image Utils::constructImageWithPatchArray(const std::vector<Image>& tiles, int rows, int columns,
                                          const Image& /*originalImage*/) const {
  if (rows <= 0 || columns <= 0 ||
      tiles.size() / static_cast<std::size_t>(columns) < static_cast<std::size_t>(rows)) {
    return {};
  }
  const Size last = tiles.back().size();
  const float wholeWidth =
      static_cast<float>(columns) * (static_cast<float>(last.width) - kOverlap);
  const float wholeHeight = static_cast<float>(rows) * static_cast<float>(last.height);
  if (!tiles.back().isValid() || !(wholeWidth > 0.0F)) return {};
  auto canvas = BitmapBuilder::allocate(canvasPixels(wholeWidth), canvasPixels(wholeHeight), 4);
  if (!canvas) return {};
  std::ranges::fill(canvas->bytes(), std::uint8_t{0});

  const float width = wholeWidth / static_cast<float>(columns);
  const float height = wholeHeight / static_cast<float>(rows);
  const auto edge = [](float position, int most) {
    return std::clamp(static_cast<int>(std::lround(position)), 0, most);
  };
  for (int row = 0; row < rows; ++row) {
    const int bottom = edge(static_cast<float>(row) * height, canvas->height());
    const int top = edge(static_cast<float>(row + 1) * height, canvas->height());
    for (int column = 0; column < columns; ++column) {
      const Image& tile = tiles[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                                static_cast<std::size_t>(column)];
      const int left = edge(static_cast<float>(column) * width, canvas->width());
      const int right = edge(static_cast<float>(column + 1) * width, canvas->width());
      if (!tile.isValid() || right <= left || top <= bottom) continue;
      const Bitmap piece =
          pieceOf(tile, column > 0 ? kOverlap : 0.0F, wholeHeight, right - left, top - bottom);
      if (piece.isValid()) place(piece, left, canvas->height() - top, *canvas);
    }
  }
  return Image({std::move(*canvas).finish()}, {wholeWidth, wholeHeight}, tiles.back().profile());
}

}  // namespace velmara
