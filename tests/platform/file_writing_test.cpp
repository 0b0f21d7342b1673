#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <initializer_list>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/temporary_files.h"
#include "platform/whole_file.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using namespace testing_support;
namespace fs = std::filesystem;

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

TEST(AtomicFileTest, ARefusedWriteLeavesNothingBehind) {
  const ScratchFolder folder;
  const std::string file = folder.file("a");
  writeFile(file, "old");
  const Status status = createFile(file, bytesOf("new"));
  ASSERT_FALSE(status) << "creating never replaces";
  EXPECT_THAT(status.error(), HasSubstr("File exists"));
  EXPECT_EQ(contentsOf(file), "old");
  for (const std::string& path :
       {folder.file("missing/a"), folder.file(std::string(300, 'n')), folder.path().string()}) {
    EXPECT_FALSE(replaceFile(path, bytesOf("x"))) << path;
  }
  EXPECT_THAT(folder.names(), ElementsAre("a"));
}

// What the name of a process' file begins with, on this machine or another.
std::string ownedBy(pid_t process, std::string host = "") {
  char name[256] = {};
  if (host.empty() && ::gethostname(name, sizeof name - 1) == 0) host = name;
  return "velmara-" + host + "@" + std::to_string(process) + "-";
}

TEST(TemporaryDirectoryTest, IsPrivateAndOursAlone) {
  const std::string& directory = temporaryDirectory();
  ASSERT_FALSE(directory.empty());
  EXPECT_EQ(directory.back(), '/');
  EXPECT_EQ(modeOf(directory), 0700U);
  EXPECT_THAT(directory, HasSubstr(ownedBy(::getpid())));
}

// What a killed process left is taken away by the next one; what a living one uses is not.
TEST(TemporaryDirectoryTest, RemovesWhatDeadProcessesLeft) {
  const ScratchFolder base;
  const pid_t gone = ::fork();
  if (gone == 0) ::_exit(0);
  ::waitpid(gone, nullptr, 0);
  const std::string dead = ownedBy(gone) + "abcdef";
  const std::string living = ownedBy(::getppid()) + "abcdef";
  const std::string elsewhere = ownedBy(gone, "other-host") + "abcdef";
  for (const auto& name : {dead, living, elsewhere, std::string("velmara-notes")}) {
    std::filesystem::create_directory(base.path() / name);
  }
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const auto next =
      runProgram({"env", "TMPDIR=" + base.path().string(), program,
                  "--gtest_filter=TemporaryDirectoryTest.IsPrivate*", "--gtest_brief=1"});
  ASSERT_EQ(next.exitCode, 0) << next.output;
  EXPECT_THAT(base.names(), testing::UnorderedElementsAre(living, elsewhere, "velmara-notes"));
}

// Runs something in a process that is killed before it can tidy up; its number.
template <typename Work>
pid_t killedWhile(const Work& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(0);  // Not reached if the work kills.
  }
  ::waitpid(child, nullptr, 0);
  return child;
}

// From here on the system answers as on a network drive: no file without a name, no renaming only
// to a name that is free, and second names only if it has them.
void moveToANetworkDrive(bool hasLinks) {
  struct Refusal {
    unsigned call, argument, bits, error;
  };
  std::vector<sock_filter> program;
  for (const Refusal& each : {Refusal{SYS_openat, 2, O_TMPFILE & ~O_DIRECTORY, EOPNOTSUPP},
                              Refusal{SYS_renameat2, 4, ~0U, EINVAL},
                              Refusal{SYS_linkat, 0, hasLinks ? 0 : ~0U, EPERM}}) {
    const auto argument =
        static_cast<unsigned>(offsetof(seccomp_data, args) + sizeof(__u64) * each.argument);
    program.insert(program.end(), {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                                   BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, each.call, 0, 3),
                                   BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument),
                                   BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, each.bits, 0, 1),
                                   BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | each.error)});
  }
  program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog all{static_cast<unsigned short>(program.size()), program.data()};
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &all) != 0) ::_exit(99);
}

