#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>

#include "platform/bundle.h"
#include "services/feedback_fields.h"
#include "services/feedback_report.h"
#include "services/service_addresses.h"

namespace velmara {

/// A time of day.
using WallTime = std::chrono::system_clock::time_point;

/// Where a report takes its facts from. Its functions are called on whatever thread gathers them,
/// which may be after the owner of the original is gone: they must own what they use.
struct FeedbackSources {
  std::string homeDirectory;
  BundleFacts bundle;
  ServiceAddresses addresses;
  std::function<std::optional<std::string>()> serialNumber;
};

/// Gathers what a report of the form would say. Reads the log and the usage report if the form asks
/// for them: "Library/Logs/EXECUTABLE.log" and "Documents/ScanReport.plist" under the home
/// directory; of the log what is recent at `now`. A file that does not exist, or a usage report
/// that is none, counts as not selected. Any thread; a long log takes a while, which `stop` ends.
FeedbackReport gatherReport(const FeedbackForm& form, const FeedbackSources& sources, WallTime now,
                            const std::stop_token& stop = {});

/// The same without a form: the address given (or, if it is empty, the one in the form's field) and
/// always the log.
FeedbackReport gatherLogsOnlyReport(const std::string& emailID, const std::string& emailField,
                                    const FeedbackSources& sources, WallTime now,
                                    const std::stop_token& stop = {});

/// The envelope of a report, its file named by the date of `now`. Takes the number in its file name
/// from the standard generator, which nobody seeds: the numbers are the same in every run. Main
/// thread.
std::string prepareSoapMsg(const FeedbackReport& report, const FeedbackSources& sources,
                           WallTime now);

}  // namespace velmara
