#pragma once

#include <QPixmap>
#include <QString>

namespace velmara {

/// Gives the pictures of the controls by name. Main thread.
class ImageProvider {
 public:
  virtual ~ImageProvider() = default;

  /// The picture of that name for a screen of the given device pixel ratio; its size in points is
  /// deviceIndependentSize(). A null picture when there is none of that name.
  virtual QPixmap imageNamed(const QString& name, qreal devicePixelRatio) const = 0;
};

/// The pictures that are packed into the program, kept after their first use. A screen of more than
/// one pixel a point gets the picture of twice the size where there is one.
ImageProvider& bundleImages();

}  // namespace velmara
