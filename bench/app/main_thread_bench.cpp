// main_thread_bench PHOTO [ROUNDS]: the real window works on a photo, and how long its main thread
// keeps others waiting is printed step by step, before that the time from opening it to its first
// result beside that of reading it and filtering what is seen of it. With ROUNDS the photo is
// opened and denoised that often, and memory and open descriptors are printed along the way: both
// must stay flat.
#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include "app/main_screen/main_screen_view_controller.h"
#include "app/main_window_controller.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/image_writer.h"
#include "imaging/initialise.h"
#include "imaging/utils.h"
#include "platform/dispatch.h"
#include "platform/user_defaults.h"
#include "support/scratch_folder.h"
#include "support/scripted_desktop.h"
#include "watched_application.h"
#include "widgets/app_store_window.h"
#include "widgets/style.h"

namespace velmara {
namespace {

EngineEnvironment engineEnvironment() {
  EngineEnvironment environment;
  environment.workers = &globalQueue();
  environment.mainQueue = &mainQueue();
  environment.recompressJpeg = recompressJpeg;
  return environment;
}

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Waits as the program does, in the event loop; QTest's waits poll and would be measured.
void serve(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

/// The window with a scripted desktop around it.
class Desk {
 public:
  Desk()
      : algorithm_(engineEnvironment()),
        engine_(algorithm_),
        session_(EditingServices{{engine_, mainQueue(), globalQueue(), [](const std::string&) {},
                                  [] { return Image(); }},
                                 eventLoopTimers(),
                                 alerts_,
                                 defaults_,
                                 workspace_,
                                 mainBundle(),
                                 {},
                                 [] {},
                                 [] {}}),
        controller_(ScreenServices{session_, mainQueue(), globalQueue(), eventLoopTimers(), center_,
                                   alerts_, panels_, workspace_, mainBundle(),
                                   [](const std::string&) {}, folder_.path().string() + "/", [] {},
                                   [] {}, [] {}, [] {}, [] {}, [] {}, [] {}}) {
    controller_.windowMain()->resize(1220, 700);
    controller_.showWindow();
    settle();
  }

  MainScreenViewController& screen() { return *controller_.viewController(); }
  AppStoreWindow& window() { return *controller_.windowMain(); }
  QWidget& view(const char* name) { return *window().findChild<QWidget*>(QLatin1String(name)); }
  void click(const char* name) { QTest::mouseClick(&view(name), Qt::LeftButton); }

  void open(const std::string& path) {
    // Opened without the question about the photo before.
    session_.updateSelectedImageToBeFilteredWithPath(path);
    waitForResult();
  }
  /// Milliseconds from opening a photo to its result on the screen.
  double millisecondsToResult(const std::string& path) {
    const auto start = Clock::now();
    session_.updateSelectedImageToBeFilteredWithPath(path);
    do {
      serve(1);
    } while (!screen().preview().isResultShown());
    const double spent = millisecondsSince(start);
    waitForResult();
    return spent;
  }
  /// Milliseconds of reading the photo's pixels and filtering a picture as large as the preview's.
  double millisecondsOfWork(const std::string& path) {
    double spent = 0.0;
    std::atomic<bool> isDone = false;
    // The filter's end goes through the main thread.
    const std::jthread work([&] {
      PhotoJobRequest request;
      auto photo = openPhoto(path).value();
      const auto start = Clock::now();
      request.photo = loadPixels(std::move(photo)).value();
      spent = millisecondsSince(start);
      const Size area = {static_cast<double>(view("vwPreviewContainer").width()),
                         static_cast<double>(view("vwPreviewContainer").height())};
      const Size size = request.photo->image.size();
      const double scale = std::min(area.width / size.width, area.height / size.height);
      request.region = Utils::sharedUtils().scaleImage(request.photo->image,
                                                       {size.width * scale, size.height * scale});
      request.psnrOfRealImage = session_.psnrOfRealImage();
      JobControl control;
      const auto result = runPhotoJob(
          request, {engine_, mainQueue(), globalQueue(), [](const std::string&) {}, {}}, control);
      spent += 1e3 * result.seconds[static_cast<int>(PhotoStep::filter)];
      isDone = true;
    });
    while (!isDone) serve(1);
    return spent;
  }
  void waitForResult() {
    for (int tries = 0; !isResultShown(); ++tries) {
      if (tries == 3000) {
        std::fprintf(stderr, "no result\n");
        std::_Exit(1);
      }
      serve(20);
    }
    settle();
  }
  /// Exports the photo as JPEG; the seconds from the panel's answer to the file.
  double exportPhoto() {
    const std::string path = folder_.file("exported.jpg");
    click("btnExport");
    const auto start = Clock::now();
    panels_.answerSave(path);
    while (!std::filesystem::exists(path)) serve(10);
    return 1e-3 * millisecondsSince(start);
  }
  static void settle() { serve(150); }

 private:
  bool isResultShown() {
    return !session_.isRunningAlgorithm() && screen().preview().isResultShown() &&
           (view("vwDenoisedPreview").isVisible() || view("vwDenoisedPreviewForDual").isVisible());
  }

  testing_support::ScratchFolder folder_;
  DenoiseAlgoImplementation algorithm_;
  AlgorithmEngine engine_;
  NotificationCenter center_;
  testing_support::ScriptedAlerts alerts_;
  testing_support::ScriptedPanels panels_;
  testing_support::RecordingWorkspace workspace_;
  UserDefaults defaults_{folder_.file("settings.ini")};
  EditingSession session_;
  MainWindowController controller_;
};

void measure(WatchedApplication& application, const char* step, const std::function<void()>& work) {
  application.takeBusyTimes();
  // Inside the event loop, as what a user does.
  QEventLoop loop;
  QTimer::singleShot(0, &loop, [&] {
    work();
    loop.quit();
  });
  loop.exec();
  const BusyTimes times = application.takeBusyTimes();
  std::printf("%-22s longest wait %6.1f ms, longest event %6.1f ms: %s\n", step, times.longestWait,
              times.longestEvent, times.event.c_str());
  std::fflush(stdout);
}

void drag(Desk& desk) {
  QWidget& area = desk.view("vwPreviewContainer");
  QTest::mousePress(&area, Qt::LeftButton, {}, {500, 300});
  for (int i = 1; i <= 60; ++i) {
    QTest::mouseMove(&area, {500 - 4 * i, 300 - 2 * i});
    serve(1);
  }
  QTest::mouseRelease(&area, Qt::LeftButton, {}, {260, 180});
}

// "VmRSS:" is what the process has in memory, "VmHWM:" the most it ever had.
long kilobytes(const std::string& field) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind(field, 0) == 0) return std::atol(line.c_str() + field.size());
  }
  return 0;
}