TEST(AtomicFileTest, NetworkDrivesTakeFilesToo) {
  for (const bool hasLinks : {true, false}) {
    const ScratchFolder folder;
    writeFile(folder.file("old"), "old");
    writeFile(folder.file("kept"), "kept");
    killedWhile([&] {
      moveToANetworkDrive(hasLinks);
      const bool isTold = createFile(folder.file("new"), bytesOf("new")) &&
                          replaceFile(folder.file("old"), bytesOf("newer")) &&
                          !createFile(folder.file("kept"), bytesOf("lost"));
      if (!isTold) writeFile(folder.file("told wrongly"), "");
    });
    EXPECT_THAT(folder.names(), testing::UnorderedElementsAre("new", "old", "kept")) << hasLinks;
    for (const auto& [name, text] : {std::pair("new", "new"), {"old", "newer"}, {"kept", "kept"}}) {
      EXPECT_EQ(contentsOf(folder.file(name)), text) << hasLinks;
    }
  }
}

class UnfinishedFileTest : public testing::Test {
 protected:
  UnfinishedFileTest() {
    ::setenv("XDG_DATA_HOME", data_.path().c_str(), 1);
    fs::create_directory(card_);
  }
  ~UnfinishedFileTest() override { ::unsetenv("XDG_DATA_HOME"); }

  const ScratchFolder data_;
  const ScratchFolder photos_;
  const fs::path card_ = photos_.path() / "card";
  const fs::path notes_ = data_.path() / "velmara" / "unfinished";
};

TEST_F(UnfinishedFileTest, GoesOnceItsProcessIsGone) {
  killedWhile([&] {
    const UnfinishedFile here(photos_.path().string());
    const UnfinishedFile onCard(card_.string());
    writeFile(here.path(), "half of it");
    writeFile(onCard.path(), "half of it");
    ::raise(SIGKILL);
  });
  ASSERT_EQ(photos_.names().size(), 2U);

  const fs::path pulled = photos_.path() / "pulled";
  fs::rename(card_, pulled);
  {
    const UnfinishedFile ours(photos_.path().string());
    writeFile(ours.path(), "half of it");
    removeUnfinishedFiles();
    EXPECT_THAT(photos_.names(),
                testing::UnorderedElementsAre("pulled", fs::path(ours.path()).filename()));
    fs::remove(ours.path());
  }
  // The card is back.
  fs::rename(pulled, card_);
  EXPECT_FALSE(fs::is_empty(card_));
  removeUnfinishedFiles();
  EXPECT_TRUE(fs::is_empty(card_));
  EXPECT_TRUE(fs::is_empty(notes_));
}

TEST_F(UnfinishedFileTest, ANoteOfAnythingElseIsNotBelieved) {
  const pid_t gone = killedWhile([] {});
  const std::string name = "." + ownedBy(gone) + "0badcafe.tmp";
  fs::create_directories(notes_);
  writeFile(photos_.file("precious.jpg"), "a photo");
  fs::create_symlink(photos_.file("precious.jpg"), notes_ / name);
  // Machines may share the folder of notes; the numbers of their processes tell nothing here.
  const std::string elsewhere = "." + ownedBy(gone, "other-host") + "0badcafe.tmp";
  writeFile(photos_.file(elsewhere), "half of it");
  fs::create_symlink(photos_.file(elsewhere), notes_ / elsewhere);
  writeFile((notes_ / "readme").string(), "no link");
  removeUnfinishedFiles();
  EXPECT_THAT(photos_.names(), testing::UnorderedElementsAre("card", "precious.jpg", elsewhere));
}

TEST_F(UnfinishedFileTest, NeedsNoNote) {
  writeFile(data_.file("velmara"), "in the way of the folder");
  const UnfinishedFile file(card_.string());
  EXPECT_EQ(fs::path(file.path()).parent_path(), card_);
  removeUnfinishedFiles();
  EXPECT_THAT(data_.names(), testing::UnorderedElementsAre("velmara"));
}

}  // namespace
}  // namespace velmara
