#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/pixel_operations.h"
#include "imaging/color_profile.h"
#include "imaging/image_reader.h"
#include "imaging/picture_files.h"
#include "imaging/pictures.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing_support::bigEndian;
using testing_support::bytesOf;
using testing_support::convert;
using testing_support::pixelAt;
using testing_support::pixelsByImageMagick;
using testing_support::runTool;
using testing_support::samplesOf;
using testing_support::ScratchFolder;

std::string padded(std::string text) {
  text.resize((text.size() + 3) / 4 * 4);
  return text;
}

// A profile of gray with a straight line for its curve: 8-bit value v means v / 255 of the light.
std::string linearGrayProfile() {
  const std::string name("Straight gray");
  const std::string desc = padded("desc" + bigEndian(0, 4) + bigEndian(name.size() + 1, 4) + name +
                                  std::string(80, '\0'));
  const std::string white = "XYZ " + bigEndian(0, 4) + bigEndian(0xf6d6, 4) +
                            bigEndian(0x10000, 4) + bigEndian(0xd32d, 4);
  const std::string curve = "curv" + bigEndian(0, 4) + bigEndian(0, 4);
  std::string table = bigEndian(3, 4);
  std::size_t offset = 128 + 4 + 3 * 12;
  for (const auto& [tag, data] :
       {std::pair("desc", desc), std::pair("wtpt", white), std::pair("kTRC", curve)}) {
    table += tag + bigEndian(offset, 4) + bigEndian(data.size(), 4);
    offset += data.size();
  }
  return bigEndian(offset, 4) + bigEndian(0, 4) + bigEndian(0x02400000, 4) + "mntrGRAYXYZ " +
         std::string(12, '\0') + "acsp" + std::string(28, '\0') + bigEndian(0xf6d6, 4) +
         bigEndian(0x10000, 4) + bigEndian(0xd32d, 4) + std::string(48, '\0') + table + desc +
         white + curve;
}

/// A file with a profile that libvips brings along: "p3" or "cmyk". Empty if it has none.
std::string builtInProfile(const ScratchFolder& folder, const std::string& name) {
  const std::string plain = folder.file("plain.png");
  const std::string picture = folder.file("profiled.tif");
  const std::string file = folder.file(name + ".icc");
  if (!convert({"-size", "8x8", "xc:red"}, plain) ||
      !runTool({"vips", "icc_transform", plain, picture, name}).ok ||
      !runTool({"exiftool", "-q", "-b", "-icc_profile", "-w", folder.file("%0f" + name + ".icc"),
                picture})
           .ok) {
    return {};
  }
  return profileColors(bytesOf(file)) ? file : std::string();
}

bool putProfile(const std::string& profile, const std::string& file) {
  return runTool({"exiftool", "-q", "-m", "-overwrite_original", "-icc_profile<=" + profile, file})
      .ok;
}

TEST(ColorConversionTest, EightBitRgbKeepsItsNumbersAndItsProfile) {
  const ScratchFolder folder;
  const std::string profile = builtInProfile(folder, "p3");
  ASSERT_FALSE(profile.empty());
  for (const std::string name : {"PNG24:a.png", "TIFF:a.tif", "JPEG:a.jpg", "WEBP:a.webp"}) {
    const std::string file = folder.file(name.substr(name.find(':') + 1));
    ASSERT_TRUE(
        convert({"-size", "16x16", "xc:rgb(200,100,50)", "-depth", "8", "-type", "TrueColor",
                 "-quality", "100", "-sampling-factor", "1x1", "-define", "webp:lossless=true"},
                name.substr(0, name.find(':') + 1) + file));
    ASSERT_TRUE(putProfile(profile, file)) << name;
    const auto image = readImage(file);
    ASSERT_TRUE(image) << image.error();
    ASSERT_NE(image->profile(), nullptr) << name;
    EXPECT_EQ(*image->profile(), bytesOf(profile)) << name;
    EXPECT_NEAR(pixelAt(image->bitmap(), 8, 8)[0], 200, 1) << name;
    EXPECT_NEAR(pixelAt(image->bitmap(), 8, 8)[2], 50, 1) << name;
  }
}

// Display P3's (0.5, 0.3, 0.2) in sRGB is (0.533, 0.288, 0.177).
TEST(ColorConversionTest, DeepAndPaletteColoursGoThroughTheirProfile) {
  const ScratchFolder folder;
  const std::string profile = builtInProfile(folder, "p3");
  ASSERT_FALSE(profile.empty());
  for (const std::string name : {"PNG48:a.png", "PNG8:b.png", "PNG64:c.png"}) {
    const std::string path = folder.file(name.substr(name.find(':') + 1));
    ASSERT_TRUE(convert({"-size", "16x16", "xc:rgb(50%,30%,20%)"},
                        name.substr(0, name.find(':') + 1) + path));
    ASSERT_TRUE(putProfile(profile, path));
    const auto image = readImage(path);
    ASSERT_TRUE(image) << image.error();
    EXPECT_EQ(image->profile(), nullptr) << name;
    const auto pixel = pixelAt(image->bitmap(), 8, 8);
    EXPECT_NEAR(pixel[0], 136, 2) << name;
    EXPECT_NEAR(pixel[1], 73, 2) << name;
    EXPECT_NEAR(pixel[2], 45, 2) << name;
  }
}

