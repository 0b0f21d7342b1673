// What the command does to the files of a user who names many, or the wrong ones.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "cli/command_fixture.h"

namespace velmara {
namespace {

using namespace testing;
using namespace testing_support;

class CommandFilesTest : public CommandTest {};

TEST_F(CommandFilesTest, OneBadFileDoesNotStopTheOthers) {
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

TEST_F(CommandFilesTest, NeverReplacesWhatItMustNot) {
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

TEST_F(CommandFilesTest, TwoPhotosOfOneNameDoNotOverwriteEachOther) {
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

TEST_F(CommandFilesTest, WorkersShareATreeAndPickUpWhereOthersStopped) {
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

TEST_F(CommandFilesTest, AWorkerKnowsWhatTheOthersWrite) {
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

TEST_F(CommandFilesTest, TheScriptTakesTheShareOfAnArrayAndSumsUp) {
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

TEST_F(CommandFilesTest, OddNamesAreJustNames) {
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

TEST_F(CommandFilesTest, AnInterruptLeavesNoPartialFile) {
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
