#include "imaging/utils.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/pixel_operations.h"
#include "imaging/image_reader.h"
#include "imaging/image_writer.h"
#include "imaging/resample.h"
#include "platform/log.h"
#include "platform/temporary_files.h"
#include "platform/whole_file.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

constexpr int kToolkitJpegQuality = 70;

bool hasExtent(double width, double height) {
  return width > 0.0 && height > 0.0;
}

Status writePicture(const std::string& path, const Bitmap& bitmap, const ColorProfile& profile,
                    FileFormat format) {
  EncodeOptions options;
  options.quality = kToolkitJpegQuality;
  const auto bytes = encodeImage(bitmap, profile, format, options);
  return bytes ? replaceFile(path, *bytes) : Status(Error{bytes.error()});
}

constexpr float kOverlap = 10.0F;

/// The part of a tile that belongs to the whole picture, at the size of its place there.
Bitmap pieceOf(const Image& tile, float left, float wholeHeight, int width, int height) {
  const Size size = tile.size();
  const Bitmap& bitmap = tile.bitmap();
  const double across = bitmap.width() / size.width;
  const double up = bitmap.height() / size.height;
  const auto tileWidth = static_cast<float>(size.width);
  return drawnPart(
      bitmap,
      {left * across, 0.0, static_cast<double>(tileWidth - kOverlap) * across, wholeHeight * up},
      width, height);
}

/// Lays a piece into a canvas, its top-left corner at (left, top).
void place(const Bitmap& piece, int left, int top, BitmapBuilder& canvas) {
  for (int y = 0; y < piece.height(); ++y) {
    std::memcpy(canvas.row(top + y) + static_cast<std::size_t>(left) * 4, piece.row(y),
                piece.rowBytes());
  }
}

}  // namespace

Utils& Utils::sharedUtils() {
  static Utils shared;
  return shared;
}

Bitmap Utils::getCgiImageRef(const Image& image) const {
  return image.bitmap();
}

std::vector<std::uint8_t> Utils::NSImageToCharByteArray(const Image& image) const {
  const auto bytes = getCgiImageRef(image).bytes();
  return {bytes.begin(), bytes.end()};
}

Image Utils::convertBitmapRGBA8ToNSImage(const std::uint8_t* bytes, int withWidth,
                                         int withHeight) const {
  auto canvas = BitmapBuilder::allocate(withWidth, withHeight, 4);
  if (bytes == nullptr || !canvas) {
    logLine("Error: Memory not allocated for bitmap");
    return {};
  }
  std::uint8_t* out = canvas->bytes().data();
  const std::uint8_t* const end = out + canvas->bytes().size();
  for (; out != end; out += 4, bytes += 3) {
    out[0] = bytes[0];
    out[1] = bytes[1];
    out[2] = bytes[2];
    out[3] = 255;
  }
  return Image(std::move(*canvas).finish());
}

Image Utils::removeAlphaChannelFromImage(const Image& image, Size size) const {
  const Bitmap opaque = removeAlpha(getCgiImageRef(image), logLine);
  return opaque.isValid() ? Image({opaque}, size, image.profile()) : Image();
}

Image Utils::addBorderToImage(const Image& image, int borderWidth) const {
  if (!image.isValid()) {
    logLine("Utils addBorderToImage");
    logLine("not valid image");
    return image;
  }
  const Bitmap bitmap = getCgiImageRef(image);
  logBorder(bitmap.width(), bitmap.height(), logLine);
  const Bitmap framed = withMirroredBorder(bitmap, borderWidth);
  if (framed.samplesPerPixel() == 1) return Image(framed, image.profile());
  return Image(asRgba(framed), image.profile());
}

Image Utils::scaleImage(const Image& image, Size newSize) const {
  if (!image.isValid() || !hasExtent(newSize.width, newSize.height)) return {};
  const int width = canvasPixels(newSize.width);
  const int height = canvasPixels(newSize.height);
  const Bitmap& source =
      image.representationForDrawing({static_cast<double>(width), static_cast<double>(height)});
  return Image({resampled(source, width, height)}, newSize, image.profile());
}

Image Utils::cropImage(const Image& image, Rect toRect) const {
  if (!image.isValid() || !hasExtent(toRect.width, toRect.height)) return image;
  const Size size = image.size();
  if (!hasExtent(size.width, size.height)) return image;
  const int width = canvasPixels(toRect.width);
  const int height = canvasPixels(toRect.height);
  // What the whole image would need for the canvas to have its pixels one to one.
  const Bitmap& source =
      image.representationForDrawing({std::round(size.width * width / toRect.width),
                                      std::round(size.height * height / toRect.height)});
  const double across = source.width() / size.width;
  const double up = source.height() / size.height;
  const Rect pixels = {toRect.x * across, toRect.y * up, toRect.width * across, toRect.height * up};
  return Image({drawnPart(source, pixels, width, height)}, {toRect.width, toRect.height},
               image.profile());
}

