#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "platform/bundle.h"
#include "platform/log.h"
#include "platform/panels.h"
#include "platform/workspace.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_support::contentsOf;
using testing_support::ScratchFolder;
using testing_support::writeFile;

TEST(TrashTest, KnowsTheTextsPrefixAndTheDesktopsFolders) {
  TrashPlaces places{.loginUser = "ada",
                     .userId = 1000,
                     .dataHome = "/home/ada/.local/share",
                     .volumeRoot = "/media/card"};
  const struct {
    const char* path;
    bool trashed;
  } rows[] = {
      {"/users/ada/.trash/a.jpg", true},
      {"/Users/Ada/.Trash/deep/A.JPG", true},
      {"/users/ada/.trash", false},
      {"/users/ada/.trashed/a.jpg", false},
      {"/users/bob/.trash/a.jpg", false},
      {"/x/users/ada/.trash/a.jpg", false},
      {"/home/ada/.local/share/Trash/files/a.jpg", true},
      {"/home/ada/.local/share/Trash", false},
      {"/home/ada/.local/share/Trashes/a.jpg", false},
      {"/home/ada/.local/share/trash/a.jpg", false},
      {"/home/ada/.local/share/x/../Trash/files/a.jpg", true},
      {"/home/ada/.local/share/Trash/../a.jpg", false},
      {"/media/card/.Trash-1000/files/a.jpg", true},
      {"/media/card/.Trash-1001/files/a.jpg", false},
      {"/media/card/.Trash/1000/files/a.jpg", true},
      {"/media/card/.Trash/1001/files/a.jpg", false},
      {"/media/card/photos/.Trash-1000/a.jpg", false},
      {"/media/card/a.jpg", false},
      {"a.jpg", false},
      {"", false},
  };
  for (const auto& row : rows) EXPECT_EQ(isInTrash(row.path, places), row.trashed) << row.path;
  // The user's name is not lowered, so one with capitals never matches.
  places.loginUser = "Ada";
  EXPECT_FALSE(isInTrash("/Users/Ada/.Trash/a.jpg", places));
}

TEST(TrashTest, UsesTheSystemsOwnFacts) {
  const ScratchFolder folder;
  const char* before = std::getenv("XDG_DATA_HOME");
  const std::string kept = before != nullptr ? before : "";
  ::setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
  const std::string photo = folder.file("Trash/files/a.jpg");
  const std::string volume = trashPlacesFor(photo).volumeRoot;
  EXPECT_TRUE(isInTrash(photo, trashPlacesFor(photo)));
  EXPECT_FALSE(isInTrash(folder.file("a.jpg"), trashPlacesFor(folder.file("a.jpg"))));
  before != nullptr ? ::setenv("XDG_DATA_HOME", kept.c_str(), 1) : ::unsetenv("XDG_DATA_HOME");
  EXPECT_TRUE(photo.starts_with(volume)) << volume;
}

