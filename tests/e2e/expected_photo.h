#pragma once

#include <QImage>
#include <QRect>
#include <QSize>

#include <string>

#include "preview/scaled_picture.h"
#include "support/scratch_folder.h"

namespace velmara::e2e {

/// A photo as it should be seen: decoded and turned upright by ImageMagick, scaled by the project's
/// own code, filtered by the program's command line. One for each photo: the noise is measured
/// once.
class ExpectedPhoto {
 public:
  explicit ExpectedPhoto(const std::string& path);

  bool isValid() const { return !upright_.isNull() && psnr_ > 0.0; }
  /// The photo's own pixels.
  const QImage& upright() const { return upright_; }

  /// A part of the photo drawn at a size.
  QImage original(const QSize& size, const QRect& part) const;
  /// What a preview at a zoom factor makes of these pixels: automatic, or at a level of 1 to 10.
  QImage denoised(const QImage& region, float zoomFactor, int level = 0) const;

 private:
  testing_support::ScratchFolder folder_;
  QImage upright_;
  PicturePyramid picture_;
  double psnr_ = 0.0;
};

}  // namespace velmara::e2e
