#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cli/command_fixture.h"
#include "engine/deep/deep_pictures.h"
#include "imaging/dng_files.h"
#include "imaging/image_reader.h"
#include "imaging/metadata.h"

namespace velmara {
namespace {

using namespace testing;
using namespace testing_support;

TEST_F(CommandTest, DenoisesBesideThePhotoUpright) {
  photoIn(folder, "in.jpg", 6);
  const ProgramResult result = velmara({"denoise", "in.jpg"}, folder);
  ASSERT_EQ(result.exitCode, 0) << result.errors;
  EXPECT_THAT(result.output,
              MatchesRegex("in.jpg -> in-denoised.jpg: 120 x 160 px, .* dB, sigma .*, .* s\n"));
  EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 1);
  EXPECT_EQ(result.errors, "");
  const auto image = readImage(folder.file("in-denoised.jpg"));
  ASSERT_TRUE(image) << image.error();
  EXPECT_EQ(image->bitmap().width(), 120);
  EXPECT_EQ(readMetadata(folder.file("in-denoised.jpg"))->orientation().value_or(1), 1);
}

TEST_F(CommandTest, BothEnginesWriteTheSameFile) {
  photoIn(folder, "in.png");
  const auto denoised = [&](const char* level, const char* engine) {
    const auto result = velmara(
        {"denoise", "--force", "--level", level, "--engine", engine, "-o", "a.bmp", "in.png"},
        folder);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    return contentsOf(folder.file("a.bmp"));
  };
  const std::string fast = denoised("1", "fast");
  EXPECT_EQ(fast, denoised("1", "reference"));
  EXPECT_NE(fast, denoised("10", "fast"));
}

TEST_F(CommandTest, DeepCleansWhatTheLevelsCannot) {
  const Bitmap clean = scene(240, 180);
  const Bitmap noisy = withWhiteNoise(clean, 30.0);
  std::string file = "P6 240 180 255\n";
  file.append(noisy.bytes().begin(), noisy.bytes().end());
  writeFile(folder.file("in.ppm"), file);
  const auto gain = [&](std::vector<std::string> words) {
    words.insert(words.begin(), "denoise");
    words.insert(words.end(), {"--force", "-o", "out.png", "in.ppm"});
    const auto result = velmara(words, folder);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const auto image = readImage(folder.file("out.png"));
    return image ? psnrBetween(image->bitmap(), clean) - psnrBetween(noisy, clean) : 0.0;
  };
  EXPECT_LT(gain({"--level", "10"}), 3.0);
  const double measured = gain({"--deep"});
  EXPECT_GT(measured, 9.0);
  EXPECT_DOUBLE_EQ(gain({"--deep", "--level", "5"}), measured);
  EXPECT_LT(gain({"--deep", "--level", "1"}), 3.0);

  const auto info = velmara({"info", "--json", "in.ppm"}, folder);
  EXPECT_THAT(info.output, HasSubstr("\"beyondLevels\":true"));
  EXPECT_THAT(info.output, ContainsRegex("\"green\":[{][^}]*\"middle\":(29|30)[.]"));
}

TEST_F(CommandTest, WritesEveryFormatAndAComparison) {
  photoIn(folder, "in.png", 1);
  for (const std::string format : {"jpeg", "tiff", "bmp", "gif", "png"}) {
    const std::string output = "out." + format;
    const auto result = velmara({"denoise", "-o", output, "--format", format, "--compare", "c.png",
                                 "--force", "--details", "in.png"},
                                folder);
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 5) << result.output;
    EXPECT_THAT(runProgram({"identify", "-format", "%m %wx%h", folder.file(output)}).output,
                StrCaseEq(format + " 160x120"));
  }
  EXPECT_EQ(readImage(folder.file("c.png"))->bitmap().width(), 160);
}

TEST_F(CommandTest, ShowsWhatWasTakenFromThePhotoWhereItWasTaken) {
  photoIn(folder, "in.png", 6);
  runProgram({"convert", folder.file("in.png"), "-auto-orient", folder.file("upright.png")});
  const auto result =
      velmara({"denoise", "--residual", "r.png", "-o", "out.png", "--json", "in.png"}, folder);
  ASSERT_EQ(result.exitCode, 0) << result.errors;
  EXPECT_THAT(result.output, HasSubstr(R"("residual":"r.png")"));
  const auto sum = runProgram({"convert", folder.file("upright.png"), folder.file("out.png"), "-fx",
                               "(128+8*255*(u-v))/255", folder.file("expected.png")});
  ASSERT_EQ(sum.exitCode, 0) << sum.errors;
  EXPECT_EQ(runProgram({"compare", "-metric", "AE", "-fuzz", "1%", folder.file("expected.png"),
                        folder.file("r.png"), "null:"})
                .errors,
            "0");
}

