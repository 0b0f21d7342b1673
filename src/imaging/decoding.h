#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "base/image.h"
#include "base/job_control.h"
#include "base/result.h"
#include "imaging/color_profile.h"
#include "imaging/picture_file.h"
#include "imaging/vips_api.h"

namespace velmara {

/// One picture of a file with its header read and its pixels to come. `bytes` is what the decoder
/// reads from, where it cannot read from a file.
struct OpenedPicture {
  /// The picture goes before the bytes it reads from.
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

/// A picture on its way to a bitmap: 1 to 4 samples of 8 or 16 bits, gray or RGB with or without
/// alpha as the last one, and the profile that stays with it.
struct PlainPicture {
  /// The pixels, still to be decoded, and the profile their numbers are meant in.
  VipsImagePtr image;
  ColorProfile profile;
};

/// The kind of colour of a decoded picture; nothing for one that cannot be shown.
std::optional<PictureColors> colorsOf(VipsImage* image);

/// Brings a decoded picture of any kind of colour to gray or RGB, by the rules of readImage.
/// Nothing is computed before the pixels are asked for.
Result<PlainPicture> toPlainPicture(VipsImagePtr image);

/// Computes the pixels of a plain picture from top to bottom, straight into a bitmap; 16 bits
/// become 8 by rounding. Error without words if the decoder fails (takeVipsError has them). A
/// control that is cancelled ends it between strips of rows; after each strip `rowsDecoded` is told
/// how many rows are set.
Result<Bitmap> toBitmap(
    VipsImage* image, const JobControl* control = nullptr,
    const std::function<void(const Bitmap& unfinished, int rows)>& rowsDecoded = {});

/// The bytes of what came along with a picture under a name of libvips; empty if nothing did.
std::span<const std::uint8_t> blobOf(const VipsImage* image, const char* name);

/// The embedded ICC profile, if it is one for pictures; null if not.
ColorProfile embeddedProfile(const VipsImage* image);

}  // namespace velmara
