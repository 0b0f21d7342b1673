#include "base/image.h"

#include <utility>

namespace velmara {

Image::Image(Bitmap bitmap, ColorProfile profile)
    : size_{static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())},
      profile_(std::move(profile)) {
  if (bitmap.isValid()) representations_.push_back(std::move(bitmap));
}

Image::Image(std::vector<Bitmap> representations, Size size, ColorProfile profile)
    : representations_(std::move(representations)), size_(size), profile_(std::move(profile)) {}

const Bitmap& Image::bitmap() const {
  static const Bitmap kNone;
  return isValid() ? representations_[0] : kNone;
}

const Bitmap& Image::representationForDrawing(Size pixels) const {
  // What covers them comes before what does not, and of that the smallest, else the largest.
  const auto fitness = [&](const Bitmap& bitmap) {
    const bool covers = bitmap.width() >= pixels.width && bitmap.height() >= pixels.height;
    const std::int64_t count = std::int64_t{bitmap.width()} * bitmap.height();
    return std::pair(covers, covers ? -count : count);
  };
  const Bitmap* fittest = &bitmap();
  for (const Bitmap& candidate : representations_) {
    if (fitness(candidate) > fitness(*fittest)) fittest = &candidate;
  }
  return *fittest;
}

Image Image::withSize(Size size) const {
  return {representations_, size, profile_};
}

}  // namespace velmara