void measureSteps(WatchedApplication& application, Desk& desk, const std::string& photo) {
  const auto clickAndWait = [&](const char* name) {
    return [&desk, name] {
      desk.click(name);
      desk.waitForResult();
    };
  };
  measure(application, "first opening", [&] { desk.open(photo); });
  measure(application, "second opening", [&] { desk.open(photo); });
  measure(application, "fit, zoom in", clickAndWait("btnZoomIn"));
  measure(application, "fit, zoom out", clickAndWait("btnZoomOut"));
  measure(application, "actual size", clickAndWait("btn100Percent"));
  measure(application, "double size", clickAndWait("btn200Percent"));
  measure(application, "drag at double size", [&] {
    drag(desk);
    desk.waitForResult();
  });
  measure(application, "split style", clickAndWait("btnSplitMode"));
  measure(application, "fit to screen", clickAndWait("btnFitScreen"));
  measure(application, "another level", [&] {
    desk.screen().changeLevel(3);
    desk.waitForResult();
  });
  double seconds = 0.0;
  measure(application, "export", [&] { seconds = desk.exportPhoto(); });
  std::printf("%-22s took %.2f s; the most memory until now %ld KB\n", "", seconds,
              kilobytes("VmHWM:"));
  measure(application, "window resize", [&] {
    for (int i = 1; i <= 20; ++i) {
      desk.window().resize(1220 + 4 * i, 700 + 2 * i);
      serve(15);
    }
    desk.waitForResult();
  });
}

// The least of five, in turns.
void measureOpening(Desk& desk, const std::string& photo) {
  double opening = 1e9;
  double work = 1e9;
  desk.open(photo);
  for (int i = 0; i < 5; ++i) {
    opening = std::min(opening, desk.millisecondsToResult(photo));
    work = std::min(work, desk.millisecondsOfWork(photo));
  }
  std::printf("from opening to result %.1f ms, reading and filtering alone %.1f ms: %.2f\n",
              opening, work, opening / work);
}

long openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

void repeat(Desk& desk, const std::string& photo, int rounds) {
  for (int round = 1; round <= rounds; ++round) {
    desk.open(photo);
    if (round % 20 == 0 || round == 1) {
      std::printf("round %3d: %ld KB resident, %ld descriptors\n", round, kilobytes("VmRSS:"),
                  openDescriptors());
      std::fflush(stdout);
    }
  }
}

}  // namespace
}  // namespace velmara

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: main_thread_bench PHOTO [ROUNDS]\n");
    return 2;
  }
  velmara::WatchedApplication application(argc, argv);
  velmara::style::apply(application);
  velmara::initialiseImaging();
  const std::string photo = std::filesystem::absolute(argv[1]).string();
  velmara::Desk desk;
  if (argc > 2) {
    velmara::repeat(desk, photo, std::atoi(argv[2]));
  } else {
    velmara::measureOpening(desk, photo);
    velmara::measureSteps(application, desk, photo);
  }
  std::fflush(stdout);
  // As the program ends.
  std::_Exit(0);
}
