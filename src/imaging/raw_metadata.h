#pragma once

#include <exiv2/exiv2.hpp>

#include "imaging/raw_file.h"

namespace velmara {

/// Makes a RAW file's Exif true of the developed picture: its orientation, its colours (sRGB), and
/// what the file says of camera and exposure where Exiv2 has not found it.
void completeRawExif(const RawFacts& facts, Exiv2::ExifData& exif);

}  // namespace velmara
