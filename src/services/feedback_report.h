#pragma once

#include <QtGlobal>

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "platform/bundle.h"
#include "services/http_client.h"
#include "services/recent_log.h"
#include "services/service_addresses.h"

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
  /// As it was typed.
  std::string email;
  std::string type;  ///< the title of the pop-up
  /// The text, and what is to go along.
  std::string experience;
  bool sendLogs = false;
  bool sendScanLog = false;
};

/// Which of the form's error labels show.
struct FeedbackFaults {
  /// One for each field.
  bool invalidEmail = false;
  bool invalidType = false;
  bool invalidExp = false;

  /// Whether the form cannot be sent.
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

/// A time of day.
using WallTime = std::chrono::system_clock::time_point;

/// Where a report takes its facts from. Its functions are called on whatever thread gathers them,
/// which may be after the owner of the original is gone: they must own what they use.
struct FeedbackSources {
  /// The user's home in the system's own bytes, the program's facts, where feedback goes, and the
  /// machine's serial number (nothing where it cannot be read).
  std::string homeDirectory;
  BundleFacts bundle;
  ServiceAddresses addresses;
  std::function<std::optional<std::string>()> serialNumber;
};

/// Everything a feedback report says, in plain text: what would be sent.
struct FeedbackReport {
  /// The program's name, and the form's fields.
  std::string appName;
  std::string email;
  std::string feedbackType;
  std::string content;
  std::optional<RecentLog> log;      ///< if it is not there, "LOGSNOTSELECTED" is sent
  std::optional<std::string> usage;  ///< if it is not there, "SCAN_LOGSNOTSELECTED" is sent
  // What is not there is sent as "(null)"; nothing fills the first three.
  std::optional<std::string> osVersion;
  std::optional<std::string> procName;
  std::optional<std::string> ramSystem;
  std::optional<std::string> machineId;
  /// The product's web site, and the program's version.
  std::string buyNowAddress;
  std::string appVersion;
};

/// Gathers what a report of the form would say. Looks for the log and reads the usage report if the
/// form asks for them: "Library/Logs/EXECUTABLE.log" and "Documents/ScanReport.plist" under the
/// home directory; of the log what is recent at `now`. A file that does not exist, or a usage
/// report that is none, counts as not selected. Any thread; a long log takes a while, which `stop`
/// ends.
FeedbackReport gatherReport(const FeedbackForm& form, const FeedbackSources& sources, WallTime now,
                            const std::stop_token& stop = {});

/// The same without a form: the address given (or, if it is empty, the one in the form's field) and
/// always the log.
FeedbackReport gatherLogsOnlyReport(const std::string& emailID, const std::string& emailField,
                                    const FeedbackSources& sources, WallTime now,
                                    const std::stop_token& stop = {});

/// A text around a log: of its parts only the log may be too long to hold, so it is escaped as it
/// is read.
struct ReportText {
  /// Escaped already, but for the log.
  std::string before;
  std::optional<RecentLog> log;
  std::string after;

  /// All of it. Each call begins anew.
  TextSource text() const;
};

/// The report as a document of its own: what the service finds in the envelope.
TextSource reportDocument(const FeedbackReport& report);

/// "NAME-Feedback DATE NUMBER.xml", the bundle's name without its spaces.
std::string feedbackFileName(const std::string& bundleName, WallTime now, int number);

/// The envelope of a SOAP 1.1 call of UploadFeedback: one line of XML. `number` goes into the name
/// of the report's file, beside the date of `now`.
ReportText prepareSoapMsg(const FeedbackReport& report, const FeedbackSources& sources,
                          WallTime now, int number);

/// The request that carries an envelope. Its Content-Length counts UTF-16 units, not bytes: with
/// text beyond ASCII it is smaller than the body, which is what the service expects. Reads the log
/// once to count; `stop` ends that.
HttpRequest soapRequest(const ServiceAddresses& addresses, const ReportText& envelope,
                        const std::stop_token& stop = {});

}  // namespace velmara
