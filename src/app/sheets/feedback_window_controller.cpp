#include "app/sheets/feedback_window_controller.h"

#include <QPointer>
#include <QShortcut>

#include <utility>

#include "ui_FeedbackWindowController.h"
#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

constexpr double kHeadingScale = 1.3;
constexpr double kTextMargin = 2.0;

void keepPlace(QWidget& widget) {
  QSizePolicy policy = widget.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(policy);
}

QString title(std::string_view text) {
  return FeedbackWindowController::tr(std::string(text).c_str());
}

}  // namespace

FeedbackWindowController::FeedbackWindowController(FeedbackServices services, QWidget* mainWindow)
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint),
      ui_(std::make_unique<Ui::FeedbackWindowController>()),
      services_(std::move(services)) {
  ui_->setupUi(this);
  setProperty("role", "alert");
  setAttribute(Qt::WA_StyledBackground);
  setWindowModality(Qt::WindowModal);
  QFont heading = font();
  heading.setPointSizeF(heading.pointSizeF() * kHeadingScale);
  heading.setWeight(QFont::DemiBold);
  ui_->lblFBHeading->setFont(heading);
  // What comes and goes keeps its place, so that nothing moves under the pointer.
  for (QWidget* widget :
       {static_cast<QWidget*>(ui_->lblFBInvalidEmail), static_cast<QWidget*>(ui_->lblFBInvalidType),
        static_cast<QWidget*>(ui_->lblFBInvalidExp), static_cast<QWidget*>(ui_->lblFBWait),
        static_cast<QWidget*>(ui_->progressFB)}) {
    keepPlace(*widget);
  }
  // Its text begins where that of the fields does.
  for (QPlainTextEdit* view : {ui_->txtViewFBExp, ui_->txtWhatIsSent}) {
    view->document()->setDocumentMargin(kTextMargin);
  }
  ui_->lblFBNoService->setVisible(services_.reachesNobody);
  preview_ = std::make_unique<FeedbackPreview>(*ui_->txtWhatIsSent, services_);
  preview_->hide();
  fillTypes();
  openFeedbackWindow();
  convertUIAccordingToLocale();
  setupActions();
}

FeedbackWindowController::~FeedbackWindowController() = default;

// The service and the check know the entries by their English titles, which therefore stand behind
// what is shown.
void FeedbackWindowController::fillTypes() {
  ui_->btnFBType->addItem(QString(), QByteArray(kNoFeedbackType.data()));
  for (const std::string_view type : kFeedbackTypes) {
    ui_->btnFBType->addItem(QString(), QByteArray(type.data()));
  }
}

void FeedbackWindowController::openFeedbackWindow() {
  showMessage(*ui_->lblFBInvalidEmail, *ui_->txtFBEmailID, false);
  showMessage(*ui_->lblFBInvalidType, *ui_->btnFBType, false);
  showMessage(*ui_->lblFBInvalidExp, *ui_->txtViewFBExp, false);
  showWait(false);
  ui_->txtViewFBExp->clear();
}

// The misspellings are part of the interface.
void FeedbackWindowController::convertUIAccordingToLocale() {
  setWindowTitle(tr("Feedback"));
  ui_->lblFBHeading->setText(tr("Submit your feedback for Velmara"));
  ui_->lblFBSubHeading->setText(tr("Your experience is highly appreciated."));
  ui_->lblFBType->setText(tr("Feedback"));
  ui_->lblEmailAddress->setText(tr("Email Address"));
  ui_->lblFeedBackType->setText(tr("Please Select Feedback Type"));
  ui_->lblShareExperience->setText(tr("Share your experience"));
  ui_->btnFBSendLogs->setText(tr("Include Velmara log in the feedback"));
  ui_->btnFBSendScanLog->setText(tr("Send usage information for product improvment"));
  ui_->lblFBWait->setText(tr("Your feedback is being sent, please wait."));
  ui_->lblFBInvalidEmail->setText(tr("*Invalid Email Address"));
  ui_->lblFBInvalidType->setText(tr("*Please Select Feedback Type"));
  ui_->lblFBInvalidExp->setText(tr("*Please share your experience"));
  ui_->btnFBSubmit->setText(services_.reachesNobody ? tr("Save Report…") : tr("Submit"));
  ui_->lblFBNoService->setText(
      tr("This build of Velmara has no feedback service to send to.\n"
         "The report can be saved as a file, to be passed on by other means."));
  ui_->btnFBCancel->setText(tr("Cancel"));
  for (int index = 0; index < ui_->btnFBType->count(); ++index) {
    const QByteArray text = ui_->btnFBType->itemData(index).toByteArray();
    ui_->btnFBType->setItemText(index, title(text.constData()));
  }
  toggleWhatIsSent(ui_->linkSendFeedback->isChecked());
  ui_->txtWhatIsSent->setAccessibleName(tr("What is sent"));
  setAccessibleName(ui_->lblFBHeading->text());
  setAccessibleDescription(ui_->lblFBSubHeading->text());
}

