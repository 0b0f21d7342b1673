#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

#include "session/unsaved_changes.h"

namespace velmara::testing_support {

/// A window without widgets that does what the questions decide. It keeps its own account of which
/// result is in a file, so that lost work shows.
class UnsavedWindow {
 public:
  // -- What the user and the machine do.
  void open(const std::string& path) { carryOut(changes.open(path)); }
  void close() { carryOut(changes.closeWindow(false)); }
  void quit() { carryOut(changes.closeWindow(true)); }
  void requestExport() { carryOut(changes.exportRequested()); }
  void save() { carryOut(changes.btnSaveChangesTapped()); }
  void dontSave() {
    mayDiscard_ = mayDiscard_ || changes.isSheetShown();
    carryOut(changes.btnDontSaveChangesTapped());
    mayDiscard_ = mayDiscard_ && isWriting_;
  }
  void cancel() { carryOut(changes.btnCancelChangesTapped()); }

  void confirmExport() {
    if (!std::exchange(isPanelOpen, false)) return;
    changes.exportConfirmed();
    exported_ = result_;
    if (facts.hasLastExportedImage) {
      isWriting_ = true;
    } else {
      isExportRun_ = true;
      startRun();
      exported_ = result_;
    }
  }
  void cancelExport() {
    if (!std::exchange(isPanelOpen, false)) return;
    changes.exportCancelled();
  }
  /// The run under way, if any, has its result.
  void finishRun() {
    if (!std::exchange(facts.isRunningAlgorithm, false) || !std::exchange(isExportRun_, false)) {
      return;
    }
    facts.hasLastExportedImage = exported_ == result_;
    changes.exportRunFinished();
    isWriting_ = true;
  }
  void written() {
    if (!std::exchange(isWriting_, false)) return;
    inFile_.insert(exported_);
    carryOut(changes.exportWritten());
    mayDiscard_ = false;
  }
  void writeFailed() {
    if (!std::exchange(isWriting_, false)) return;
    carryOut(changes.exportFailed("the disk is full"));
    mayDiscard_ = false;
  }
  /// A preview run: the result becomes another one.
  void changeLevel() {
    if (facts.hasPhoto && !facts.isRunningAlgorithm && !isPanelOpen && !changes.isSheetShown()) {
      startRun();
    }
  }

  bool hasUnsavedWork() const { return facts.hasPhoto && !inFile_.contains(result_); }

  EditingFacts facts;
  UnsavedChanges changes{[this] { return facts; }};
  bool isPanelOpen = false;
  bool hasEnded = false;
  int lost = 0;
  int failuresShown = 0;
  /// What the last event had done, in words.
  std::string done;

 private:
  void startRun() {
    facts.isRunningAlgorithm = true;
    facts.hasLastExportedImage = false;
    ++result_;
  }

  void discard() {
    if (hasUnsavedWork() && !mayDiscard_) ++lost;
  }

  void carryOut(const UnsavedActions& actions) {
    done.clear();
    for (const UnsavedAction& action : actions) {
      carryOut(action);
      if (!done.empty()) done += ", ";
      done += kWords.at(action.kind);
      if (action.kind == UnsavedAction::Kind::kOpenPhoto) done += " " + action.text;
    }
  }

  void carryOut(const UnsavedAction& action) {
    using Kind = UnsavedAction::Kind;
    switch (action.kind) {
      case Kind::kBeginExport:
        isPanelOpen = true;
        break;
      case Kind::kForgetPhoto:
        discard();
        facts.hasPhoto = false;
        break;
      case Kind::kRebuildScreen:
        facts.hasLastExportedImage = false;
        break;
      case Kind::kOpenPhoto:
        discard();
        facts.hasPhoto = true;
        facts.fileName = action.text;
        facts.hasLastExportedImage = false;
        ++result_;
        break;
      case Kind::kReportFailure:
        ++failuresShown;
        break;
      case Kind::kTerminate:
      case Kind::kTerminateApp:
        discard();
        if (isWriting_) ++lost;
        hasEnded = true;
        break;
      default:
        break;
    }
  }

  static inline const std::map<UnsavedAction::Kind, std::string> kWords{
      {UnsavedAction::Kind::kShowSaveChangesSheet, "ask"},
      {UnsavedAction::Kind::kCloseSheet, "close sheet"},
      {UnsavedAction::Kind::kTurnCloseButtonOff, "close off"},
      {UnsavedAction::Kind::kTurnExportButtonOff, "export off"},
      {UnsavedAction::Kind::kBeginExport, "panel"},
      {UnsavedAction::Kind::kForgetPhoto, "forget"},
      {UnsavedAction::Kind::kRebuildScreen, "rebuild"},
      {UnsavedAction::Kind::kOpenPhoto, "open"},
      {UnsavedAction::Kind::kOfferRating, "rate"},
      {UnsavedAction::Kind::kReportFailure, "failure"},
      {UnsavedAction::Kind::kTerminate, "terminate"},
      {UnsavedAction::Kind::kTerminateApp, "terminateApp"},
  };

  bool isExportRun_ = false;
  bool isWriting_ = false;
  bool mayDiscard_ = false;
  int result_ = 0;
  int exported_ = -1;
  std::set<int> inFile_;
};

}  // namespace velmara::testing_support
