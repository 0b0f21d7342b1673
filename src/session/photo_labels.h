#pragma once

#include <cstdint>
#include <string>

namespace velmara {

/// "%ld x %ld px" of a photo's pixel size.
std::string dimensionsLabel(std::int64_t width, std::int64_t height);

/// The size of a file in decimal units. Below 1000 bytes the byte count itself stands before "KB".
/// `fileSize` is the photo record's text, a decimal number of bytes.
std::string sizeLabel(const std::string& fileSize);

/// "Path : %@".
std::string pathLabel(const std::string& filePath);

}  // namespace velmara
