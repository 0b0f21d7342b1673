#include "app/sheets/feedback_preview.h"

#include <QCoreApplication>
#include <QLocale>
#include <QScrollBar>

#include <string_view>

namespace velmara {
namespace {

constexpr std::size_t kLongestShown = std::size_t{32} * 1024;

std::string shortened(const std::string& text, std::size_t longest) {
  if (text.size() <= longest) return text;
  std::string_view kept = text;
  kept.remove_prefix(text.size() - longest);
  // From a whole line on, or at least from a whole character.
  const std::size_t lineEnd = kept.find('\n');
  if (lineEnd != std::string_view::npos && lineEnd + 1 < kept.size()) {
    kept.remove_prefix(lineEnd + 1);
  }
  while (!kept.empty() && (static_cast<unsigned char>(kept.front()) & 0xC0U) == 0x80U) {
    kept.remove_prefix(1);
  }
  const QString size = QLocale().formattedDataSize(static_cast<qint64>(text.size() - kept.size()),
                                                   1, QLocale::DataSizeSIFormat);
  const QString note =
      QCoreApplication::translate("FeedbackPreview", "[%1 before this are sent too]").arg(size);
  return note.toStdString() + '\n' + std::string(kept);
}

}  // namespace

FeedbackReport shortenedForReading(const FeedbackReport& report, std::size_t longest) {
  FeedbackReport reading;
  reading.appName = report.appName;
  reading.email = report.email;
  reading.feedbackType = report.feedbackType;
  reading.content = shortened(report.content, longest);
  reading.logPart = shortened(report.logPart, longest);
  reading.usagePart = shortened(report.usagePart, longest);
  reading.machineId = report.machineId;
  reading.buyNowAddress = report.buyNowAddress;
  reading.appVersion = report.appVersion;
  return reading;
}

void FeedbackPreview::show(const FeedbackForm& form) {
  form_ = form;
  report_.reset();
  auto asked = std::make_shared<const bool>(true);
  asked_ = asked;
  view_->setPlainText(
      QCoreApplication::translate("FeedbackPreview", "Reading what would be sent…"));
  view_->show();
  services_.describe(form, [this, known = std::weak_ptr(asked)](const FeedbackReport& report) {
    if (!known.expired()) gathered(report);
  });
}

void FeedbackPreview::gathered(const FeedbackReport& report) {
  report_ = shortenedForReading(report, kLongestShown);
  write();
}

void FeedbackPreview::typed(const FeedbackForm& form) {
  form_ = form;
  if (report_) write();
}

void FeedbackPreview::write() {
  FeedbackReport report = *report_;
  report.email = form_.email;
  report.feedbackType = form_.type;
  report.content = shortened(form_.experience, kLongestShown);
  const int position = view_->verticalScrollBar()->value();
  view_->setPlainText(QString::fromStdString(describeReport(report)));
  view_->verticalScrollBar()->setValue(position);
}

void FeedbackPreview::hide() {
  asked_.reset();
  report_.reset();
  if (view_ == nullptr) return;
  view_->hide();
  view_->clear();
}

}  // namespace velmara