TEST(PanelNamesTest, AlwaysEndInAnAllowedExtension) {
  const std::vector<std::string> all{"jpeg", "tiff", "bmp", "gif", "png"};
  const struct {
    const char* path;
    std::vector<std::string> allowed;
    const char* expected;
  } rows[] = {
      {"/a/photo", {"jpeg"}, "/a/photo.jpeg"},
      {"/a/photo.png", all, "/a/photo.png"},
      {"/a/photo.PNG", all, "/a/photo.png"},
      {"/a/photo.png", {"jpeg"}, "/a/photo.png.jpeg"},
      {"/a/photo.v2", all, "/a/photo.v2.jpeg"},
      {"/a.png/photo", all, "/a.png/photo.jpeg"},
      {"/a/photo.", {"gif"}, "/a/photo.gif"},
      {"/a/.png", {"png"}, "/a/.png.png"},
      {"/a/photo.xyz", {}, "/a/photo.xyz"},
      {"", all, ""},
      {"/a/photo.jpg", all, "/a/photo.jpeg"},
      {"/a/photo.TIF", all, "/a/photo.tiff"},
      {"/a/photo.jpg", {"jpeg", "jpg"}, "/a/photo.jpg"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(withAllowedFileType(row.path, row.allowed), row.expected) << row.path;
  }
  EXPECT_EQ(withChangedFileType("photo", all, {"png"}), "photo.png");
  EXPECT_EQ(withChangedFileType("photo.jpeg", all, {"png"}), "photo.png");
  EXPECT_EQ(withChangedFileType("photo.png", all, {"png"}), "photo.png");
  EXPECT_EQ(withChangedFileType("photo.v2", {"png"}, {"gif"}), "photo.v2.gif");
}

TEST(WorkspaceTest, TypesComeFromContentsAndNames) {
  const ScratchFolder folder;
  const std::string png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
  writeFile(folder.file("camera.PNG"), png);
  writeFile(folder.file("no extension"), png);
  writeFile(folder.file("notes.txt"), "hello\n");
  writeFile(folder.file("\xff camera"), png);
  writeFile(folder.file("\xff notes"), "hello\n");
  std::filesystem::create_directory(folder.file("\xff folder"));
  const struct {
    std::string path;
    bool image;
  } rows[] = {
      {folder.file("camera.PNG"), true},   {folder.file("no extension"), true},
      {folder.file("notes.txt"), false},   {folder.path().string(), false},
      {folder.file("missing.png"), false}, {"", false},
      {folder.file("\xff camera"), true},  {folder.file("\xff notes"), false},
      {folder.file("\xff folder"), false}, {folder.file("\xff missing"), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(typeConformsToImage(typeOfFile(row.path)), row.image) << row.path;
  }
  EXPECT_FALSE(typeConformsToImage("image/"));
  EXPECT_FALSE(typeConformsToImage("text/image/png"));
}

TEST(BundleTest, FindsResourcesInTheFirstFolderThatHasThem) {
  const ScratchFolder first;
  const ScratchFolder second;
  writeFile(second.file("noisy.png"), "");
  std::filesystem::create_directory(first.path() / "noisy.png");
  BundleFacts facts;
  facts.resourceFolders = {first.path().string(), second.path().string()};
  EXPECT_EQ(facts.pathForResource("noisy.png"), second.file("noisy.png"));
  EXPECT_EQ(facts.pathForResource("missing.png"), "");
  EXPECT_EQ(facts.pathForResource(""), "");
  EXPECT_EQ(mainBundle().CFBundleExecutable, "Velmara");
  EXPECT_THAT(mainBundle().CFBundleVersion, testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
}

TEST(LogFileTest, StandardErrorMovesToTheEndOfTheFile) {
  const ScratchFolder home;
  const std::string file = logFilePath(home.path().string(), "Velmara");
  EXPECT_EQ(file, home.file("Library/Logs/Velmara.log"));
  testing::internal::CaptureStderr();
  for (const char* text : {"first run", "second run"}) {
    const pid_t child = ::fork();
    if (child == 0) {
      redirectStandardErrorToLogFile(home.path().string(), "Velmara");
      logLine(text);
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("LogPath " + file + "\n"));
  const std::string log = contentsOf(file);
  EXPECT_THAT(log, testing::ContainsRegex("first run\n.*second run\n"));
  EXPECT_THAT(log, Not(HasSubstr("LogPath")));
}

TEST(LogFileTest, AFileThatCannotBeOpenedLeavesStandardErrorAlone) {
  const ScratchFolder home;
  writeFile(home.file("Library"), "");
  testing::internal::CaptureStderr();
  EXPECT_EQ(redirectStandardErrorToLogFile(home.path().string(), "V"),
            home.file("Library/Logs/V.log"));
  logLine("still here");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("still here\n"));
}

}  // namespace
}  // namespace velmara
