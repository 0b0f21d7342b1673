#include "imaging/file_format.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "imaging/initialise.h"
#include "imaging/picture_files.h"

namespace velmara {
namespace {

using testing::ElementsAre;

TEST(FileFormatTest, IsToldByTheFirstBytesAlone) {
  using namespace std::string_literals;
  const std::string brands = "\0\0\0\030ftypisom\0\0\0\0"s;
  const std::pair<std::optional<FileFormat>, std::vector<std::string>> rows[] = {
      {FileFormat::jpeg, {"\xff\xd8\xff\xe0"}},
      {FileFormat::tiff, {"II*\0\b"s, "MM\0*"s, "II+\0"s, "MM\0+"s}},
      {FileFormat::bmp, {"BM6"}},
      {FileFormat::gif, {"GIF87a", "GIF89a"}},
      {FileFormat::png, {"\x89PNG\r\n\x1a\n"}},
      {FileFormat::jpeg2000, {"\0\0\0\x0cjP  \r\n\x87\n"s, "\xff\x4f\xff\x51"}},
      {FileFormat::webp, {"RIFF1234WEBPVP8 "}},
      {FileFormat::heif, {brands + "mif1heic", brands + "avif"}},
      {FileFormat::pnm, {"P6 1 1 255 ", "P1#"}},
      {FileFormat::raw,
       {"II*\0\x10\0\0\0CR\2\0"s, "IIRO\b", "IIU\0\b"s, "FUJIFILMCCD-RAW 0201",
        "\0\0\0\030ftypcrx \0\0\0\1"s}},
      {std::nullopt,
       {"", "\xff\xd8", "II", "GIF88a", "\x89PNG\n\x1a\n", "RIFF1234WAVEfmt ", brands + "mp42isom",
        "P7 ", "P6x"}},
  };
  for (const auto& [format, heads] : rows) {
    for (const std::string& head : heads) {
      EXPECT_EQ(fileFormatOf({reinterpret_cast<const std::uint8_t*>(head.data()), head.size()}),
                format)
          << head;
    }
  }
}

TEST(FileFormatTest, IndicesWordsAndExtensionsAreThoseOfTheTable) {
  ASSERT_TRUE(initialiseImaging());
  for (std::size_t i = 0; i < fileFormats().size(); ++i) {
    const FormatFacts& facts = fileFormats()[i];
    EXPECT_EQ(&factsOf(facts.format), &facts);
    EXPECT_TRUE(isDecoderInstalled(facts)) << facts.name << ", as the script does for the tests";
    EXPECT_EQ(fileFormatOfIndex(static_cast<unsigned>(i)),
              i < 6 ? std::optional(facts.format) : std::nullopt);
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
  for (const char* readable : {"jpg", "JPG", "tif", "pbm", "avif", "HEIC", "dng", "CR3"}) {
    EXPECT_TRUE(isReadableFileType(readable)) << readable;
  }
  for (const char* unreadable : {"", "Jpg", "svg"}) {
    EXPECT_FALSE(isReadableFileType(unreadable)) << unreadable;
  }
}

std::string rowOf(const FormatFacts& facts) {
  std::ostringstream row;
  row << "\n| " << facts.name << " |";
  for (const std::string_view extension : facts.extensions) {
    if (!extension.empty()) row << " " << extension;
  }
  const bool isWritten = facts.save != nullptr;
  row << " | " << (facts.word.empty() ? isWritten ? "toolkit only" : "" : facts.title);
  row << " | " << (facts.metadata != MetadataPlace::nowhere ? isWritten ? "kept" : "read" : "");
  row << " | " << (facts.carriesProfile ? "kept" : "");
  row << " | " << (facts.carriesAlpha ? "kept" : "") << " |\n";
  return row.str();
}

TEST(FileFormatTest, TheDocumentationHasTheSameTable) {
  const auto document = testing_support::contentsOf(VELMARA_SOURCE_DIR "/docs/image-formats.md");
  for (const FormatFacts& facts : fileFormats()) {
    EXPECT_THAT(document, testing::HasSubstr(rowOf(facts)));
  }
}

}  // namespace
}  // namespace velmara
