#include "services/feedback_upload.h"

#include <QSaveFile>

#include <cstdlib>
#include <utility>

#include "platform/log.h"
#include "platform/notification_center.h"

namespace velmara {
namespace {

// A number for a file's name, from the standard generator, which nobody seeds: they are the same in
// every run. The generator belongs to the main thread.
int reportNumber() {
  return std::rand() % 1000;
}

void logStep(HttpStep step) {
  constexpr const char* kNames[] = {"didSendBodyData", "didReceiveResponse", "didReceiveData"};
  logFormat("connection: %s:", kNames[static_cast<int>(step)]);
}

std::string writeReport(const FeedbackReport& report, const std::string& path) {
  QSaveFile file(QFile::decodeName(path.c_str()));
  if (!file.open(QIODevice::WriteOnly)) return file.errorString().toStdString();
  const TextSource text = reportDocument(report);
  for (std::string piece = text(); !piece.empty(); piece = text()) {
    file.write(piece.data(), static_cast<qint64>(piece.size()));
  }
  return file.commit() ? std::string() : file.errorString().toStdString();
}

}  // namespace

FeedbackUploads::~FeedbackUploads() {
  stop_.request_stop();
  alive_.reset();
  while (!uploads_.empty()) end(uploads_.begin()->first, {.end = HttpAnswer::End::kCancelled});
}

template <typename Work, typename Receiver>
void FeedbackUploads::inBackground(Work work, Receiver receiver) {
  setup_.globalQueue->async([work = std::move(work), receiver = std::move(receiver),
                             stop = stop_.get_token(), main = setup_.mainQueue,
                             alive = std::weak_ptr<const bool>(alive_)] {
    if (stop.stop_requested()) return;
    auto result = work(stop);
    if (stop.stop_requested()) return;
    main->async([receiver, result = std::move(result), alive] {
      if (!alive.expired()) receiver(result);
    });
  });
}

void FeedbackUploads::extractInfoAndSendFeedback(bool isFromForm, const std::string& emailID,
                                                 const FeedbackForm& form, Ended ended) {
  const int upload = nextUpload_++;
  uploads_[upload] = std::move(ended);
  inBackground(
      [isFromForm, emailID, form, sources = setup_.sources, http = setup_.http,
       now = setup_.clock->wall(), number = reportNumber()](const std::stop_token& stop) {
        const FeedbackReport report =
            isFromForm ? gatherReport(form, sources, now, stop)
                       : gatherLogsOnlyReport(emailID, form.email, sources, now, stop);
        const ReportText envelope = prepareSoapMsg(report, sources, now, number);
        return post(soapRequest(sources.addresses, envelope, stop), http, stop, logStep);
      },
      [this, upload](const HttpAnswer& answer) { end(upload, answer); });
}

void FeedbackUploads::describe(const FeedbackForm& form,
                               std::function<void(const FeedbackReport&)> receiver) {
  inBackground([form, sources = setup_.sources, now = setup_.clock->wall()](
                   const std::stop_token& stop) { return gatherReport(form, sources, now, stop); },
               std::move(receiver));
}

std::string FeedbackUploads::proposedFileName() const {
  return feedbackFileName(setup_.sources.bundle.CFBundleName, setup_.clock->wall(), reportNumber());
}

void FeedbackUploads::saveReport(const FeedbackForm& form, const std::string& path,
                                 std::function<void(const std::string& fault)> saved) {
  inBackground(
      [form, path, sources = setup_.sources,
       now = setup_.clock->wall()](const std::stop_token& stop) {
        return writeReport(gatherReport(form, sources, now, stop), path);
      },
      std::move(saved));
}

void FeedbackUploads::end(int upload, const HttpAnswer& answer) {
  const auto finished = uploads_.extract(upload);
  if (answer.end == HttpAnswer::End::kFinished) {
    logLine("connectionDidFinishLoading:");
    setup_.center->post(notifications::kSubmitFeedback);
  }
  if (finished && finished.mapped()) finished.mapped()(answer);
}

}  // namespace velmara
