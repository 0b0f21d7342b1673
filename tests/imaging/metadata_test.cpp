#include "imaging/metadata.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "imaging/image_reader.h"
#include "imaging/image_writer.h"
#include "imaging/picture_files.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;
using namespace testing_support;

/// A 60 x 40 photo with all a camera and its owner put into one: maker notes, a place, a caption,
/// keywords, a rating, a profile, a thumbnail, and the camera held upright.
class PhotoTest : public testing::Test {
 protected:
  void SetUp() override {
    photo_ = folder_.file("photo.jpg");
    profile_ = builtInProfile(folder_, "p3");
    ASSERT_TRUE(
        convert({"-size", "60x40", "-seed", "3", "plasma:red-blue", "-quality", "95"}, photo_));
    ASSERT_TRUE(runTool({"exiv2",
                         "-Mset Exif.Image.Make Canon",
                         "-Mset Exif.Image.Model Canon EOS 40D",
                         "-Mset Exif.Image.Orientation Short 6",
                         "-Mset Exif.Image.XResolution 300/1",
                         "-Mset Exif.Image.YResolution 150/1",
                         "-Mset Exif.Image.ResolutionUnit 2",
                         "-Mset Exif.Photo.FocalPlaneXResolution 30/1",
                         "-Mset Exif.Photo.FocalPlaneYResolution 15/1",
                         "-Mset Exif.Photo.FNumber 28/10",
                         "-Mset Exif.Photo.ISOSpeedRatings Short 800",
                         "-Mset Exif.Photo.DateTimeOriginal 2021:05:06 07:08:09",
                         "-Mset Exif.Photo.PixelXDimension Long 60",
                         "-Mset Exif.Photo.PixelYDimension Long 40",
                         "-Mset Exif.Photo.UserComment charset=Ascii hello",
                         "-Mset Exif.Canon.OwnerName Ascii Owner",
                         "-Mset Exif.CanonCs.Lens Short 55 18 1",
                         "-Mset Exif.GPSInfo.GPSLatitudeRef S",
                         "-Mset Exif.GPSInfo.GPSLatitude 33/1 30/1 3600/100",
                         "-Mset Iptc.Application2.City Sydney#far away",
                         "-Mset Iptc.Application2.Caption " + std::string(4096, 'c'),
                         "-Mset Iptc.Application2.Headline " + std::string(4097, 'h'),
                         "-Madd Iptc.Application2.Keywords one",
                         "-Madd Iptc.Application2.Keywords two",
                         "-Mset Xmp.dc.title lang=x-default A title",
                         "-Mset Xmp.dc.source " + std::string(4096, 's'),
                         "-Mset Xmp.dc.format " + std::string(4097, 'f'),
                         "-Mset Xmp.xmp.Rating 4",
                         "-Mset Xmp.tiff.Orientation 6",
                         photo_})
                    .ok);
    ASSERT_TRUE(convert({"-size", "16x10", "xc:lime"}, folder_.file("thumb.jpg")));
    ASSERT_TRUE(runTool({"exiftool", "-q", "-overwrite_original",
                         "-ThumbnailImage<=" + folder_.file("thumb.jpg"),
                         "-icc_profile<=" + profile_, photo_})
                    .ok);
    std::string bytes = contentsOf(photo_);
    bytes[bytes.find("Sydney#") + 6] = '\0';  // Where a text ends, whatever follows.
    writeFile(photo_, bytes);
  }

  /// The photo turned upright and written with its metadata.
  std::string exported(FileFormat format, const std::string& name) const {
    const auto image = readImage(photo_);
    const auto metadata = readMetadata(photo_);
    const Bitmap upright = RotateWithEXIF(image->bitmap(), metadata->orientation().value_or(1));
    const auto bytes = encodeImageWithMetadata(upright, image->profile(), format, *metadata);
    EXPECT_TRUE(bytes) << bytes.error();
    writeFile(folder_.file(name), *bytes);
    return folder_.file(name);
  }

  ScratchFolder folder_;
  std::string photo_;
  std::string profile_;
};

