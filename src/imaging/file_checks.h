#pragma once

#include <vector>

#include "base/result.h"
#include "imaging/picture_file.h"

namespace velmara {

/// Whether the first frame of a GIF holds as many pixels as it says (GIF89a, appendix F), counted
/// without drawing them. The decoder takes what is missing for background.
Status checkGifFrame(const InputFile& file);

/// Whether a PNM file (P1 to P6) has a header that makes sense and, in the binary kinds, as many
/// bytes of samples as it says. The decoder takes what is missing for black.
Status checkPnmHeader(const InputFile& file);

/// Whether a PNM file of a plain kind (P1 to P3) has as many numbers as its header says; reads the
/// whole file. Well for the binary kinds.
Status checkPnmSamples(const InputFile& file);

/// What the chain of directories at the top of a TIFF says.
struct TiffDirectories {
  /// The size each directory states, in order.
  std::vector<RepresentationSize> sizes;
  /// A directory, or one nested in it, holds a camera's mosaic and not a picture.
  bool isCameraRaw = false;
  /// Samples of such a mosaic should lie where the file has ended.
  bool isMosaicCutShort = false;
  /// The JPEGs that such a mosaic is kept in, if it is.
  std::vector<FilePiece> mosaicJpegs;
};

/// Walks the directories of a classic or big TIFF (TIFF 6.0, section 2) without decoding anything.
/// A chain that leaves the file, turns back on itself or is longer than any real one ends where it
/// goes wrong. Empty if there is no directory at all.
TiffDirectories readTiffDirectories(const InputFile& file);

}  // namespace velmara
