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
#include "imaging/row_encoder.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using namespace testing_support;

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

// Every format, every number of samples, opaque and not: another program sees the same pixels, and
// so does this one, without the alpha that showed nothing.
TEST_P(EncodingTest, AnotherProgramSeesTheSamePixelsAndSoDoesThisOne) {
  const Encoding& encoding = GetParam();
  const ScratchFolder folder;
  const std::string file = folder.file("a." + encoding.extension);
  for (const int samples : {1, 2, 3, 4}) {
    for (const std::uint8_t alpha : {std::uint8_t{255}, std::uint8_t{0}}) {
      SCOPED_TRACE(testing::Message() << samples << " samples, alpha " << int{alpha});
      Bitmap bitmap = gradient(37, 21, samples);
      if (bitmap.hasAlpha()) bitmap = withAlpha(bitmap, alpha);
      const auto bytes = encodeImage(bitmap, nullptr, encoding.format);
      ASSERT_TRUE(bytes) << bytes.error();
      writeFile(file, *bytes);
      const auto image = readImage(file);
      ASSERT_TRUE(image) << image.error();

      const bool transparent = bitmap.hasAlpha() && alpha == 0;
      const bool flattened = transparent && encoding.format == FileFormat::jpeg;
      std::vector<std::uint8_t> expected =
          samplesOf(asRgba(flattened ? withoutAlpha(bitmap) : bitmap));
      for (auto seen : {pixelsByImageMagick(file), samplesOf(asRgba(image->bitmap()))}) {
        ASSERT_EQ(seen.size(), expected.size());
        for (std::size_t i = 0; i < seen.size(); i += 4) {
          // The colour below a hole is the format's affair.
          if (expected[i + 3] != 0 || seen[i + 3] != 0) continue;
          for (std::size_t c = i; c < i + 3; ++c) seen[c] = expected[c] = 0;
        }
        EXPECT_LE(meanDifference(seen, expected), encoding.tolerance);
      }
      // A GIF's colour table always has a transparent entry, used or not.
      EXPECT_TRUE(encoding.format == FileFormat::gif || transparent || !image->bitmap().hasAlpha());
    }
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

TEST(RowEncoderTest, MakesTheBytesOfTheWholeFromItsRows) {
  const Bitmap bitmap = gradient(300, 203, 3);
  const EncodeOptions options{90, Resolution{300.0, 200.0}};
  const auto addUntil = [&](RowEncoder& encoder, int end) {
    for (int y = 0, count = 1; y < end; y += count, count = std::min(37, end - y)) {
      encoder.add(bitmap.pixel(0, y), y, count);
    }
  };
  for (const FormatFacts& facts : fileFormats()) {
    SCOPED_TRACE(facts.name);
    const auto start = [&](const JobControl* control = nullptr) {
      return RowEncoder::start(300, 203, nullptr, facts.format, options, control);
    };
    const auto encoder = start();
    const bool isSequential = facts.format == FileFormat::jpeg || facts.format == FileFormat::png ||
                              facts.format == FileFormat::tiff;
    ASSERT_EQ(encoder != nullptr, isSequential);
    if (!isSequential) continue;
    addUntil(*encoder, 203);
    EXPECT_EQ(encoder->finish().value(),
              encodeImage(bitmap, nullptr, facts.format, options).value());
    // Rows that are missing at the end or on the way, one that is cancelled, one given up.
    const auto shorter = start();
    addUntil(*shorter, 202);
    EXPECT_FALSE(shorter->finish());
    const auto holed = start();
    addUntil(*holed, 100);
    holed->add(bitmap.pixel(0, 101), 101, 102);
    EXPECT_FALSE(holed->finish());
    JobControl control;
    const auto cancelled = start(&control);
    control.cancel();
    addUntil(*cancelled, 203);
    EXPECT_FALSE(cancelled->finish());
    addUntil(*start(), 100);
  }
  EXPECT_EQ(RowEncoder::start(1 << 20, 1 << 20, nullptr, FileFormat::png, options), nullptr);
}

}  // namespace
}  // namespace velmara
