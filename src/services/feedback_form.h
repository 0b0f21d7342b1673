#pragma once

#include <QtGlobal>

#include <array>
#include <string>
#include <string_view>

namespace velmara {

/// The entry of the type pop-up that stands for no choice. The check relies on its text, asterisk
/// included.
inline constexpr std::string_view kNoFeedbackType =
    QT_TRANSLATE_NOOP("velmara::FeedbackWindowController", "*Please Select Feedback Type");

/// The entries that are a choice, sent to the service as they stand, misspellings included.
inline constexpr std::array<std::string_view, 4> kFeedbackTypes = {
    QT_TRANSLATE_NOOP("velmara::FeedbackWindowController", "General Feedback"),
    QT_TRANSLATE_NOOP("velmara::FeedbackWindowController", "I feel good whenerver I have used it"),
    QT_TRANSLATE_NOOP("velmara::FeedbackWindowController", "I want to report a problem"),
    QT_TRANSLATE_NOOP("velmara::FeedbackWindowController", "Unable to understand the problem"),
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

/// Whether the whole text is an e-mail address by the form's pattern, which knows lower-case
/// letters only. Takes time in proportion to the length, whatever the text. Any thread.
bool validateEmail(std::string_view address);

}  // namespace velmara
