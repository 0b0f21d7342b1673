#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/temporary_files.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

using testing::UnorderedElementsAre;
using testing_support::ScratchFolder;
using testing_support::writeFile;

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

void beginFile(const UnfinishedFile& file) {
  writeFile(file.path(), "half of it");
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
    beginFile(here);
    beginFile(onCard);
    ::raise(SIGKILL);
  });
  ASSERT_EQ(photos_.names().size(), 2U);

  const fs::path pulled = photos_.path() / "pulled";
  fs::rename(card_, pulled);
  {
    const UnfinishedFile ours(photos_.path().string());
    beginFile(ours);
    removeUnfinishedFiles();
    EXPECT_THAT(photos_.names(), UnorderedElementsAre("pulled", fs::path(ours.path()).filename()));
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
  const std::string name = ".velmara-" + std::to_string(gone) + "-0badcafe.tmp";
  fs::create_directories(notes_);
  writeFile(photos_.file("precious.jpg"), "a photo");
  fs::create_symlink(photos_.file("precious.jpg"), notes_ / name);
  writeFile((notes_ / "readme").string(), "no link");
  removeUnfinishedFiles();
  EXPECT_THAT(photos_.names(), UnorderedElementsAre("card", "precious.jpg"));
}

TEST_F(UnfinishedFileTest, NeedsNoNote) {
  writeFile(data_.file("velmara"), "in the way of the folder");
  const UnfinishedFile file(card_.string());
  EXPECT_EQ(fs::path(file.path()).parent_path(), card_);
  removeUnfinishedFiles();
  EXPECT_THAT(data_.names(), UnorderedElementsAre("velmara"));
}

}  // namespace
}  // namespace velmara
