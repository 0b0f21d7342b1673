#include "session/whole_photo.h"

#include <algorithm>
#include <utility>

#include "imaging/image_reader.h"
#include "imaging/rotate_with_exif.h"
#include "imaging/utils.h"
#include "platform/log.h"

namespace velmara {
namespace {

Size pixelSize(const Bitmap& bitmap) {
  return {static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())};
}

// An empty canvas of the largest width and height, with every representation in it.
Image onLargestCanvas(const Image& image) {
  Size largest;
  for (const Bitmap& representation : image.representations()) {
    largest.width = std::max(largest.width, pixelSize(representation).width);
    largest.height = std::max(largest.height, pixelSize(representation).height);
  }
  return image.withSize(largest);
}

}  // namespace

Result<Image> loadWholePhoto(const PhotoFile& photo) {
  auto loaded = readImage(photo.filePath);
  if (!loaded) return loaded;
  Image image = std::move(loaded).value();
  const Size size = image.size();
  if (size.width != static_cast<double>(photo.width) ||
      size.height != static_cast<double>(photo.height)) {
    image = onLargestCanvas(image);
  }
  image = Utils::sharedUtils().scaleImage(image, image.size());
  if (!image.isValid()) return Error{"not enough memory for the picture"};
  return image;
}

Result<Image> uprightAtFullSize(const PhotoFile& photo, const Image& filtered) {
  Size largest;
  if (const auto sizes = readRepresentationSizes(photo.filePath)) {
    for (const RepresentationSize& size : sizes.value()) {
      largest.width = std::max(largest.width, static_cast<double>(size.width));
      largest.height = std::max(largest.height, static_cast<double>(size.height));
    }
  } else {
    largest = filtered.size();
  }
  Image image = filtered;
  if (image.size() != largest) image = Utils::sharedUtils().scaleImage(image, largest);
  Bitmap bitmap = Utils::sharedUtils().getCgiImageRef(image);
  if (photo.metaInfoDict) {
    const int orientation = photo.orientation().value_or(0);
    logFormat("Image orentation : %d", orientation);
    bitmap = RotateWithEXIF(bitmap, orientation);
  }
  if (!bitmap.isValid()) return Error{"not enough memory for the picture"};
  return Image(std::move(bitmap), filtered.profile());
}

}  // namespace velmara
