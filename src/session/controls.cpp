#include "session/controls.h"

namespace velmara {
namespace {

constexpr ControlSet kNeedPhoto{
    Control::btnExport,    Control::btn100Percent, Control::btn200Percent,
    Control::btnFitScreen, Control::btnSingleMode, Control::btnSplitMode,
    Control::btnDualMode,  Control::btnNoiseMode,  Control::btnAutoMode,
    Control::btnDeepMode,  Control::btnZoomOut,    Control::sliderCustomDenoise};

constexpr ControlSet kInertWhileRunning{
    Control::btnAddPhoto,       Control::btnExport,     Control::btnFitScreen,
    Control::btn100Percent,     Control::btn200Percent, Control::btnCloseWindow,
    Control::btnMinimizeWindow, Control::btnZoomWindow, Control::btnZoomIn,
    Control::btnZoomOut,        Control::btnSingleMode, Control::btnSplitMode,
    Control::btnDualMode,       Control::btnNoiseMode,  Control::btnAutoMode,
    Control::btnDeepMode};

constexpr ControlSet kDisabledWhileRunning{Control::btnZoomIn, Control::sliderCustomDenoise};

constexpr ControlSet kInertWhileSettling{Control::btnZoomIn, Control::btnZoomOut,
                                         Control::btnAutoMode, Control::btnDeepMode};

}  // namespace

ControlStates controlsWithoutPhoto() {
  ControlStates states;
  states.disabled = kNeedPhoto.with({Control::btnZoomIn});
  return states;
}

ControlStates controlsWithPhoto(ControlStates states) {
  states.disabled = states.disabled.without(kNeedPhoto);
  return states;
}

ControlStates controlsInRunningMode(ControlStates states) {
  states.inert = states.inert.with(kInertWhileRunning);
  states.disabled = states.disabled.with(kDisabledWhileRunning);
  states.isDropAreaHidden = true;
  states.isWindowResizable = false;
  return states;
}

ControlStates controlsInDefaultMode(ControlStates states) {
  states.inert = states.inert.without(kInertWhileRunning);
  states.disabled = states.disabled.without(kDisabledWhileRunning);
  states.isDropAreaHidden = false;
  states.isWindowResizable = true;
  return states;
}

ControlStates controlsWhileSettling(ControlStates states) {
  states.inert = states.inert.with(kInertWhileSettling);
  states.disabled = states.disabled.with({Control::sliderCustomDenoise});
  return states;
}

ControlStates controlsAfterZoomIn(ControlStates states) {
  states.disabled = states.disabled.with({Control::btnZoomIn});
  return states;
}

ControlStates controlsAfterZoomOut(ControlStates states) {
  states.inert = states.inert.with({Control::btnZoomOut});
  return states;
}

}  // namespace velmara
