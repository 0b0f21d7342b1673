#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "support/scratch_folder.h"
#include "support/tools.h"

namespace velmara::testing_support {

/// Has ImageMagick write a file; false if it cannot write that kind here.
inline bool convert(const std::vector<std::string>& arguments, const std::string& file) {
  std::vector<std::string> words{"convert"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  words.push_back(file);
  return runProgram(words).exitCode == 0;
}

/// A file's pixels as ImageMagick sees them, with its options before they are written: 8-bit RGBA.
inline std::vector<std::uint8_t> pixelsByImageMagick(const std::string& file,
                                                     const std::vector<std::string>& options = {}) {
  const ScratchFolder folder;
  const std::string raw = folder.file("pixels");
  std::vector<std::string> arguments{file};
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.insert(arguments.end(), {"-depth", "8"});
  if (!convert(arguments, "RGBA:" + raw)) return {};
  const std::string bytes = contentsOf(raw);
  return {bytes.begin(), bytes.end()};
}

inline void writeFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  writeFile(path, std::string(bytes.begin(), bytes.end()));
}

inline std::vector<std::uint8_t> bytesOf(const std::string& path) {
  const std::string contents = contentsOf(path);
  return {contents.begin(), contents.end()};
}

/// Whole numbers as bytes, for files made by hand.
inline std::string bigEndian(std::uint64_t value, int bytes) {
  std::string text;
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
    text.push_back(static_cast<char>(value >> static_cast<unsigned>(shift) & 0xffU));
  }
  return text;
}

inline std::string littleEndian(std::uint64_t value, int bytes) {
  const std::string text = bigEndian(value, bytes);
  return {text.rbegin(), text.rend()};
}

}  // namespace velmara::testing_support
