#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "support/run_program.h"

namespace velmara::testing_support {

/// What a program prints (its output, then its errors), and whether it ended well.
struct ToolOutput {
  bool ok = false;
  std::string text;
};
inline ToolOutput runTool(const std::vector<std::string>& words) {
  const ProgramResult result = runProgram(words);
  return {result.exitCode == 0, result.output + result.errors};
}

/// Has ImageMagick write a file; false if it cannot write that kind here.
inline bool convert(const std::vector<std::string>& arguments, const std::string& file) {
  std::vector<std::string> words{"convert"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  words.push_back(file);
  return runTool(words).ok;
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

/// A file with a profile that libvips brings along: "p3", "srgb" or "cmyk". Empty if it has none.
inline std::string builtInProfile(const ScratchFolder& folder, const std::string& name) {
  const std::string plain = folder.file("plain.png");
  const std::string picture = folder.file("profiled.tif");
  if (!convert({"-size", "8x8", "xc:red"}, plain) ||
      !runTool({"vips", "icc_transform", plain, picture, name}).ok ||
      !runTool({"exiftool", "-q", "-b", "-icc_profile", "-w", folder.file("%0f" + name + ".icc"),
                picture})
           .ok) {
    return {};
  }
  return folder.file(name + ".icc");
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

/// A picture whose every pixel tells where it is: red grows to the right, green downwards, blue
/// along both, alpha (if any) stays opaque. Gray has the red of it.
inline Bitmap gradient(int width, int height, int samplesPerPixel) {
  auto builder = BitmapBuilder::allocate(width, height, samplesPerPixel);
  for (int y = 0; y < height; ++y) {
    std::uint8_t* out = builder->row(y);
    for (int x = 0; x < width; ++x) {
      const std::uint8_t pixel[4] = {static_cast<std::uint8_t>(x * 255 / width),
                                     static_cast<std::uint8_t>(y * 255 / height),
                                     static_cast<std::uint8_t>((x + y) * 7), 255};
      for (int c = 0; c < samplesPerPixel; ++c) {
        *out++ = samplesPerPixel == 2 && c == 1 ? std::uint8_t{255} : pixel[c];
      }
    }
  }
  return std::move(*builder).finish();
}

/// The samples of one pixel, counted from the top-left corner.
inline std::vector<int> pixelAt(const Bitmap& bitmap, int x, int y) {
  const std::uint8_t* pixel = bitmap.pixel(x, y);
  return {pixel, pixel + bitmap.samplesPerPixel()};
}

/// A bitmap with only its samples counting, for comparisons.
inline std::vector<std::uint8_t> samplesOf(const Bitmap& bitmap) {
  return {bitmap.bytes().begin(), bitmap.bytes().end()};
}

}  // namespace velmara::testing_support