TEST_F(CommandTest, StandardOutputCarriesThePictureAlone) {
  photoIn(folder, "in.png");
  const auto piped = velmara({"denoise", "-o", "-", "in.png"}, folder);
  ASSERT_EQ(piped.exitCode, 0) << piped.errors;
  const auto filed = velmara({"denoise", "-o", "file.png", "--quiet", "in.png"}, folder);
  ASSERT_EQ(filed.exitCode, 0);
  EXPECT_EQ(filed.output + filed.errors, "");
  EXPECT_EQ(piped.output, contentsOf(folder.file("file.png")));
}

TEST_F(CommandTest, ExplicitNumbersGoThePhotosOwnRoad) {
  photoIn(folder, "in.jpg", 6);
  runProgram({"convert", folder.file("in.jpg"), "-auto-orient", "-colorspace", "Gray",
              folder.file("gray.png")});
  runProgram({"exiv2", "-Mset Exif.Image.Make Ascii Kamera", folder.file("in.jpg")});
  const auto denoise = [&](std::vector<std::string> words, const std::string& template_ = "3") {
    words.insert(words.begin(),
                 {"denoise", "--template", template_, "--search", "7", "--sigma", "9"});
    return velmara(words, folder);
  };
  ASSERT_EQ(denoise({"-o", "out.png", "in.jpg"}).exitCode, 0);
  EXPECT_EQ(readImage(folder.file("out.png"))->bitmap().width(), 120);
  EXPECT_THAT(runProgram({"exiv2", "-PEkv", folder.file("out.png")}).output, HasSubstr("Kamera"));
  // A gray photo is filtered like any other, not sheared as one sample a pixel is.
  ASSERT_EQ(denoise({"-o", "gray-out.png", "gray.png"}).exitCode, 0);
  const auto apart = runProgram(
      {"compare", "-metric", "MAE", folder.file("gray.png"), folder.file("gray-out.png"), "null:"});
  EXPECT_LT(std::stod(apart.errors), 0.03 * 65535) << apart.errors;

  ASSERT_EQ(denoise({"--bare", "-o", "bare.png", "in.jpg"}).exitCode, 0);
  EXPECT_EQ(readImage(folder.file("bare.png"))->bitmap().width(), 160);
  EXPECT_EQ(runProgram({"exiv2", "-PEkv", folder.file("bare.png")}).output, "");

  const auto refused = denoise({"-o", "none.png", "in.jpg"}, "8");
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.errors, HasSubstr("must not be larger"));
  EXPECT_FALSE(std::filesystem::exists(folder.file("none.png")));
}

TEST_F(CommandTest, OpensThePhotoOnce) {
  for (const std::string name : {"in.jpg", "in.png", "in.tiff"}) {
    const FileWatch watch(photoIn(folder, name));
    ASSERT_EQ(velmara({"denoise", "--level", "2", name}, folder).exitCode, 0);
    EXPECT_EQ(watch.timesOpened(), 1) << name;
  }
}

TEST_F(CommandTest, InfoAndCalibratePrintDocumentedObjects) {
  photoIn(folder, "in.jpg", 8);
  runProgram({"convert", "-size", "120x100", "xc:orange", folder.file("flat.png")});
  runProgram({"convert", "-size", "20x20", "xc:orange", folder.file("tiny.png")});
  const auto result = velmara({"info", "--json", "in.jpg", "flat.png", "tiny.png"}, folder);
  ASSERT_EQ(result.exitCode, 0) << result.errors;
  EXPECT_THAT(velmara({"denoise", "tiny.png"}, folder).output, HasSubstr("too small to filter"));
  const auto script = runProgram(
      {"python3", "-c",
       "import json,sys\n"
       "a,b,c=[json.loads(l) for l in sys.argv[1].splitlines()]\n"
       "assert (a['path'],a['width'],a['height'],a['orientation'])==('in.jpg',120,160,8), a\n"
       "assert 15<a['psnr']<35 and a['filtered'], a\n"
       "assert set(a['auto'])=={'sigma','template','search'} and a['auto']['template']==3, a\n"
       "assert b['psnr']=='inf' and b['auto']=={'sigma':10,'template':3,'search':8}, b\n"
       "assert c['psnr']==0 and not c['filtered'], c\n",
       result.output});
  EXPECT_EQ(script.exitCode, 0) << script.errors << result.output;
  EXPECT_THAT(velmara({"calibrate", "--json"}, folder).output,
              ContainsRegex("\"pixelsPerSecond\":[1-9][0-9]+,.*\"template\":5"));
}

