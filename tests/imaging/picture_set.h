#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "imaging/picture_files.h"

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

  friend void PrintTo(const PictureKind& kind, std::ostream* out) { *out << kind.name; }
};

using Words = std::vector<std::string>;

inline const Words kGray{"-colorspace", "Gray"};
inline const Words kBits{"-colorspace", "Gray", "-threshold", "50%"};
// Half transparent to the right, and holes of which every pixel has one colour.
inline const Words kAlpha{"(", "-size",  "47x61", "gradient:", "-rotate",     "90",
                          ")", "-alpha", "off",   "-compose",  "CopyOpacity", "-composite"};
inline const Words kHoles{"-fill",        "lime", "-draw", "rectangle 10,10 30,20",
                          "-transparent", "lime"};

inline Words joined(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

// Every colour type and depth of the PNG standard (11.2.2, table 11.1), in both orders of rows.
inline void addPngs(std::vector<PictureKind>& set) {
  const struct {
    int type, depth, samples;
    Words options;
  } kinds[] = {
      {0, 1, 1, kBits}, {0, 2, 1, kGray}, {0, 4, 1, kGray},  {0, 8, 1, kGray}, {0, 16, 1, kGray},
      {2, 8, 3, {}},    {2, 16, 3, {}},   {3, 1, 3, kBits},  {3, 2, 3, {}},    {3, 4, 3, {}},
      {3, 8, 3, {}},    {4, 8, 2, kGray}, {4, 16, 2, kGray}, {6, 8, 4, {}},    {6, 16, 4, {}},
  };
  for (const auto& kind : kinds) {
    Words options = kind.options;
    if (kind.type >= 4) options = joined(options, kAlpha);
    if (kind.type == 3) options = joined(options, {"-colors", std::to_string(1 << kind.depth)});
    options = joined(options, {"-define", "png:color-type=" + std::to_string(kind.type), "-define",
                               "png:bit-depth=" + std::to_string(kind.depth)});
    for (const bool interlaced : {false, true}) {
      const std::string name =
          "png type " + std::to_string(kind.type) + " depth " + std::to_string(kind.depth);
      const char header[] = {static_cast<char>(kind.depth), static_cast<char>(kind.type), 0, 0,
                             static_cast<char>(interlaced)};
      set.push_back({name + (interlaced ? " interlaced" : ""), "PNG:a.png",
                     joined(options, {"-interlace", interlaced ? "PNG" : "none"}), kind.samples,
                     kind.depth == 16 ? 1 : 0, kind.depth == 8 ? 16 : -1,
                     std::string(header, sizeof header)});
    }
  }
  set.push_back({"png palette with holes", "PNG8:a.png", kHoles, 4, 0, -1, "tRNS"});
  set.push_back({"png rgb with one colour for holes", "PNG:a.png",
                 joined(kHoles, {"-define", "png:color-type=2", "-define", "png:bit-depth=8"}), 4,
                 0, -1, "tRNS"});
}

// Baseline and progressive, with the colours at every resolution in use.
inline void addJpegs(std::vector<PictureKind>& set) {
  for (const bool progressive : {false, true}) {
    const std::string mark = progressive ? "\xff\xc2" : "\xff\xc0";
    const Words order{"-interlace", progressive ? "JPEG" : "none", "-quality", "92"};
    const std::string name = progressive ? "progressive jpeg " : "jpeg ";
    set.push_back({name + "4:0:0", "a.jpg", joined(kGray, order), 1, 0, -1, mark});
    for (const auto& [sampling, factor] :
         {std::pair("4:4:4", "1x1"), std::pair("4:2:2", "2x1"), std::pair("4:2:0", "2x2"),
          std::pair("4:4:0", "1x2"), std::pair("4:1:1", "4x1")}) {
      set.push_back({name + sampling, "a.jpg", joined(order, {"-sampling-factor", factor}), 3, 0,
                     sampling == std::string("4:2:0") ? 0 : -1, mark});
    }
  }
}

/// PNG of all colour types and depths, JPEG of all samplings, TIFF, and a few of every other
/// format.
inline std::vector<PictureKind> pictureSet() {
  std::vector<PictureKind> set;
  addPngs(set);
  addJpegs(set);
  const std::vector<PictureKind> others{
      {"strips of tiff", "a.tif", {"-depth", "8", "-define", "tiff:rows-per-strip=4"}, 3, 0, 160},
      {"tiles of tiff", "a.tif", {"-depth", "8", "-define", "tiff:tile-geometry=16x16"}, 3, 0, 160},
      {"lzw tiff", "a.tif", {"-depth", "8", "-compress", "LZW"}, 3, 0, 160},
      {"jpeg tiff", "a.tif", {"-compress", "JPEG"}, 3, 2, 160},
      {"planar tiff", "a.tif", {"-depth", "8", "-interlace", "plane"}},
      {"big-endian 16-bit tiff", "a.tif", {"-endian", "MSB", "-depth", "16"}, 3, 1},
      {"16-bit tiff with alpha", "a.tif", joined(kAlpha, {"-depth", "16"}), 4, 1},
      {"tiff with associated alpha", "a.tif",
       joined(kAlpha, {"-depth", "8", "-define", "tiff:alpha=associated"}), 4, 2},
      // Its colours are of 16 bits.
      {"palette tiff", "a.tif", {"-colors", "64", "-type", "Palette"}, 3, 1},
      {"big tiff", "TIFF64:a.tif", {"-depth", "8"}},
      {"gray tiff", "a.tif", joined(kGray, {"-depth", "8"}), 1},
      {"16-bit gray tiff", "a.tif", joined(kGray, {"-depth", "16"}), 1, 1},
      {"fax tiff", "a.tif", joined(kBits, {"-type", "Bilevel", "-compress", "Group4"}), 1},
      {"bmp", "BMP3:a.bmp", {"-type", "TrueColor"}, 3, 0, 0},
      {"bmp with alpha", "a.bmp", kAlpha, 4},
      {"palette bmp", "BMP3:a.bmp", {"-colors", "64", "-type", "Palette"}},
      {"run-length bmp",
       "BMP3:a.bmp",
       {"-colors", "64", "-type", "Palette", "-compress", "RLE"},
       3,
       0,
       2},
      {"gif", "a.gif", {}, 3, 0, 2},
      {"interlaced gif", "a.gif", {"-interlace", "GIF"}, 3, 0, 2},
      {"webp", "a.webp", {}, 3, 0, 1},
      {"lossless webp", "a.webp", {"-define", "webp:lossless=true"}, 3, 0, 1},
      {"lossless webp with alpha", "a.webp",
       joined(kAlpha, {"-define", "webp:lossless=true", "-define", "webp:exact=true"}), 4},
      {"jpeg 2000", "a.jp2", {}, 3, 1, 2},
      {"jpeg 2000 codestream", "a.j2k", {}, 3, 1},
      // The two bring back the colours that were stored at half the resolution in ways of their
      // own.
      {"heic", "a.heic", {}, 3, 8, 0},
      {"avif", "a.avif", {}, 3, 4, 0},
      {"ppm", "a.ppm", {"-depth", "8"}},
      {"pgm", "a.pgm", joined(kGray, {"-depth", "8"}), 1, 0, 0},
      {"16-bit pgm", "a.pgm", joined(kGray, {"-depth", "16"}), 1, 1},
      {"plain ppm", "a.ppm", {"-depth", "8", "-compress", "none"}, 3, 0, 8},
      {"pbm", "a.pbm", {"-monochrome"}, 1, 0, 0},
      {"plain pbm", "a.pbm", {"-monochrome", "-compress", "none"}, 1, 0, 2},
  };
  set.insert(set.end(), others.begin(), others.end());
  return set;
}

/// Writes the picture; empty if ImageMagick cannot write that kind here.
inline std::string pictureIn(const ScratchFolder& folder, const PictureKind& kind) {
  const std::size_t colon = kind.file.find(':') + 1;
  const std::string path = folder.file(kind.file.substr(colon));
  const Words picture{"-size", "61x47", "-seed", "7", "plasma:red-blue", "-strip"};
  return convert(joined(picture, kind.options), kind.file.substr(0, colon) + path) ? path : "";
}

}  // namespace velmara::testing_support
