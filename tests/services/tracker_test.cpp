#include "services/tracker.h"

#include <gtest/gtest.h>

#include <mutex>

#include "platform/dispatch.h"
#include "platform/log.h"
#include "services/background_sender.h"
#include "services/event_loop.h"
#include "services/recording_server.h"
#include "support/slowness.h"

namespace velmara {
namespace {

using testing_support::Peer;
using testing_support::RecordingServer;
using testing_support::runUntil;

// Runs tasks where they are handed in.
class InlineQueue final : public TaskQueue {
 public:
  void async(std::function<void()> task) override { task(); }
  bool isCurrent() const override { return true; }
};

class TrackerTest : public testing::Test {
 protected:
  TrackerTest() {
    before_ = setLogSink([this](const std::string& line) {
      const std::scoped_lock lock(mutex_);
      log_.push_back(line);
    });
    setup_.addresses.trackingService = "http://t.test/service";
    setup_.queue = &queue_;
    setup_.serialNumber = [] { return std::optional<std::string>("SER1"); };
    setup_.send = [this](const HttpRequest& request) {
      sent_.push_back(request);
      return answer_;
    };
  }
  ~TrackerTest() override { setLogSink(before_); }

  std::vector<std::string> log() {
    const std::scoped_lock lock(mutex_);
    return log_;
  }

  InlineQueue queue_;
  TrackerSetup setup_;
  std::optional<std::string> answer_;
  std::vector<HttpRequest> sent_;

