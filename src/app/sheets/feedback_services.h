#pragma once

#include <functional>

#include "platform/alerts.h"
#include "services/feedback_fields.h"
#include "services/feedback_report.h"

namespace velmara {

/// What the feedback form works with. All of it outlives the form.
struct FeedbackServices {
  AlertPresenter& alerts;
  std::function<bool()> isInternetAvailable;
  /// Builds the report and starts its upload; returns at once.
  std::function<void(const FeedbackForm&)> extractInfoAndSendFeedback;
  /// Gathers what the form's report would say and gives it to the receiver later, on this thread.
  std::function<void(const FeedbackForm&, std::function<void(const FeedbackReport&)>)> describe;
};

}  // namespace velmara
