// The program as a user calls it: real files, real processes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <poll.h>
#include <signal.h>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "engine/deep/deep_pictures.h"
#include "imaging/dng_files.h"
#include "imaging/image_reader.h"
#include "imaging/initialise.h"
#include "imaging/metadata.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using namespace testing;
using namespace testing_support;

const std::string kTestPicture = VELMARA_DATA "/noisy.png";

ProgramResult velmara(std::vector<std::string> words, const ScratchFolder& folder) {
  words.insert(words.begin(), VELMARA_PROGRAM);
  return runProgram(words, folder.path().string());
}

/// A small noisy photo, stored on its side.
std::string photoIn(const ScratchFolder& folder, const std::string& name, int orientation = 1) {
  std::string path = folder.file(name);
  const auto made =
      runProgram({"convert", kTestPicture, "-crop", "160x120+40+40", "+repage", path});
  EXPECT_EQ(made.exitCode, 0) << made.errors;
  runProgram({"exiv2", "-Mset Exif.Image.Orientation Short " + std::to_string(orientation), path});
  return path;
}

/// What becomes of a file while this lives.
class FileWatch {
 public:
  explicit FileWatch(const std::string& path) : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // Equal events in a row come as one: what is done with the file parts its openings.
    EXPECT_GE(::inotify_add_watch(queue_, path.c_str(), IN_OPEN | IN_ACCESS | IN_CLOSE), 0);
  }
  ~FileWatch() { ::close(queue_); }
  bool waitUntilOpened() const {
    pollfd entry{.fd = queue_, .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, 30'000) == 1;
  }
  int timesOpened() const {
    alignas(inotify_event) char events[256 * sizeof(inotify_event)];
    int count = 0;
    for (ssize_t got = 0; (got = ::read(queue_, events, sizeof events)) > 0;) {
      for (ssize_t at = 0; at < got; at += static_cast<ssize_t>(sizeof(inotify_event))) {
        const auto* event = reinterpret_cast<const inotify_event*>(events + at);
        if ((event->mask & IN_OPEN) != 0) ++count;
      }
    }
    return count;
  }

 private:
  int queue_;
};

class CommandTest : public Test {
 protected:
  void SetUp() override { initialiseImaging(); }
  ScratchFolder folder;
};

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

TEST_F(CommandTest, OneBadFileDoesNotStopTheOthers) {
  photoIn(folder, "good.png");
  photoIn(folder, "good too.png");
  writeFile(folder.file("bad.jpg"), contentsOf(folder.file("good.png")).substr(0, 900));
  writeFile(folder.file("empty.png"), "");
  const auto result = velmara(
      {"denoise", "bad.jpg", "good.png", "missing.png", "empty.png", "good too.png"}, folder);
  EXPECT_EQ(result.exitCode, 1);
  for (const char* name :
       {"velmara: bad.jpg: ", "velmara: missing.png: ", "velmara: empty.png: "}) {
    EXPECT_THAT(result.errors, HasSubstr(name));
  }
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 3) << result.errors;
  EXPECT_THAT(folder.names(),
              UnorderedElementsAre("good.png", "good too.png", "bad.jpg", "empty.png",
                                   "good-denoised.png", "good too-denoised.png"));
}

TEST_F(CommandTest, NeverReplacesWhatItMustNot) {
  photoIn(folder, "in.png");
  const std::string before = contentsOf(folder.file("in.png"));
  std::filesystem::create_symlink("in.png", folder.path() / "alias.png");
  writeFile(folder.file("there.png"), "precious");
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"denoise", "--force", "-o", "in.png", "in.png"}, "an input is never replaced"},
      {{"denoise", "--force", "-o", "alias.png", "in.png"}, "an input is never replaced"},
      {{"denoise", "--force", "--compare", "./in.png", "-o", "x.png", "in.png"},
       "an input is never replaced"},
      {{"denoise", "-o", "there.png", "in.png"}, "is there already"},
      {{"denoise", "--compare", "there.png", "-o", "x.png", "in.png"}, "is there already"},
      {{"denoise", "--force", "--residual", "x.png", "-o", "x.png", "in.png"}, "would be written"},
      {{"denoise", "--compare", "r.png", "--residual", "./r.png", "in.png"}, "would be written"},
      {{"denoise", "-o", "missing/x.png", "in.png"}, "cannot write"},
      {{"denoise", "--output-dir", "there.png/x", "in.png"}, "cannot make there.png/x"},
  };
  for (const auto& [words, reason] : cases) {
    const auto result = velmara(words, folder);
    EXPECT_EQ(result.exitCode, 1) << PrintToString(words);
    EXPECT_THAT(result.errors, HasSubstr(reason));
  }
  EXPECT_EQ(contentsOf(folder.file("in.png")), before);
  EXPECT_EQ(contentsOf(folder.file("there.png")), "precious");
  EXPECT_THAT(folder.names(), UnorderedElementsAre("in.png", "alias.png", "there.png"));
}

