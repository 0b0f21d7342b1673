#include "base/image.h"

#include <utility>

namespace velmara {
namespace {

const Bitmap kNoBitmap;

std::int64_t pixelCount(const Bitmap& bitmap) {
  return std::int64_t{bitmap.width()} * bitmap.height();
}

}  // namespace

Image::Image(Bitmap bitmap, ColorProfile profile) : profile_(std::move(profile)) {
  size_ = {static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())};
  if (bitmap.isValid()) representations_.push_back(std::move(bitmap));
}

Image::Image(std::vector<Bitmap> representations, Size size, ColorProfile profile)
    : representations_(std::move(representations)), size_(size), profile_(std::move(profile)) {}

const Bitmap& Image::bitmap() const {
  return isValid() ? representations_[0] : kNoBitmap;
}

const Bitmap& Image::representationForDrawing(Size pixels) const {
  const Bitmap* enough = nullptr;
  const Bitmap* largest = &bitmap();
  for (const Bitmap& candidate : representations_) {
    const bool covers = candidate.width() >= pixels.width && candidate.height() >= pixels.height;
    if (covers && (enough == nullptr || pixelCount(candidate) < pixelCount(*enough))) {
      enough = &candidate;
    }
    if (pixelCount(candidate) > pixelCount(*largest)) largest = &candidate;
  }
  return enough != nullptr ? *enough : *largest;
}

Image Image::withSize(Size size) const {
  Image resized = *this;
  resized.size_ = size;
  return resized;
}

}  // namespace velmara
