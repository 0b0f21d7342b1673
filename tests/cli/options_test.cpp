#include "cli/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "cli/comparison.h"
#include "cli/terminal.h"
#include "support/scratch_folder.h"

namespace velmara::cli {
namespace {

Command parse(const std::string& line) {
  std::istringstream stream("velmara " + line);
  const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
  std::vector<const char*> texts;
  texts.reserve(words.size());
  for (const std::string& word : words) texts.push_back(word.c_str());
  return parseCommandLine(static_cast<int>(texts.size()), texts.data());
}

TEST(OptionsTest, RefusesWrongUsageWithCodeTwo) {
  for (const std::string line : {"",
                                 "dance",
                                 "denoise",
                                 "denoise --level 0 a.jpg",
                                 "denoise --level 11 a.jpg",
                                 "denoise --level 3 --auto a.jpg",
                                 "denoise --template 3 a.jpg",
                                 "denoise --template 3 --search 7 a.jpg",
                                 "denoise --template 3 --search 7 --sigma 5 --level 2 a.jpg",
                                 "denoise --sigma many --template 3 --search 7 a.jpg",
                                 "denoise --bare a.jpg",
                                 "denoise --deep --template 3 --search 7 --sigma 5 a.jpg",
                                 "denoise --format webp a.jpg",
                                 "denoise -o out.xyz a.jpg",
                                 "denoise -o out.png a.jpg b.jpg",
                                 "denoise -o out.png --output-dir d a.jpg",
                                 "denoise --compare c.png a.jpg b.jpg",
                                 "denoise --residual r.png -r /",
                                 "denoise --quiet --details a.jpg",
                                 "denoise --json --details a.jpg",
                                 "denoise --force --skip-existing a.jpg",
                                 "denoise --keep-folders a.jpg",
                                 "denoise --name-pattern fixed a.jpg",
                                 "denoise --name-pattern {name a.jpg",
                                 "denoise --name-pattern {title}{name} a.jpg",
                                 "denoise --name-pattern ../{name} a.jpg",
                                 "denoise --part 0/2 a.jpg",
                                 "denoise --part 3/2 a.jpg",
                                 "denoise --part 1/2x a.jpg",
                                 "denoise --part 1/-2 a.jpg",
                                 "denoise --jobs 0 a.jpg",
                                 "denoise --files-from l -o x.png",
                                 "denoise -o x.png /",
                                 "info",
                                 "info --plot p.svg a.jpg b.jpg",
                                 "info --plot p.png a.jpg",
                                 "calibrate a.jpg"}) {
    const auto answer = std::get<PrintAndExit>(parse(line));
    EXPECT_EQ(answer.exitCode, 2) << line;
    EXPECT_FALSE(answer.text.empty());
  }
}

TEST(OptionsTest, HelpAndVersionEndWell) {
  for (const std::string line :
       {"--help", "denoise --help", "info --help", "calibrate --help", "--version"}) {
    EXPECT_EQ(std::get<PrintAndExit>(parse(line)).exitCode, 0) << line;
  }
}

TEST(OptionsTest, UnderstandsTheCommands) {
  const Command level = parse("denoise --level 10 --output-dir out a.jpg b.png");
  const auto& denoise = std::get<DenoiseOptions>(level);
  EXPECT_FALSE(denoise.mode.isAutoMode);
  EXPECT_EQ(denoise.mode.denoiseLevelValue, 10);
  EXPECT_THAT(denoise.inputs, testing::ElementsAre("a.jpg", "b.png"));
  EXPECT_EQ(denoise.naming.folder, "out");
  EXPECT_FALSE(denoise.explicitParameters.has_value());

  const Command numbers =
      parse("denoise --sigma -4 --template 3 --search 7 -o - --format tiff a.jpg");
  const auto& raw = std::get<DenoiseOptions>(numbers);
  EXPECT_EQ(raw.explicitParameters, (FilterParameters{-4, 3, 7}));
  EXPECT_EQ(raw.naming.format, FileFormat::tiff);
  EXPECT_TRUE(std::get<InfoOptions>(parse("info --json x")).json);
  EXPECT_TRUE(std::holds_alternative<CalibrateOptions>(parse("calibrate")));
}

TEST(OptionsTest, AFileThatIsNoCommandIsOpenedInTheWindow) {
  const testing_support::ScratchFolder folder;
  const std::string photo = folder.file("a\xff\n.jpg");
  testing_support::writeFile(photo, "");
  const std::string relative = std::filesystem::relative(photo).string();
  const std::string absolute = std::filesystem::current_path() / relative;
  const struct {
    std::vector<const char*> words;
    std::string opened;
  } rows[] = {{{photo.c_str()}, photo},
              {{photo.c_str(), "other.jpg"}, photo},
              {{"/none.jpg"}, "none"},
              {{"denoise", photo.c_str()}, "none"},
              {{"--version"}, "none"},
              {{}, ""},
              {{"--new-window"}, "new "},
              {{"--new-window", photo.c_str()}, "new " + photo},
              {{relative.c_str(), "--new-window"}, "new " + absolute}};
  for (const auto& row : rows) {
    auto words = row.words;
    words.insert(words.begin(), "velmara");
    const auto start = windowStart(static_cast<int>(words.size()), words.data());
    EXPECT_EQ(start ? (start->isNewWindow ? "new " : "") + start->photo : "none", row.opened);
  }
}

TEST(ProgressTextTest, CountsDownAndNeverOverflows) {
  EXPECT_EQ(progressText(0.0, 3.0, 4), "[----]   0 %");
  EXPECT_EQ(progressText(0.5, 3.0, 4), "[##--]  50 %, 3 s left");
  EXPECT_EQ(progressText(1.0, 9.0, 4), "[####] 100 %, 0 s left");
  EXPECT_EQ(progressText(7.0, 9.0, 4), "[####] 100 %, 0 s left");
}

TEST(ComparisonTest, ShowsBothSidesOfALine) {
  const auto flat = [](int width, int height, int samples, std::uint8_t value) {
    const std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width * height * samples),
                                          value);
    return Bitmap::copyOf(bytes, width, height, samples);
  };
  const Bitmap picture = sideBySide(flat(100, 3, 4, 255), flat(100, 3, 1, 60));
  ASSERT_EQ(picture.samplesPerPixel(), 3);
  EXPECT_EQ(picture.pixel(47, 2)[0], 255);
  EXPECT_EQ(picture.pixel(48, 2)[0], 0);
  EXPECT_EQ(picture.pixel(50, 1)[1], 170);
  EXPECT_EQ(picture.pixel(51, 0)[2], 0);
  EXPECT_EQ(picture.pixel(52, 0)[2], 60);
  EXPECT_TRUE(sideBySide(flat(1, 1, 3, 9), flat(1, 1, 3, 9)).isValid());
  EXPECT_FALSE(sideBySide(flat(2, 1, 3, 9), flat(1, 2, 3, 9)).isValid());
}

}  // namespace
}  // namespace velmara::cli
