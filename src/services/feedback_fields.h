#pragma once

#include <array>
#include <string>
#include <string_view>

namespace velmara {

/// The entry of the type pop-up that stands for no choice. The check relies on its text, asterisk
/// included.
inline constexpr std::string_view kNoFeedbackType = "*Please Select Feedback Type";

/// The entries that are a choice, sent to the service as they stand, misspellings included.
inline constexpr std::array<std::string_view, 4> kFeedbackTypes = {
    "General Feedback",
    "I feel good whenerver I have used it",
    "I want to report a problem",
    "Unable to understand the problem",
};

/// What the user typed and chose.
struct FeedbackForm {
  std::string email;
  std::string type;  ///< the title of the pop-up
  std::string experience;
  bool sendLogs = false;
  bool sendScanLog = false;
};

/// Which of the form's error labels show.
struct FeedbackFaults {
  bool invalidEmail = false;
  bool invalidType = false;
  bool invalidExp = false;

  bool any() const { return invalidEmail || invalidType || invalidExp; }
};

/// Makes the e-mail address lower-case and takes white space and newlines off the ends of it and of
/// the experience: so they are sent.
void tidyFeedbackFields(FeedbackForm& form);

/// Tidies the form, then makes every check, so that all messages can show together. Logs the type
/// as "Title :TYPE".
FeedbackFaults checkFeedbackFields(FeedbackForm& form);

}  // namespace velmara