TEST_F(CommandTest, TwoPhotosOfOneNameDoNotOverwriteEachOther) {
  std::filesystem::create_directory(folder.path() / "a");
  std::filesystem::create_directory(folder.path() / "b");
  std::filesystem::create_directory(folder.path() / "out");
  photoIn(folder, "a/in.png");
  photoIn(folder, "b/in.png");
  const auto result =
      velmara({"denoise", "--force", "--output-dir", "out", "a/in.png", "b/in.png"}, folder);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.errors, HasSubstr("velmara: b/in.png: two pictures would be written to"));
}

TEST_F(CommandTest, WorkersShareATreeAndPickUpWhereOthersStopped) {
  for (const char* name : {"1", "2", "3", "4", "5"}) {
    std::filesystem::create_directories(folder.path() / "tree" / name);
    photoIn(folder, std::string("tree/") + name + "/in.png");
  }
  writeFile(folder.file("tree/3/in.png"), "no picture");
  writeFile(folder.file("list"), "tree\n");
  const auto resultsOf = [&](std::vector<std::string> words, int exitCode) {
    for (const char* word : {"-r", "--keep-folders", "--output-dir", "out", "--json", "--level",
                             "3", "--skip-existing", "--files-from", "list"}) {
      words.emplace_back(word);
    }
    words.insert(words.begin(), "denoise");
    const auto result = velmara(words, folder);
    EXPECT_EQ(result.exitCode, exitCode) << result.errors;
    const auto told = runProgram(
        {"python3", "-c",
         "import json,sys\n"
         "for o in map(json.loads, sys.argv[1].splitlines()):\n"
         "  w = o['result'] == 'written'\n"
         "  assert o['seconds']['all'] > 0\n"
         "  assert not w or (o['width'], o['height'], o['filter']['template']) == (160,120,2), o\n"
         "  assert (o['result'] == 'failed') == ('output' not in o)\n"
         "  print(o['path'][5], o['result'], end=';')\n",
         result.output});
    EXPECT_EQ(told.exitCode, 0) << told.errors << result.output;
    return told.output;
  };
  EXPECT_EQ(resultsOf({"--part", "2/2"}, 0), "2 written;4 written;");
  EXPECT_EQ(resultsOf({"--part", "9/9"}, 0), "");
  EXPECT_EQ(resultsOf({}, 1), "1 written;2 skipped;3 failed;4 skipped;5 written;");
  EXPECT_TRUE(std::filesystem::exists(folder.file("out/5/in-denoised.png")));
}

