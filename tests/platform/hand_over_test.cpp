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

#include "platform/descriptor.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using std::string_literals::operator""s;
constexpr Seconds kShort(0.05);
constexpr uid_t kNobody = 65534;

class HandOverTest : public testing::Test {
 protected:
  HandOverTest() { ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1); }
  ~HandOverTest() override { ::unsetenv("XDG_RUNTIME_DIR"); }

  HandOverSeat::Window window() {
    return {[this] { return isFree; }, [this](const std::string& photo) { opened += photo; }};
  }
  bool handsOver(const std::string& photo) {
    auto start = std::async(std::launch::async, handOver, address(), photo, Seconds(30));
    while (start.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
      QCoreApplication::processEvents();
    }
    return start.get();
  }
  static std::string address() { return handOverAddress(":7"); }
  static int socketAt(decltype(::connect)* join, const std::string& path = address()) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    path.copy(name.sun_path, sizeof name.sun_path - 1);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
    EXPECT_EQ(join(fd, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
    return fd;
  }
  /// What the window says to that: nothing when it just closes.
  static std::string answerTo(const std::string& message, int fd) {
    EXPECT_EQ(::send(fd, message.data(), message.size(), 0), std::ssize(message));
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
    char answer[2] = {};
    return ::recv(fd, answer, 1, 0) == 1 ? answer : "";
  }

  testing_support::ScratchFolder folder;
  bool isFree = true;
  std::string opened;
};

TEST_F(HandOverTest, PathsOfAnyBytesArriveAndOthersAreNotSent) {
  const HandOverSeat seat(address(), window());
  const std::string longest = "/" + std::string(PATH_MAX - 2, 'x');
  for (const std::string& path : {"/two\nlines \n"s, "/no \xff\xfe text"s, longest}) {
    EXPECT_TRUE(handsOver(path)) << path;
    EXPECT_EQ(std::exchange(opened, {}), path);
  }
  for (const std::string& path : {""s, "a.jpg"s, longest + "x", "/a\0/b"s, "/refused"s}) {
    isFree = path != "/refused";
    EXPECT_FALSE(handsOver(path)) << path;
  }
  EXPECT_EQ(opened, "");
}

TEST_F(HandOverTest, NonsenseIsRefusedAndKeepsNobodyOut) {
  const HandOverSeat seat(address(), window());
  for (const std::string& message : {"GET / HTTP/1.0\r\n\0"s, "velmara open 1\na.jpg\0"s,
                                     "velmara open 1\n/a\0/b\0"s, std::string(20'000, 'x')}) {
    const Descriptor caller(socketAt(::connect));
    EXPECT_EQ(answerTo(message, caller.get()), "n") << message.substr(0, 40);
  }
  // Half a message: one goes away after it, the others stay and say no more.
  std::list<Descriptor> callers;
  for (int i = 0; i < 30; ++i) {
    answerTo("velmara open 1\n/a.j", callers.emplace_back(socketAt(::connect)).get());
    if (i == 0) callers.clear();
  }
  EXPECT_TRUE(handsOver("/well.jpg"));
  EXPECT_EQ(opened, "/well.jpg");
}

TEST_F(HandOverTest, TheSeatGoesToOneLivingWindowInTheUsersOwnClosedFolder) {
  {
    const Descriptor silent(socketAt(::bind));
    ::listen(silent.get(), 1);
    EXPECT_FALSE(handOver(address(), "/a.jpg", kShort));
    const Descriptor caller(::accept(silent.get(), nullptr, nullptr));
    EXPECT_EQ(::send(caller.get(), "y", 1, MSG_NOSIGNAL), -1) << "it is too late";
  }  // What a killed one leaves.
  EXPECT_FALSE(handOver(address(), "/a.jpg", kShort));
  {
    const HandOverSeat first(address(), window());
    EXPECT_FALSE(HandOverSeat(address(), {[] { return false; }, {}}).isListening());
    EXPECT_TRUE(handsOver("/a.jpg"));
  }
  std::ofstream(address()) << "mine";
  EXPECT_FALSE(HandOverSeat(address(), window()).isListening());
  EXPECT_EQ(testing_support::contentsOf(address()), "mine");
  EXPECT_NE(address(), handOverAddress(":8"));
  ::chmod(folder.path().c_str(), 0750);
  EXPECT_EQ(address(), "");
}

TEST_F(HandOverTest, AnotherUserIsToldNothingAndHeardNothing) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to be somebody else";
  const std::string path = address();
  {
    const Descriptor other(socketAt(::bind));
    EXPECT_EQ(::seteuid(kNobody), 0);
    ::listen(other.get(), 1);
    EXPECT_EQ(::seteuid(0), 0);
    EXPECT_FALSE(handOver(path, "/a.jpg", kShort));
    char heard = 0;
    const Descriptor caller(::accept(other.get(), nullptr, nullptr));
    EXPECT_EQ(::recv(caller.get(), &heard, 1, 0), 0);
  }
  std::filesystem::remove(path);
  const HandOverSeat seat(path, window());
  for (const std::string& opens : {folder.path().string(), path}) ::chmod(opens.c_str(), 0777);
  EXPECT_EQ(::seteuid(kNobody), 0);
  const Descriptor caller(socketAt(::connect, path));
  EXPECT_EQ(::seteuid(0), 0);
  EXPECT_EQ(answerTo("velmara open 1\n/a.jpg\0"s, caller.get()) + opened, "");
}

}  // namespace
}  // namespace velmara
