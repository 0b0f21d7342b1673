#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/image.h"
#include "imaging/metadata.h"

namespace velmara {

/// The record of one photo file on disk, built once from its path. A value.
///
/// Paths and names are in the file system's own bytes.
class PhotoFile {
 public:
  /// The record of the file at a path. Never fails: attributes that cannot be read leave
  /// `fileSize` "0" and no creation date (and one log line), a file that is no picture leaves
  /// `width` and `height` 0, and one without readable properties has no `metaInfoDict`.
  static PhotoFile initWithFileUrl(const std::string& path);
  /// The same of a file that is open, with the sizes of its pictures; null for one that is none.
  static PhotoFile initWithFile(const std::string& path, const PictureFile* file,
                                const std::vector<RepresentationSize>& sizes);

  /// The properties of the first picture in a file; nothing if they cannot be read.
  static std::optional<ImageMetadata> exifDict(const std::string& path);

  /// How the stored pixels lie, by the photo's own properties: 1 to 8 of the Exif tag, or whatever
  /// else stands there. Nothing if they do not say.
  std::optional<int> orientation() const;

  /// As it was opened.
  std::string filePath;
  /// The last component of the path, with its extension.
  std::string fileName;
  /// As written, without the dot; empty if there is none.
  std::string fileExtension;
  /// Pixels as stored, before any turning upright. Of several pictures in a file the last counts.
  std::int64_t width = 0;
  std::int64_t height = 0;
  /// Bytes, as a decimal number.
  std::string fileSize;
  /// "MMM-dd-yyyy hh:mm:s a" in local time.
  std::optional<std::string> fileCreationDate;
  /// The name of the folder it is in.
  std::string fileContainerFolderName;
  /// Nothing for a file that is no picture.
  std::optional<FileFormat> format;
  /// Kept, never filled.
  Image thumbnailImg;
  /// What the file says of its picture; nothing if it cannot be read.
  std::optional<ImageMetadata> metaInfoDict;
  /// The same path as `filePath`.
  std::string fileURL;
};

}  // namespace velmara