TEST_F(CommandTest, ThePlotIsWellFormedWhateverThePhoto) {
  runProgram({"convert", "-size", "120x100", "xc:orange", folder.file("flat.png")});
  runProgram({"convert", "-size", "20x20", "xc:orange", folder.file("tiny.png")});
  std::filesystem::rename(photoIn(folder, "in.png"), folder.path() / "a<&\x01\xff.png");
  const std::pair<const char*, const char*> rows[] = {{"a<&\x01\xff.png", "Auto: Strength 6 of 10"},
                                                      {"flat.png", "Auto: Strength 8 of 10"},
                                                      {"tiny.png", "Too small to filter"}};
  for (const auto& [name, strength] : rows) {
    const auto info = velmara({"info", "--plot", "p.svg", name}, folder);
    ASSERT_EQ(info.exitCode, 0) << info.errors;
    const auto told =
        runProgram({"python3", "-c",
                    "import sys, xml.etree.ElementTree as tree\n"
                    "p = list(tree.parse(sys.argv[1]).getroot())\n"
                    "print(*[e.text for e in p if e.tag.endswith('text')][:2], sep=';')\n"
                    "bars = [e.attrib for e in p if e.tag.endswith('rect')][1:]\n"
                    "assert [b['x'] for b in bars][::len(bars)-1] == ['60.0', '526.7'], bars\n"
                    "assert sum(e.tag.endswith('polyline') for e in p) == 3\n",
                    folder.file("p.svg")});
    EXPECT_THAT(told.output, EndsWith(std::string(".png;") + strength + "\n")) << told.errors;
    const auto again = velmara({"info", "--plot", "p.svg", name}, folder);
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(again.errors, HasSubstr("p.svg: File exists"));
    std::filesystem::remove(folder.path() / "p.svg");
  }
}

TEST_F(CommandTest, ARawIsDevelopedAndNoneIsEverReplaced) {
  writeFile(folder.file("in.dng"), dngOf({.orientation = 6}));
  writeFile(folder.file("other.cr2"), dngOf({}));
  for (const std::string output : {"in.dng", "other.cr2"}) {
    const std::string before = contentsOf(folder.file(output));
    const auto refused =
        velmara({"denoise", "--force", "--format", "jpeg", "-o", output, "in.dng"}, folder);
    EXPECT_THAT(refused.errors, HasSubstr("never replaced"));
    EXPECT_EQ(contentsOf(folder.file(output)), before);
  }
  for (const std::string output : {"out.jpg", "out.tiff"}) {
    const auto result = velmara({"denoise", "-o", output, "in.dng"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(readImage(folder.file(output))->bitmap().height(), 96);
    EXPECT_EQ(runProgram({"exiftool", "-s3", "-n", "-Make", "-ISO", "-ExposureTime", "-LensModel",
                          "-DateTimeOriginal", "-Orientation", "-ColorSpace", "-ExifImageHeight",
                          "-DNGVersion", "-ColorMatrix1", folder.file(output)})
                  .output,
              "Maker\n1600\n0.02\nA lens\n2024:05:06 07:08:09\n1\n1\n96\n");
  }
}

TEST_F(CommandTest, FormatsAreReadAndWrittenHere) {
  const std::string list = velmara({"formats"}, folder).output;
  EXPECT_EQ(std::ranges::count(list, '\n'), 10);
  EXPECT_THAT(list, Not(HasSubstr("not installed")));
  EXPECT_THAT(list, HasSubstr("TIFF      read          written, --format tiff"));
}

TEST_F(CommandTest, WhatCannotBePrintedIsNoSuccess) {
  photoIn(folder, "a.png");
  for (const char* command : {"info a.png", "denoise -o b.png a.png", "formats", "--version"}) {
    const auto result =
        runProgram({"sh", "-c", "\"$0\" " + std::string(command) + " > /dev/full", VELMARA_PROGRAM},
                   folder.path().string());
    EXPECT_EQ(result.exitCode, 1) << command;
    EXPECT_THAT(result.errors, HasSubstr("cannot write to standard output")) << command;
  }
}

}  // namespace
}  // namespace velmara
