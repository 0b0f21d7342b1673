#include "app/sheets/feedback_preview.h"

#include <QCoreApplication>
#include <QLocale>
#include <QScrollBar>

#include <algorithm>
#include <string_view>

namespace velmara {
namespace {

constexpr std::size_t kLongestShown = std::size_t{32} * 1024;

struct PreviewText {
  Q_DECLARE_TR_FUNCTIONS(FeedbackPreview)
};

// The end of a text that has `all` bytes: from a whole line on, or at least from a whole character,
// after a line that says how much comes before.
QString newest(std::string_view end, std::size_t all) {
  end.remove_prefix(end.size() - std::min(end.size(), kLongestShown));
  if (all <= end.size()) return QString::fromUtf8(end.data(), static_cast<qsizetype>(end.size()));
  const std::size_t lineEnd = end.find('\n');
  if (lineEnd != std::string_view::npos && lineEnd + 1 < end.size()) end.remove_prefix(lineEnd + 1);
  while (!end.empty() && (static_cast<unsigned char>(end.front()) & 0xC0U) == 0x80U) {
    end.remove_prefix(1);
  }
  const QString before = QLocale().formattedDataSize(static_cast<qint64>(all - end.size()), 1,
                                                     QLocale::DataSizeSIFormat);
  return PreviewText::tr("[%1 before this are sent too]").arg(before) + QLatin1Char('\n') +
         QString::fromUtf8(end.data(), static_cast<qsizetype>(end.size()));
}

QString newest(const std::string& text) {
  return newest(text, text.size());
}

// A line for each fact of a report.
QString describe(const FeedbackReport& report) {
  const auto text = [](const std::string& value) { return QString::fromStdString(value); };
  const QString none = PreviewText::tr("not included");
  const QString serial =
      report.machineId ? text(*report.machineId) : PreviewText::tr("not readable");
  const QString usage = report.usage ? QLatin1Char('\n') + newest(*report.usage) : none;
  const QString log =
      report.log ? QLatin1Char('\n') + newest(report.log->newest(kLongestShown), report.log->size())
                 : none;
  return QStringList{
      PreviewText::tr("Application: %1").arg(text(report.appName + ' ' + report.appVersion)),
      PreviewText::tr("E-mail address: %1").arg(text(report.email)),
      PreviewText::tr("Kind of feedback: %1").arg(text(report.feedbackType)),
      PreviewText::tr("Serial number of this computer: %1").arg(serial),
      PreviewText::tr("Web site: %1").arg(text(report.buyNowAddress)),
      PreviewText::tr("Experience: %1").arg(newest(report.content)),
      PreviewText::tr("Usage information: %1").arg(usage),
      PreviewText::tr("Log: %1").arg(log)}
      .join(QLatin1Char('\n'));
}

}  // namespace

void FeedbackPreview::show(const FeedbackForm& form) {
  form_ = form;
  report_.reset();
  auto asked = std::make_shared<const bool>(true);
  asked_ = asked;
  view_->setPlainText(PreviewText::tr("Reading what would be sent…"));
  view_->show();
  services_.describe(form, [this, known = std::weak_ptr(asked)](const FeedbackReport& report) {
    if (!known.expired()) gathered(report);
  });
}

void FeedbackPreview::gathered(const FeedbackReport& report) {
  report_ = report;
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
  report.content = form_.experience;
  const int position = view_->verticalScrollBar()->value();
  view_->setPlainText(describe(report));
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
