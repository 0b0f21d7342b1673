#include "platform/user_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <filesystem>
#include <limits>
#include <string>

#include "platform/log.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::Contains;
using testing::Not;
using namespace testing_support;

TEST(UserDefaultsTest, EveryTypeSurvivesARestart) {
  const ScratchFolder folder;
  const std::string file = folder.file("new folder \xff/settings.ini");
  QByteArray everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte.append(static_cast<char>(byte));
  const QVariantMap photo{{"path", everyByte}, {"state", 7}};
  const struct {
    const char* key;
    QVariant value;
  } cases[] = {{"text", "1.2 \"\xC3\xA9\"\n,;@Invalid()"},
               {"most", std::numeric_limits<qlonglong>::max()},
               {"negative", -3},
               {"on", true},
               {"off", false},
               {"bytes", everyByte}};
  {
    UserDefaults defaults(file);
    for (const auto& c : cases) defaults.set(c.key, c.value);
    defaults.set("none", QVariantList());
    defaults.set("one", QVariantList{photo});
    defaults.set("two", QVariantList{photo, QVariantMap{{"path", QByteArray()}}});
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(std::filesystem::status(folder.file("new folder \xff")).permissions(),
              std::filesystem::perms::owner_all);
    EXPECT_EQ(defaults.dictionaries("one"), QList<QVariantMap>{photo});
  }
  const UserDefaults defaults(file);
  for (const auto& c : cases) {
    QVariant stored = defaults.value(c.key);
    EXPECT_TRUE(stored.convert(c.value.metaType())) << c.key;
    EXPECT_EQ(stored, c.value) << c.key;
  }
  EXPECT_EQ(defaults.dictionaries("one"), QList<QVariantMap>{photo});
  EXPECT_EQ(defaults.dictionaries("two"),
            (QList<QVariantMap>{photo, QVariantMap{{"path", QByteArray()}}}));
  for (const char* key : {"none", "text", "most", "absent"}) {
    EXPECT_TRUE(defaults.dictionaries(key).isEmpty()) << key;
  }
}

TEST(UserDefaultsTest, RemovingAndClearingReachTheDisk) {
  const ScratchFolder folder;
  UserDefaults defaults(folder.file("settings.ini"));
  EXPECT_FALSE(defaults.value("on").isValid());
  defaults.set("on", true);
  defaults.set("count", 1);
  ASSERT_TRUE(defaults.synchronize());
  defaults.remove("on");
  defaults.remove("was never there");
  EXPECT_FALSE(defaults.value("on").isValid());
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(contentsOf(folder.file("settings.ini")), "[General]\ncount=1\n");
  defaults.clear();
  EXPECT_FALSE(defaults.value("count").isValid());
  EXPECT_FALSE(UserDefaults(folder.file("settings.ini")).value("count").isValid());
  EXPECT_THAT(folder.names(), Not(Contains("settings.ini")));
  defaults.set("count", 2);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(UserDefaults(folder.file("settings.ini")).value("count"), 2);
}

TEST(UserDefaultsTest, ADamagedFileIsOverwritten) {
  for (const char* text : {"", "[", "=", "\xff\xfe", "[General", "on=@ByteArray(\\x", "\n\n;"}) {
    const ScratchFolder folder;
    const std::string file = folder.file("settings.ini");
    writeFile(file, text);
    UserDefaults defaults(file);
    EXPECT_TRUE(defaults.dictionaries("savedPaths").isEmpty()) << text;
    defaults.set("on", true);
    EXPECT_TRUE(defaults.synchronize()) << text;
    EXPECT_TRUE(UserDefaults(file).value("on").toBool()) << text;
  }
}

TEST(UserDefaultsTest, WhatCannotBeWrittenIsReportedAndWrittenLater) {
  const ScratchFolder folder;
  writeFile(folder.file("file"), "");
  const LogSink before = setLogSink(silentLog());
  UserDefaults defaults(folder.file("file/settings.ini"));
  defaults.set("on", true);
  EXPECT_FALSE(defaults.synchronize());
  EXPECT_EQ(defaults.value("on"), true);
  std::filesystem::remove(folder.file("file"));
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_THAT(folder.names(), Contains("file"));
  setLogSink(before);
}

}  // namespace
}  // namespace velmara
