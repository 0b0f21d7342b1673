// The program in a process of its own, from its start to its end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QSysInfo>

#include <atomic>
#include <filesystem>

#include "app/lifecycle/launch_fixture.h"

namespace velmara {
namespace {

using testing::HasSubstr;

// Its window is closed while it waits for a service that never answers; the end does not wait for
// that, whose time-out is longer than ours.
TEST(WholeProgramTest, EndsWithARequestUnderWay) {
  std::atomic<int> reports = 0;
  const testing_support::RecordingServer tracking(
      testing_support::silent(testing_support::kReportEnd, reports));
  const testing_support::ScratchFolder home;
  // What an earlier one was writing when it was killed.
  QProcess killed;
  killed.start("true", {});
  const std::string half = ".velmara-" + QSysInfo::machineHostName().toStdString() + "@" +
                           std::to_string(killed.processId()) + "-0badcafe.tmp";
  ASSERT_TRUE(killed.waitForFinished());
  testing_support::writeFile(home.file(half), "half of it");
  std::filesystem::create_directories(home.file(".local/share/velmara/unfinished"));
  std::filesystem::create_symlink(home.file(half),
                                  home.file(".local/share/velmara/unfinished/" + half));
  QProcess program;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("HOME", QString::fromStdString(home.path().string()));
  environment.insert("QT_QPA_PLATFORM", "offscreen");
  for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "DO_NOT_TRACK"}) {
    environment.remove(name);
  }
  program.setProcessEnvironment(environment);
  program.start(VELMARA_WHOLE_PROGRAM, {QString::fromStdString(tracking.url())});
  EXPECT_TRUE(QTest::qWaitFor([&] { return reports == 1; }, testing_support::kPatience));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !std::filesystem::exists(home.file(half)); },
                              testing_support::kPatience));
  program.write("c");
  ASSERT_TRUE(program.waitForFinished(testing_support::kPatience));
  const std::string terminal = program.readAllStandardError().toStdString();
  EXPECT_TRUE(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0) << terminal;
  EXPECT_THAT(terminal, HasSubstr("LogPath "));
  EXPECT_THAT(terminal, testing::Not(HasSubstr("fireTQS"))) << "the rest goes to the file";
  const std::string log = testing_support::contentsOf(home.file("Library/Logs/Velmara.log"));
  std::size_t at = 0;
  for (const char* line : {"fireTQSHitForTrackSource", "Reachability Flag Status: ",
                           "Internet Available : ", "closing Window Class "}) {
    const std::size_t found = log.find(line, at);
    ASSERT_NE(found, std::string::npos) << line << "\n" << log;
    at = found;
  }
}

}  // namespace
}  // namespace velmara
