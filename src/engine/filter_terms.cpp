#include "engine/filter_terms.h"

#include <algorithm>
#include <cmath>

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
  // cppcheck-suppress returnDanglingLifetime // The numbers are returned, not what they come from.
  return {edge(counter), edge(std::int64_t{counter} + 1)};
}

WeightTable buildWeightTable(double sigma, int channels) {
  constexpr double kSmallestWeight = 0.001;
  constexpr std::int64_t kEntriesPerChannel = 65536;

  WeightTable table;
  if (channels <= 0) return table;
  const std::int64_t size = channels * kEntriesPerChannel;
  table.entries.assign(static_cast<std::size_t>(size), 0.0);
  table.coefficient = (1.0 / (sigma * sigma)) * (-1.0 / channels);
  table.offset = (sigma + sigma) * sigma;
  const bool onlyIdentical =
      sigma * sigma == 0.0;  // The exponent of entry 0 would be 0 * infinity.

  std::int64_t i = 0;
  for (;; ++i) {
    const double exponent =
        std::max(0.0, static_cast<double>(i) - table.offset) * table.coefficient;
    const double weight = onlyIdentical && i == 0 ? 1.0 : std::exp(exponent);
    if (weight < kSmallestWeight || i + 1 == size) break;
    table.entries[static_cast<std::size_t>(i)] = weight;
  }
  table.cutOff = i;
  return table;
}

}  // namespace velmara
