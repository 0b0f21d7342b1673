#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "imaging/file_format.h"
#include "imaging/metadata.h"

namespace velmara {

/// Pixels an inch.
struct Resolution {
  /// Along each side.
  double width = 72.0;
  double height = 72.0;
};

/// How a picture is encoded.
struct EncodeOptions {
  /// Of JPEG, 1 to 100; at 90 and more the colours are kept at full resolution.
  int quality = 95;
  /// Stated in the file where its format can; nothing is said without it.
  std::optional<Resolution> resolution;
};

/// A picture as the bytes of a file: JPEG, TIFF with LZW compression, BMP, GIF of at most 256
/// colours, PNG or lossless JPEG 2000. The profile goes along where the format has a place for it
/// (FormatFacts::carriesProfile). Alpha that is opaque throughout is left out; JPEG, which has
/// none, shows the picture over black. 1 and 2 samples are written as gray.
Result<std::vector<std::uint8_t>> encodeImage(const Bitmap& bitmap, const ColorProfile& profile,
                                              FileFormat format, const EncodeOptions& options = {});

/// encodeImage of what libvips holds or computes: 1 to 4 samples of 8 bits, with alpha only where
/// the format has it. Each region is asked for as the saver comes to it, from the top to the bottom
/// for JPEG, TIFF and PNG.
Result<std::vector<std::uint8_t>> encodeVipsImage(VipsImage* image, const ColorProfile& profile,
                                                  FileFormat format, const EncodeOptions& options);

/// Puts a picture's metadata into the bytes of a file just encoded: Exif with its maker notes, XMP
/// and IPTC, the orientation of an upright picture and its true dimensions instead of their own,
/// and without the embedded thumbnail, which no longer shows the picture. What has no place for
/// metadata comes back as it is. What a JPEG's segments of 64 KB cannot hold is left out, the
/// largest pieces first. The pixels and the profile are not touched.
Result<std::vector<std::uint8_t>> withMetadata(std::vector<std::uint8_t> bytes, FileFormat format,
                                               const ImageMetadata& metadata);

/// The options for a picture of this size that has been turned upright: the resolution the metadata
/// states, its width and height exchanged if those of the picture were.
EncodeOptions encodeOptionsFor(const ImageMetadata& metadata, int width, int height);

/// encodeImage with encodeOptionsFor, and withMetadata.
Result<std::vector<std::uint8_t>> encodeImageWithMetadata(const Bitmap& bitmap,
                                                          const ColorProfile& profile,
                                                          FileFormat format,
                                                          const ImageMetadata& metadata);

/// An image after a round trip through a JPEG of that compression factor: the first representation
/// with what the coding left of it, without alpha (drawn over black). Not valid if the input is not
/// or the memory is not to be had. Keeps no state; any thread.
Image recompressJpeg(const Image& image, float factor);

}  // namespace velmara
