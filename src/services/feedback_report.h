#pragma once

#include <optional>
#include <string>

namespace velmara {

/// Everything a feedback report says, in plain text: what would be sent.
struct FeedbackReport {
  std::string appName;
  std::string email;
  std::string feedbackType;
  std::string content;
  std::string logPart = "LOGSNOTSELECTED";
  std::string usagePart = "SCAN_LOGSNOTSELECTED";
  // What is not there is sent as "(null)"; nothing fills the first three.
  std::optional<std::string> osVersion;
  std::optional<std::string> procName;
  std::optional<std::string> ramSystem;
  std::optional<std::string> machineId;
  std::string buyNowAddress;
  std::string appVersion;
};

/// The report as it travels inside the envelope: one line of XML whose markup is escaped already.
/// Of the values only the content and the two parts are escaped; the others go in as they are, so a
/// special character in one of them spoils the document.
std::string reportText(const FeedbackReport& report);

/// The report in words for the user, a line for each fact.
std::string describeReport(const FeedbackReport& report);

/// "NAME-Feedback DATE NUMBER.xml", the bundle's name without its spaces.
std::string feedbackFileName(const std::string& bundleName, const std::string& date, int number);

/// The product's web-site address: the name without its spaces in place of "%@".
std::string buyNowAddress(const std::string& pattern, const std::string& bundleName);

}  // namespace velmara
