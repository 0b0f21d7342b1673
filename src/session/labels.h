#pragma once

#include <cstdint>
#include <string>

#include "session/photo_file.h"

namespace velmara {

/// "%.0f %%" of a percentage: rounded to a whole number, halves to the even one.
std::string percentLabel(double percent);

/// "%ld x %ld px" of a photo as it is shown: upright.
std::string dimensionsLabel(const PhotoFile& photo);

/// The size of a file in decimal units. Below 1000 bytes the byte count itself stands before "KB".
/// `fileSize` is the photo record's text, a decimal number of bytes.
std::string sizeLabel(const std::string& fileSize);

/// "Path : %@".
std::string pathLabel(const std::string& filePath);

/// A strength of the filter, 4 to 12, and the export's, on a scale of ten.
int strengthOfTen(int sigmaVal);

/// What the automatic mode chose, in words: strengthOfTen.
std::string strengthLabel(int sigmaVal);

/// How strong the deep method takes the noise to be, against what was measured.
std::string deepStrengthLabel(float strength);
/// What it found where there was nothing to do.
std::string noNoiseLabel();

}  // namespace velmara