 private:
  LogSink before_;
  std::mutex mutex_;
  std::vector<std::string> log_;
};

TEST_F(TrackerTest, SendsTheInstallReportAndTakesTheId) {
  answer_ = R"({"tid": 77, "more": ["x"]})";
  const auto tracker = Tracker::initWithApp(Tracker::kApplicationCode, setup_);
  EXPECT_EQ(tracker->frmApp, "vlpro");
  EXPECT_EQ(tracker->baseTrackURL, "http://t.test/service");
  EXPECT_EQ(tracker->tid, 0U);
  tracker->crossTrackingForProductId(Tracker::kProductId);
  ASSERT_EQ(sent_.size(), 1U);
  EXPECT_EQ(sent_[0].url.toString(), "http://t.test/service/registerAppInstalls");
  EXPECT_EQ(sent_[0].body, R"({"pid":"10931","bins":"1","mac":"SER1"})");
  EXPECT_EQ(sent_[0].fields, (HttpFields{{"Accept", "application/json"},
                                         {"Content-Type", "application/json"},
                                         {"Content-Length", "39"}}));
  EXPECT_EQ(tracker->tid, 77U);
  EXPECT_EQ(log(), (std::vector<std::string>{
                       "fireTQSHitForTrackSource",
                       "url = http://t.test/service/registerAppInstalls",
                       R"(Response: {"tid": 77, "more": ["x"]})",
                       R"({"more":["x"],"tid":77})",
                   }));
}

TEST_F(TrackerTest, WithoutASerialNumberSendsADummy) {
  setup_.serialNumber = [] { return std::nullopt; };
  const auto tracker = Tracker::initWithApp("vlpro", setup_);
  tracker->crossTrackingForProductId("1");
  EXPECT_EQ(sent_.at(0).body, R"({"pid":"1","bins":"1","mac":"DUMMYSERIAL"})");
}

TEST_F(TrackerTest, AskedForSilenceItSendsNothingButRunsAndLogsAsUsual) {
  setup_.isSilent = true;
  const auto tracker = Tracker::initWithApp("vlpro", setup_);
  tracker->crossTrackingForProductId("10931");
  EXPECT_TRUE(sent_.empty());
  EXPECT_EQ(log(), (std::vector<std::string>{"fireTQSHitForTrackSource",
                                             "url = http://t.test/service/registerAppInstalls"}));
}

TEST_F(TrackerTest, BadAnswersAndBadJsonAreOnlyLogged) {
  const auto tracker = Tracker::initWithApp("vlpro", setup_);
  for (const char* answer : {"", "<html>", "[]", R"({"tid":"7"})", "\xFF\xFE"}) {
    answer_ = answer;
    tracker->tid = 5;
    tracker->openURLAsync("http://t.test", "{}");
    EXPECT_EQ(tracker->tid, 0U) << answer;
  }
  EXPECT_EQ(log().back(), "(null)");
  answer_.reset();
  tracker->openURLAsync("http://t.test", Tracker::getJSONFromDict({{"a\"b", "c"}}));
  EXPECT_TRUE(log().back().starts_with("ERROR UserInfo: "));
  EXPECT_EQ(sent_.back().body, R"({"a"b":"c"})");
}

TEST_F(TrackerTest, OverARealSocketFromTheGlobalQueue) {
  const RecordingServer server([](Peer& peer) {
    std::string request = peer.readUntil("}");
    peer.send("HTTP/1.1 500 No\r\n\r\n{\"tid\":18}");
    return request;
  });
  BackgroundSender sender;
  setup_.queue = &globalQueue();
  setup_.addresses.trackingService = server.url("127.0.0.1", "/s");
  setup_.send = [&](const HttpRequest& request) { return sender.send(request); };
  std::weak_ptr<Tracker> watched;
  {
    // The report keeps its tracker alive.
    const auto tracker = Tracker::initWithApp("vlpro", setup_);
    tracker->crossTrackingForProductId("10931");
    watched = tracker;
  }
  ASSERT_TRUE(runUntil([&] { return watched.expired(); }));
  ASSERT_TRUE(runUntil([&] { return !server.requests().empty(); }));
  EXPECT_EQ(
      server.requests().front(),
      "POST /s/registerAppInstalls HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port()) +
          "\r\nAccept: application/json\r\nContent-Type: application/json\r\n"
          "Content-Length: 39\r\nConnection: close\r\n\r\n"
          R"({"pid":"10931","bins":"1","mac":"SER1"})");
  EXPECT_EQ(log().back(), R"({"tid":18})");
}

TEST(BackgroundSender, KeepsOnlyTheBeginningOfALongAnswer) {
  const RecordingServer server([](Peer& peer) {
    std::string request = peer.readUntil("}");
    peer.send("HTTP/1.1 200 OK\r\n\r\n" + std::string(std::size_t{10} << 20, 'x'));
    return request;
  });
  BackgroundSender sender;
  std::optional<std::string> answer;
  std::atomic<bool> done = false;
  globalQueue().async([&] {
    answer = sender.send(jsonRequest(server.url(), "{}"));
    done = true;
  });
  ASSERT_TRUE(runUntil([&] { return done.load(); }));
  EXPECT_EQ(answer->size(), 65536U);
}

TEST(BackgroundSender, ShutDownFreesTheThreadsThatWait) {
  const RecordingServer silent([](Peer& peer) {
    std::string request = peer.readUntil("}");
    peer.waitForClose();
    return request;
  });
  BackgroundSender sender;
  std::atomic<int> done = 0;
  std::atomic<bool> answered = false;
  const auto send = [&] {
    if (sender.send(jsonRequest(silent.url(), "{}"))) answered = true;
    ++done;
  };
  for (int count = 0; count < 3; ++count) globalQueue().async(send);
  QTimer::singleShot(50, [&] { sender.shutDown(); });
  QElapsedTimer taken;
  taken.start();
  ASSERT_TRUE(runUntil([&] { return done == 3; }));
  EXPECT_LT(taken.elapsed(), 250 * testing_support::kSlowness);
  globalQueue().async(send);  // Refused at once.
  ASSERT_TRUE(runUntil([&] { return done == 4; }));
  EXPECT_FALSE(answered);
}

}  // namespace
}  // namespace velmara