/// Every entry that Exiv2's own program prints for a file: key, type and value.
std::map<std::string, std::string> entriesOf(const std::string& file) {
  std::istringstream lines(runTool({"exiv2", "-PExkyv", file}).text + "\n" +
                           runTool({"exiv2", "-PIkyv", file}).text + "\n" +
                           runTool({"exiv2", "-PXkyv", file}).text);
  std::map<std::string, std::string> entries;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string key;
    words >> key;
    if (key.starts_with("0x")) words >> key;
    std::string type;
    words >> type >> std::ws;
    std::string value;
    std::getline(words, value);
    entries[key].append(type).append(" ").append(value).append("\n");
  }
  return entries;
}

TEST_F(PhotoTest, IsADictionary) {
  const auto metadata = readMetadata(photo_);
  ASSERT_TRUE(metadata);
  EXPECT_EQ(metadata->orientation(), 6);
  EXPECT_EQ(*metadata->find("PixelWidth")->integer(), 60);
  EXPECT_EQ(*metadata->find("PixelHeight")->integer(), 40);
  EXPECT_EQ(*metadata->find("Depth")->integer(), 8);
  EXPECT_EQ(*metadata->find("ColorModel")->text(), "RGB");
  EXPECT_FALSE(*metadata->find("HasAlpha")->boolean());
  EXPECT_EQ(*metadata->find("DPIWidth")->real(), 300.0);
  EXPECT_EQ(*metadata->find("DPIHeight")->real(), 150.0);
  EXPECT_THAT(*metadata->find("ProfileName")->text(), HasSubstr("P3"));
  EXPECT_EQ(*metadata->find("{TIFF}", "Model")->text(), "Canon EOS 40D");
  EXPECT_THAT(*metadata->find("{Exif}", "FNumber")->real(), DoubleNear(2.8, 1e-9));
  EXPECT_EQ(*metadata->find("{Exif}", "UserComment")->text(), "hello");
  EXPECT_EQ(*metadata->find("{Exif}", "ISOSpeedRatings")->integer(), 800);
  EXPECT_THAT(*metadata->find("{GPS}", "Latitude")->real(), DoubleNear(33.51, 1e-9));
  EXPECT_EQ(*metadata->find("{GPS}", "LatitudeRef")->text(), "S");
  EXPECT_EQ(*metadata->find("{IPTC}", "City")->text(), "Sydney");
  EXPECT_EQ(metadata->find("{IPTC}", "Caption/Abstract")->text()->size(), 4096U);
  EXPECT_EQ(metadata->find("{IPTC}", "Headline"), nullptr) << "too long a text";
  EXPECT_EQ(metadata->find("{IPTC}", "Keywords")->list()->size(), 2U);
  EXPECT_EQ(*metadata->find("{XMP}", "xmp:Rating")->text(), "4");
  EXPECT_EQ(metadata->find("{XMP}", "dc:source")->text()->size(), 4096U);
  EXPECT_EQ(metadata->find("{XMP}", "dc:format"), nullptr);
  EXPECT_EQ(metadata->find("{Exif}", "MakerNote"), nullptr);
  // Another thread may read it as well.
  const auto again = std::async(std::launch::async, [&] { return readMetadata(photo_); }).get();
  EXPECT_EQ(*again->find("{XMP}", "xmp:Rating")->text(), "4");
}

