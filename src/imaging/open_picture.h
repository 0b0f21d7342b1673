#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/result.h"
#include "imaging/file_kind.h"
#include "imaging/image_reader.h"
#include "imaging/input_file.h"
#include "imaging/vips_handle.h"

namespace velmara {

/// A file known to be a picture of some kind, nothing of it decoded yet.
struct PictureFile {
  InputFile file;
  FileKind kind;
  /// The pages of a TIFF; one unknown size for every other kind.
  std::vector<RepresentationSize> pages;
};

/// Opens a path and tells its kind; refuses what cannot be read, camera RAW files among them.
Result<PictureFile> openPictureFile(const std::string& path);

/// One picture of a file with its header read and its pixels to come. `bytes` is what the decoder
/// reads from, where it cannot read from a file.
struct OpenedPicture {
  std::vector<std::uint8_t> bytes;
  VipsImagePtr image;
};

/// Opens the picture of a page, from 0, to be decoded from top to bottom. Checks that its size is
/// allowed (isAllowedBitmapSize) and its decoded samples fit in memory. Two pictures of one file
/// must not be decoded at the same time. `tolerant` lets a JPEG's decoder pass over what it warns
/// of.
Result<OpenedPicture> openPicture(const PictureFile& file, int page, bool tolerant = true);

/// The message for a file that a decoder gave up on, with libvips' own words.
Error damagedFile(FileKind kind);

}  // namespace velmara
