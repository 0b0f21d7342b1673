#include "platform/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "support/scratch_folder.h"

namespace velmara {
namespace {

TEST(LogTest, LinesGoToTheSinkInForce) {
  std::vector<std::string> lines;
  const LogSink before = setLogSink([&](const std::string& line) { lines.push_back(line); });
  logFormat("psnrOfInputImage %f sigma %d", 31.5, 4);
  logLine("100 % done");
  setLogSink(silentLog());
  logLine("dropped");
  setLogSink(before);
  EXPECT_THAT(lines, testing::ElementsAre("psnrOfInputImage 31.500000 sigma 4", "100 % done"));
}

TEST(LogTest, StandardErrorGetsOneWholeLine) {
  testing::internal::CaptureStderr();
  logLine("Denoising Done !!");
  const std::string line = testing::internal::GetCapturedStderr();
  EXPECT_THAT(line,
              testing::MatchesRegex("[0-9-]+ [0-9:.]+ Velmara\\[[0-9]+\\] Denoising Done !!\n"));
}

// In a process of its own, since it gives its standard error away.
TEST(LogTest, AFileThatHasBecomeTooLongIsPutAwayAndOneIsKept) {
  const testing_support::ScratchFolder home;
  const std::string path = logFilePath(home.path().string(), "App");
  std::filesystem::create_directories(home.file("Library/Logs"));
  testing_support::writeFile(path, std::string(5000, 'x') + "long ago");
  const int before = ::dup(STDERR_FILENO);
  redirectStandardErrorToLogFile(home.path().string(), "App", 4000);
  EXPECT_THAT(testing_support::contentsOf(path + ".1"), testing::EndsWith("long ago"));
  const std::string line(1000, 'y');
  logLine("first " + line);
  // Another process puts it away before this one comes to it.
  std::filesystem::rename(path, path + ".1");
  testing_support::writeFile(path, "the other's\n");
  for (int count = 0; count < 3; ++count) logLine(line);
  EXPECT_THAT(testing_support::contentsOf(path + ".1"), testing::HasSubstr("first "));
  logLine("last");
  ::dup2(before, STDERR_FILENO);
  ::close(before);
  EXPECT_THAT(testing_support::contentsOf(path), testing::StartsWith("the other's\n"));
  EXPECT_THAT(testing_support::contentsOf(path), testing::HasSubstr("last\n"));
}

}  // namespace
}  // namespace velmara