void FeedbackWindowController::setupActions() {
  connect(ui_->btnFBSubmit, &QPushButton::clicked, this, &FeedbackWindowController::submitFeedback);
  connect(ui_->btnFBCancel, &QPushButton::clicked, this,
          &FeedbackWindowController::cancelFeedbackSheet);
  connect(ui_->linkSendFeedback, &QPushButton::toggled, this,
          &FeedbackWindowController::toggleWhatIsSent);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    connect(new QShortcut(Qt::CTRL | key, this), &QShortcut::activated, this,
            &FeedbackWindowController::submitFeedback);
  }
  const auto typed = [this] { preview_->typed(formAsSent()); };
  connect(ui_->txtFBEmailID, &QLineEdit::textChanged, this, typed);
  connect(ui_->btnFBType, &QComboBox::currentIndexChanged, this, typed);
  connect(ui_->txtViewFBExp, &QPlainTextEdit::textChanged, this, typed);
  const auto ticked = [this] {
    if (ui_->linkSendFeedback->isChecked()) preview_->show(formAsSent());
  };
  connect(ui_->btnFBSendLogs, &QCheckBox::toggled, this, ticked);
  connect(ui_->btnFBSendScanLog, &QCheckBox::toggled, this, ticked);
}

void FeedbackWindowController::showSheet() {
  if (!isVisible()) {
    openFeedbackWindow();
    ui_->txtFBEmailID->setFocus();
    adjustSize();
    placeOnWindow(*this, parentWidget(), true);
    show();
  }
  raise();
  activateWindow();
}

void FeedbackWindowController::toggleWhatIsSent(bool shows) {
  if (services_.reachesNobody) {
    ui_->linkSendFeedback->setText(shows ? tr("Hide the report") : tr("Show the report"));
  } else {
    ui_->linkSendFeedback->setText(shows ? tr("Hide what is sent") : tr("Show what is sent"));
  }
  if (shows) {
    preview_->show(formAsSent());
  } else {
    preview_->hide();
  }
}

FeedbackForm FeedbackWindowController::form() const {
  return {.email = ui_->txtFBEmailID->text().toStdString(),
          .type = ui_->btnFBType->currentData().toByteArray().toStdString(),
          .experience = ui_->txtViewFBExp->toPlainText().toStdString(),
          .sendLogs = ui_->btnFBSendLogs->isChecked(),
          .sendScanLog = ui_->btnFBSendScanLog->isChecked()};
}

FeedbackForm FeedbackWindowController::formAsSent() const {
  FeedbackForm tidied = form();
  tidyFeedbackFields(tidied);
  return tidied;
}

bool FeedbackWindowController::areThereEmptyFieldsForFeedback() {
  FeedbackForm checked = form();
  const FeedbackFaults faults = checkFeedbackFields(checked);
  const QString email = QString::fromStdString(checked.email);
  const QString experience = QString::fromStdString(checked.experience);
  if (ui_->txtFBEmailID->text() != email) ui_->txtFBEmailID->setText(email);
  if (ui_->txtViewFBExp->toPlainText() != experience) ui_->txtViewFBExp->setPlainText(experience);
  // The last one that is wrong comes first in the form and keeps the focus.
  showMessage(*ui_->lblFBInvalidExp, *ui_->txtViewFBExp, faults.invalidExp);
  showMessage(*ui_->lblFBInvalidType, *ui_->btnFBType, faults.invalidType);
  showMessage(*ui_->lblFBInvalidEmail, *ui_->txtFBEmailID, faults.invalidEmail);
  return faults.any();
}

void FeedbackWindowController::showMessage(QWidget& message, QWidget& field, bool isWrong) {
  message.setVisible(isWrong);
  // For screen readers, which do not connect the two.
  const auto* label = qobject_cast<const QLabel*>(&message);
  field.setAccessibleDescription(isWrong && label != nullptr ? label->text() : QString());
  if (isWrong) field.setFocus();
}

void FeedbackWindowController::submitFeedback() {
  if (services_.reachesNobody) {
    saveReport();
    return;
  }
  if (!services_.isInternetAvailable()) {
    services_.alerts.runModal(
        {tr("Internet Not Connected").toStdString(), {}, {tr("OK").toStdString()}});
    return;
  }
  if (areThereEmptyFieldsForFeedback()) return;
  showWait(true);
  services_.extractInfoAndSendFeedback(form());
  cancelFeedbackSheet();
}

void FeedbackWindowController::saveReport() {
  if (areThereEmptyFieldsForFeedback()) return;
  const auto written = [sheet = QPointer(this)](const std::string& fault) {
    if (sheet == nullptr) return;
    if (fault.empty()) return sheet->cancelFeedbackSheet();
    sheet->displayAlertWithMessageText(
        tr("The report could not be saved: %1").arg(QString::fromStdString(fault)).toStdString());
  };
  SavePanelOptions options;
  options.title = tr("Save Report").toStdString();
  options.nameFieldStringValue = services_.proposedFileName();
  options.allowedFileTypes = {"xml"};
  savePanel_ = services_.panels.beginSavePanel(
      options, [sheet = QPointer(this), written](const std::string& path) {
        if (sheet != nullptr && !path.empty()) {
          sheet->services_.saveReport(sheet->form(), path, written);
        }
      });
}

void FeedbackWindowController::showWait(bool isSending) {
  ui_->lblFBWait->setVisible(isSending);
  ui_->progressFB->setVisible(isSending);
  // The sheet closes before the event loop would draw it.
  if (isSending && isVisible()) repaint();
}

void FeedbackWindowController::cancelFeedbackSheet() {
  showWait(false);
  ui_->linkSendFeedback->setChecked(false);
  hide();
}

void FeedbackWindowController::displayAlertWithMessageText(const std::string& message) {
  setWindowOpacity(1.0);
  services_.alerts.beginSheet({message, {}, {tr("OK").toStdString()}}, [](int) {});
}

}  // namespace velmara
