#include "session/loaded_photo.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "imaging/rotate_with_exif.h"
#include "imaging/utils.h"
#include "platform/log.h"

namespace velmara {
namespace {

Size pixelSize(const Bitmap& bitmap) {
  return {static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())};
}

Size largestOf(const Image& image) {
  Size largest;
  for (const Bitmap& representation : image.representations()) {
    const Size size = pixelSize(representation);
    largest = {std::max(largest.width, size.width), std::max(largest.height, size.height)};
  }
  return largest;
}

}  // namespace

Result<LoadedPhoto> openPhoto(const std::string& path) {
  auto opened = openPictureFile(path);
  if (!opened) return Error{opened.error()};
  auto file = std::make_shared<const PictureFile>(std::move(opened).value());
  const auto sizes = readRepresentationSizes(*file);
  if (!sizes) return Error{sizes.error()};
  LoadedPhoto photo{PhotoFile::initWithFile(path, file.get(), *sizes), {}, {}, file};
  for (const RepresentationSize& size : *sizes) {
    photo.fullSize.width = std::max(photo.fullSize.width, static_cast<double>(size.width));
    photo.fullSize.height = std::max(photo.fullSize.height, static_cast<double>(size.height));
  }
  return photo;
}

Result<LoadedPhoto> loadPixels(LoadedPhoto photo, const JobControl* control,
                               decltype(ReadOptions::rowsDecoded) rowsDecoded) {
  if (photo.file == nullptr) {
    auto opened = openPictureFile(photo.record.filePath);
    if (!opened) return Error{opened.error()};
    photo.file = std::make_shared<const PictureFile>(std::move(opened).value());
  }
  auto image = readImage(*photo.file, {Representations::all, control, std::move(rowsDecoded)});
  if (!image) return Error{image.error()};
  photo.image = std::move(image).value();
  photo.fullSize = largestOf(photo.image);
  photo.file = nullptr;
  return photo;
}

bool isLargeEnoughToFilter(const PhotoFile& photo) {
  return photo.width * photo.height > kLargestUnfilteredPhoto;
}

bool isPlainColour(const Image& image) {
  const Bitmap& bitmap = image.bitmap();
  return image.representations().size() == 1 && bitmap.samplesPerPixel() == 3 &&
         image.size() == pixelSize(bitmap);
}

bool isFilteredAsDecoded(const LoadedPhoto& photo, const Image& image) {
  const Size size = {static_cast<double>(photo.record.width),
                     static_cast<double>(photo.record.height)};
  return isPlainColour(image) && image.size() == size && size == photo.fullSize;
}

Image wholePhotoToFilter(const LoadedPhoto& photo) {
  Image image = photo.image;
  const PhotoFile& record = photo.record;
  const Size size = image.size();
  if (size.width != static_cast<double>(record.width) ||
      size.height != static_cast<double>(record.height)) {
    // An empty canvas of the largest width and height, with every representation in it.
    image = image.withSize(photo.fullSize);
  }
  // The filter makes the same of opaque pixels with and without their alpha.
  return isPlainColour(image) ? image : Utils::sharedUtils().scaleImage(image, image.size());
}

Image atOwnSize(const Image& image) {
  return Utils::sharedUtils().scaleImage(image, image.size());
}

Result<Image> uprightAtFullSize(const LoadedPhoto& photo, const Image& filtered) {
  const bool isSizeKnown = photo.fullSize.width > 0.0 && photo.fullSize.height > 0.0;
  const Size largest = isSizeKnown ? photo.fullSize : filtered.size();
  Image image = filtered;
  if (image.size() != largest) image = Utils::sharedUtils().scaleImage(image, largest);
  Bitmap bitmap = Utils::sharedUtils().getCgiImageRef(image);
  if (photo.record.metaInfoDict) {
    const int orientation = photo.record.orientation().value_or(0);
    logFormat("Image orentation : %d", orientation);
    bitmap = RotateWithEXIF(bitmap, orientation);
  }
  if (!bitmap.isValid()) return Error{"not enough memory for the picture"};
  return Image(std::move(bitmap), filtered.profile());
}

Result<std::vector<std::uint8_t>> encodeExport(const PhotoFile& photo, const Image& upright,
                                               FileFormat format) {
  if (!photo.metaInfoDict) return encodeImage(upright.bitmap(), upright.profile(), format);
  return encodeImageWithMetadata(upright.bitmap(), upright.profile(), format, *photo.metaInfoDict);
}

std::unique_ptr<RowEncoder> startEncoding(const PhotoFile& photo, const Image& picture,
                                          FileFormat format, const JobControl* control) {
  const int width = picture.bitmap().width();
  const int height = picture.bitmap().height();
  const EncodeOptions options =
      photo.metaInfoDict ? encodeOptionsFor(*photo.metaInfoDict, width, height) : EncodeOptions();
  return RowEncoder::start(width, height, picture.profile(), format, options, control);
}

Result<std::vector<std::uint8_t>> finishEncoding(const PhotoFile& photo, RowEncoder& encoder,
                                                 FileFormat format) {
  auto bytes = encoder.finish();
  if (!bytes || !photo.metaInfoDict) return bytes;
  return withMetadata(std::move(bytes).value(), format, *photo.metaInfoDict);
}

bool isPhotosOwnFile(const PhotoFile& photo, const std::string& path) {
  std::error_code failure;
  return std::filesystem::equivalent(photo.filePath, path, failure) && !failure;
}

}  // namespace velmara
