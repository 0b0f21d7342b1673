#include "services/tracker.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/recorded_log.h"

namespace velmara {
namespace {

using Lines = std::vector<std::string>;

TEST(JsonText, KeepsTheOrderAndEscapesNothing) {
  const std::pair<JsonDictionary, std::string_view> cases[] = {
      {{}, "{}"},
      {{{"number", std::int64_t{-7}}, {"digits", "7"}, {"part", 0.5}},
       R"({"number":-7,"digits":"7","part":0.5})"},
      {{{"qu\"ote", "a\"b\\"}}, R"({"qu"ote":"a"b\"})"},
      {clickTrackingMessage("buy", "vx", "2", "1", "SER"),
       R"({"from":"vlpro","to":"vx","mac":"SER","btn":"buy","fromid":"1","toid":"2"})"},
  };
  for (const auto& [dictionary, expected] : cases) {
    EXPECT_EQ(Tracker::getJSONFromDict(dictionary), expected);
  }
  EXPECT_EQ(getURLForTATTracking("http://x"), "http://x/CrossTracking");
}

TEST(TrackingAnswer, GivesTheIdOnlyWhereItIsANumberOfAnObject) {
  const std::pair<const char*, std::optional<std::uint64_t>> cases[] = {
      {R"({"tid":42,"x":[1,{}]})", 42U},
      {R"({"tid":9007199254740993})", 9007199254740993U},
      {R"({"tid":18446744073709549568})", 18446744073709549568U},
      {R"({"tid":1e300})", std::numeric_limits<std::uint64_t>::max()},
      {R"({"tid":3.9})", 3U},
      {R"({"tid":-1.5})", 0U},
      {R"({"tid":"42"})", std::nullopt},
      {R"({"tid":null})", std::nullopt},
      {R"({"other":1})", std::nullopt},
      {R"([{"tid":42}])", std::nullopt},
      {R"({"tid":42)", std::nullopt},
      {"", std::nullopt},
      {"<html>", std::nullopt},
  };
  for (const auto& [answer, expected] : cases) EXPECT_EQ(trackingIdIn(answer), expected) << answer;
}

TEST(TrackingRequest, TakesAsManyBytesAsTheTextHasUnitsUnlessTheUserSaysNo) {
  const HttpRequest wide = jsonRequest("http://x/", "{\"\xC3\xA9\"}");
  EXPECT_EQ(wide.body(), "{\"\xC3\xA9\"");
  EXPECT_EQ(wide.fields.back().second, "5");
  for (const auto& [value, asks] : std::initializer_list<std::pair<const char*, bool>>{
           {nullptr, false}, {"", false}, {"0", false}, {"1", true}, {"true", true}}) {
    EXPECT_EQ(asksForNoTracking(value), asks);
  }
}

class TrackerTest : public testing::Test {
 protected:
  TrackerTest() {
    setup_.addresses.trackingService = "http://t.test/service";
    setup_.async = [](const std::function<void()>& task) { task(); };
    setup_.serialNumber = [] { return std::optional<std::string>("SER1"); };
    setup_.send = [this](const HttpRequest& request) {
      sent_.push_back(request);
      return answer_;
    };
  }
  void answer(const std::string& body) {
    answer_ = {.end = HttpAnswer::End::kFinished, .status = 200, .body = body};
  }

  const testing_support::RecordedLog log_;
  TrackerSetup setup_;
  HttpAnswer answer_;
  std::vector<HttpRequest> sent_;
};

TEST_F(TrackerTest, SendsTheInstallReportAndTakesTheId) {
  answer(R"({"tid": 77, "more": ["x"]})");
  const auto tracker = Tracker::initWithApp(Tracker::kApplicationCode, setup_);
  EXPECT_EQ(tracker->frmApp, "vlpro");
  EXPECT_EQ(tracker->baseTrackURL, "http://t.test/service");
  EXPECT_EQ(tracker->tid, 0U);
  tracker->crossTrackingForProductId(Tracker::kProductId);
  ASSERT_EQ(sent_.size(), 1U);
  EXPECT_EQ(sent_[0].url, "http://t.test/service/registerAppInstalls");
  EXPECT_EQ(sent_[0].body(), R"({"pid":"10931","bins":"1","mac":"SER1"})");
  EXPECT_EQ(sent_[0].fields, (HttpFields{{"Accept", "application/json"},
                                         {"Content-Type", "application/json"},
                                         {"Content-Length", "39"}}));
  EXPECT_EQ(tracker->tid, 77U);
  EXPECT_EQ(log_.lines(),
            (Lines{"fireTQSHitForTrackSource", "url = http://t.test/service/registerAppInstalls",
                   R"(Response: {"tid": 77, "more": ["x"]})", R"({"more":["x"],"tid":77})"}));
}

TEST_F(TrackerTest, AskedForSilenceItSendsNothingButRunsAndLogsAsUsual) {
  setup_.isSilent = true;
  Tracker::initWithApp("vlpro", setup_)->crossTrackingForProductId("10931");
  EXPECT_TRUE(sent_.empty());
  EXPECT_EQ(log_.lines(),
            (Lines{"fireTQSHitForTrackSource", "url = http://t.test/service/registerAppInstalls"}));
  setup_.isSilent = false;
  setup_.serialNumber = [] { return std::nullopt; };
  Tracker::initWithApp("vlpro", setup_)->crossTrackingForProductId("1");
  EXPECT_EQ(sent_.at(0).body(), R"({"pid":"1","bins":"1","mac":"DUMMYSERIAL"})");
}

TEST_F(TrackerTest, BadAnswersAndBadJsonAreOnlyLogged) {
  const auto tracker = Tracker::initWithApp("vlpro", setup_);
  for (const char* body : {"", "<html>", "[]", R"({"tid":"7"})", "\xFF\xFE"}) {
    answer(body);
    tracker->tid = 5;
    tracker->openURLAsync("http://t.test", "{}");
    EXPECT_EQ(tracker->tid, 0U) << body;
  }
  EXPECT_EQ(log_.lines().back(), "(null)");
  answer_ = {};
  tracker->openURLAsync("http://t.test", Tracker::getJSONFromDict({{"a\"b", "c"}}));
  EXPECT_TRUE(log_.lines().back().starts_with("ERROR UserInfo: "));
  EXPECT_EQ(sent_.back().body(), R"({"a"b":"c"})");
}

}  // namespace
}  // namespace velmara