TEST_F(PhotoTest, KeepsEverythingButWhatIsNoLongerTrue) {
  auto expected = entriesOf(photo_);
  ASSERT_TRUE(expected.contains("Exif.Canon.OwnerName"));
  ASSERT_TRUE(expected.contains("Exif.Thumbnail.Compression"));
  std::erase_if(expected, [](const auto& entry) {
    return entry.first.starts_with("Exif.Thumbnail.") || entry.first == "Exif.Image.ExifTag" ||
           entry.first == "Exif.Image.GPSTag" || entry.first.starts_with("Exif.MakerNote.") ||
           entry.first == "Exif.Photo.MakerNote";
  });
  expected["Exif.Image.Orientation"] = "Short 1\n";
  expected["Xmp.tiff.Orientation"] = "XmpText 1\n";
  expected["Exif.Photo.PixelXDimension"] = "Long 40\n";
  expected["Exif.Photo.PixelYDimension"] = "Long 60\n";
  // The sides have changed places, and their resolutions with them.
  std::swap(expected["Exif.Image.XResolution"], expected["Exif.Image.YResolution"]);
  std::swap(expected["Exif.Photo.FocalPlaneXResolution"],
            expected["Exif.Photo.FocalPlaneYResolution"]);

  for (const auto& [format, name] :
       {std::pair(FileFormat::jpeg, "a.jpg"), std::pair(FileFormat::tiff, "a.tif"),
        std::pair(FileFormat::png, "a.png"), std::pair(FileFormat::jpeg2000, "a.jp2"),
        std::pair(FileFormat::gif, "a.gif"), std::pair(FileFormat::bmp, "a.bmp")}) {
    const std::string file = exported(format, name);
    EXPECT_EQ(readImage(file)->size(), (Size{40, 60})) << name;
    const auto metadata = readMetadata(file);
    EXPECT_EQ(*metadata->find("PixelWidth")->integer(), 40) << name;
    if (format == FileFormat::gif || format == FileFormat::bmp) {
      EXPECT_EQ(metadata->orientation(), std::nullopt) << name;
      continue;
    }
    EXPECT_EQ(metadata->orientation(), 1) << name;
    const auto entries = entriesOf(file);
    for (const auto& [key, value] : expected) {
      ASSERT_TRUE(entries.contains(key)) << key << " in " << name;
      EXPECT_EQ(entries.at(key), value) << key << " in " << name;
    }
    EXPECT_FALSE(entries.contains("Exif.Thumbnail.Compression")) << name;
    if (format != FileFormat::jpeg2000) {
      const auto image = readImage(file);
      ASSERT_NE(image->profile(), nullptr) << name;
      EXPECT_EQ(*image->profile(), bytesOf(profile_)) << name;
    }
    EXPECT_THAT(runTool({"exiftool", "-validate", "-warning", "-a", file}).text,
                testing::Not(HasSubstr("Error")))
        << name;
  }
}

// Written once more, into each other format, nothing gets lost on the way either.
TEST_F(PhotoTest, SurvivesASecondJourney) {
  const std::string tiff = exported(FileFormat::tiff, "a.tif");
  const auto image = readImage(tiff);
  const auto metadata = readMetadata(tiff);
  for (const auto& [format, name] :
       {std::pair(FileFormat::jpeg, "b.jpg"), std::pair(FileFormat::tiff, "b.tif"),
        std::pair(FileFormat::png, "b.png")}) {
    const Bitmap smaller = testing_support::gradient(20, 30, 3);
    const auto bytes = encodeImageWithMetadata(smaller, image->profile(), format, *metadata);
    ASSERT_TRUE(bytes) << bytes.error();
    writeFile(folder_.file(name), *bytes);
    const auto entries = entriesOf(folder_.file(name));
    EXPECT_EQ(entries.at("Exif.Canon.OwnerName"), "Ascii Owner\n") << name;
    EXPECT_EQ(entries.at("Exif.Photo.PixelXDimension"), "Long 20\n") << name;
    EXPECT_EQ(entries.at("Iptc.Application2.Keywords"), "String one\nString two\n") << name;
    // What described the TIFF's strips is not true of the new pixels.
    EXPECT_EQ(entries.contains("Exif.Image.StripOffsets"), format == FileFormat::tiff) << name;
    EXPECT_EQ(readImage(folder_.file(name))->size(), (Size{20, 30})) << name;
    EXPECT_TRUE(convert({folder_.file(name)}, folder_.file("seen.ppm"))) << name;
  }
}

// libvips writes the Exif of a PNG twice.
TEST_F(PhotoTest, OfATagThatIsThereTwiceOneIsWritten) {
  const std::string png = folder_.file("twice.png");
  ASSERT_TRUE(
      runTool({"exiftool", "-q", "-overwrite_original", "-n", "-Orientation=6", photo_}).ok);
  ASSERT_TRUE(runTool({"vips", "copy", photo_, png}).ok);
  const auto metadata = readMetadata(png);
  ASSERT_TRUE(metadata);
  ASSERT_EQ(metadata->orientation(), 6);
  for (const FileFormat format : {FileFormat::jpeg, FileFormat::tiff, FileFormat::png}) {
    const auto bytes =
        encodeImageWithMetadata(testing_support::gradient(60, 40, 3), nullptr, format, *metadata);
    ASSERT_TRUE(bytes) << bytes.error();
    writeFile(folder_.file("upright"), *bytes);
    EXPECT_EQ(readMetadata(folder_.file("upright"))->orientation(), 1) << static_cast<int>(format);
    EXPECT_EQ(entriesOf(folder_.file("upright")).at("Exif.Image.Orientation"), "Short 1\n");
  }
}

