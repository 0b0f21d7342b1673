#include "session/export_formats.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmara {
namespace {

using Strings = std::vector<std::string>;

TEST(ExportFormatsTest, ThePhotosOwnFormatComesFirst) {
  struct Case {
    Strings extensions;
    const char* own;
    Strings others;
  };
  const Case cases[] = {
      {{"png", "PNG"}, "png", {"jpeg", "tiff", "bmp", "gif"}},
      {{"jpeg", "JPEG"}, "jpeg", {"tiff", "bmp", "gif", "png"}},
      {{"jpg", "JPG"}, "jpg", {"tiff", "bmp", "gif", "png"}},
      {{"bmp", "BMP"}, "bmp", {"jpeg", "tiff", "gif", "png"}},
      {{"tiff", "TIFF"}, "tiff", {"jpeg", "bmp", "gif", "png"}},
      {{"gif", "GIF"}, "gif", {"jpeg", "tiff", "bmp", "png"}},
      {{"Jpg", "Png", "tif", "webp", "", " png"}, "jpeg", {"tiff", "bmp", "gif", "png"}}};
  struct Offer {
    const char* title;
    FileFormat writer;
  };
  const std::map<std::string, Offer> offers{
      {"jpeg", {"JPEG (*.jpg)", FileFormat::jpeg}},  {"jpg", {"JPEG (*.jpg)", FileFormat::jpeg}},
      {"tiff", {"Tiff (*.tiff)", FileFormat::tiff}}, {"bmp", {"BMP (*.bmp)", FileFormat::bmp}},
      {"gif", {"GIF (*.gif)", FileFormat::gif}},     {"png", {"PNG (*.png)", FileFormat::png}}};
  for (const Case& c : cases) {
    Strings expected = c.others;
    expected.insert(expected.begin(), c.own);
    for (const std::string& extension : c.extensions) {
      const ExportFormats formats = exportFormatsFor(extension);
      EXPECT_EQ(formats.arrformatsSupportedByIM, expected) << extension;
      ASSERT_EQ(formats.titles.size(), expected.size());
      for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(formats.titles[i], offers.at(expected[i]).title);
        EXPECT_EQ(allowedTypesAt(formats, i), Strings{expected[i]});
        EXPECT_EQ(writerFor(expected[i]), offers.at(expected[i]).writer);
        const bool isJpeg = expected[i].starts_with("jp");
        EXPECT_EQ(titleHasQuality(formats.titles[i]), isJpeg);
        EXPECT_EQ(formatHasQuality(expected[i]), isJpeg);
      }
      EXPECT_TRUE(allowedTypesAt(formats, expected.size()).empty());
    }
  }
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
  const Case cases[] = {{"png", "png", {"png", 0}, FileFormat::png},
                        {"png", "tiff", {"tiff", 2}, FileFormat::tiff},
                        {"JPG", "", {"jpg", 0}, FileFormat::jpeg},
                        {"JPEG", "", {"jpeg", 0}, FileFormat::jpeg},
                        {"jpg", "xyz", {"jpg", 0}, FileFormat::jpeg},
                        {"jpg", "PNG", {"jpg", 0}, FileFormat::jpeg},
                        // A list without "jpg" has no place for what it does not hold.
                        {"png", "jpg", {"jpg", std::nullopt}, std::nullopt},
                        {"webp", "", {"jpg", std::nullopt}, std::nullopt}};
  for (const Case& c : cases) {
    const ExportFormats formats = exportFormatsFor(c.photo);
    const ExportChoice choice = exportChoice(formats, c.chosen, c.photo);
    EXPECT_EQ(choice, c.choice) << c.photo << " to " << c.chosen;
    EXPECT_EQ(writerFor(formats, choice), c.writer) << c.photo << " to " << c.chosen;
  }
}

}  // namespace
}  // namespace velmara
