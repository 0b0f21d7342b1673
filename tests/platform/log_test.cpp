#include "platform/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

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

}  // namespace
}  // namespace velmara
