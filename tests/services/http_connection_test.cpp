#include "services/http_connection.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <optional>
#include <sys/resource.h>

#include "services/event_loop.h"
#include "services/recording_server.h"
#include "support/slowness.h"

namespace velmara {
namespace {

using testing_support::Heartbeat;
using testing_support::Peer;
using testing_support::RecordingServer;
using testing_support::runUntil;
using End = HttpOutcome::End;

constexpr std::string_view kOk = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";
// The body of the requests ends in this, so that a server knows when it has all of it.
constexpr std::string_view kBodyEnd = "</end>";

HttpRequest requestTo(const std::string& url, std::string body = "body</end>") {
  HttpRequest request;
  request.url = QUrl(QString::fromStdString(url));
  request.fields = {{"Content-Length", std::to_string(body.size())}};
  request.body = std::move(body);
  return request;
}

// One exchange and what it told.
struct Exchange {
  explicit Exchange(const HttpRequest& request, HttpOptions options = {}) {
    HttpEvents events;
    events.didSendBodyData = [this] { ++sends; };
    events.didReceiveResponse = [this](int status) { statuses.push_back(status); };
    events.didReceiveData = [this](std::string_view piece) { received += piece.size(); };
    events.ended = [this](const HttpOutcome& outcome) {
      ++ends;
      end = outcome;
      connection.reset();  // As an owner does.
    };
    connection = std::make_unique<HttpConnection>(request, std::move(options), std::move(events));
    connection->start();
  }
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  bool waitForEnd() {
    return runUntil([this] { return ends > 0; });
  }

