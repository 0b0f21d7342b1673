#define PCRE2_CODE_UNIT_WIDTH 8
#include "services/feedback_report.h"

#include <QString>

#include <algorithm>
#include <array>
#include <memory>
#include <pcre2.h>
#include <string_view>
#include <vector>

#include "platform/log.h"
#include "services/text.h"
#include "services/usage_report.h"

namespace velmara {
namespace {

using StringEscaping::xmlSimpleEscapeString;
using StringEscaping::xmlSimpleEscapeStringNEW;

// "\x21-\x5a\x53-\x7f" holds the backslash that the alternative beside it starts with: a text full
// of backslashes can be read in exponentially many ways. Hence the matcher below that follows all
// readings at once instead of trying one after the other.
constexpr std::string_view kPattern =
    R"re((?:[a-z0-9!#$%\&'*+/=?\^_`{|}~-]+(?:\.[a-z0-9!#$%\&'*+/=?\^_`{|}~-]+)*)re"
    R"re(|"(?:[\x01-\x08\x0b\x0c\x0e-\x1f\x21\x23-\x5b\x5d-\x7f]|\\[\x01-\x09\x0b\x0c\x0e-\x7f])*"))re"
    R"re(@(?:(?:[a-z0-9](?:[a-z0-9-]*[a-z0-9])?\.)+[a-z0-9](?:[a-z0-9-]*[a-z0-9])?)re"
    R"re(|\[(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\.){3}(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)re"
    R"re(|[a-z0-9-]*[a-z0-9]:(?:[\x01-\x08\x0b\x0c\x0e-\x1f\x21-\x5a\x53-\x7f]|\\[\x01-\x09\x0b\x0c\x0e-\x7f])+)\]))re";

// Bytes beyond ASCII are in no class of the pattern, so none needs decoding.
pcre2_code* compile() {
  int error = 0;
  PCRE2_SIZE offset = 0;
  return pcre2_compile(reinterpret_cast<PCRE2_SPTR>(kPattern.data()), kPattern.size(),
                       PCRE2_ANCHORED, &error, &offset, nullptr);
}

// Escaped whole before the values take their places.
constexpr const char* kTemplate =
    "<sf_feedback>"
    "<feedback><appname>%@</appname><email>%@</email><feedback_type>%@</feedback_type>"
    "<content>%@</content></feedback>"
    "<logs_info><logs_Data>%@</logs_Data><logs_Data_Scan>%@</logs_Data_Scan></logs_info>"
    "<sys_info><os_version>%@</os_version><proc_name>%@</proc_name><ram_info>%@</ram_info>"
    "</sys_info>"
    "<key><keyvalue></keyvalue><machineid>%@</machineid>"
    "<registered_email_id></registered_email_id></key>"
    "<campaign_info><affiliateid></affiliateid><utm_campaign></utm_campaign>"
    "<utm_content></utm_content><utm_medium></utm_medium><utm_source></utm_source>"
    "<utm_term></utm_term><x-at></x-at><URL_BUYNOW>%@</URL_BUYNOW></campaign_info>"
    "<app_info><app_ver>%@</app_ver></app_info>"
    "</sf_feedback>";
constexpr std::string_view kPlaceholder = "%@";

std::string withoutSpaces(std::string text) {
  std::erase(text, ' ');
  return text;
}

std::string buyNowAddress(std::string pattern, const std::string& bundleName) {
  if (const std::size_t hit = pattern.find(kPlaceholder); hit != std::string::npos) {
    pattern.replace(hit, kPlaceholder.size(), withoutSpaces(bundleName));
  }
  return pattern;
}

// How many UTF-16 units a valid UTF-8 text has: one for each character, two for those beyond the
// basic plane.
std::uint64_t utf16Units(std::string_view text) {
  std::uint64_t units = 0;
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    units += ((value & 0xC0U) != 0x80U ? 1U : 0U) + (value >= 0xF0U ? 1U : 0U);
  }
  return units;
}

// The report as it travels inside the envelope: one line of XML whose markup is escaped already.
// Of the values only the content and the two parts are escaped; the others go in as they are, so a
// special character in one of them spoils the document.
ReportText reportText(const FeedbackReport& report) {
  const auto orNull = [](const std::optional<std::string>& value) {
    return value.value_or("(null)");
  };
  const std::string logMarker = report.log ? "" : "LOGSNOTSELECTED";
  const std::array values = {
      report.appName,
      report.email,
      report.feedbackType,
      xmlSimpleEscapeStringNEW(report.content),
      logMarker,
      xmlSimpleEscapeStringNEW(report.usage.value_or("SCAN_LOGSNOTSELECTED")),
      orNull(report.osVersion),
      orNull(report.procName),
      orNull(report.ramSystem),
      orNull(report.machineId),
      report.buyNowAddress,
      report.appVersion};
  ReportText text;
  text.log = report.log;
  std::string* side = &text.before;
  const std::string markup = xmlSimpleEscapeString(kTemplate);
  std::size_t at = 0;
  for (const std::string& value : values) {
    const std::size_t hit = markup.find(kPlaceholder, at);
    side->append(markup, at, hit - at).append(value);
    at = hit + kPlaceholder.size();
    if (&value == &values[4]) side = &text.after;
  }
  side->append(markup, at);
  return text;
}

}  // namespace

