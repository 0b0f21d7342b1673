#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/scratch_folder.h"

namespace velmara::testing_support {

/// A kind of picture file that ImageMagick is told to write: the same photo-like picture of 61 x 47
/// pixels each time.
struct PictureKind {
  std::string name;
  /// Of the file, and before a colon, if there is one, the name ImageMagick has for the format.
  std::string file;
  std::vector<std::string> options;
  /// How many samples a pixel has to have when it was read.
  int samples = 3;
  /// The largest difference to what ImageMagick reads, at most.
  int tolerance = 0;
  /// Bytes at the end that hold none of the picture; negative for a kind that stands beside one
  /// like it where files are damaged.
  int tail = -1;
  /// What the file holds if it is of the kind that is meant.
  std::string mark = {};
};

void PrintTo(const PictureKind& kind, std::ostream* out);

/// PNG of all colour types and depths, JPEG of all samplings, TIFF, and a few of every other
/// format.
const std::vector<PictureKind>& pictureSet();

/// Writes the picture; empty if ImageMagick cannot write that kind here.
std::string pictureIn(const ScratchFolder& folder, const PictureKind& kind);

}  // namespace velmara::testing_support
