#include "platform/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/scratch_folder.h"

namespace velmara {
namespace {

using namespace testing;
using namespace testing_support;

TEST(LogTest, LinesGoToTheSinkInForce) {
  std::vector<std::string> lines;
  const LogSink before = setLogSink([&](const std::string& line) { lines.push_back(line); });
  logFormat("psnrOfInputImage %f sigma %d", 31.5, 4);
  logLine("100 % done");
  setLogSink(silentLog());
  logLine("dropped");
  setLogSink(before);
  EXPECT_THAT(lines, ElementsAre("psnrOfInputImage 31.500000 sigma 4", "100 % done"));
  internal::CaptureStderr();
  logLine("Denoising Done !!");
  EXPECT_THAT(internal::GetCapturedStderr(),
              MatchesRegex("[0-9-]+ [0-9:.]+ Velmara\\[[0-9]+\\] Denoising Done !!\n"));
}

TEST(LogFileTest, StandardErrorMovesToTheEndOfTheFile) {
  const ScratchFolder home;
  const std::string file = logFilePath(home.path().string(), "Velmara");
  EXPECT_EQ(file, home.file("Library/Logs/Velmara.log"));
  internal::CaptureStderr();
  for (const char* text : {"first run", "second run"}) {
    if (::fork() == 0) {
      redirectStandardErrorToLogFile(home.path().string(), "Velmara");
      logLine(text);
      ::_exit(0);
    }
    int status = 0;
    ::wait(&status);
    EXPECT_EQ(status, 0);
  }
  EXPECT_THAT(internal::GetCapturedStderr(), HasSubstr("LogPath " + file + "\n"));
  const std::string log = contentsOf(file);
  EXPECT_THAT(log, ContainsRegex("first run\n.*second run\n"));
  EXPECT_THAT(log, Not(HasSubstr("LogPath")));
}

// In a process of its own, since it gives its standard error away.
TEST(LogTest, AFileThatHasBecomeTooLongIsPutAwayAndOneIsKept) {
  const ScratchFolder home;
  const std::string path = logFilePath(home.path().string(), "App");
  std::filesystem::create_directories(home.file("Library/Logs"));
  writeFile(path, std::string(5000, 'x') + "long ago");
  const int before = ::dup(STDERR_FILENO);
  redirectStandardErrorToLogFile(home.path().string(), "App", 4000);
  EXPECT_THAT(contentsOf(path + ".1"), EndsWith("long ago"));
  const std::string line(1000, 'y');
  logLine("first " + line);
  // Another process puts it away before this one comes to it.
  std::filesystem::rename(path, path + ".1");
  writeFile(path, "the other's\n");
  for (int count = 0; count < 3; ++count) logLine(line);
  EXPECT_THAT(contentsOf(path + ".1"), HasSubstr("first "));
  logLine("last");
  ::dup2(before, STDERR_FILENO);
  ::close(before);
  EXPECT_THAT(contentsOf(path), StartsWith("the other's\n"));
  EXPECT_THAT(contentsOf(path), HasSubstr("last\n"));
}

}  // namespace
}  // namespace velmara
