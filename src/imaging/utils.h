#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "base/image.h"

namespace velmara {

/// A view as the image toolkit sees it when it takes a picture of one. Main thread only.
class CapturableView {
 public:
  virtual ~CapturableView() = default;

  /// In points.
  virtual Rect bounds() const = 0;
  /// The pixels the view shows now inside its bounds; not valid if they cannot be had.
  virtual Bitmap captureBounds() = 0;
  /// The view's bounds drawn afresh, whatever is on the screen.
  virtual Bitmap renderBounds() = 0;
};

/// The image toolkit's front: the operations on whole images under the names the rest of the
/// program knows them by, over the plain functions of this layer, with the log lines those leave
/// out. It keeps no state, so any thread may call anything but screenShotOfImageView. Nothing is
/// thrown; an image that is not valid gives one that is not, or what is stated.
class Utils {
 public:
  /// The one instance, made on first use.
  static Utils& sharedUtils();

  /// The bitmap an image is decoded from: its first representation as it is.
  Bitmap getCgiImageRef(const Image& image) const;

  /// A copy of the bytes of getCgiImageRef; empty for an image that is not valid.
  std::vector<std::uint8_t> NSImageToCharByteArray(const Image& image) const;

  /// An opaque 4-sample image of packed RGB bytes, 3 a pixel, rows from top to bottom without gaps.
  /// Not valid if the size is not positive or the memory is not to be had.
  Image convertBitmapRGBA8ToNSImage(const std::uint8_t* bytes, int withWidth, int withHeight) const;

  /// The image drawn over black, without alpha (4 samples become 3, 2 become 1, others stay), under
  /// the logical size given. Not valid if the input is not.
  Image removeAlphaChannelFromImage(const Image& image, Size size) const;

  /// The image in a frame of itself, mirrored at each edge and both ways in the corners,
  /// `borderWidth` pixels wide: 1 sample for a gray image, a 4-sample canvas for any other. The
  /// input itself if it is not valid; not valid if the border is negative or too large.
  Image addBorderToImage(const Image& image, int borderWidth) const;

  /// The tiles of a grid, row 0 at the bottom, each 10 units wider than its column to the left (the
  /// first of a row: to the right). Empty if there are no rows or no columns.
  std::vector<Image> splitImagesIntoSubImagesWithImage(const Image& image, unsigned numberOfRows,
                                                       unsigned numberOfColumns) const;

  /// The picture of a grid of tiles as splitImagesIntoSubImagesWithImage made it. The tiles' height
  /// is cut at the height of the whole, so with several rows each piece comes squeezed. Not valid
  /// if there are fewer tiles than the grid needs. `originalImage` is not used.
  Image constructImageWithPatchArray(const std::vector<Image>& tiles, int rows, int columns,
                                     const Image& originalImage) const;

  /// The image at a new logical size, one pixel a unit (canvasPixels of each side), as a 4-sample
  /// canvas. Not valid if the size has no extent.
  Image scaleImage(const Image& image, Size newSize) const;

  /// The part of an image inside a rectangle with its origin at the bottom-left corner, likewise;
  /// transparent where the rectangle leaves the image. The input itself if it is
  /// not valid or the rectangle has no width or height.
  Image cropImage(const Image& image, Rect toRect) const;

  /// The image after a round trip through JPEG, factor 0.0 (strongest compression) to 1.0.
  Image compressImage(const Image& image, float byFactor) const;

  /// Writes a picture to a file: 0 JPEG of quality 70, 1 TIFF with LZW, 2 BMP, 3 GIF, 4 PNG, 5
  /// JPEG 2000; any other index writes nothing. An existing file is replaced whole or, with a line
  /// in the log, not at all. `profile` is the one the bitmap's colours are meant in.
  void saveImageInSelectedFormat(unsigned format, const std::string& FilePath,
                                 const Bitmap& ImageRef,
                                 const ColorProfile& profile = nullptr) const;

  /// The image of a file after a round trip through a temporary file in a format. Not valid if the
  /// file cannot be read or the index is none of a format.
  Image getConvertedImageFromImageAtFilePath(const std::string& filePath,
                                             unsigned outputRepType) const;

  /// Removes the item at a path, a folder with all that is in it. Failures are not reported.
  void deleteFileAtPath(const std::string& path) const;

  /// Removes every item in the process's own temporary directory.
  void cleanAllFilesFromTempDirectory() const;

  /// A picture of a view: what it shows, or else what it draws when asked. Main thread only.
  Image screenShotOfImageView(CapturableView& view) const;

 private:
  Utils() = default;
};

}  // namespace velmara
