#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/result.h"
#include "imaging/file_format.h"
#include "imaging/input_file.h"

namespace velmara {

/// Width and height of one of the pictures inside a file, in pixels as stored.
struct RepresentationSize {
  std::int64_t width = 0;
  std::int64_t height = 0;

  friend bool operator==(const RepresentationSize&, const RepresentationSize&) = default;
};

/// A file known to be a picture of some kind, open, nothing of it decoded yet: sizes, metadata and
/// pixels can be had of it without opening it again, also after it was deleted. Any thread, but one
/// at a time.
struct PictureFile {
  std::string path;
  InputFile file;
  FileFormat format;
  /// The pages of a TIFF; one unknown size for every other kind.
  std::vector<RepresentationSize> pages;
};

/// Opens a path and tells its kind by its contents; refuses what cannot be read, camera RAW files
/// among them. `path` is in the file system's own bytes, and the error does not repeat it.
Result<PictureFile> openPictureFile(const std::string& path);

}  // namespace velmara
