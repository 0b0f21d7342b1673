#pragma once

#include <vector>

#include "base/geometry.h"

namespace velmara {

/// What is filtered of one of a picture's sizes, in the pixels of that size.
struct DeepArea {
  /// Of the whole picture, as OpponentPlanes has it.
  int width = 0;
  int height = 0;
  /// What has to come out as it would of the whole picture.
  PixelRect asked;
  /// What that depends on, from a place on the grids of blocks to another or to the picture's edge.
  PixelRect worked;
};

/// The sizes, the picture's own first and each half of the one before, at most `most`, that a
/// picture is filtered at so that a part of it comes out right.
std::vector<DeepArea> deepAreas(int width, int height, const PixelRect& part, int most);

/// The place of a smaller size's area in the pixels of the next larger size: to the edge where it
/// reaches the edge.
PixelRect enlarged(const PixelRect& rect, const DeepArea& smaller, const DeepArea& larger);

}  // namespace velmara
