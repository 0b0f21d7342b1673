#include "imaging/file_format.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "imaging/picture_files.h"

namespace velmara {
namespace {

using testing::Contains;
using testing::ElementsAre;

std::optional<FileFormat> formatOf(const std::string& head) {
  return fileFormatOf({reinterpret_cast<const std::uint8_t*>(head.data()), head.size()});
}

TEST(FileFormatTest, IsToldByTheFirstBytesAlone) {
  const std::string brands = testing_support::bigEndian(24, 4) + "ftypisom" + std::string(4, '\0');
  const struct {
    std::string head;
    std::optional<FileFormat> format;
  } cases[] = {
      {"\xff\xd8\xff\xe0", FileFormat::jpeg},
      {"\xff\xd8", std::nullopt},
      {std::string("II*\0\b", 5), FileFormat::tiff},
      {std::string("MM\0*", 4), FileFormat::tiff},
      {std::string("II+\0", 4), FileFormat::tiff},
      {std::string("MM\0+", 4), FileFormat::tiff},
      {"II", std::nullopt},
      {"BM6", FileFormat::bmp},
      {"GIF87a", FileFormat::gif},
      {"GIF89a", FileFormat::gif},
      {"GIF88a", std::nullopt},
      {"\x89PNG\r\n\x1a\n", FileFormat::png},
      {"\x89PNG\n\x1a\n", std::nullopt},
      {std::string("\0\0\0\x0cjP  \r\n\x87\n", 12), FileFormat::jpeg2000},
      {"\xff\x4f\xff\x51", FileFormat::jpeg2000},
      {"RIFF1234WEBPVP8 ", FileFormat::webp},
      {"RIFF1234WAVEfmt ", std::nullopt},
      {brands + "mif1heic", FileFormat::heif},
      {brands + "avif", FileFormat::heif},
      {brands + "mp42isom", std::nullopt},
      {"P6 1 1 255 ", FileFormat::pnm},
      {"P1#", FileFormat::pnm},
      {"P7 ", std::nullopt},
      {"P6x", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& c : cases) EXPECT_EQ(formatOf(c.head), c.format) << c.head;
}

TEST(FileFormatTest, IndicesWordsAndExtensionsAreThoseOfTheTable) {
  for (std::size_t i = 0; i < fileFormats().size(); ++i) {
    const FormatFacts& facts = fileFormats()[i];
    EXPECT_EQ(&factsOf(facts.format), &facts);
    EXPECT_EQ(fileFormatOfIndex(static_cast<unsigned>(i)),
              i < 6 ? std::optional(facts.format) : std::nullopt);
    EXPECT_EQ(facts.word.empty(), facts.title.empty());
    EXPECT_TRUE(facts.word.empty() || facts.save != nullptr);
  }
  EXPECT_EQ(fileFormatOfIndex(~0U), std::nullopt);
  EXPECT_THAT(exportFormatWords(), ElementsAre("jpeg", "tiff", "bmp", "gif", "png"));
  EXPECT_EQ(exportFormatOf(FileFormat::bmp), FileFormat::bmp);
  EXPECT_EQ(exportFormatOf(FileFormat::jpeg2000), std::nullopt);
  EXPECT_EQ(exportFormatForExtension("TIF"), FileFormat::tiff);
  EXPECT_EQ(exportFormatForExtension("Jpeg"), FileFormat::jpeg);
  for (const char* none : {"", "webp", "jp2", "jpeg "}) {
    EXPECT_EQ(exportFormatForExtension(none), std::nullopt) << none;
  }
  for (const char* readable : {"jpg", "JPG", "tif", "pbm", "avif", "HEIC"}) {
    EXPECT_TRUE(isReadableFileType(readable)) << readable;
  }
  for (const char* unreadable : {"", "Jpg", "svg", "dng"}) {
    EXPECT_FALSE(isReadableFileType(unreadable)) << unreadable;
  }
}

std::string rowOf(const FormatFacts& facts) {
  std::ostringstream row;
  row << "| " << facts.name << " |";
  for (const std::string_view extension : facts.extensions) {
    if (!extension.empty()) row << " " << extension;
  }
  const bool isWritten = facts.save != nullptr;
  row << " | " << (facts.word.empty() ? isWritten ? "toolkit only" : "" : facts.title);
  row << " | " << (facts.metadata != MetadataPlace::nowhere ? isWritten ? "kept" : "read" : "");
  row << " | " << (facts.carriesProfile ? "kept" : "");
  row << " | " << (facts.carriesAlpha ? "kept" : "") << " |";
  return row.str();
}

TEST(FileFormatTest, TheDocumentationHasTheSameTable) {
  std::istringstream document(
      testing_support::contentsOf(VELMARA_SOURCE_DIR "/docs/image-formats.md"));
  std::vector<std::string> lines;
  for (std::string line; std::getline(document, line);) lines.push_back(line);
  for (const FormatFacts& facts : fileFormats()) EXPECT_THAT(lines, Contains(rowOf(facts)));
}

}  // namespace
}  // namespace velmara
