#include "services/feedback_upload.h"

#include <utility>

#include "platform/log.h"
#include "platform/notification_names.h"
#include "services/soap_request.h"

namespace velmara {

struct FeedbackUploads::Upload {
  bool isOver = false;
  Ended ended;
  std::unique_ptr<HttpConnection> conn;
};

FeedbackUploads::FeedbackUploads(FeedbackUploadSetup setup) : setup_(std::move(setup)) {}

FeedbackUploads::~FeedbackUploads() {
  stop_.request_stop();
  alive_.reset();
  while (!uploads_.empty()) {
    end(uploads_.begin(), {HttpOutcome::End::kCancelled, {}});
  }
}

void FeedbackUploads::extractInfoAndSendFeedback(bool isFromForm, const std::string& emailID,
                                                 const FeedbackForm& form, Ended ended) {
  uploads_.push_back(std::make_unique<Upload>());
  const UploadAt upload = std::prev(uploads_.end());
  (*upload)->ended = std::move(ended);
  gather(
      [isFromForm, emailID, form, sources = setup_.sources,
       now = setup_.clock->wall()](const std::stop_token& stop) {
        return isFromForm ? gatherReport(form, sources, now, stop)
                          : gatherLogsOnlyReport(emailID, form.email, sources, now, stop);
      },
      [this, upload](const FeedbackReport& report) { connect(upload, report); });
}

void FeedbackUploads::describe(const FeedbackForm& form,
                               std::function<void(const FeedbackReport&)> receiver) {
  gather([form, sources = setup_.sources, now = setup_.clock->wall()](
             const std::stop_token& stop) { return gatherReport(form, sources, now, stop); },
         std::move(receiver));
}

void FeedbackUploads::gather(std::function<FeedbackReport(const std::stop_token&)> work,
                             std::function<void(const FeedbackReport&)> receiver) {
  setup_.globalQueue->async([work = std::move(work), receiver = std::move(receiver),
                             stop = stop_.get_token(), main = setup_.mainQueue,
                             alive = std::weak_ptr<const bool>(alive_)] {
    if (stop.stop_requested()) return;
    auto report = std::make_shared<const FeedbackReport>(work(stop));
    if (stop.stop_requested()) return;
    main->async([receiver, report, alive] {
      if (!alive.expired()) receiver(*report);
    });
  });
}

void FeedbackUploads::connect(UploadAt upload, const FeedbackReport& report) {
  const ServiceAddresses& addresses = setup_.sources.addresses;
  HttpEvents events;
  events.didReceiveResponse = [](int) { logLine("connection: didReceiveResponse:"); };
  events.didReceiveData = [](std::string_view) { logLine("connection: didReceiveData:"); };
  events.didSendBodyData = [] { logLine("connection: didSendBodyData:"); };
  events.ended = [this, upload, known = upload->get()](const HttpOutcome& outcome) {
    // A connection reports an end of its own while its upload is taken away.
    if (!known->isOver) end(upload, outcome);
  };
  (*upload)->conn = std::make_unique<HttpConnection>(
      soapRequest(addresses.feedbackEndpoint, addresses.feedbackNamespace,
                  prepareSoapMsg(report, setup_.sources, setup_.clock->wall())),
      setup_.http, std::move(events));
  (*upload)->conn->start();
}

void FeedbackUploads::end(UploadAt upload, const HttpOutcome& outcome) {
  const std::unique_ptr<Upload> finished = std::move(*upload);
  finished->isOver = true;
  uploads_.erase(upload);
  if (outcome.end == HttpOutcome::End::kFinished) {
    logLine("connectionDidFinishLoading:");
    setup_.center->post(notifications::kSubmitFeedback);
  }
  if (finished->ended) finished->ended(outcome);
}

}  // namespace velmara
