#include "session/unsaved_changes.h"

#include <QCoreApplication>
#include <QFile>

#include <utility>

namespace velmara {
namespace {

using Kind = UnsavedAction::Kind;

void append(UnsavedActions& actions, const UnsavedActions& more) {
  actions.insert(actions.end(), more.begin(), more.end());
}

}  // namespace

std::string saveChangesHeader(const std::string& fileName) {
  return QCoreApplication::translate("SaveChangesSheet",
                                     "Do you want to save the changes made to the document "
                                     "\"%1\" ?")
      .arg(QFile::decodeName(fileName.c_str()))
      .toStdString();
}

bool UnsavedChanges::isSaved(const EditingFacts& facts) const {
  return facts.hasLastExportedImage && isLastExportedImageSaved_;
}

bool UnsavedChanges::isUnsaved() const {
  const EditingFacts facts = facts_();
  return facts.hasPhoto && !isSaved(facts);
}

UnsavedActions UnsavedChanges::open(const std::string& path) {
  // The panel has to be answered first: what it will write is the photo of now.
  if (exportPhase_ == ExportPhase::kPanel) return {};
  pendingEnd_ = PendingEnd::kNone;
  const EditingFacts facts = facts_();
  if (!isSheetShown_ && (isSaved(facts) || !facts.hasPhoto)) return {{Kind::kOpenPhoto, path}};
  imgPathToImportAfterExportWorkingImg = path;
  isExportingWithAddingNewImage = true;
  return askAbout(facts);
}

UnsavedActions UnsavedChanges::closeWindow(bool isFromMenu) {
  if (isFromMenu) isQuitFromMenu = true;
  if (isSheetShown_ || exportPhase_ == ExportPhase::kPanel) return {};
  const EditingFacts facts = facts_();
  // Else "Don't Save" would open the photo that waits, where it is to close.
  forgetWaitingPhoto();
  if (facts.hasPhoto && !isSaved(facts)) return askAbout(facts);
  return terminate(isQuitFromMenu ? Kind::kTerminate : Kind::kTerminateApp, PendingEnd::kIfSaved);
}

UnsavedActions UnsavedChanges::askAbout(const EditingFacts& facts) {
  if (isSheetShown_) return {};
  isSheetShown_ = true;
  return {{Kind::kShowSaveChangesSheet, saveChangesHeader(facts.fileName)}};
}

UnsavedActions UnsavedChanges::terminate(Kind kind, PendingEnd afterWriting) {
  if (exportPhase_ == ExportPhase::kWriting) {
    pendingEnd_ = afterWriting;
    return {};
  }
  return {{kind}};
}

UnsavedActions UnsavedChanges::btnSaveChangesTapped() {
  if (!isSheetShown_) return {};
  isSheetShown_ = false;
  UnsavedActions actions{{Kind::kCloseSheet}, {Kind::kTurnCloseButtonOff}};
  append(actions, exportRequested());
  return actions;
}

UnsavedActions UnsavedChanges::btnDontSaveChangesTapped() {
  if (!isSheetShown_) return {};
  isSheetShown_ = false;
  UnsavedActions actions{{Kind::kCloseSheet}};
  if (isExportingWithAddingNewImage) {
    append(actions, {{Kind::kTurnCloseButtonOff},
                     {Kind::kForgetPhoto},
                     {Kind::kOpenPhoto, imgPathToImportAfterExportWorkingImg}});
    forgetWaitingPhoto();
  } else {
    append(actions, terminate(Kind::kTerminateApp, PendingEnd::kAnyway));
  }
  return actions;
}

UnsavedActions UnsavedChanges::btnCancelChangesTapped() {
  if (!isSheetShown_) return {};
  isSheetShown_ = false;
  forgetWaitingPhoto();
  return {{Kind::kCloseSheet}, {Kind::kTurnCloseButtonOff}};
}

UnsavedActions UnsavedChanges::exportRequested() {
  const EditingFacts facts = facts_();
  const bool mayExport = facts.hasPhoto && !facts.isRunningAlgorithm && !isExportUnderWay();
  if (!mayExport || isSheetShown_) return {{Kind::kTurnExportButtonOff}};
  exportPhase_ = ExportPhase::kPanel;
  return {{Kind::kBeginExport}};
}

void UnsavedChanges::exportConfirmed() {
  if (exportPhase_ != ExportPhase::kPanel) return;
  if (facts_().hasLastExportedImage) {
    exportPhase_ = ExportPhase::kWriting;
  } else {
    exportPhase_ = ExportPhase::kRun;
    isLastExportedImageSaved_ = false;
  }
}

void UnsavedChanges::exportCancelled() {
  if (exportPhase_ == ExportPhase::kPanel) exportPhase_ = ExportPhase::kNone;
}

void UnsavedChanges::exportRunFinished() {
  if (exportPhase_ == ExportPhase::kRun) exportPhase_ = ExportPhase::kWriting;
}

UnsavedActions UnsavedChanges::exportWritten() {
  if (exportPhase_ != ExportPhase::kWriting) return {};
  exportPhase_ = ExportPhase::kNone;
  isLastExportedImageSaved_ = true;
  const EditingFacts facts = facts_();
  const PendingEnd end = std::exchange(pendingEnd_, PendingEnd::kNone);
  if (end == PendingEnd::kAnyway) return {{Kind::kTerminateApp}};
  if (end == PendingEnd::kIfSaved) {
    return isSaved(facts) ? UnsavedActions{{Kind::kTerminateApp}} : askAbout(facts);
  }

  UnsavedActions actions{{Kind::kOfferRating}};
  if (!isSaved(facts)) {
    // A run has made the result another one since, or another photo is there.
    if (isExportingWithAddingNewImage && facts.hasPhoto) append(actions, askAbout(facts));
    return actions;
  }
  const bool wasSheetShown = isSheetShown_;
  if (wasSheetShown) append(actions, {{Kind::kCloseSheet}, {Kind::kTurnCloseButtonOff}});
  isSheetShown_ = false;
  if (isExportingWithAddingNewImage) {
    append(actions, openWaitingPhoto());
  } else if (wasSheetShown) {
    actions.push_back({isQuitFromMenu ? Kind::kTerminate : Kind::kTerminateApp});
  }
  return actions;
}

UnsavedActions UnsavedChanges::exportFailed(const std::string& reason) {
  if (exportPhase_ != ExportPhase::kRun && exportPhase_ != ExportPhase::kWriting) return {};
  exportPhase_ = ExportPhase::kNone;
  pendingEnd_ = PendingEnd::kNone;
  return {{Kind::kReportFailure, reason}};
}

UnsavedActions UnsavedChanges::openWaitingPhoto() {
  UnsavedActions actions{{Kind::kRebuildScreen},
                         {Kind::kOpenPhoto, imgPathToImportAfterExportWorkingImg}};
  forgetWaitingPhoto();
  return actions;
}

void UnsavedChanges::forgetWaitingPhoto() {
  isExportingWithAddingNewImage = false;
  imgPathToImportAfterExportWorkingImg.clear();
}

}  // namespace velmara
