#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "imaging/file_format.h"
#include "imaging/metadata.h"

namespace velmara {

/// Pixels an inch.
struct Resolution {
  double width = 72.0;
  double height = 72.0;
};

struct EncodeOptions {
  /// Of JPEG, 1 to 100; at 90 and more the colours are kept at full resolution.
  int quality = 95;
  std::optional<Resolution> resolution;
};

/// A picture as the bytes of a file: JPEG, TIFF with LZW compression, BMP, GIF of at most 256
/// colours, PNG or lossless JPEG 2000. The profile goes along where the format has a place for it
/// (FormatFacts::carriesProfile). Alpha that is opaque throughout is left out; JPEG, which has
/// none, shows the picture over black. 1 and 2 samples are written as gray.
Result<std::vector<std::uint8_t>> encodeImage(const Bitmap& bitmap, const ColorProfile& profile,
                                              FileFormat format, const EncodeOptions& options = {});

/// Puts a picture's metadata into the bytes of a file just encoded: Exif with its maker notes, XMP
/// and IPTC, with the orientation given instead of its own, true pixel dimensions, and without the
/// embedded thumbnail, which no longer shows the picture. What has no place for metadata comes back
/// as it is. What a JPEG's segments of 64 KB cannot hold is left out, the largest pieces first. The
/// pixels and the profile are not touched.
Result<std::vector<std::uint8_t>> withMetadata(std::vector<std::uint8_t> bytes, FileFormat format,
                                               const ImageMetadata& metadata, int orientation = 1);

/// Whether a picture of this size is the one the metadata was read from with its sides exchanged.
bool isTurned(const ImageMetadata& metadata, int width, int height);

/// The options for a picture of this size that has been turned upright: the resolution the metadata
/// states, its width and height exchanged if those of the picture were.
EncodeOptions encodeOptionsFor(const ImageMetadata& metadata, int width, int height);

/// encodeImage with encodeOptionsFor, and withMetadata, in one.
Result<std::vector<std::uint8_t>> encodeImageWithMetadata(const Bitmap& bitmap,
                                                          const ColorProfile& profile,
                                                          FileFormat format,
                                                          const ImageMetadata& metadata);

}  // namespace velmara
