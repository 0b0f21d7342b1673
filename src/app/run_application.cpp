#include "app/run_application.h"

#include <QApplication>
#include <QLocale>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "app/app_delegate.h"
#include "app/translations.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/image_writer.h"
#include "imaging/initialise.h"
#include "platform/bundle.h"
#include "platform/dispatch.h"
#include "platform/ending_signals.h"
#include "platform/hand_over.h"
#include "platform/log.h"
#include "platform/temporary_files.h"
#include "platform/timer.h"
#include "platform/user_defaults.h"
#include "widgets/app_store_window.h"
#include "widgets/desktop_alerts.h"
#include "widgets/desktop_panels.h"
#include "widgets/desktop_workspace.h"
#include "widgets/style.h"

namespace velmara {
namespace {

constexpr Seconds kLateDelay(0.3);

void installEngine() {
  EngineEnvironment environment;
  environment.workers = &globalQueue();
  environment.mainQueue = &mainQueue();
  environment.log = [](const std::string& line) { logLine(line); };
  environment.recompressJpeg = recompressJpeg;
  DenoiseAlgoImplementation::installSharedEnvironment(std::move(environment));
}

}  // namespace

// A window that is drawn nowhere is on no display.
std::string firstWindowAddress() {
  std::string display;
  for (const char* name : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"}) {
    display += qgetenv(name).toStdString() + '\n';
  }
  return handOverAddress(display);
}

int runApplication(int argc, char** argv, const std::string& photo,
                   const ServiceAddresses& addresses) {
  redirectStandardErrorToLogFile(homeDirectory(), mainBundle().CFBundleName);
  std::signal(SIGPIPE, SIG_IGN);  // A peer that goes away is an error of the write, not the end.
  QApplication application(argc, argv);
  const EndingSignals endingSignals;
  // The toolkit takes the user's locale over; numbers in files and the log keep their point.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setApplicationName(QStringLiteral("velmara"));
  QApplication::setApplicationDisplayName(QString::fromStdString(mainBundle().CFBundleName));
  QApplication::setDesktopFileName(QString::fromStdString(mainBundle().bundleIdentifier));
  // The delegate ends the program, which it may refuse.
  QApplication::setQuitOnLastWindowClosed(false);
  const Translations translations{QLocale()};
  style::apply(application);
  installEngine();

  DesktopAlerts alerts;
  DesktopPanels panels;
  DesktopWorkspace workspace;
  UserDefaults defaults(userDefaultsPath());
  const AlgorithmEngine engine(DenoiseAlgoImplementation::sharedInstance());
  AppDelegate delegate({.engine = engine,
                        .alerts = alerts,
                        .panels = panels,
                        .workspace = workspace,
                        .defaults = defaults,
                        .addresses = addresses});
  delegate.applicationDidFinishLaunching();
  // The first photo finds the decoders loaded, but the window did not wait for them.
  eventLoopTimers().after(&application, "initialiseImaging", kLateDelay, [] {
    globalQueue().async([] {
      initialiseImaging();
      removeUnfinishedFiles();
    });
  });
  if (!photo.empty()) {
    mainQueue().async([&delegate, photo] { delegate.session().photoDraggedWithPath(photo); });
  }
  alerts.setMainWindow(delegate.windowMain());
  panels.setMainWindow(delegate.windowMain());

  // After the answer, which an alert about the photo would keep back.
  const auto openHanded = [&delegate](const std::string& handed) {
    mainQueue().async([&delegate, handed] {
      delegate.showAppInFront();
      delegate.session().photoDraggedWithPath(handed);
    });
  };
  auto seat = std::make_unique<HandOverSeat>(
      firstWindowAddress(),
      HandOverSeat::Window{[&delegate] { return delegate.mayOpenHandedPhoto(); }, openHanded});

  const int exitCode = QApplication::exec();
  seat.reset();
  delegate.endServices();
  // A run under way waits for this thread to take its result and would keep the process from
  // ending; what it works on is its own, and files are whole or not there.
  removeTemporaryDirectory();
  std::_Exit(exitCode);
}

}  // namespace velmara
