#pragma once

#include <array>
#include <optional>

namespace velmara {

/// Where the one photo stands.
enum class EditState {
  kEmpty,      ///< no photo is open
  kLoading,    ///< a photo is current, its pixels are on their way
  kUnsaved,    ///< nothing is under way; the result that is seen is in no file
  kSaved,      ///< nothing is under way; the last result is in a file
  kRunning,    ///< the visible region is filtered
  kExportDue,  ///< as kLoading or kRunning, and what is to be saved is saved after that
  kExporting,  ///< the whole photo is filtered and written, or its last result only written
};

/// What the user is asked meanwhile.
enum class EditTalk {
  kNone,
  kAskingToOpen,   ///< the sheet about unsaved changes; another photo waits for the answer
  kAskingToClose,  ///< the same; the window waits
  kPanel,          ///< the save panel
};

/// What happens to the edit.
enum class EditEvent {
  kOpen,           ///< a photo was chosen or dropped
  kBecameCurrent,  ///< it is a picture by its headers
  kRefused,        ///< it is none
  kLoaded,
  kUnreadable,  ///< its headers were those of a picture, but the rest was not
  kRunStarted,
  kRunEnded,  ///< with or without a result; the controls are back
  kSave,      ///< the button or the menu's command
  kPanelConfirmed,
  kPanelCancelled,
  kWritten,
  kWriteFailed,     ///< the export's run had no result, or its file could not be written
  kWriteCancelled,  ///< the user stopped the export
  kClose,
  kSaveChanges,  ///< the three answers
  kDontSave,
  kCancel,
};

/// What the session does because of an event.
enum class EditAction {
  kNothing,
  kOpenPhoto,  ///< makes the chosen file current
  kLetWait,    ///< parks the chosen file until the question is answered or the export is over
  kForgetWaiting,
  kOpenWaiting,  ///< opens the parked file, if there is one
  kShowPhoto,
  kForgetPhoto,  ///< shows the empty screen
  kTellUnreadable,
  kAsk,  ///< shows the sheet
  kCloseSheet,
  kShowPanel,
  kClosePanel,
  kTurnExportButtonOff,
  kExport,
  kStopWork,
  kTellSaved,
  kTellFailure,
  kOfferRating,
  kTerminate,
};

/// What one event leads to, at most.
using EditActions = std::array<EditAction, 6>;

/// What an event leads to.
struct EditStep {
  /// Where the event leads to.
  EditState state;
  EditTalk talk;
  /// In order; filled up with kNothing.
  EditActions actions;
};

/// The step of an event; nothing where it has no meaning. All that happens to the photo and to work
/// that is in no file is decided here: nobody else keeps a state.
std::optional<EditStep> editStep(EditState state, EditTalk talk, EditEvent event);

}  // namespace velmara