TEST_F(PhotoTest, WhatDoesNotFitIntoAJpegIsLeftOut) {
  writeFile(folder_.file("large.txt"), std::string(50'000, 'x'));
  const std::string png = folder_.file("large.png");
  ASSERT_TRUE(convert({photo_, "-strip"}, png));
  ASSERT_TRUE(runTool({"exiv2", "-Mset Exif.Image.Make Canon", png}).ok);
  ASSERT_TRUE(runTool({"exiftool", "-q", "-overwrite_original", "-all=", "-Artist=Somebody",
                       "-UserComment<=" + folder_.file("large.txt"),
                       "-ImageDescription<=" + folder_.file("large.txt"), png})
                  .ok);
  const auto metadata = readMetadata(png);
  const auto bytes = encodeImageWithMetadata(testing_support::gradient(60, 40, 3), nullptr,
                                             FileFormat::jpeg, *metadata);
  ASSERT_TRUE(bytes) << bytes.error();
  writeFile(folder_.file("a.jpg"), *bytes);
  const auto entries = entriesOf(folder_.file("a.jpg"));
  EXPECT_EQ(entries.at("Exif.Image.Artist"), "Ascii Somebody\n");
  EXPECT_EQ(
      entries.contains("Exif.Photo.UserComment") + entries.contains("Exif.Image.ImageDescription"),
      1);
}

TEST_F(PhotoTest, DamagedMetadataIsHarmless) {
  const std::string whole = contentsOf(photo_);
  const std::size_t pixels = whole.rfind("\xff\xda");
  const Bitmap bitmap = testing_support::gradient(60, 40, 3);
  std::mt19937 random(11);
  const std::string file = folder_.file("wrong.jpg");
  for (int round = 0; round < 150; ++round) {
    std::string wrong = whole;
    for (auto changes = 1 + random() % 6; changes > 0; --changes) {
      wrong[20 + random() % (pixels - 20)] = static_cast<char>(random());
    }
    writeFile(file, wrong);
    const auto metadata = readMetadata(file);
    if (!metadata) continue;
    for (const FileFormat format : {FileFormat::jpeg, FileFormat::tiff, FileFormat::png}) {
      const auto bytes = encodeImageWithMetadata(bitmap, nullptr, format, *metadata);
      ASSERT_TRUE(bytes) << bytes.error();
      EXPECT_GT(bytes->size(), 100U);
    }
  }
}

TEST(MetadataTest, TheTurnOfAHeicIsInItsPixels) {
  const ScratchFolder folder;
  const std::string jpeg = folder.file("a.jpg");
  const std::string heic = folder.file("a.heic");
  ASSERT_TRUE(convert({"-size", "64x48", "xc:red"}, jpeg));
  ASSERT_TRUE(runTool({"exiftool", "-q", "-overwrite_original", "-n", "-Orientation=6",
                       "-Make=Maker", jpeg})
                  .ok);
  if (!runTool({"heif-enc", jpeg, "-o", heic}).ok) GTEST_SKIP() << "heif-enc is not to be had";
  const auto metadata = readMetadata(heic);
  ASSERT_TRUE(metadata);
  EXPECT_EQ(*metadata->find("{TIFF}", "Make")->text(), "Maker");
  EXPECT_EQ(metadata->orientation().value_or(1), 1);
}

TEST(MetadataTest, FilesWithoutMetadataHaveTheirHeaders) {
  const ScratchFolder folder;
  for (const std::string name : {"a.gif", "a.bmp", "a.ppm", "a.png", "a.webp", "a.jp2", "a.tif"}) {
    ASSERT_TRUE(convert({"-size", "12x9", "gradient:red-blue", "-strip"}, folder.file(name)));
    const auto metadata = readMetadata(folder.file(name));
    ASSERT_TRUE(metadata) << name;
    EXPECT_EQ(*metadata->find("PixelWidth")->integer(), 12) << name;
    EXPECT_EQ(*metadata->find("ColorModel")->text(), "RGB") << name;
  }
}

}  // namespace
}  // namespace velmara
