#pragma once

#include <cstdint>
#include <vector>

#include "base/result.h"
#include "imaging/picture_file.h"
#include "imaging/vips_api.h"

namespace velmara {

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
Error damagedFile(FileFormat format);

}  // namespace velmara
