#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "base/image.h"
#include "base/job_control.h"
#include "base/result.h"
#include "imaging/image_reader.h"
#include "imaging/image_writer.h"
#include "imaging/picture_file.h"
#include "imaging/row_encoder.h"
#include "session/denoise_parameters.h"
#include "session/photo_file.h"

namespace velmara {

/// A photo as it came from its file, which is opened once for all of it. A value: copies share the
/// pixels.
struct LoadedPhoto {
  /// Its path, size, dates and metadata.
  PhotoFile record;
  /// Every picture of the file, pixels as stored; not valid while only the record has been read, or
  /// after the pixels were given up to save memory.
  Image image;
  /// The largest width and the largest height of the file's pictures: what an export has, before it
  /// is turned upright.
  Size fullSize;
  /// The file, open until its pixels have been read.
  std::shared_ptr<const PictureFile> file;
};

/// Opens a photo's file and reads its headers. An error says in words why that cannot be done (it
/// is no picture, or damaged, or too large). Quick.
Result<LoadedPhoto> openPhoto(const std::string& path);

/// Reads the pixels, from the open file, or else by opening it again; the result has them, and the
/// file no more. Not on the main thread: it takes its time. A control that is cancelled ends it
/// early, with an error.
Result<LoadedPhoto> loadPixels(LoadedPhoto photo, const JobControl* control = nullptr,
                               decltype(ReadOptions::rowsDecoded) rowsDecoded = {});

/// Whether the record's photo has enough pixels to be filtered at all.
bool isLargeEnoughToFilter(const PhotoFile& photo);

/// Opaque colours of 3 samples, one picture, as large as its pixels.
bool isPlainColour(const Image& image);

/// Whether an export filters an image of the photo's file as it is decoded: opaque colours of 3
/// samples at the photo's full size.
bool isFilteredAsDecoded(const LoadedPhoto& photo, const Image& image);

/// What an export filters: the photo at its full size, opaque colours of 3 samples as they are and
/// everything else on a 4-sample canvas. Not valid if the memory is not to be had.
Image wholePhotoToFilter(const LoadedPhoto& photo);

/// What a photo's noise is measured on, and what a region is filtered as: the picture at its own
/// size on a 4-sample canvas. Not valid if the image is not or the memory is not to be had.
Image atOwnSize(const Image& image);

/// A whole-photo result at full size, turned as the photo's orientation says: what goes into the
/// file. Logs the orientation.
Result<Image> uprightAtFullSize(const LoadedPhoto& photo, const Image& filtered);

/// The file's bytes: the upright picture in a format, with the photo's own metadata and colour
/// profile as far as the format holds them, orientation 1.
Result<std::vector<std::uint8_t>> encodeExport(const PhotoFile& photo, const Image& upright,
                                               FileFormat format);

/// encodeExport of rows as the filter finishes them, for a photo whose result is `picture` as large
/// and upright as it is; null for formats that are not written row by row.
std::unique_ptr<RowEncoder> startEncoding(const PhotoFile& photo, const Image& picture,
                                          FileFormat format, const JobControl* control);
Result<std::vector<std::uint8_t>> finishEncoding(const PhotoFile& photo, RowEncoder& encoder,
                                                 FileFormat format);

/// Whether a path names the photo's own file, through links too.
bool isPhotosOwnFile(const PhotoFile& photo, const std::string& path);

}  // namespace velmara
