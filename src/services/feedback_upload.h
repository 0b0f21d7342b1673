#pragma once

#include <functional>
#include <list>
#include <memory>
#include <stop_token>
#include <string>

#include "base/task_queue.h"
#include "platform/notification_center.h"
#include "platform/timer.h"
#include "services/feedback_facts.h"
#include "services/http_connection.h"

namespace velmara {

/// What uploads work with.
struct FeedbackUploadSetup {
  FeedbackSources sources;
  const Clock* clock = &systemClock();  ///< read on the main thread
  HttpOptions http;
  TaskQueue* mainQueue = nullptr;    ///< of the thread that owns the uploads
  TaskQueue* globalQueue = nullptr;  ///< where facts are gathered
  NotificationCenter* center = &defaultCenter();
};

/// Sends feedback in the background: gathers the facts on the global queue, uploads from the main
/// thread's event loop. Each call is an upload of its own. A finished one posts
/// "notificationSubmitFeedback" (no object), whatever the service's status; a failed one ends
/// silently. Main thread. Destroying it ends all uploads at once, as cancelled.
class FeedbackUploads {
 public:
  using Ended = std::function<void(const HttpOutcome&)>;

  explicit FeedbackUploads(FeedbackUploadSetup setup);
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

  /// How many uploads are under way.
  std::size_t underWay() const { return uploads_.size(); }

 private:
  struct Upload;
  using UploadAt = std::list<std::unique_ptr<Upload>>::iterator;

  void gather(std::function<FeedbackReport(const std::stop_token&)> work,
              std::function<void(const FeedbackReport&)> receiver);
  void connect(UploadAt upload, const FeedbackReport& report);
  void end(UploadAt upload, const HttpOutcome& outcome);

  FeedbackUploadSetup setup_;
  std::stop_source stop_;
  std::list<std::unique_ptr<Upload>> uploads_;
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace velmara
