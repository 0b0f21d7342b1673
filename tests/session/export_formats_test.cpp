#include "session/export_formats.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmara {
namespace {

using Strings = std::vector<std::string>;

constexpr const char* kJpeg = "JPEG (*.jpg)";
constexpr const char* kTiff = "Tiff (*.tiff)";
constexpr const char* kBmp = "BMP (*.bmp)";
constexpr const char* kGif = "GIF (*.gif)";
constexpr const char* kPng = "PNG (*.png)";

TEST(ExportFormatsTest, ThePhotosOwnFormatComesFirst) {
  struct Case {
    Strings extensions;
    Strings formats;
    Strings titles;
  };
  const Case cases[] = {
      {{"png", "PNG"}, {"png", "jpeg", "tiff", "bmp", "gif"}, {kPng, kJpeg, kTiff, kBmp, kGif}},
      {{"jpeg", "JPEG"}, {"jpeg", "tiff", "bmp", "gif", "png"}, {kJpeg, kTiff, kBmp, kGif, kPng}},
      {{"jpg", "JPG"}, {"jpg", "tiff", "bmp", "gif", "png"}, {kJpeg, kTiff, kBmp, kGif, kPng}},
      {{"bmp", "BMP"}, {"bmp", "jpeg", "tiff", "gif", "png"}, {kBmp, kJpeg, kTiff, kGif, kPng}},
      {{"tiff", "TIFF"}, {"tiff", "jpeg", "bmp", "gif", "png"}, {kTiff, kJpeg, kBmp, kGif, kPng}},
      {{"gif", "GIF"}, {"gif", "jpeg", "tiff", "bmp", "png"}, {kGif, kJpeg, kTiff, kBmp, kPng}},
      {{"Jpg", "Png", "tif", "webp", "", " png"},
       {"jpeg", "tiff", "bmp", "gif", "png"},
       {kJpeg, kTiff, kBmp, kGif, kPng}},
  };
  for (const Case& c : cases) {
    for (const std::string& extension : c.extensions) {
      EXPECT_EQ(exportFormatsFor(extension), (ExportFormats{c.formats, c.titles})) << extension;
    }
  }
}

TEST(ExportFormatsTest, QualityBelongsToJpegAlone) {
  for (const char* extension : {"jpg", "JPEG", "webp"}) {
    EXPECT_TRUE(titleHasQuality(exportFormatsFor(extension).titles.front())) << extension;
  }
  for (const char* extension : {"png", "TIFF", "bmp", "GIF"}) {
    EXPECT_FALSE(titleHasQuality(exportFormatsFor(extension).titles.front())) << extension;
  }
  for (const char* format : {"jpg", "jpeg"}) EXPECT_TRUE(formatHasQuality(format));
  for (const char* format : {"png", "tiff", "bmp", "gif", ""}) {
    EXPECT_FALSE(formatHasQuality(format)) << format;
  }
}

TEST(ExportFormatsTest, EveryOfferHasItsTypeAndItsWriter) {
  const ExportFormats formats = exportFormatsFor("JPG");
  const FileFormat writers[] = {FileFormat::jpeg, FileFormat::tiff, FileFormat::bmp,
                                FileFormat::gif, FileFormat::png};
  for (std::size_t i = 0; i < formats.titles.size(); ++i) {
    const Strings types = allowedTypesAt(formats, i);
    ASSERT_EQ(types.size(), 1U);
    EXPECT_EQ(writerFor(types.front()), writers[i]);
  }
  EXPECT_TRUE(allowedTypesAt(formats, 5).empty());
  EXPECT_EQ(writerFor("JPEG"), FileFormat::jpeg);
  for (const char* unknown : {"Jpg", "Png", "tif", "webp", "", "jpeg "}) {
    EXPECT_FALSE(writerFor(unknown)) << unknown;
  }
}

TEST(ExportFormatsTest, TheChosenPathsExtensionDecides) {
  struct Case {
    const char* photo;
    const char* chosen;
    ExportChoice choice;
    std::optional<FileFormat> writer;
  };
  const Case cases[] = {
      {"png", "png", {"png", 0}, FileFormat::png},
      {"png", "tiff", {"tiff", 2}, FileFormat::tiff},
      {"JPG", "", {"jpg", 0}, FileFormat::jpeg},
      {"JPEG", "", {"jpeg", 0}, FileFormat::jpeg},
      {"jpg", "xyz", {"jpg", 0}, FileFormat::jpeg},
      {"jpg", "PNG", {"jpg", 0}, FileFormat::jpeg},
      // A list without "jpg" has no place for what it does not hold.
      {"png", "jpg", {"jpg", std::nullopt}, std::nullopt},
      {"webp", "", {"jpg", std::nullopt}, std::nullopt},
  };
  for (const Case& c : cases) {
    const ExportFormats formats = exportFormatsFor(c.photo);
    const ExportChoice choice = exportChoice(formats, c.chosen, c.photo);
    EXPECT_EQ(choice, c.choice) << c.photo << " to " << c.chosen;
    EXPECT_EQ(writerFor(formats, choice), c.writer) << c.photo << " to " << c.chosen;
  }
}

}  // namespace
}  // namespace velmara
