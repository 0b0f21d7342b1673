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

namespace velmara {
namespace {

using namespace testing_support;

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

bool putProfile(const std::string& profile, const std::string& file) {
  return runTool({"exiftool", "-q", "-m", "-overwrite_original", "-icc_profile<=" + profile, file})
      .ok;
}

TEST(ColorConversionTest, ColoursKeepTheirProfileOrGoThroughIt) {
  const ScratchFolder folder;
  const std::string p3 = builtInProfile(folder, "p3");
  const std::string gray = folder.file("gray.icc");
  const std::string broken = folder.file("broken.icc");
  writeFile(gray, linearGrayProfile());
  writeFile(broken, std::string(200, 'x'));
  ASSERT_EQ(profileColors(bytesOf(gray)), PictureColors::gray);
  EXPECT_EQ(profileName(bytesOf(gray)), "Straight gray");
  const struct {
    std::string name, profile;
    std::vector<std::string> options;
    std::vector<int> pixel;
    int tolerance;
    bool isKept;
  } rows[] = {
      {"PNG24:a.png", p3, {"xc:rgb(200,100,50)"}, {200, 100, 50}, 0, true},
      {"TIFF:a.tif", p3, {"xc:rgb(200,100,50)", "-depth", "8"}, {200, 100, 50}, 0, true},
      {"JPEG:a.jpg", p3, {"xc:rgb(200,100,50)", "-quality", "100"}, {200, 100, 50}, 1, true},
      {"WEBP:a.webp", p3, {"xc:rgb(200,100,50)", "-quality", "100"}, {200, 100, 50}, 2, true},
      // Display P3's (0.5, 0.3, 0.2) in sRGB is (0.533, 0.288, 0.177).
      {"PNG48:b.png", p3, {"xc:rgb(50%,30%,20%)"}, {136, 73, 45}, 2, false},
      {"PNG8:b.png", p3, {"xc:rgb(50%,30%,20%)"}, {136, 73, 45}, 2, false},
      {"PNG64:b.png", p3, {"xc:rgb(50%,30%,20%)"}, {136, 73, 45}, 2, false},
      // Half the light is 188 of 255 in sRGB.
      {"g.tif", gray, {"xc:gray(50%)", "-colorspace", "Gray", "-depth", "8"}, {188}, 1, false},
      {"g.tif", gray, {"xc:gray(50%)", "-colorspace", "Gray", "-depth", "16"}, {188}, 1, false},
      // What does not fit is ignored.
      {"n.tif", gray, {"xc:rgb(200,100,50)"}, {200, 100, 50}, 0, false},
      {"n.tif", broken, {"xc:rgb(200,100,50)"}, {200, 100, 50}, 0, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name + " " + row.profile);
    const std::size_t colon = row.name.find(':') + 1;
    const std::string file = folder.file(row.name.substr(colon));
    std::vector<std::string> words{"-size", "16x16"};
    words.insert(words.end(), row.options.begin(), row.options.end());
    ASSERT_TRUE(convert(words, row.name.substr(0, colon) + file));
    EXPECT_TRUE(putProfile(row.profile, file) || row.profile == broken);
    const auto image = readImage(file);
    ASSERT_TRUE(image) << image.error();
    EXPECT_EQ(image->profile() != nullptr, row.isKept);
    if (row.isKept) {
      EXPECT_EQ(*image->profile(), bytesOf(row.profile));
    }
    std::vector<int> pixel = pixelAt(image->bitmap(), 8, 8);
    if (pixel.size() == 4) pixel.pop_back();
    EXPECT_THAT(pixel, testing::Pointwise(testing::DoubleNear(row.tolerance), row.pixel));
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

TEST(ColorProfileTest, BytesThatAreNoWholeProfileAreNone) {
  const std::string whole = linearGrayProfile();
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    const std::vector<std::uint8_t> cut(whole.begin(),
                                        whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(profileColors(cut), std::nullopt) << length;
    EXPECT_TRUE(profileName(cut).empty() || length > 180) << length;
  }
  // A name that ends with its tag, and with it the file; then one that is not in the table.
  std::string tight = whole.substr(0, 168 + 25);
  tight.replace(140, 4, bigEndian(25, 4));
  EXPECT_EQ(profileName(std::vector<std::uint8_t>(tight.begin(), tight.end())), "Straight gray");
  tight.replace(128, 4, bigEndian(0, 4));
  EXPECT_EQ(profileName(std::vector<std::uint8_t>(tight.begin(), tight.end())), "");
}

}  // namespace
}  // namespace velmara