TEST_F(CommandTest, AWorkerKnowsWhatTheOthersWrite) {
  for (const char* name : {"tree/a", "tree/b", "both"}) {
    std::filesystem::create_directories(folder.path() / name);
  }
  photoIn(folder, "tree/a/1.png");
  photoIn(folder, "tree/b/1.png");
  photoIn(folder, "both/x.jpg");
  const std::string kept = contentsOf(photoIn(folder, "both/x.png"));
  const struct {
    std::vector<std::string> words;
    std::string fault, result;
  } rows[] = {
      {{"tree", "--part", "1/2", "--output-dir", "out"}, "", "out/1-denoised.png"},
      {{"tree", "--part", "2/2", "--output-dir", "out"}, "two pictures would be written to", ""},
      {{"tree", "--part", "2/2", "--output-dir", "n", "--name-pattern", "{number}"}, "", "n/2.png"},
      {{"both", "--part", "1/2", "--force", "--format", "png", "--name-pattern", "{name}"},
       "an input is never replaced",
       ""},
  };
  for (auto row : rows) {
    row.words.insert(row.words.begin(), {"denoise", "-r"});
    if (row.words[5] != "--force") row.words.emplace_back("--skip-existing");
    const auto result = velmara(row.words, folder);
    EXPECT_EQ(result.exitCode, row.fault.empty() ? 0 : 1) << result.output;
    EXPECT_THAT(result.errors, HasSubstr(row.fault));
    EXPECT_TRUE(row.result.empty() || std::filesystem::exists(folder.file(row.result)));
  }
  EXPECT_TRUE(contentsOf(folder.file("both/x.png")) == kept);
}

TEST_F(CommandTest, TheScriptTakesTheShareOfAnArrayAndSumsUp) {
  std::filesystem::create_directories(folder.path() / "tree");
  photoIn(folder, "tree/a.png");
  writeFile(folder.file("tree/b.png"), "no picture");
  const auto script = [&](std::vector<std::string> words, const std::string& task = "2") {
    words.insert(
        words.begin(),
        {"env", std::string("VELMARA=") + VELMARA_PROGRAM, "SLURM_ARRAY_TASK_ID=" + task,
         "SLURM_ARRAY_TASK_COUNT=2", "SLURM_ARRAY_TASK_MIN=2", "SLURM_ARRAY_TASK_MAX=4",
         "SLURM_ARRAY_TASK_STEP=2", "python3", std::string(VELMARA_TOOLS) + "/denoise_tree.py"});
    return runProgram(words, folder.path().string());
  };
  const auto summary = [&] { return script({"--summary", "lines"}).output; };
  EXPECT_EQ(script({"lines", "tree"}, "4").exitCode, 1);
  writeFile(folder.file("lines/1-of-2.killed.jsonl"), R"({"path":"tree/a.png","resu)");
  EXPECT_THAT(summary(), AllOf(HasSubstr("0 written, 0 there before, 1 failed\ntree/b.png: it is"),
                               HasSubstr("\nshare 1/2: not done"), Not(HasSubstr("2/2"))));
  EXPECT_EQ(script({"lines", "tree"}).exitCode, 0);
  EXPECT_THAT(summary(), AllOf(StartsWith("1 written"), Not(HasSubstr("share"))));
}

TEST_F(CommandTest, OddNamesAreJustNames) {
  for (const std::string name : {"with space.png", "quote\"'s.png", "line\nend.png",
                                 "b\xff\xfe.png", "-dash.png", "bracket[1].png", "p%ercent.png"}) {
    const std::string path = photoIn(folder, "plain.png");
    std::filesystem::rename(path, folder.path() / name);
    const auto result = velmara({"denoise", "--quiet", folder.file(name)}, folder);
    EXPECT_EQ(result.exitCode, 0) << name << result.errors;
    const std::string stem = name.substr(0, name.size() - 4);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / (stem + "-denoised.png"))) << name;
    const auto info = velmara({"info", "--json", folder.file(name)}, folder);
    EXPECT_EQ(std::count(info.output.begin(), info.output.end(), '\n'), 1) << info.output;
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

TEST_F(CommandTest, AnInterruptLeavesNoPartialFile) {
  runProgram({"convert", kTestPicture, "-resize", "3000x3000!", folder.file("big.png")});
  const FileWatch watch(folder.file("big.png"));
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(STDOUT_FILENO);
    ::execl(VELMARA_PROGRAM, "velmara", "denoise", "--engine", "reference",
            folder.file("big.png").c_str(), nullptr);
    ::_exit(127);
  }
  // Any moment will do: whatever it was at, nothing may be left of it.
  EXPECT_TRUE(watch.waitUntilOpened());
  ::kill(child, SIGINT);
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 130);
  EXPECT_THAT(folder.names(), ElementsAre("big.png"));
}

}  // namespace
}  // namespace velmara