void tidyFeedbackFields(FeedbackForm& form) {
  form.email = StringEscaping::trim(QString::fromStdString(form.email).toLower().toStdString());
  form.experience = StringEscaping::trim(form.experience);
}

FeedbackFaults checkFeedbackFields(FeedbackForm& form) {
  tidyFeedbackFields(form);
  logLine("Title :" + form.type);
  return {.invalidEmail = !validateEmail(form.email),
          .invalidType = form.type == kNoFeedbackType,
          .invalidExp = form.experience.empty()};
}

bool validateEmail(std::string_view address) {
  static const std::unique_ptr<pcre2_code, void (*)(pcre2_code*)> code(compile(), pcre2_code_free);
  const std::unique_ptr<pcre2_match_data, void (*)(pcre2_match_data*)> match(
      pcre2_match_data_create(1, nullptr), pcre2_match_data_free);
  if (code == nullptr || match == nullptr || address.empty()) return false;
  std::array<int, 4096> workspace;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  const int found =
      pcre2_dfa_match(code.get(), reinterpret_cast<PCRE2_SPTR>(address.data()), address.size(), 0,
                      0, match.get(), nullptr, workspace.data(), workspace.size());
  // The longest reading comes first; it counts if it is the whole address.
  return found >= 0 && pcre2_get_ovector_pointer(match.get())[1] == address.size();
}

FeedbackReport gatherReport(const FeedbackForm& form, const FeedbackSources& sources, WallTime now,
                            const std::stop_token& stop) {
  FeedbackReport report;
  report.appName = sources.bundle.CFBundleName;
  report.email = form.email;
  report.feedbackType = form.type;
  report.content = form.experience;
  if (form.sendLogs) {
    // By the executable's name, where the log itself goes by the bundle's: if they differ, there is
    // no log to send, on purpose.
    report.log = readLogsContent(
        logFilePath(sources.homeDirectory, sources.bundle.CFBundleExecutable), now, stop);
  }
  if (form.sendScanLog) {
    report.usage = readUsageReport(sources.homeDirectory + "/Documents/ScanReport.plist");
  }
  report.machineId = sources.serialNumber();
  report.buyNowAddress =
      buyNowAddress(sources.addresses.buyNowPattern, sources.bundle.CFBundleName);
  report.appVersion = sources.bundle.CFBundleVersion;
  return report;
}

FeedbackReport gatherLogsOnlyReport(const std::string& emailID, const std::string& emailField,
                                    const FeedbackSources& sources, WallTime now,
                                    const std::stop_token& stop) {
  const FeedbackForm form{.email = emailID.empty() ? emailField : emailID,
                          .type = "Sending logs",
                          .experience = "Sending logs",
                          .sendLogs = true,
                          .sendScanLog = false};
  return gatherReport(form, sources, now, stop);
}

TextSource ReportText::text() const {
  std::vector<TextSource> parts = {textSource(before)};
  if (log) parts.push_back([raw = log->text()] { return xmlSimpleEscapeStringNEW(raw()); });
  parts.push_back(textSource(after));
  return [parts = std::move(parts), at = std::size_t{0}]() mutable {
    std::string piece;
    while (piece.empty() && at < parts.size()) {
      piece = parts[at]();
      if (piece.empty()) ++at;
    }
    return piece;
  };
}

TextSource reportDocument(const FeedbackReport& report) {
  return [escaped = reportText(report).text()] {
    return StringEscaping::xmlSimpleUnescapeString(escaped());
  };
}

std::string feedbackFileName(const std::string& bundleName, WallTime now, int number) {
  return withoutSpaces(bundleName) + "-Feedback " + getDateInFormatNEW(now) + ' ' +
         std::to_string(number) + ".xml";
}

ReportText prepareSoapMsg(const FeedbackReport& report, const FeedbackSources& sources,
                          WallTime now, int number) {
  ReportText envelope = reportText(report);
  envelope.before.insert(0,
                         "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\""
                         " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                         " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
                         " xmlns:soapenc=\"http://schemas.xmlsoap.org/soap/encoding/\"><soap:Body>"
                         "<UploadFeedback xmlns=\"" +
                             sources.addresses.feedbackNamespace + "\"><input>");
  envelope.after += "</input><filename>" +
                    feedbackFileName(sources.bundle.CFBundleName, now, number) +
                    "</filename></UploadFeedback></soap:Body></soap:Envelope>";
  return envelope;
}

HttpRequest soapRequest(const ServiceAddresses& addresses, const ReportText& envelope,
                        const std::stop_token& stop) {
  std::uint64_t units = 0;
  HttpRequest request;
  request.url = addresses.feedbackEndpoint;
  request.body = envelope.text();
  const TextSource counted = envelope.text();
  for (std::string piece = counted(); !piece.empty() && !stop.stop_requested(); piece = counted()) {
    request.bodySize += piece.size();
    units += utf16Units(piece);
  }
  request.fields = {{"Content-Type", "text/xml; charset=utf-8"},
                    {"SOAPAction", addresses.feedbackNamespace + "UploadFeedback"},
                    {"Content-Length", std::to_string(units)}};
  return request;
}

}  // namespace velmara
