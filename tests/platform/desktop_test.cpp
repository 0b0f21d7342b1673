#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/bundle.h"
#include "platform/panels.h"
#include "platform/workspace.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using namespace testing_support;

TEST(TrashTest, KnowsTheTextsPrefixAndTheDesktopsFolders) {
  TrashPlaces places{.loginUser = "ada",
                     .userId = 1000,
                     .dataHome = "/home/ada/.local/share",
                     .volumeRoot = "/media/card"};
  const std::pair<bool, std::vector<const char*>> rows[] = {
      {true,
       {"/users/ada/.trash/a.jpg", "/Users/Ada/.Trash/deep/A.JPG",
        "/home/ada/.local/share/Trash/files/a.jpg", "/home/ada/.local/share/x/../Trash/files/a.jpg",
        "/media/card/.Trash-1000/files/a.jpg", "/media/card/.Trash/1000/files/a.jpg"}},
      {false,
       {"/users/ada/.trash", "/users/ada/.trashed/a.jpg", "/users/bob/.trash/a.jpg",
        "/x/users/ada/.trash/a.jpg", "/home/ada/.local/share/Trash",
        "/home/ada/.local/share/Trashes/a.jpg", "/home/ada/.local/share/trash/a.jpg",
        "/home/ada/.local/share/Trash/../a.jpg", "/media/card/.Trash-1001/files/a.jpg",
        "/media/card/.Trash/1001/files/a.jpg", "/media/card/photos/.Trash-1000/a.jpg",
        "/media/card/a.jpg", "a.jpg", ""}},
  };
  for (const auto& [isTrashed, paths] : rows) {
    for (const char* path : paths) EXPECT_EQ(isInTrash(path, places), isTrashed) << path;
  }
  // The user's name is not lowered, so one with capitals never matches.
  places.loginUser = "Ada";
  EXPECT_FALSE(isInTrash("/Users/Ada/.Trash/a.jpg", places));
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
  for (const char* image : {"camera.PNG", "no extension", "\xff camera"}) {
    EXPECT_TRUE(typeConformsToImage(typeOfFile(folder.file(image)))) << image;
  }
  for (const char* other :
       {"notes.txt", "", "missing.png", "\xff notes", "\xff folder", "\xff missing"}) {
    EXPECT_FALSE(typeConformsToImage(typeOfFile(folder.file(other)))) << other;
  }
  EXPECT_FALSE(typeConformsToImage(typeOfFile("")));
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

}  // namespace
}  // namespace velmara
