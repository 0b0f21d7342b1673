#include "services/feedback_facts.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/log_file.h"
#include "services/local_date.h"
#include "services/recent_log.h"
#include "services/soap_request.h"
#include "services/usage_report.h"

namespace velmara {

FeedbackReport gatherReport(const FeedbackForm& form, const FeedbackSources& sources, WallTime now,
                            const std::stop_token& stop) {
  FeedbackReport report;
  report.appName = sources.bundle.CFBundleName;
  report.email = form.email;
  report.feedbackType = form.type;
  report.content = form.experience;
  std::error_code error;
  if (form.sendLogs) {
    // By the executable's name, where the log itself goes by the bundle's: if they differ, there is
    // no log to send, on purpose.
    const std::string path = logFilePath(sources.homeDirectory, sources.bundle.CFBundleExecutable);
    if (std::filesystem::exists(path, error)) {
      report.logPart = readLogsContent(path, now, stop);
    }
  }
  if (form.sendScanLog) {
    const auto usage = readUsageReport(sources.homeDirectory + "/Documents/ScanReport.plist");
    if (usage) report.usagePart = *usage;
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
  FeedbackForm form;
  form.email = emailID.empty() ? emailField : emailID;
  form.type = "Sending logs";
  form.experience = "Sending logs";
  form.sendLogs = true;
  return gatherReport(form, sources, now, stop);
}

std::string prepareSoapMsg(const FeedbackReport& report, const FeedbackSources& sources,
                           WallTime now) {
  const std::string date = getDateInFormatNEW(now);
  const std::string fileName =
      feedbackFileName(sources.bundle.CFBundleName, date, std::rand() % 1000);
  return soapEnvelope(sources.addresses.feedbackNamespace, reportText(report), fileName);
}

}  // namespace velmara
