#pragma once

#include <cstdint>
#include <string>

#include "base/bitmap.h"
#include "base/job_control.h"
#include "base/result.h"

namespace velmara {

class InputFile;

/// What a camera's RAW file says of its picture.
struct RawFacts {
  /// Pixels as decodeRaw gives them.
  std::int64_t width = 0;
  std::int64_t height = 0;
  /// How they lie: 1 to 8 of the Exif tag.
  int orientation = 1;

  /// The camera and the exposure; empty and 0 where the file does not say.
  std::string make, model, lens;
  double seconds = 0.0;
  double fNumber = 0.0;
  double focalLength = 0.0;  // millimetres
  int iso = 0;
  /// "YYYY:MM:DD hh:mm:ss" in the camera's own time.
  std::string taken;
};

/// Bits a sample that decodeRaw gives.
inline constexpr int kRawOutputBits = 8;

/// Whether LibRaw is installed, without which no RAW file can be read.
bool isRawReaderInstalled();

/// Reads the headers of a RAW file. An error says in words why it cannot be read: it is none, of a
/// camera that is not known, damaged, or too large. Quick; any thread.
Result<RawFacts> readRawFacts(const InputFile& file);

/// Develops a RAW file: the camera's white balance, sRGB, at full size, not turned, 3 samples a
/// pixel (1 of a monochrome camera). The same exposure gives the same brightness whatever else is
/// in the picture. A file that is cut short or damaged gives an error, not half a picture. Takes
/// seconds; a control that is cancelled ends it early, with an error. Any thread but the main one.
Result<Bitmap> decodeRaw(const InputFile& file, const JobControl* control);

}  // namespace velmara
