#pragma once

#include "app/main_screen/screen_services.h"

class QMenuBar;

namespace velmara {

class MainScreenViewController;

/// The menu bar of the main window. File commands reach the editing session as notifications; the
/// others press the screen's own controls, so that they obey the same guards. The caller owns it.
QMenuBar* makeMainMenu(MainScreenViewController& screen, const ScreenServices& services);

}  // namespace velmara
