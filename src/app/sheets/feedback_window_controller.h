#pragma once

#include <QDialog>

#include <memory>
#include <string>

#include "app/sheets/feedback_preview.h"
#include "app/sheets/feedback_services.h"

namespace Ui {
class FeedbackWindowController;
}

namespace velmara {

/// The feedback form: a sheet on the main window. Return submits (in the text view, where it starts
/// a line, with Ctrl), Escape and closing cancel. The sheet closes as soon as the upload has been
/// started; the upload is not its own and goes on. Where there is no service to send to, it says so
/// and saves the report as a file instead. Main thread.
class FeedbackWindowController : public QDialog {
  Q_OBJECT

 public:
  /// Not shown yet; `mainWindow` owns it.
  FeedbackWindowController(FeedbackServices services, QWidget* mainWindow);
  ~FeedbackWindowController() override;

  /// Shows the sheet, with the address and the choices that were made before.
  void showSheet();

  /// Hides the messages and empties the experience.
  void openFeedbackWindow();
  /// Fills in the form's words in the user's language.
  void convertUIAccordingToLocale();

  /// Checks the fields and shows or hides each one's message; whether any shows.
  bool areThereEmptyFieldsForFeedback();
  /// Sends, or saves where there is no service, if the fields are right.
  void submitFeedback();
  /// Closes the sheet without sending.
  void cancelFeedbackSheet();
  /// Tells a message on the form, with "OK".
  void displayAlertWithMessageText(const std::string& message);

  /// What the fields say.
  FeedbackForm form() const;

  void reject() override { cancelFeedbackSheet(); }

 private:
  void fillTypes();
  void setupActions();
  void saveReport();
  void showWait(bool isSending);
  void showMessage(QWidget& message, QWidget& field, bool isWrong);
  void toggleWhatIsSent(bool shows);
  FeedbackForm formAsSent() const;

  std::unique_ptr<Ui::FeedbackWindowController> ui_;
  FeedbackServices services_;
  std::unique_ptr<FeedbackPreview> preview_;
  std::shared_ptr<SavePanel> savePanel_;
};

}  // namespace velmara
