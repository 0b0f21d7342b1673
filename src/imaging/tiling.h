#pragma once

#include <vector>

#include "base/image.h"

namespace velmara {

/// The tiles of a grid over an image, row by row from the bottom, each row from the left. A tile is
/// 10 units wider than its column: the first of a row reaches that far to the right, every other to
/// the left. Empty if there are no rows or no columns.
std::vector<Image> splitIntoTiles(const Image& image, unsigned rows, unsigned columns);

/// The picture of a grid of tiles made by splitIntoTiles, whose overlap is dropped again. Each
/// piece is cut to the height of the whole picture before it is drawn into its row, so with several
/// rows the pieces come squeezed. Not valid if the grid has no tiles or more than there are.
Image joinTiles(const std::vector<Image>& tiles, int rows, int columns);

}  // namespace velmara
