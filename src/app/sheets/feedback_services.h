#pragma once

#include <functional>
#include <string>

#include "platform/panels.h"
#include "services/feedback_report.h"

namespace velmara {

/// What the feedback form works with. All of it outlives the form.
struct FeedbackServices {
  /// The desktop's part.
  AlertPresenter& alerts;
  Panels& panels;
  /// This build has no service to send to: a report can only be saved.
  bool reachesNobody = false;
  /// Asks anew if it was not.
  std::function<bool()> isInternetAvailable = {};
  /// Builds the report and starts its upload; returns at once.
  std::function<void(const FeedbackForm&)> extractInfoAndSendFeedback = {};
  /// Gathers what the form's report would say and gives it to the receiver later, on this thread.
  std::function<void(const FeedbackForm&, std::function<void(const FeedbackReport&)>)> describe =
      {};
  /// The name that is proposed for a saved report.
  std::function<std::string()> proposedFileName = {};
  /// Writes the report to a file and says later, on this thread, why it could not ("" if it could).
  std::function<void(const FeedbackForm&, const std::string& path,
                     std::function<void(const std::string& fault)>)>
      saveReport = {};
};

}  // namespace velmara
