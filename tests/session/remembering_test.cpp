#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "platform/user_defaults.h"
#include "session/bookmarks.h"
#include "session/rate_invitation.h"
#include "session/recent_photos.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing_support::ScratchFolder;
using testing_support::writeFile;

// A settings file as a program before this one left it.
class RememberingTest : public testing::Test {
 protected:
  std::string makeFile(const std::string& name) const {
    writeFile(folder.file(name), "x");
    return folder.file(name);
  }
  static std::vector<PhotoFile> records(const std::vector<std::string>& paths) {
    std::vector<PhotoFile> photos;
    photos.reserve(paths.size());
    for (const std::string& path : paths) photos.push_back(PhotoFile::initWithFileUrl(path));
    return photos;
  }
  std::vector<std::string> stored() const {
    std::vector<std::string> paths;
    const UserDefaults fresh(settings);
    for (const SavedPath& saved : savedPathsFromUserDefaults(true, fresh)) {
      paths.push_back(saved.path);
    }
    return paths;
  }

  const ScratchFolder folder;
  const std::string settings = folder.file("settings.ini");
  UserDefaults defaults{settings};
};

using Paths = std::vector<std::string>;

TEST_F(RememberingTest, PathsSurviveInTheirOwnBytes) {
  const Paths paths{makeFile("a.jpg"), makeFile("b \xc3\xa4.jpg"), makeFile("c\xff\xfe.jpg")};
  saveBookmarkPathsFromTableView(records(paths), defaults);
  EXPECT_EQ(stored(), paths);
  std::filesystem::remove(paths[1]);
  saveBookmarkPathsFromTableView(records(paths), defaults);
  EXPECT_EQ(stored(), Paths{paths[0]}) << "nothing is remembered after a failure";
  saveBookmarkPathsFromTableView({}, defaults);
  EXPECT_TRUE(stored().empty());
}

TEST_F(RememberingTest, EntriesThatAreNoneAreLeftOut) {
  const auto entry = [](const QByteArray& path) { return QVariantMap{{"path", path}}; };
  defaults.set(defaults_keys::kSavedPaths,
               QVariantList{QVariantMap{{"path", QByteArray("/a.jpg")}, {"state", 2}},
                            QVariantMap{{"state", "alone"}}, 3, entry(""), entry("relative.jpg"),
                            entry(QByteArray("/a\0b", 4)), entry("/b.jpg")});
  const auto saved = savedPathsFromUserDefaults(false, defaults);
  EXPECT_EQ(saved, (std::vector<SavedPath>{{"/a.jpg", 2}, {"/b.jpg", {}}}));
  defaults.remove(defaults_keys::kSavedPaths);
  EXPECT_TRUE(savedPathsFromUserDefaults(true, defaults).empty());
}

TEST_F(RememberingTest, TheLastPhotoThatIsStillThereIsOpened) {
  const Paths all{makeFile("a.jpg"), makeFile("b.jpg"), makeFile("c.jpg")};
  struct Case {
    std::vector<std::size_t> missing;
    std::vector<std::size_t> inTrash;
    Paths kept;
  };
  const Case cases[] = {
      {{}, {}, all},        {{0}, {}, {all[1], all[2]}}, {{}, {2}, {all[0], all[1]}},
      {{1}, {0}, {all[2]}}, {{0, 1}, {2}, {}},
  };
  for (const Case& c : cases) {
    for (const std::string& path : all) writeFile(path, "x");
    saveBookmarkPathsFromTableView(records(all), defaults);
    for (const std::size_t i : c.missing) std::filesystem::remove(all[i]);
    std::vector<PhotoFile> photos;
    const auto opened = loadLastWorkedImageFromDefaults(photos, defaults, [&](const auto& path) {
      return std::any_of(c.inTrash.begin(), c.inTrash.end(),
                         [&](std::size_t i) { return all[i] == path; });
    });
    Paths kept;
    for (const PhotoFile& photo : photos) kept.push_back(photo.filePath);
    EXPECT_EQ(kept, c.kept);
    EXPECT_EQ(stored(), c.kept);
    EXPECT_EQ(opened, c.kept.empty() ? std::nullopt : std::optional(c.kept.back()));
    defaults.clear();
    photos.clear();
    EXPECT_FALSE(loadLastWorkedImageFromDefaults(photos, defaults, [](auto&) { return false; }));
  }
}

