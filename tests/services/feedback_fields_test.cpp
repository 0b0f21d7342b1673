#include "services/feedback_fields.h"

#include <gtest/gtest.h>

#include "platform/log.h"

namespace velmara {
namespace {

TEST(FeedbackFields, EveryCheckIsMade) {
  struct Case {
    FeedbackForm form;
    FeedbackFaults faults;
  };
  const std::string general(kFeedbackTypes[0]);
  const std::string none(kNoFeedbackType);
  for (const Case& it : {
           Case{{"a@b.co", general, "fine"}, {false, false, false}},
           Case{{"nobody", none, " \n\t\xC2\xA0"}, {true, true, true}},
           Case{{"", general, "fine"}, {true, false, false}},
           Case{{"a@b.co", none, "fine"}, {false, true, false}},
           Case{{"a@b.co", "Please Select Feedback Type", "fine"}, {false, false, false}},
           Case{{"a@b.co", general, ""}, {false, false, true}},
       }) {
    FeedbackForm form = it.form;
    const FeedbackFaults faults = checkFeedbackFields(form);
    EXPECT_EQ(faults.invalidEmail, it.faults.invalidEmail);
    EXPECT_EQ(faults.invalidType, it.faults.invalidType);
    EXPECT_EQ(faults.invalidExp, it.faults.invalidExp);
    EXPECT_EQ(faults.any(),
              it.faults.invalidEmail || it.faults.invalidType || it.faults.invalidExp);
  }
}

TEST(FeedbackFields, TidiesTheFormAndLogsTheType) {
  std::vector<std::string> log;
  const LogSink before = setLogSink([&](const std::string& line) { log.push_back(line); });
  FeedbackForm form{" Ann.Lee@EXAMPLE.org\n", "General Feedback", "\n  Keeps CAPITALS \n"};
  EXPECT_FALSE(checkFeedbackFields(form).any());
  setLogSink(before);
  EXPECT_EQ(form.email, "ann.lee@example.org");
  EXPECT_EQ(form.experience, "Keeps CAPITALS");
  EXPECT_EQ(log, std::vector<std::string>{"Title :General Feedback"});
}

}  // namespace
}  // namespace velmara
