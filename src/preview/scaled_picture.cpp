#include "preview/scaled_picture.h"

#include <utility>

#include "preview/picture_size.h"

namespace velmara {

ScaledPicture::ScaledPicture(PicturePyramid picture, Size size) : picture_(std::move(picture)) {
  constexpr double kLongestSide = 1 << 30;
  if (!picture_.isValid() || !(size.width <= kLongestSide && size.height <= kLongestSide)) return;
  const Size whole = wholePixels(size);
  const int width = static_cast<int>(whole.width);
  const int height = static_cast<int>(whole.height);
  view_ = ResampledBitmap(picture_.levelFor(width, height), width, height);
}

}  // namespace velmara
