#include "imaging/image_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>
#include <string>
#include <vector>

#include "base/pixel_operations.h"
#include "imaging/image_reader.h"
#include "imaging/picture_files.h"
#include "imaging/pictures.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::gradient;
using testing_support::pixelsByImageMagick;
using testing_support::runTool;
using testing_support::samplesOf;
using testing_support::ScratchFolder;
using testing_support::writeFile;

Bitmap withAlpha(const Bitmap& bitmap, std::uint8_t alpha) {
  std::vector<std::uint8_t> samples = samplesOf(bitmap);
  const auto step = static_cast<std::size_t>(bitmap.samplesPerPixel());
  for (std::size_t i = step - 1; i < samples.size() / 2; i += step) samples[i] = alpha;
  return Bitmap::copyOf(samples, bitmap.width(), bitmap.height(), bitmap.samplesPerPixel());
}

struct Encoding {
  std::string name;
  FileFormat format;
  std::string extension;
  /// The mean difference to the samples as another program reads them, at most.
  double tolerance = 0.0;
};

class EncodingTest : public testing::TestWithParam<Encoding> {};

double meanDifference(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
  if (a.size() != b.size() || a.empty()) return 1000.0;
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[i]);
  return sum / static_cast<double>(a.size());
}

// Every format, every number of samples, opaque and not: another program sees the same pixels.
TEST_P(EncodingTest, AnotherProgramSeesTheSamePixels) {
  const Encoding& encoding = GetParam();
  const ScratchFolder folder;
  for (const int samples : {1, 2, 3, 4}) {
    for (const std::uint8_t alpha : {std::uint8_t{255}, std::uint8_t{0}}) {
      Bitmap bitmap = gradient(37, 21, samples);
      if (bitmap.hasAlpha()) bitmap = withAlpha(bitmap, alpha);
      const auto bytes = encodeImage(bitmap, nullptr, encoding.format);
      ASSERT_TRUE(bytes) << bytes.error();
      const std::string file = folder.file("a." + encoding.extension);
      writeFile(file, *bytes);

      const bool transparent = bitmap.hasAlpha() && alpha == 0;
      const bool flattened = transparent && encoding.format == FileFormat::jpeg;
      std::vector<std::uint8_t> expected =
          samplesOf(asRgba(flattened ? withoutAlpha(bitmap) : bitmap));
      std::vector<std::uint8_t> seen = pixelsByImageMagick(file);
      ASSERT_EQ(seen.size(), expected.size());
      for (std::size_t i = 0; i < seen.size(); i += 4) {
        // The colour below a hole is the format's affair.
        if (expected[i + 3] == 0 && seen[i + 3] == 0) {
          std::fill_n(seen.begin() + static_cast<std::ptrdiff_t>(i), 3, std::uint8_t{0});
          std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(i), 3, std::uint8_t{0});
        }
      }
      EXPECT_LE(meanDifference(seen, expected), encoding.tolerance)
          << samples << " samples, alpha " << int{alpha};
    }
  }
}

// What this program wrote it reads again, without the alpha that showed nothing.
TEST_P(EncodingTest, IsReadBack) {
  const ScratchFolder folder;
  const std::string file = folder.file("a." + GetParam().extension);
  for (const int samples : {1, 3, 4}) {
    const Bitmap bitmap = gradient(37, 21, samples);
    const auto bytes = encodeImage(bitmap, nullptr, GetParam().format);
    ASSERT_TRUE(bytes) << bytes.error();
    writeFile(file, *bytes);
    const auto image = readImage(file);
    ASSERT_TRUE(image) << image.error();
    // A GIF's colour table always has a transparent entry, used or not.
    const bool mayHaveAlpha = GetParam().format == FileFormat::gif;
    EXPECT_TRUE(mayHaveAlpha || !image->bitmap().hasAlpha());
    EXPECT_LE(meanDifference(samplesOf(asRgba(image->bitmap())), samplesOf(asRgba(bitmap))),
              GetParam().tolerance);
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, EncodingTest,
                         testing::Values(Encoding{"jpeg", FileFormat::jpeg, "jpg", 2.5},
                                         Encoding{"tiff", FileFormat::tiff, "tif", 0.0},
                                         Encoding{"bmp", FileFormat::bmp, "bmp", 0.0},
                                         Encoding{"gif", FileFormat::gif, "gif", 6.0},
                                         Encoding{"png", FileFormat::png, "png", 0.0},
                                         Encoding{"jpeg 2000", FileFormat::jpeg2000, "jp2", 0.0}),
                         [](const auto& test) { return test.param.extension; });

TEST(ImageWriterTest, QualityCompressionAndResolutionAreThoseAskedFor) {
  const ScratchFolder folder;
  const Bitmap bitmap = gradient(64, 48, 3);
  const std::string jpeg = folder.file("a.jpg");
  for (const int quality : {1, 70, 95, 100}) {
    EncodeOptions options;
    options.quality = quality;
    options.resolution = Resolution{300.0, 200.0};
    writeFile(jpeg, *encodeImage(bitmap, nullptr, FileFormat::jpeg, options));
    EXPECT_EQ(
        runTool({"identify", "-format", "%Q %[jpeg:sampling-factor] %x %y", jpeg}).text,
        std::to_string(quality) + (quality < 90 ? " 2x2,1x1,1x1" : " 1x1,1x1,1x1") + " 300 200");
  }
  writeFile(folder.file("a.tif"), *encodeImage(bitmap, nullptr, FileFormat::tiff));
  EXPECT_THAT(runTool({"tiffinfo", folder.file("a.tif")}).text,
              testing::AllOf(HasSubstr("Compression Scheme: LZW"), HasSubstr("Resolution: 72, 72"),
                             HasSubstr("Samples/Pixel: 3")));
}

TEST(ImageWriterTest, WhatAFormatCannotHoldIsAnErrorInWords) {
  const Bitmap wide = gradient(70'000, 1, 1);
  for (const FileFormat format : {FileFormat::jpeg, FileFormat::gif}) {
    const auto bytes = encodeImage(wide, nullptr, format);
    ASSERT_FALSE(bytes);
    EXPECT_THAT(bytes.error(), HasSubstr("cannot be encoded"));
  }
  EXPECT_TRUE(encodeImage(wide, nullptr, FileFormat::png));
  EXPECT_FALSE(encodeImage(Bitmap(), nullptr, FileFormat::png));
}

}  // namespace
}  // namespace velmara