  std::unique_ptr<HttpConnection> connection;
  int sends = 0;
  std::vector<int> statuses;
  std::size_t received = 0;
  int ends = 0;
  HttpOutcome end;
};

HttpOptions shortTimeout() {
  HttpOptions options;
  options.timeout = std::chrono::milliseconds(150);
  return options;
}

std::vector<QHostAddress> loopback(const std::string&) {
  return {QHostAddress(QHostAddress::LocalHost)};
}

TEST(HttpConnection, AnswersOfManyKindsEndInOneOutcome) {
  struct Case {
    const char* name;
    std::function<void(Peer&)> answer;
    End end;
    std::vector<int> statuses;
  };
  const std::vector<Case> cases = {
      {"well", [](Peer& peer) { peer.send(kOk); }, End::kFinished, {200}},
      {"fault of the service",
       [](Peer& peer) { peer.send("HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n"); },
       End::kFinished,
       {500}},
      {"until the close",
       [](Peer& peer) { peer.send("HTTP/1.0 200 OK\r\n\r\nabc"); },
       End::kFinished,
       {200}},
      {"slow",
       [](Peer& peer) {
         for (const char byte : kOk) peer.send({&byte, 1});
       },
       End::kFinished,
       {200}},
      {"closed without an answer", [](Peer&) {}, End::kFailed, {}},
      {"closed within the answer",
       [](Peer& peer) { peer.send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nab"); },
       End::kFailed,
       {200}},
      {"reset", [](Peer& peer) { peer.reset(); }, End::kFailed, {}},
      {"reset within an answer without length",
       [](Peer& peer) {
         peer.send("HTTP/1.0 200 OK\r\n\r\nabc");
         peer.reset();
       },
       End::kFailed,
       {200}},
      {"nonsense", [](Peer& peer) { peer.send("\x16\x03\x01 no HTTP\r\n"); }, End::kFailed, {}},
  };
  for (const Case& it : cases) {
    const RecordingServer server([&](Peer& peer) {
      std::string request = peer.readUntil(kBodyEnd);
      it.answer(peer);
      return request;
    });
    Exchange exchange(requestTo(server.url()));
    ASSERT_TRUE(exchange.waitForEnd()) << it.name;
    EXPECT_EQ(exchange.end.end, it.end) << it.name << ": " << exchange.end.reason;
    // A reset may overtake the answer before it.
    if (it.statuses != exchange.statuses) {
      EXPECT_EQ(std::string_view(it.name).substr(0, 5), "reset") << it.name;
    }
    EXPECT_EQ(exchange.ends, 1);
    EXPECT_GE(exchange.sends, 1);
  }
}

TEST(HttpConnection, AServerThatSaysNothingRunsIntoTheTimeOut) {
  const RecordingServer silent([](Peer& peer) {
    peer.waitForClose();
    return std::string();
  });
  Exchange exchange(requestTo(silent.url()), shortTimeout());
  ASSERT_TRUE(exchange.waitForEnd());
  EXPECT_EQ(exchange.end.end, End::kFailed);
  EXPECT_EQ(exchange.end.reason, "timed out");
}

// A body beyond what sockets hold makes the sender wait for a server that reads nothing.
TEST(HttpConnection, AServerThatReadsNothingRunsIntoTheTimeOut) {
  const RecordingServer deaf([](Peer& peer) {
    peer.waitForClose();
    return std::string();
  });
  Exchange exchange(requestTo(deaf.url(), std::string(std::size_t{32} << 20, 'x')), shortTimeout());
  ASSERT_TRUE(exchange.waitForEnd());
  EXPECT_EQ(exchange.end.reason, "timed out");
}

TEST(HttpConnection, AnEndlessAnswerIsDroppedAsItArrivesAndTimedOut) {
  const RecordingServer endless([](Peer& peer) {
    peer.readUntil(kBodyEnd);
    const std::string piece(std::size_t{1} << 16, 'x');
    bool going = peer.send("HTTP/1.1 200 OK\r\n\r\n");
    while (going) going = peer.send(piece);
    return std::string();
  });
  const auto peak = [] {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;  // KiB
  };
  const long before = peak();
  HttpOptions options;
  options.timeout = std::chrono::milliseconds(600);
  const Heartbeat heartbeat;
  Exchange exchange(requestTo(endless.url()), options);
  ASSERT_TRUE(exchange.waitForEnd());
  EXPECT_EQ(exchange.end.reason, "timed out");
  EXPECT_GT(exchange.received, std::size_t{16} << 20);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // They keep what was freed.
  EXPECT_LT(peak() - before, 12 * 1024);
#endif
  EXPECT_LT(heartbeat.longestPause(), 500 * testing_support::kSlowness);
}

TEST(HttpConnection, ALargeBodyGoesOutWholeWithoutACopyOfIt) {
  const RecordingServer server([](Peer& peer) {
    std::string request = peer.readUntil(kBodyEnd);
    peer.send(kOk);
    return request;
  });
  const std::string body = std::string(std::size_t{20} << 20, 'x') + std::string(kBodyEnd);
  const Heartbeat heartbeat;
  Exchange exchange(requestTo(server.url(), body));
  ASSERT_TRUE(exchange.waitForEnd());
  EXPECT_EQ(exchange.end.end, End::kFinished);
  ASSERT_TRUE(runUntil([&] { return !server.requests().empty(); }));
  EXPECT_TRUE(server.requests().front().ends_with("\r\n\r\n" + body));
  EXPECT_GT(exchange.sends, 10);
  EXPECT_LT(heartbeat.longestPause(), 500 * testing_support::kSlowness);
}

TEST(HttpConnection, FollowsRedirectsWithinTheHostOnly) {
  std::string location;
  const RecordingServer server([&](Peer& peer) {
    std::string request = peer.readUntil(kBodyEnd);
    if (request.starts_with("POST /start")) {
      peer.send("HTTP/1.1 307 Go\r\nLocation: " + location + "\r\nContent-Length: 0\r\n\r\n");
    } else {
      peer.send(kOk);
    }
    return request;
  });
  const RecordingServer elsewhere([](Peer& peer) { return peer.readUntil(kBodyEnd); });
  HttpOptions options;
  options.resolver = loopback;

  location = "/next";
  Exchange within(requestTo(server.url("feedback.test", "/start")), options);
  ASSERT_TRUE(within.waitForEnd());
  EXPECT_EQ(within.end.end, End::kFinished);
  EXPECT_EQ(within.statuses, std::vector<int>{200});
  ASSERT_TRUE(runUntil([&] { return server.requests().size() == 2; }));
  EXPECT_TRUE(server.requests()[1].starts_with("POST /next"));
  EXPECT_TRUE(server.requests()[1].ends_with("body</end>"));

  // The redirect itself is the answer then.
  for (const std::string& other :
       {elsewhere.url("elsewhere.test"), elsewhere.url("feedback.test")}) {
    location = other;
    Exchange away(requestTo(server.url("feedback.test", "/start")), options);
    ASSERT_TRUE(away.waitForEnd());
    EXPECT_EQ(away.end.end, End::kFinished);
    EXPECT_EQ(away.statuses, std::vector<int>{307});
  }
  EXPECT_TRUE(elsewhere.requests().empty());
}

TEST(HttpConnection, GivesUpOnRedirectsInACircle) {
  const RecordingServer server([](Peer& peer) {
    std::string request = peer.readUntil(kBodyEnd);
    peer.send("HTTP/1.1 308 Go\r\nLocation: /\r\nContent-Length: 0\r\n\r\n");
    return request;
  });
  Exchange exchange(requestTo(server.url()));
  ASSERT_TRUE(exchange.waitForEnd());
  EXPECT_EQ(exchange.end.end, End::kFinished);
  EXPECT_EQ(exchange.statuses, std::vector<int>{308});
  ASSERT_TRUE(runUntil([&] { return server.requests().size() == 6; }));
}

TEST(HttpConnection, AnswersNoQuestionForCredentialsAndKeepsNoCookies) {
  const RecordingServer server([](Peer& peer) {
    std::string request = peer.readUntil(kBodyEnd);
    peer.send(
        "HTTP/1.1 401 Who\r\nWWW-Authenticate: Basic realm=\"x\"\r\nSet-Cookie: a=b\r\n"
        "Content-Length: 0\r\n\r\n");
    return request;
  });
  for (int round = 1; round <= 2; ++round) {
    Exchange exchange(requestTo(server.url()));
    ASSERT_TRUE(exchange.waitForEnd());
    EXPECT_EQ(exchange.statuses, std::vector<int>{401});
  }
  ASSERT_TRUE(runUntil([&] { return server.requests().size() == 2; }));
  EXPECT_EQ(server.requests()[0], server.requests()[1]);
}

TEST(HttpConnection, TriesTheNextAddressOfAHost) {
  const RecordingServer server([](Peer& peer) {
    std::string request = peer.readUntil(kBodyEnd);
    peer.send(kOk);
    return request;
  });
  HttpOptions options;
  // Nothing listens on the first.
  options.resolver = [](const std::string&) {
    return std::vector{QHostAddress(QStringLiteral("127.9.9.9")),
                       QHostAddress(QHostAddress::LocalHost)};
  };
  Exchange exchange(requestTo(server.url("two.test")), options);
  ASSERT_TRUE(exchange.waitForEnd());
  EXPECT_EQ(exchange.end.end, End::kFinished);
}

TEST(HttpConnection, WhatCannotBeReachedFails) {
  int closedPort = 0;
  {
    const RecordingServer gone([](Peer&) { return std::string(); });
    closedPort = gone.port();
  }
  for (const std::string& url :
       {"http://127.0.0.1:" + std::to_string(closedPort), std::string("http://some.name.invalid/"),
        std::string("not an address"), std::string("ftp://127.0.0.1/")}) {
    Exchange exchange(requestTo(url));
    EXPECT_EQ(exchange.ends, 0) << "told before start() returned";
    ASSERT_TRUE(exchange.waitForEnd()) << url;
    EXPECT_EQ(exchange.end.end, End::kFailed);
    EXPECT_FALSE(exchange.end.reason.empty());
  }
}

TEST(HttpConnection, CanBeCancelledInEveryState) {
  const RecordingServer silent([](Peer& peer) {
    std::string request = peer.readUntil(kBodyEnd);
    peer.waitForClose();
    return request;
  });
  std::mutex mutex;
  std::condition_variable released;
  bool release = false;
  HttpOptions stuck;
  stuck.resolver = [&](const std::string&) {
    std::unique_lock lock(mutex);
    released.wait(lock, [&] { return release; });
    return std::vector<QHostAddress>{};
  };
  const auto endsAtOnce = [](Exchange& exchange) {
    QElapsedTimer taken;
    taken.start();
    exchange.connection.reset();
    EXPECT_LT(taken.elapsed(), 200 * testing_support::kSlowness);
    EXPECT_EQ(exchange.ends, 1);
    EXPECT_EQ(exchange.end.end, End::kCancelled);
  };
  {
    Exchange before(requestTo(silent.url()));
    endsAtOnce(before);
  }
  {
    Exchange whileLookingUp(requestTo("http://stuck.test/"), stuck);
    QCoreApplication::processEvents();
    endsAtOnce(whileLookingUp);
  }
  {
    Exchange whileWaiting(requestTo(silent.url()));
    ASSERT_TRUE(runUntil([&] { return whileWaiting.sends > 0; }));
    endsAtOnce(whileWaiting);
  }
  const std::scoped_lock lock(mutex);
  release = true;
  released.notify_all();
}

}  // namespace
}  // namespace velmara
