#pragma once

// The program as a user calls it: real files, real processes.
#include <gtest/gtest.h>

#include <poll.h>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>
#include <vector>

#include "imaging/initialise.h"
#include "support/run_program.h"
#include "support/scratch_folder.h"

namespace velmara::testing_support {

inline const std::string kTestPicture = VELMARA_DATA "/noisy.png";

inline ProgramResult velmara(std::vector<std::string> words, const ScratchFolder& folder) {
  words.insert(words.begin(), VELMARA_PROGRAM);
  return runProgram(words, folder.path().string());
}

/// A small noisy photo, stored on its side.
inline std::string photoIn(const ScratchFolder& folder, const std::string& name,
                           int orientation = 1) {
  std::string path = folder.file(name);
  const auto made =
      runProgram({"convert", kTestPicture, "-crop", "160x120+40+40", "+repage", path});
  EXPECT_EQ(made.exitCode, 0) << made.errors;
  runProgram({"exiv2", "-Mset Exif.Image.Orientation Short " + std::to_string(orientation), path});
  return path;
}

/// What becomes of a file while this lives.
class FileWatch {
 public:
  explicit FileWatch(const std::string& path) : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // Equal events in a row come as one: what is done with the file parts its openings.
    EXPECT_GE(::inotify_add_watch(queue_, path.c_str(), IN_OPEN | IN_ACCESS | IN_CLOSE), 0);
  }
  ~FileWatch() { ::close(queue_); }
  bool waitUntilOpened() const {
    pollfd entry{.fd = queue_, .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, 30'000) == 1;
  }
  int timesOpened() const {
    alignas(inotify_event) char events[256 * sizeof(inotify_event)];
    int count = 0;
    for (ssize_t got = 0; (got = ::read(queue_, events, sizeof events)) > 0;) {
      for (ssize_t at = 0; at < got; at += static_cast<ssize_t>(sizeof(inotify_event))) {
        const auto* event = reinterpret_cast<const inotify_event*>(events + at);
        if ((event->mask & IN_OPEN) != 0) ++count;
      }
    }
    return count;
  }

 private:
  int queue_;
};

class CommandTest : public testing::Test {
 protected:
  void SetUp() override { initialiseImaging(); }
  ScratchFolder folder;
};

}  // namespace velmara::testing_support
