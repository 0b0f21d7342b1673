#pragma once

#include <cstdint>
#include <vector>

#include "imaging/picture_file.h"

namespace velmara {

/// What the chain of directories at the top of a TIFF says.
struct TiffDirectories {
  /// The size each directory states, in order.
  std::vector<RepresentationSize> sizes;
  /// A directory, or one nested in it, holds a camera's mosaic and not a picture.
  bool isCameraRaw = false;
};

/// Walks the directories of a classic or big TIFF (TIFF 6.0, section 2) without decoding anything.
/// A chain that leaves the file, turns back on itself or is longer than any real one ends where it
/// goes wrong. Empty if there is no directory at all.
TiffDirectories readTiffDirectories(const InputFile& file);

}  // namespace velmara
