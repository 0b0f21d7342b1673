#include "services/json_text.h"

#include <gtest/gtest.h>

#include "services/click_tracking.h"
#include "services/do_not_track.h"
#include "services/tracker.h"

namespace velmara {
namespace {

TEST(JsonText, KeepsTheOrderAndEscapesNothing) {
  JsonDictionary changed{{"z", "1"}, {"a", "2"}};
  changed.set("z", "3");
  const std::pair<JsonDictionary, std::string_view> cases[] = {
      {{}, "{}"},
      {{{"pid", "10931"}, {"bins", "1"}, {"mac", "S"}}, R"({"pid":"10931","bins":"1","mac":"S"})"},
      {{{"number", std::int64_t{-7}}, {"digits", "7"}, {"part", 0.5}},
       R"({"number":-7,"digits":"7","part":0.5})"},
      {{{"qu\"ote", "a\"b\\"}}, R"({"qu"ote":"a"b\"})"},
      {changed, R"({"z":"3","a":"2"})"},
  };
  for (const auto& [dictionary, expected] : cases) {
    EXPECT_EQ(Tracker::getJSONFromDict(dictionary), expected);
  }
}

TEST(ClickTracking, BuildsTheMessageThatIsNeverSent) {
  EXPECT_EQ(jsonFromDictionary(clickTrackingMessage("buy", "vx", "2", "1", "SER")),
            R"({"from":"vlpro","to":"vx","mac":"SER","btn":"buy","fromid":"1","toid":"2"})");
  EXPECT_EQ(getURLForTATTracking("http://x"), "http://x/CrossTracking");
}

TEST(TrackingAnswer, GivesTheIdOnlyWhereItIsANumberOfAnObject) {
  const std::pair<const char*, std::optional<std::uint64_t>> cases[] = {
      {R"({"tid":42,"x":[1,{}]})", 42U},
      {R"({"tid":9007199254740993})", 9007199254740993U},
      {R"({"tid":18446744073709549568})", 18446744073709549568U},
      {R"({"tid":1e300})", std::numeric_limits<std::uint64_t>::max()},
      {R"({"tid":3.9})", 3U},
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

TEST(TrackingRequest, TakesAsManyBytesAsTheTextHasUnits) {
  const HttpRequest ascii = jsonRequest("http://x/", R"({"a":"b"})");
  EXPECT_EQ(ascii.body, R"({"a":"b"})");
  const HttpRequest wide = jsonRequest("http://x/", "{\"\xC3\xA9\"}");
  EXPECT_EQ(wide.body, "{\"\xC3\xA9\"");
  EXPECT_EQ(wide.fields.back().second, "5");
}

TEST(DoNotTrack, IsAskedForByAnyValueButNoneAndZero) {
  EXPECT_FALSE(asksForNoTracking(nullptr));
  EXPECT_FALSE(asksForNoTracking(""));
  EXPECT_FALSE(asksForNoTracking("0"));
  EXPECT_TRUE(asksForNoTracking("1"));
  EXPECT_TRUE(asksForNoTracking("true"));
}

}  // namespace
}  // namespace velmara