TEST_F(RememberingTest, TheInvitationComesFirstAndThenEverySeventhTime) {
  std::string shown;
  for (int i = 0; i < 16; ++i) shown += showAlertForRateApp(defaults) ? 'X' : '.';
  EXPECT_EQ(shown, "X......X......X.");
  EXPECT_EQ(UserDefaults(settings).value("RATE_ME_COUNT").toInt(), 2);
  // The count goes on from what is stored.
  struct Case {
    qlonglong before, after;
    bool shows;
  };
  constexpr auto kMax = std::numeric_limits<qlonglong>::max();
  for (const Case& c : {Case{7, 1, true}, Case{8, 9, false}, Case{0, 1, false}, Case{-3, -2, false},
                        Case{kMax, kMax, false}}) {
    defaults.set("RATE_ME_COUNT", c.before);
    EXPECT_EQ(showAlertForRateApp(defaults), c.shows) << c.before;
    EXPECT_EQ(defaults.value("RATE_ME_COUNT"), c.after);
  }
}

TEST_F(RememberingTest, AcceptingEndsTheInvitationsOfAVersion) {
  EXPECT_TRUE(isInvitationOpen(defaults, "1.0"));
  invitationAccepted(defaults, "1.0");
  EXPECT_FALSE(isInvitationOpen(defaults, "1.0"));
  EXPECT_TRUE(isInvitationOpen(defaults, "1.1"));
  defaults.clear();
  EXPECT_TRUE(isInvitationOpen(defaults, "1.0"));
  EXPECT_EQ(rateInvitation().informativeText, "");
  EXPECT_EQ(rateInvitation().buttons, (std::vector<std::string>{"YES", "NO"}));
}

TEST_F(RememberingTest, RecentPhotosAreKeptForEveryWindow) {
  const std::string file = folder.file("share/velmara/recent-photos");
  const RecentPhotos here(file), there(file);
  EXPECT_TRUE(here.paths().empty());
  EXPECT_TRUE(here.clear()) << "of nothing";
  for (char name = 'a'; name <= 'k'; ++name) {
    ASSERT_TRUE((name % 2 == 0 ? here : there).add(std::string("/photos/./") + name + "\n\xff"));
  }
  Paths expected;
  for (char name = 'k'; name >= 'b'; --name) {
    expected.push_back(std::string("/photos/") + name + "\n\xff");
  }
  EXPECT_EQ(here.paths(), expected) << "ten";
  ASSERT_TRUE(here.add(expected[3]));
  std::rotate(expected.begin(), expected.begin() + 3, expected.begin() + 4);
  EXPECT_EQ(there.paths(), expected);
  ASSERT_TRUE(there.add("near.jpg"));
  EXPECT_EQ(here.paths().front(), (std::filesystem::current_path() / "near.jpg").string());
  ASSERT_TRUE(here.clear());
  EXPECT_TRUE(there.paths().empty());
}

TEST_F(RememberingTest, OfDamagedRecentPhotosWhatIsWholeIsTaken) {
  const std::string file = folder.file("recent-photos");
  using namespace std::string_literals;
  const std::pair<std::string, Paths> rows[] = {
      {"/a\0/cut sho"s, {"/a"}},
      {"relative\0\0/a\0/b\0/a\0"s, {"/a", "/b"}},
      {"/" + std::string(200'000, 'x') + "\0"s, {}},
  };
  for (const auto& [bytes, expected] : rows) {
    writeFile(file, bytes);
    EXPECT_EQ(RecentPhotos(file).paths(), expected);
  }
  writeFile(folder.file("no folder"), "");
  EXPECT_FALSE(RecentPhotos(folder.file("no folder/recent-photos")).add("/a"));
}

}  // namespace
}  // namespace velmara