std::vector<Image> Utils::splitImagesIntoSubImagesWithImage(const Image& image,
                                                            unsigned numberOfRows,
                                                            unsigned numberOfColumns) const {
  std::vector<Image> tiles;
  if (numberOfRows == 0 || numberOfColumns == 0 || !image.isValid()) return tiles;
  const float width = static_cast<float>(image.size().width) / static_cast<float>(numberOfColumns);
  const float height = static_cast<float>(image.size().height) / static_cast<float>(numberOfRows);
  for (unsigned row = 0; row < numberOfRows; ++row) {
    for (unsigned column = 0; column < numberOfColumns; ++column) {
      const float overlap = column > 0 ? kOverlap : 0.0F;
      tiles.push_back(
          cropImage(image, {static_cast<float>(column) * width - overlap,
                            static_cast<float>(row) * height, width + kOverlap, height}));
    }
  }
  return tiles;
}

Image Utils::constructImageWithPatchArray(const std::vector<Image>& tiles, int rows, int columns,
                                          const Image& /*originalImage*/) const {
  if (rows <= 0 || columns <= 0 ||
      tiles.size() / static_cast<std::size_t>(columns) < static_cast<std::size_t>(rows)) {
    return {};
  }
  const Size last = tiles.back().size();
  const float wholeWidth =
      static_cast<float>(columns) * (static_cast<float>(last.width) - kOverlap);
  const float wholeHeight = static_cast<float>(rows) * static_cast<float>(last.height);
  if (!tiles.back().isValid() || !(wholeWidth > 0.0F)) return {};
  auto canvas = BitmapBuilder::allocate(canvasPixels(wholeWidth), canvasPixels(wholeHeight), 4);
  if (!canvas) return {};
  std::ranges::fill(canvas->bytes(), std::uint8_t{0});

  const float width = wholeWidth / static_cast<float>(columns);
  const float height = wholeHeight / static_cast<float>(rows);
  const auto edge = [](float position, int most) {
    return std::clamp(static_cast<int>(std::lround(position)), 0, most);
  };
  for (int row = 0; row < rows; ++row) {
    const int bottom = edge(static_cast<float>(row) * height, canvas->height());
    const int top = edge(static_cast<float>(row + 1) * height, canvas->height());
    for (int column = 0; column < columns; ++column) {
      const Image& tile = tiles[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                                static_cast<std::size_t>(column)];
      const int left = edge(static_cast<float>(column) * width, canvas->width());
      const int right = edge(static_cast<float>(column + 1) * width, canvas->width());
      if (!tile.isValid() || right <= left || top <= bottom) continue;
      const Bitmap piece =
          pieceOf(tile, column > 0 ? kOverlap : 0.0F, wholeHeight, right - left, top - bottom);
      if (piece.isValid()) place(piece, left, canvas->height() - top, *canvas);
    }
  }
  return Image({std::move(*canvas).finish()}, {wholeWidth, wholeHeight}, tiles.back().profile());
}

Image Utils::compressImage(const Image& image, float byFactor) const {
  return recompressJpeg(image, byFactor);
}

void Utils::saveImageInSelectedFormat(unsigned format, const std::string& FilePath,
                                      const Bitmap& ImageRef, const ColorProfile& profile) const {
  const auto known = fileFormatOfIndex(format);
  if (!known) return;
  const Status written = writePicture(FilePath, ImageRef, profile, *known);
  if (!written) logLine(FilePath + ": the picture was not saved: " + written.error());
}

Image Utils::getConvertedImageFromImageAtFilePath(const std::string& filePath,
                                                  unsigned outputRepType) const {
  const auto image = readImage(filePath);
  if (!image || temporaryDirectory().empty()) return {};
  const std::string temporary =
      temporaryDirectory() + fs::path(filePath).stem().string() + "InputImage.png";
  saveImageInSelectedFormat(outputRepType, temporary, getCgiImageRef(*image), image->profile());
  const auto converted = readImage(temporary);
  deleteFileAtPath(temporary);
  return converted ? *converted : Image{};
}

void Utils::deleteFileAtPath(const std::string& path) const {
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

void Utils::cleanAllFilesFromTempDirectory() const {
  std::error_code failure;
  std::vector<fs::path> items;
  for (fs::directory_iterator item(temporaryDirectory(), failure), end; !failure && item != end;
       item.increment(failure)) {
    items.push_back(item->path());
  }
  if (failure) logLine("Error: " + failure.message());
  for (const fs::path& item : items) {
    failure.clear();
    fs::remove_all(item, failure);
    if (failure) logLine("Error: " + item.string() + ": " + failure.message());
  }
}

Image Utils::screenShotOfImageView(CapturableView& view) const {
  const Rect bounds = view.bounds();
  const Size size = {bounds.width, bounds.height};
  Image image({view.captureBounds()}, size);
  return image.isValid() ? image : Image({view.renderBounds()}, size);
}

}  // namespace velmara
