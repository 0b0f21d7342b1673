#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "platform/temporary_files.h"
#include "platform/whole_file.h"
#include "support/run_program.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::contentsOf;
using testing_support::ScratchFolder;
using testing_support::writeFile;

std::vector<std::uint8_t> bytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

mode_t modeOf(const std::string& path) {
  struct stat status {};
  ::stat(path.c_str(), &status);
  return status.st_mode & 07777U;
}

TEST(AtomicFileTest, ReplacesContentsAndKeepsPermissionsAndLinks) {
  const ScratchFolder folder;
  const std::string file = folder.file("name with \"quotes\"\nand \xff bytes.png");
  ASSERT_TRUE(createFile(file, bytesOf("first")));
  EXPECT_EQ(contentsOf(file), "first");
  ::chmod(file.c_str(), 0640);

  const std::string link = folder.file("link");
  std::filesystem::create_symlink(file, link);
  ASSERT_TRUE(replaceFile(link, bytesOf("second")));
  EXPECT_EQ(contentsOf(file), "second");
  EXPECT_EQ(modeOf(file), 0640U);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(folder.names().size(), 2U);
}

TEST(AtomicFileTest, CreateNeverReplaces) {
  const ScratchFolder folder;
  const std::string file = folder.file("a");
  writeFile(file, "old");
  const Status status = createFile(file, bytesOf("new"));
  ASSERT_FALSE(status);
  EXPECT_THAT(status.error(), HasSubstr("File exists"));
  EXPECT_EQ(contentsOf(file), "old");
  EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(AtomicFileTest, ARefusedWriteLeavesNothingBehind) {
  const ScratchFolder folder;
  EXPECT_FALSE(replaceFile(folder.file("missing/a"), bytesOf("x")));
  EXPECT_FALSE(replaceFile(folder.file(std::string(300, 'n')), bytesOf("x")));
  EXPECT_FALSE(replaceFile(folder.path().string(), bytesOf("x")));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(AtomicFileTest, AFullDiskKeepsTheOldFile) {
  const ScratchFolder folder;
  if (::mount("none", folder.path().c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "mounting a small file system needs root";
  }
  const std::string file = folder.file("photo.png");
  writeFile(file, "old");
  const Status status = replaceFile(file, std::vector<std::uint8_t>(std::size_t{1} << 20U));
  EXPECT_EQ(contentsOf(file), "old");
  EXPECT_THAT(folder.names(), ElementsAre("photo.png"));
  ::umount(folder.path().c_str());
  ASSERT_FALSE(status);
  EXPECT_THAT(status.error(), HasSubstr("No space left"));
}

TEST(TemporaryDirectoryTest, IsPrivateAndOursAlone) {
  const std::string& directory = temporaryDirectory();
  ASSERT_FALSE(directory.empty());
  EXPECT_EQ(directory.back(), '/');
  EXPECT_EQ(modeOf(directory), 0700U);
  EXPECT_THAT(directory, HasSubstr(std::to_string(::getpid())));
}

// What a killed process left is taken away by the next one; what a living one uses is not.
TEST(TemporaryDirectoryTest, RemovesWhatDeadProcessesLeft) {
  const ScratchFolder base;
  const pid_t gone = ::fork();
  if (gone == 0) ::_exit(0);
  ::waitpid(gone, nullptr, 0);
  const std::string dead = "velmara-" + std::to_string(gone) + "-abcdef";
  const std::string living = "velmara-" + std::to_string(::getppid()) + "-abcdef";
  for (const auto& name : {dead, living, std::string("velmara-notes"), std::string("other")}) {
    std::filesystem::create_directory(base.path() / name);
  }
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const auto next = testing_support::runProgram({"env", "TMPDIR=" + base.path().string(), program,
                                                 "--gtest_filter=TemporaryDirectoryTest.IsPrivate*",
                                                 "--gtest_brief=1"});
  ASSERT_EQ(next.exitCode, 0) << next.output;
  EXPECT_THAT(base.names(), testing::UnorderedElementsAre(living, "velmara-notes", "other"));
}

}  // namespace
}  // namespace velmara
