#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "platform/file_user_defaults.h"
#include "platform/log.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::ScratchFolder;
using testing_support::writeFile;

constexpr const char* kDomain = "org.velmara.test";

TEST(FileUserDefaultsTest, EveryTypeSurvivesARestart) {
  const ScratchFolder folder;
  const std::string file = folder.file("new folder/settings.json");
  DefaultsData everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte.push_back(static_cast<std::uint8_t>(byte));
  const DefaultsArray paths{
      {{"path", everyByte}, {"state", std::string("7")}},
      {},
      {{"path", DefaultsData()}, {"state", std::int64_t{7}}, {"on", true}},
  };
  {
    FileUserDefaults defaults(kDomain, file);
    defaults.setString("appVersion", "1.2 \"\xC3\xA9\"\n");
    defaults.setString("looks like a number", "7");
    defaults.setInteger("RATE_ME_COUNT", std::numeric_limits<std::int64_t>::max());
    defaults.setInteger("negative", -3);
    defaults.setBool("notShowPromotionWindow", true);
    defaults.setBool("off", false);
    defaults.setArray("savedPaths", paths);
    defaults.setArray("empty", {});
    ASSERT_TRUE(defaults.synchronize());
  }
  const FileUserDefaults defaults(kDomain, file);
  EXPECT_EQ(defaults.stringForKey("appVersion"), "1.2 \"\xC3\xA9\"\n");
  EXPECT_EQ(defaults.stringForKey("looks like a number"), "7");
  EXPECT_EQ(defaults.integerForKey("RATE_ME_COUNT"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(defaults.integerForKey("negative"), -3);
  EXPECT_EQ(defaults.boolForKey("notShowPromotionWindow"), true);
  EXPECT_EQ(defaults.boolForKey("off"), false);
  EXPECT_EQ(defaults.arrayForKey("savedPaths"), paths);
  EXPECT_EQ(defaults.arrayForKey("empty"), DefaultsArray());
}

TEST(FileUserDefaultsTest, AbsentAndOtherTypesGiveNothing) {
  const ScratchFolder folder;
  FileUserDefaults defaults(kDomain, folder.file("settings.json"));
  EXPECT_EQ(defaults.integerForKey("RATE_ME_COUNT"), std::nullopt);
  EXPECT_EQ(defaults.arrayForKey("savedPaths"), std::nullopt);
  defaults.setString("RATE_ME_COUNT", "7");
  EXPECT_EQ(defaults.integerForKey("RATE_ME_COUNT"), std::nullopt);
  defaults.setInteger("RATE_ME_COUNT", 1);
  EXPECT_EQ(defaults.stringForKey("RATE_ME_COUNT"), std::nullopt);
  EXPECT_EQ(defaults.integerForKey("RATE_ME_COUNT"), 1);
  defaults.removeObjectForKey("RATE_ME_COUNT");
  defaults.removeObjectForKey("was never there");
  EXPECT_EQ(defaults.integerForKey("RATE_ME_COUNT"), std::nullopt);
}

TEST(FileUserDefaultsTest, RemovingTheDomainClearsMemoryAndDiskAtOnce) {
  const ScratchFolder folder;
  const std::string file = folder.file("settings.json");
  FileUserDefaults defaults(kDomain, file);
  defaults.setBool("on", true);
  ASSERT_TRUE(defaults.synchronize());
  defaults.removePersistentDomain("org.somebody.else");
  EXPECT_EQ(defaults.boolForKey("on"), true);
  defaults.removePersistentDomain(kDomain);
  EXPECT_EQ(defaults.boolForKey("on"), std::nullopt);
  EXPECT_THAT(folder.names(), IsEmpty());
  EXPECT_EQ(FileUserDefaults(kDomain, file).boolForKey("on"), std::nullopt);
}

TEST(FileUserDefaultsTest, DamagedFilesAreTakenAsFarAsTheyMakeSense) {
  const ScratchFolder folder;
  const std::string file = folder.file("settings.json");
  std::string log;
  const LogSink before = setLogSink([&](const std::string& line) { log += line; });
  for (const char* text : {"", "{", "[]", "\xff\xfe", "{\"on\":tru"}) {
    writeFile(file, text);
    log.clear();
    FileUserDefaults defaults(kDomain, file);
    EXPECT_EQ(defaults.boolForKey("on"), std::nullopt) << text;
    EXPECT_THAT(log, HasSubstr(file)) << text;
    defaults.setBool("on", true);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(FileUserDefaults(kDomain, file).boolForKey("on"), true) << text;
  }
  setLogSink(before);
  writeFile(file, R"({"savedPaths":[3,{"path":{"data":"AQI="},"odd":{"x":1}}],"n":null,"o":{}})");
  const FileUserDefaults defaults(kDomain, file);
  EXPECT_EQ(defaults.arrayForKey("savedPaths"),
            (DefaultsArray{{}, {{"path", DefaultsData{1, 2}}}}));
  EXPECT_EQ(defaults.stringForKey("n"), std::nullopt);
}

TEST(FileUserDefaultsTest, AFileThatCannotBeWrittenIsReported) {
  const ScratchFolder folder;
  writeFile(folder.file("file"), "");
  const LogSink before = setLogSink(silentLog());
  FileUserDefaults defaults(kDomain, folder.file("file/settings.json"));
  defaults.setBool("on", true);
  EXPECT_FALSE(defaults.synchronize());
  setLogSink(before);
  EXPECT_EQ(defaults.boolForKey("on"), true);
}

}  // namespace
}  // namespace velmara
