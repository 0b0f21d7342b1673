#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velmara {

/// What the window has to do next.
struct UnsavedAction {
  enum class Kind {
    /// The sheet on the main window, its header the text.
    kShowSaveChangesSheet,
    /// Stops the sheet's modal session and closes it.
    kCloseSheet,
    kTurnCloseButtonOff,
    kTurnExportButtonOff,
    /// Shows the save panel.
    kBeginExport,
    /// Empties the photo list and clears the current photo.
    kForgetPhoto,
    /// The screen as it was built: `initialSetupView`, `setupAdjustParamView`.
    kRebuildScreen,
    /// Makes the file at the text current: `updateSelectedImageToBeFilteredWithPath`.
    kOpenPhoto,
    /// Runs the progress bar to its end and counts the export for the invitation to rate.
    kOfferRating,
    /// Says which file could not be written, and why.
    kReportFailure,
    kTerminate,
    /// The same through the application delegate's `terminateApp`.
    kTerminateApp,
  };

  Kind kind;
  std::string text = {};

  friend bool operator==(const UnsavedAction&, const UnsavedAction&) = default;
};
using UnsavedActions = std::vector<UnsavedAction>;

/// What the questions depend on beyond their own state, as it is at the moment of asking.
struct EditingFacts {
  /// Whether there is a current photo, and its name.
  bool hasPhoto = false;
  std::string fileName;
  /// Cleared by every run and by opening a photo.
  bool hasLastExportedImage = false;
  bool isRunningAlgorithm = false;
};

/// "Do you want to save the changes made to the document "%@" ?".
std::string saveChangesHeader(const std::string& fileName);

/// Decides what happens to work that is not saved, whenever a photo is opened, the window is
/// closed, the question is answered or an export moves on. Each event returns what to do, in order;
/// nothing is shown or opened here. Main thread.
///
/// A result counts as saved once a file with it was written and no run has started since. A photo
/// that waits for an answer or an export is opened only over saved work; cancelling the save panel
/// or a failed write leave it waiting, and Cancel or a request to close end its waiting.
class UnsavedChanges {
 public:
  explicit UnsavedChanges(std::function<EditingFacts()> facts) : facts_(std::move(facts)) {}

  /// A photo was chosen in the open panel, or dropped.
  UnsavedActions open(const std::string& path);
  /// `btnCloseWindowTapped`: the window's button and the window manager, or the menu's commands to
  /// close and to quit.
  UnsavedActions closeWindow(bool isFromMenu);

  /// The three answers; without the sheet they do nothing.
  UnsavedActions btnSaveChangesTapped();
  UnsavedActions btnDontSaveChangesTapped();
  UnsavedActions btnCancelChangesTapped();

  /// `btnExportDenoisedImageTapped`: refused without a photo, during a run and while an earlier
  /// export is not over.
  UnsavedActions exportRequested();
  /// The save panel was confirmed: the last export's result is written, or a run makes a new one.
  void exportConfirmed();
  void exportCancelled();
  /// The run of an export has given its result, which is written now.
  void exportRunFinished();
  UnsavedActions exportWritten();
  /// The run of an export had no result, or the file could not be written, and why.
  UnsavedActions exportFailed(const std::string& reason);

  bool isUnsaved() const;
  bool isSheetShown() const { return isSheetShown_; }
  bool isExportUnderWay() const { return exportPhase_ != ExportPhase::kNone; }

  /// A photo waits until the question is answered or the export is over.
  bool isExportingWithAddingNewImage = false;
  std::string imgPathToImportAfterExportWorkingImg;
  /// A request to close came from the menu.
  bool isQuitFromMenu = false;

 private:
  enum class ExportPhase { kNone, kPanel, kRun, kWriting };
  /// The program ends once what is being written is written: if there is nothing unsaved then, or
  /// whatever there is.
  enum class PendingEnd { kNone, kIfSaved, kAnyway };

  bool isSaved(const EditingFacts& facts) const;
  UnsavedActions askAbout(const EditingFacts& facts);
  UnsavedActions terminate(UnsavedAction::Kind kind, PendingEnd afterWriting);
  UnsavedActions openWaitingPhoto();
  void forgetWaitingPhoto();

  std::function<EditingFacts()> facts_;
  ExportPhase exportPhase_ = ExportPhase::kNone;
  bool isSheetShown_ = false;
  /// `lastExportedImage`, if there is one, is in a file.
  bool isLastExportedImageSaved_ = false;
  PendingEnd pendingEnd_ = PendingEnd::kNone;
};

}  // namespace velmara
