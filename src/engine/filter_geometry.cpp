#include "engine/filter_geometry.h"

namespace velmara {
namespace {

double reciprocalOfArea(int side) {
  return 1.0 / (static_cast<double>(side) * static_cast<double>(side));
}

}  // namespace

std::int64_t borderOfWindows(int templateWinSize, int searchWinSize) {
  return std::int64_t{searchWinSize / 2} + templateWinSize / 2;
}

FilterGeometry geometryOfRequest(int width, int height, int channels, int templateWinSize,
                                 int searchWinSize) {
  const std::int64_t border = borderOfWindows(templateWinSize, searchWinSize);
  FilterGeometry g;
  g.templateWinSize = templateWinSize;
  g.searchWinSize = searchWinSize;
  g.D = std::int64_t{searchWinSize} * searchWinSize;
  g.H = g.D / 2 + 1;
  g.sr = searchWinSize / 2;
  g.tr = templateWinSize / 2;
  g.tdiv = reciprocalOfArea(templateWinSize);
  g.widthDest = g.widthSrc = width;
  g.heightDest = g.heightSrc = height;
  g.widthIm = static_cast<int>(width + 2 * border);
  g.heightIm = static_cast<int>(height + 2 * border);
  g.channelsDest = g.channelsSrc = g.channelsIm = channels;
  return g;
}

bool isFilterable(const FilterGeometry& g) {
  const int channels = g.channelsSrc;
  if ((channels != 1 && channels != 3) || g.channelsIm != channels || g.channelsDest != channels) {
    return false;
  }
  if (g.templateWinSize < 0 || g.searchWinSize < 0 || g.widthSrc < 0 || g.heightSrc < 0) {
    return false;
  }
  const bool windowsFit = g.D == std::int64_t{g.searchWinSize} * g.searchWinSize &&
                          g.sr == g.searchWinSize / 2 && g.tr == g.templateWinSize / 2 &&
                          g.tdiv == reciprocalOfArea(g.templateWinSize);
  const std::int64_t frame = 2 * (std::int64_t{g.sr} + g.tr);
  return windowsFit && g.widthDest == g.widthSrc && g.heightDest == g.heightSrc &&
         g.widthIm == g.widthSrc + frame && g.heightIm == g.heightSrc + frame;
}

RowRange rowsOfBand(int height, int counter, int totalThreads) {
  const auto edge = [&](std::int64_t band) {
    return static_cast<int>(std::int64_t{height} * band / totalThreads);
  };
  return {edge(counter), edge(std::int64_t{counter} + 1)};
}

}  // namespace velmara
