#include "session/edit_table.h"

#include "base/enum_set.h"

namespace velmara {
namespace {

using States = EnumSet<EditState>;
using Talks = EnumSet<EditTalk>;
using enum EditState;
using enum EditTalk;
using enum EditEvent;
using enum EditAction;

// The state or the question as they were.
template <typename Enum>
constexpr std::optional<Enum> kStays = std::nullopt;
constexpr auto kSame = kStays<EditState>;
constexpr auto kStill = kStays<EditTalk>;

struct Row {
  States states;
  Talks talks;
  EditEvent event;
  std::optional<EditState> nextState;
  std::optional<EditTalk> nextTalk;
  EditActions actions = {};
};

constexpr States kAny{kEmpty, kLoading, kUnsaved, kSaved, kRunning, kExportDue, kExporting};
constexpr States kIdle{kUnsaved, kSaved};
constexpr States kNothingToLose{kEmpty, kSaved};
constexpr States kToLose = kAny.without(kNothingToLose);
// Asked for already: answering "Save" has nothing to add.
constexpr States kBeingSaved{kExportDue, kExporting};
constexpr Talks kWhatever{kNone, kAskingToOpen, kAskingToClose, kPanel};
constexpr Talks kSheet{kAskingToOpen, kAskingToClose};
constexpr Talks kQuiet{kNone};

// The first row that fits counts; what fits none means nothing. While the panel is shown, it has to
// be answered first: what it will write is the photo of now.
// clang-format off
constexpr Row kTable[] = {
    // in these states         while            this event        leads to    and             does
    // Opening.
    {kNothingToLose,           kQuiet,           kOpen,            kSame,      kStill,         {kOpenPhoto}},
    {kToLose,                  kQuiet,           kOpen,            kSame,      kAskingToOpen,  {kLetWait, kAsk}},
    {kAny,                     kSheet,           kOpen,            kSame,      kAskingToOpen,  {kLetWait}},
    {kAny,                     kWhatever,        kBecameCurrent,   kLoading,   kNone},
    {{kEmpty},                 kWhatever,        kRefused,         kSame,      kStill,         {kForgetPhoto}},
    {{kLoading},               kWhatever,        kLoaded,          kUnsaved,   kStill,         {kShowPhoto}},
    {{kExportDue},             kWhatever,        kLoaded,          kExporting, kStill,         {kShowPhoto, kExport}},
    {{kLoading, kExportDue},   kWhatever,        kUnreadable,      kEmpty,     kNone,          {kCloseSheet, kClosePanel, kForgetPhoto, kTellUnreadable, kOpenWaiting}},
    // Filtering what is seen.
    {kIdle,                    kWhatever,        kRunStarted,      kRunning,   kStill},
    {{kRunning},               kWhatever,        kRunEnded,        kUnsaved,   kStill},
    {{kExportDue},             kWhatever,        kRunEnded,        kExporting, kStill,         {kExport}},
    // Exporting.
    {kIdle,                    kQuiet,           kSave,            kSame,      kPanel,         {kShowPanel}},
    {kAny,                     kWhatever,        kSave,            kSame,      kStill,         {kTurnExportButtonOff}},
    {kIdle,                    {kPanel},         kPanelConfirmed,  kExporting, kNone,          {kExport}},
    {{kLoading, kRunning},     {kPanel},         kPanelConfirmed,  kExportDue, kNone},
    {kAny,                     {kPanel},         kPanelCancelled,  kSame,      kNone},
    {{kExporting},             {kAskingToClose}, kWritten,         kSaved,     kNone,          {kCloseSheet, kTellSaved, kOfferRating, kTerminate}},
    {{kExporting},             kWhatever,        kWritten,         kSaved,     kNone,          {kCloseSheet, kTellSaved, kOfferRating, kOpenWaiting}},
    {{kExporting},             kWhatever,        kWriteFailed,     kUnsaved,   kStill,         {kTellFailure}},
    {{kExporting},             kQuiet,           kWriteCancelled,  kUnsaved,   kStill,         {kForgetWaiting}},
    {{kExporting},             kSheet,           kWriteCancelled,  kUnsaved,   kStill},
    // Leaving.
    {kNothingToLose,           kQuiet,           kClose,           kSame,      kStill,         {kTerminate}},
    {kToLose,                  kQuiet,           kClose,           kSame,      kAskingToClose, {kForgetWaiting, kAsk}},
    {kBeingSaved,              kSheet,           kSaveChanges,     kSame,      kNone,          {kCloseSheet}},
    {kAny,                     kSheet,           kSaveChanges,     kSame,      kPanel,         {kCloseSheet, kShowPanel}},
    {kAny,                     {kAskingToOpen},  kDontSave,        kEmpty,     kNone,          {kCloseSheet, kForgetPhoto, kOpenWaiting}},
    {kAny,                     {kAskingToClose}, kDontSave,        kSame,      kNone,          {kCloseSheet, kStopWork, kTerminate}},
    {kAny,                     kSheet,           kCancel,          kSame,      kNone,          {kCloseSheet, kForgetWaiting}},
};
// clang-format on

}  // namespace

std::optional<EditStep> editStep(EditState state, EditTalk talk, EditEvent event) {
  for (const Row& row : kTable) {
    if (row.event == event && row.states.contains(state) && row.talks.contains(talk)) {
      return EditStep{row.nextState.value_or(state), row.nextTalk.value_or(talk), row.actions};
    }
  }
  return std::nullopt;
}

}  // namespace velmara