TEST(ColorConversionTest, GrayStaysGrayThroughItsProfile) {
  const ScratchFolder folder;
  const std::string profile = folder.file("gray.icc");
  testing_support::writeFile(profile, linearGrayProfile());
  ASSERT_EQ(profileColors(bytesOf(profile)), PictureColors::gray);
  EXPECT_EQ(profileName(bytesOf(profile)), "Straight gray");
  for (const std::string depth : {"8", "16"}) {
    const std::string file = folder.file("gray" + depth + ".tif");
    ASSERT_TRUE(
        convert({"-size", "16x16", "xc:gray(50%)", "-colorspace", "Gray", "-depth", depth}, file));
    ASSERT_TRUE(
        runTool({"exiftool", "-q", "-overwrite_original", "-icc_profile<=" + profile, file}).ok);
    const auto image = readImage(file);
    ASSERT_TRUE(image) << image.error();
    // Half the light is 188 of 255 in sRGB.
    ASSERT_EQ(image->bitmap().samplesPerPixel(), 1);
    EXPECT_NEAR(pixelAt(image->bitmap(), 8, 8)[0], 188, 1) << depth;
    EXPECT_EQ(image->profile(), nullptr);
  }
}

// Through the file's own profile or, without one, a usual one: the same as another program has it.
TEST(ColorConversionTest, PressColoursBecomeRgb) {
  const ScratchFolder folder;
  const std::string profile = builtInProfile(folder, "cmyk");
  const std::string screen = builtInProfile(folder, "srgb");
  ASSERT_FALSE(profile.empty() || screen.empty());
  for (const std::string name : {"plain.jpg", "plain.tif", "profiled.jpg", "profiled.tif"}) {
    const std::string file = folder.file(name);
    ASSERT_TRUE(convert({"-size", "61x47", "-seed", "7", "plasma:red-blue", "-colorspace", "CMYK",
                         "-depth", "8", "-quality", "98", "-sampling-factor", "1x1"},
                        file));
    if (name.starts_with("profiled")) {
      ASSERT_TRUE(putProfile(profile, file));
    }
    const auto image = readImage(file);
    ASSERT_TRUE(image) << image.error();
    EXPECT_EQ(image->bitmap().samplesPerPixel(), 3) << name;
    EXPECT_EQ(image->profile(), nullptr);
    const auto expected = pixelsByImageMagick(
        file, {"+profile", "icc", "-intent", "Relative", "-black-point-compensation", "-profile",
               profile, "-profile", screen});
    const auto seen = samplesOf(asRgba(image->bitmap()));
    ASSERT_EQ(seen.size(), expected.size());
    int worst = 0;
    double sum = 0.0;
    for (std::size_t i = 0; i < seen.size(); ++i) {
      worst = std::max(worst, std::abs(seen[i] - expected[i]));
      sum += std::abs(seen[i] - expected[i]);
    }
    // The two round at different depths on the way.
    EXPECT_LE(worst, 8) << name;
    EXPECT_LE(sum / static_cast<double>(seen.size()), 1.0) << name;
  }
}

TEST(ColorConversionTest, AProfileThatDoesNotFitIsIgnored) {
  const ScratchFolder folder;
  const std::string gray = folder.file("gray.icc");
  testing_support::writeFile(gray, linearGrayProfile());
  const std::string broken = folder.file("broken.icc");
  testing_support::writeFile(broken, std::string(200, 'x'));
  for (const std::string& profile : {gray, broken}) {
    const std::string file = folder.file("a.tif");
    ASSERT_TRUE(convert({"-size", "8x8", "xc:rgb(200,100,50)"}, file));
    putProfile(profile, file);
    const auto image = readImage(file);
    ASSERT_TRUE(image) << image.error();
    EXPECT_THAT(pixelAt(image->bitmap(), 4, 4), ElementsAre(200, 100, 50));
    EXPECT_EQ(image->profile(), nullptr);
  }
}

TEST(ColorProfileTest, BytesThatAreNoWholeProfileAreNone) {
  const std::string whole = linearGrayProfile();
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    const std::vector<std::uint8_t> cut(whole.begin(),
                                        whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(profileColors(cut), std::nullopt) << length;
    EXPECT_TRUE(profileName(cut).empty() || length > 180) << length;
  }
}

}  // namespace
}  // namespace velmara
