#include "services/feedback_report.h"

#include <algorithm>
#include <string_view>

#include "services/string_escaping.h"

namespace velmara {
namespace {

using StringEscaping::xmlSimpleEscapeString;
using StringEscaping::xmlSimpleEscapeStringNEW;

std::string withoutSpaces(std::string text) {
  std::erase(text, ' ');
  return text;
}

// Writes elements whose tags are escaped, as those of a template that was escaped whole, around
// values that are not.
class ReportWriter {
 public:
  void open(const std::string& name) { text_ += xmlSimpleEscapeString('<' + name + '>'); }
  void close(const std::string& name) { text_ += xmlSimpleEscapeString("</" + name + '>'); }
  void element(const std::string& name, std::string_view value = {}) {
    open(name);
    text_ += value;
    close(name);
  }
  std::string take() { return std::move(text_); }

 private:
  std::string text_;
};

std::string orNull(const std::optional<std::string>& value) {
  return value.value_or("(null)");
}

}  // namespace

std::string reportText(const FeedbackReport& report) {
  ReportWriter writer;
  writer.open("sf_feedback");
  writer.open("feedback");
  writer.element("appname", report.appName);
  writer.element("email", report.email);
  writer.element("feedback_type", report.feedbackType);
  writer.element("content", xmlSimpleEscapeStringNEW(report.content));
  writer.close("feedback");
  writer.open("logs_info");
  writer.element("logs_Data", xmlSimpleEscapeStringNEW(report.logPart));
  writer.element("logs_Data_Scan", xmlSimpleEscapeStringNEW(report.usagePart));
  writer.close("logs_info");
  writer.open("sys_info");
  writer.element("os_version", orNull(report.osVersion));
  writer.element("proc_name", orNull(report.procName));
  writer.element("ram_info", orNull(report.ramSystem));
  writer.close("sys_info");
  writer.open("key");
  writer.element("keyvalue");
  writer.element("machineid", orNull(report.machineId));
  writer.element("registered_email_id");
  writer.close("key");
  writer.open("campaign_info");
  for (const char* empty : {"affiliateid", "utm_campaign", "utm_content", "utm_medium",
                            "utm_source", "utm_term", "x-at"}) {
    writer.element(empty);
  }
  writer.element("URL_BUYNOW", report.buyNowAddress);
  writer.close("campaign_info");
  writer.open("app_info");
  writer.element("app_ver", report.appVersion);
  writer.close("app_info");
  writer.close("sf_feedback");
  return writer.take();
}

std::string describeReport(const FeedbackReport& report) {
  const auto part = [](const std::string& text, std::string_view marker) {
    return text == marker ? std::string("not included") : '\n' + text;
  };
  std::string words;
  words.append("Application: ").append(report.appName).append(" ").append(report.appVersion);
  words.append("\nE-mail address: ").append(report.email);
  words.append("\nKind of feedback: ").append(report.feedbackType);
  words.append("\nSerial number of this computer: ")
      .append(report.machineId.value_or("not readable"));
  words.append("\nWeb site: ").append(report.buyNowAddress);
  words.append("\nExperience: ").append(report.content);
  words.append("\nUsage information: ").append(part(report.usagePart, "SCAN_LOGSNOTSELECTED"));
  words.append("\nLog: ").append(part(report.logPart, "LOGSNOTSELECTED"));
  return words.append("\n");
}

std::string feedbackFileName(const std::string& bundleName, const std::string& date, int number) {
  return withoutSpaces(bundleName) + "-Feedback " + date + ' ' + std::to_string(number) + ".xml";
}

std::string buyNowAddress(const std::string& pattern, const std::string& bundleName) {
  constexpr std::string_view kPlaceholder = "%@";
  std::string address = pattern;
  if (const std::size_t hit = address.find(kPlaceholder); hit != std::string::npos) {
    address.replace(hit, kPlaceholder.size(), withoutSpaces(bundleName));
  }
  return address;
}

}  // namespace velmara
