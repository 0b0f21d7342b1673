#pragma once

#include "base/enum_set.h"

namespace velmara {

/// The controls of the main screen that a run or the lack of a photo takes away from the user.
enum class Control : unsigned {
  btnAddPhoto,
  btnExport,
  btnFitScreen,
  btn100Percent,
  btn200Percent,
  btnCloseWindow,
  btnMinimizeWindow,
  btnZoomWindow,
  btnZoomIn,
  btnZoomOut,
  btnSingleMode,
  btnSplitMode,
  btnDualMode,
  btnNoiseMode,
  btnAutoMode,
  btnDeepMode,
  sliderCustomDenoise,
};
/// How many there are.
inline constexpr unsigned kControlCount = 17;

/// Some of them.
using ControlSet = EnumSet<Control>;

/// What the window has to make true of its controls.
struct ControlStates {
  /// Greyed out and deaf.
  ControlSet disabled;
  /// Deaf to clicks, but looking as ever.
  ControlSet inert;
  /// Of `vwDragging`.
  bool isDropAreaHidden = false;
  /// Whether the window's edges may be dragged.
  bool isWindowResizable = true;

  /// Whether a click on the control, or its shortcut, does something.
  bool isAlive(Control control) const {
    return !disabled.contains(control) && !inert.contains(control);
  }

  friend bool operator==(const ControlStates&, const ControlStates&) = default;
};

/// Before any photo is shown.
ControlStates controlsWithoutPhoto();

/// When a photo or a region of it is shown: everything but the zoom-in button, which the end of a
/// run enables.
ControlStates controlsWithPhoto(ControlStates states);

/// During a run.
ControlStates controlsInRunningMode(ControlStates states);

/// After a run: what running and waiting took away is given back.
ControlStates controlsInDefaultMode(ControlStates states);

/// While a zoom or a pan has to settle.
ControlStates controlsWhileSettling(ControlStates states);

/// After one zoom step, until the next result arrives. The zoom-in button is disabled, the zoom-out
/// button only silenced: they differ on purpose.
ControlStates controlsAfterZoomIn(ControlStates states);
ControlStates controlsAfterZoomOut(ControlStates states);

}  // namespace velmara
