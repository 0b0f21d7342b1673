#pragma once

#include <functional>
#include <map>
#include <memory>
#include <stop_token>
#include <string>

#include "base/task_queue.h"
#include "platform/notification_center.h"
#include "platform/timer.h"
#include "services/feedback_report.h"
#include "services/http_client.h"

namespace velmara {

/// What uploads work with.
struct FeedbackUploadSetup {
  /// What reports are made of.
  FeedbackSources sources;
  const Clock* clock = &systemClock();  ///< read on the main thread
  /// How requests behave.
  HttpOptions http;
  TaskQueue* mainQueue = nullptr;    ///< of the thread that owns the uploads
  TaskQueue* globalQueue = nullptr;  ///< where reports are gathered and sent
  /// Where the end of an upload is posted.
  NotificationCenter* center = &defaultCenter();
};

/// Sends feedback in the background: a report is gathered, built and uploaded on the global queue,
/// so that neither a long log nor a slow service holds up the window. Each call is an upload of its
/// own. A finished one posts "notificationSubmitFeedback" (no object), whatever the service's
/// status; a failed one ends silently. Main thread. Destroying it ends everything at once, as
/// cancelled.
class FeedbackUploads {
 public:
  /// Takes what came of one upload; on the main thread.
  using Ended = std::function<void(const HttpAnswer&)>;

  /// Uploads nothing yet.
  explicit FeedbackUploads(FeedbackUploadSetup setup) : setup_(std::move(setup)) {}
  FeedbackUploads(const FeedbackUploads&) = delete;
  FeedbackUploads& operator=(const FeedbackUploads&) = delete;
  ~FeedbackUploads();

  /// Sends what the form says, or (not from the form) the log only; `emailID` is used then. `ended`
  /// is told the outcome exactly once, after the notification.
  void extractInfoAndSendFeedback(bool isFromForm, const std::string& emailID,
                                  const FeedbackForm& form, Ended ended = {});

  /// Gathers what extractInfoAndSendFeedback would send from the form and gives it to the receiver
  /// on the main thread; dropped if this object is destroyed first.
  void describe(const FeedbackForm& form, std::function<void(const FeedbackReport&)> receiver);

  /// The name that the next report's file would have.
  std::string proposedFileName() const;

  /// Writes the form's report to a file, whole or not at all, and tells why it could not be done
  /// ("" if it was) on the main thread; dropped if this object is destroyed first.
  void saveReport(const FeedbackForm& form, const std::string& path,
                  std::function<void(const std::string& fault)> saved);

  /// How many uploads are under way.
  std::size_t underWay() const { return uploads_.size(); }

 private:
  template <typename Work, typename Receiver>
  void inBackground(Work work, Receiver receiver);
  void end(int upload, const HttpAnswer& answer);

  FeedbackUploadSetup setup_;
  std::stop_source stop_;
  std::map<int, Ended> uploads_;
  int nextUpload_ = 0;
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace velmara
