// A second start and the first window over real sockets: what they say to each other, and what
// strangers, dead programs and broken ones say.
#include "platform/hand_over.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <climits>
#include <filesystem>
#include <fstream>
#include <future>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/descriptor.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kHello = "velmara open 1\n";
constexpr Seconds kShort(0.05);
constexpr uid_t kNobody = 65534;

class HandOverTest : public testing::Test {
 protected:
  HandOverTest() {
    std::filesystem::create_directory(folder_.file("run"));
    ::chmod(runtime().c_str(), 0700);
    ::setenv("XDG_RUNTIME_DIR", runtime().c_str(), 1);
    address = handOverAddress(":7");
  }
  ~HandOverTest() override { ::unsetenv("XDG_RUNTIME_DIR"); }

  std::string runtime() const { return folder_.file("run"); }
  HandOverSeat::Window window() {
    return {[this] { return isFree; },
            [this](const std::string& photo) { opened.push_back(photo); }};
  }
  /// A second start, while the first window serves its events.
  bool handsOver(const std::string& photo, Seconds patience = Seconds(30)) {
    auto start = std::async(std::launch::async, handOver, address, photo, patience);
    while (start.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) serve();
    serve();
    return start.get();
  }
  static void serve() {
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
  }
  /// A socket that does as it likes: connected to the address, or bound to it.
  int socketAt(decltype(::connect)* join) const {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    address.copy(name.sun_path, sizeof name.sun_path - 1);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
    EXPECT_EQ(join(fd, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
    return fd;
  }
  /// What has come in: nothing when the other side just closed.
  static std::string received(int fd) {
    char bytes[64];
    return std::string(
        bytes, static_cast<std::size_t>(std::max<ssize_t>(::recv(fd, bytes, sizeof bytes, 0), 0)));
  }

  std::string address;
  bool isFree = true;
  std::vector<std::string> opened;

 private:
  testing_support::ScratchFolder folder_;
};

TEST_F(HandOverTest, PathsOfAnyBytesArriveAndOthersAreNotSent) {
  const HandOverSeat seat(address, window());
  ASSERT_TRUE(seat.isListening());
  const std::string longest = "/" + std::string(PATH_MAX - 2, 'x');
  for (const std::string& path : {std::string("/a b.jpg"), std::string("/two\nlines\n"),
                                  std::string("/no \xff\xfe text"), longest}) {
    EXPECT_TRUE(handsOver(path)) << path;
    EXPECT_THAT(opened, ElementsAre(path));
    opened.clear();
  }
  for (const std::string& path :
       {std::string(), std::string("a.jpg"), longest + "x", std::string("/a\0/b", 5)}) {
    EXPECT_FALSE(handsOver(path)) << path;
  }
  isFree = false;
  EXPECT_FALSE(handsOver("/a.jpg"));
  EXPECT_THAT(opened, IsEmpty());
}

TEST_F(HandOverTest, NonsenseIsRefusedAndKeepsNobodyOut) {
  const HandOverSeat seat(address, window());
  for (const std::string& message :
       {std::string("GET / HTTP/1.0\r\n\0", 17), kHello + std::string("a.jpg\0", 6),
        kHello + std::string("/a\0/b\0", 6), std::string(20'000, 'x'), std::string(1, '\0')}) {
    const Descriptor caller(socketAt(::connect));
    EXPECT_EQ(::send(caller.get(), message.data(), message.size(), 0),
              static_cast<ssize_t>(message.size()));
    serve();
    EXPECT_EQ(received(caller.get()), "n") << message.substr(0, 40);
  }
  // Half a message: one goes away after it, the others stay and say no more.
  std::list<Descriptor> callers;
  for (int i = 0; i < 30; ++i) {
    callers.emplace_back(socketAt(::connect));
    EXPECT_GT(::send(callers.back().get(), "velmara open 1\n/a.j", 19, 0), 0);
    if (i == 0) callers.clear();
    serve();
  }
  EXPECT_TRUE(handsOver("/well.jpg"));
  EXPECT_THAT(opened, ElementsAre("/well.jpg"));
}

TEST_F(HandOverTest, WhoeverAnswersTooLateCannotAnswerAnyMore) {
  const Descriptor busy(socketAt(::bind));
  ::listen(busy.get(), 1);
  EXPECT_FALSE(handOver(address, "/a.jpg", kShort));
  const Descriptor caller(::accept(busy.get(), nullptr, nullptr));
  EXPECT_EQ(received(caller.get()), kHello + std::string("/a.jpg\0", 7));
  EXPECT_EQ(::send(caller.get(), "y", 1, MSG_NOSIGNAL), -1);
}

TEST_F(HandOverTest, TheSeatGoesToOneLivingWindowAndFromADeadOneToTheNext) {
  EXPECT_FALSE(handOver(address, "/a.jpg", kShort));
  ::close(socketAt(::bind));  // What a killed one leaves.
  EXPECT_FALSE(handOver(address, "/a.jpg", kShort));
  {
    const HandOverSeat first(address, window());
    const HandOverSeat second(address, {[] { return false; }, {}});
    EXPECT_TRUE(first.isListening());
    EXPECT_FALSE(second.isListening());
    EXPECT_TRUE(handsOver("/a.jpg"));
  }
  EXPECT_FALSE(std::filesystem::exists(address));
  std::ofstream(address) << "mine";
  EXPECT_FALSE(HandOverSeat(address, window()).isListening());
  EXPECT_EQ(testing_support::contentsOf(address), "mine");
  std::filesystem::remove(address);
  EXPECT_TRUE(HandOverSeat(address, window()).isListening());
}

TEST_F(HandOverTest, OnlyTheUsersOwnClosedFolderIsUsed) {
  EXPECT_NE(address, handOverAddress(":8"));
  EXPECT_LT(handOverAddress(std::string(5000, '/')).size(), sizeof(sockaddr_un::sun_path));
  ::chmod(runtime().c_str(), 0750);
  EXPECT_EQ(handOverAddress(":7"), "");
  for (const char* folder : {"", "run", "/nowhere", "/dev/null"}) {
    ::setenv("XDG_RUNTIME_DIR", folder, 1);
    EXPECT_EQ(handOverAddress(":7"), "") << folder;
  }
  EXPECT_FALSE(handOver("", "/a.jpg"));
  EXPECT_FALSE(HandOverSeat("", window()).isListening());
}

TEST_F(HandOverTest, AnotherUserIsToldNothingAndHeardNothing) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to be somebody else";
  {
    const Descriptor stranger(socketAt(::bind));
    ASSERT_EQ(::seteuid(kNobody), 0);
    ::listen(stranger.get(), 1);
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_FALSE(handOver(address, "/a.jpg", kShort));
    EXPECT_EQ(received(Descriptor(::accept(stranger.get(), nullptr, nullptr)).get()), "");
  }
  const HandOverSeat seat(address, window());
  // Even where the folders let him in.
  for (const std::string& path : {runtime() + "/..", runtime(), address}) {
    ::chmod(path.c_str(), 0777);
  }
  ASSERT_EQ(::seteuid(kNobody), 0);
  const Descriptor caller(socketAt(::connect));
  ASSERT_EQ(::seteuid(0), 0);
  EXPECT_EQ(::send(caller.get(), "velmara open 1\n/a.jpg", 22, 0), 22);
  serve();
  EXPECT_EQ(received(caller.get()), "");
  EXPECT_THAT(opened, IsEmpty());
}

}  // namespace
}  // namespace velmara
