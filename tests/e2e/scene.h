#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>

#include <string>

namespace velmara::e2e {

/// What a place of the screen should look like, to the pixel.
struct Scene {
  /// On the screen.
  QRect place;
  QImage picture;
  /// What lies over the picture and is looked at elsewhere, from the place's top-left corner.
  QRegion covered;
};

/// An empty preview area (or half of one).
Scene emptyScene(const QRect& place);

/// The size of a photo that fits an area.
QSize fittedSize(const QSize& photo, const QSize& area, double factor = 1.0);

/// Where a picture of a size stands in an area: in its middle, moved by dragging.
QRect placeIn(const QSize& area, const QSize& picture, const QPoint& dragged = {});

/// The part of a picture that is seen when it stands there, in the picture's own pixels.
QRect visiblePart(const QSize& area, const QRect& standsAt);

/// How many pixels differ, the covered ones left out. All of them if the sizes differ.
int differingPixels(const QImage& seen, const Scene& expected);

/// The mean difference of a sample, of the whole picture.
double meanDifference(const QImage& one, const QImage& other);

/// Keeps what was seen and what was expected as files for whoever looks into a failure; returns
/// words that say where.
std::string keepFor(const std::string& what, const QImage& seen, const Scene& expected);

}  // namespace velmara::e2e
