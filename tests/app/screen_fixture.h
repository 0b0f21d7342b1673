#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "app/main_screen/main_screen_view_controller.h"
#include "app/main_window_controller.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/image_reader.h"
#include "imaging/image_writer.h"
#include "platform/dispatch.h"
#include "platform/user_defaults.h"
#include "support/event_loop.h"
#include "support/scratch_folder.h"
#include "support/scripted_desktop.h"
#include "widgets/app_store_window.h"

namespace velmara::testing_support {

/// The real engine behind a gate: a run waits until the test lets it through. Counts its runs.
class GatedEngine final : public DenoiseEngine {
 public:
  GatedEngine() : algorithm_(environment()) {}

  Image denoise(const Image& image, const FilterParameters& parameters,
                const RunWatch& watch = {}) const override {
    {
      const std::scoped_lock lock(mutex_);
      last_ = parameters;
    }
    ++runs_;
    isOpen_.wait(false);
    return givesNothing ? Image() : AlgorithmEngine(algorithm_).denoise(image, parameters, watch);
  }
  double psnr(const Image& image) const override { return AlgorithmEngine(algorithm_).psnr(image); }
  std::int64_t processingSpeed(const Image&, const FilterParameters&, JobControl*) const override {
    return 1'000'000;
  }

  void close() { isOpen_ = false; }
  void open() {
    isOpen_ = true;
    isOpen_.notify_all();
  }
  int runs() const { return runs_; }
  FilterParameters last() const {
    const std::scoped_lock lock(mutex_);
    return last_;
  }

  std::atomic<bool> givesNothing = false;

 private:
  static EngineEnvironment environment() {
    EngineEnvironment e;
    e.workers = &globalQueue();
    e.mainQueue = &mainQueue();
    e.recompressJpeg = recompressJpeg;
    return e;
  }
  DenoiseAlgoImplementation algorithm_;
  mutable std::mutex mutex_;
  mutable FilterParameters last_;
  mutable std::atomic<int> runs_ = 0;
  std::atomic<bool> isOpen_ = true;
};

/// The event loop's timers in a hurry: what a user would wait for passes in a fraction of its time,
/// in the same order. What is to be read a while stays.
class HurriedTimers final : public Scheduler {
 public:
  std::unique_ptr<Timer> start(Seconds interval, bool repeats,
                               std::function<void()> handler) override {
    return eventLoopTimers().start(hurried(interval), repeats, std::move(handler));
  }
  void after(const void* context, std::string_view key, Seconds delay,
             std::function<void()> action) override {
    eventLoopTimers().after(context, key, hurried(delay), std::move(action));
  }
  void cancel(const void* context, std::string_view key) override {
    eventLoopTimers().cancel(context, key);
  }

 private:
  static Seconds hurried(Seconds time) { return time > Seconds(2) ? time : time / 6.0; }
};

/// The main window as the program makes it, offscreen, with the desktop's part scripted.
class ScreenTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto log = [this](const std::string& line) { note(line); };
    session_ = std::make_unique<EditingSession>(
        EditingServices{{engine, mainQueue(), globalQueue(), log, [] { return Image(); }},
                        timers,
                        alerts,
                        defaults,
                        workspace,
                        mainBundle(),
                        "appstream://velmara",
                        [this] { ++terminations; },
                        [this] { ++shownInFront; },
                        temporaryDirectory()});
    controller_ = std::make_unique<MainWindowController>(
        ScreenServices{*session_, mainQueue(), globalQueue(), timers, center, alerts, panels,
                       workspace, mainBundle(), log, temporaryDirectory(),
                       [this] { center.post(notifications::kOpenPhotoFromMenuTapped); },
                       [this] { center.post(notifications::kClosePhotoFromMenuTapped); },
                       [this] { center.post(notifications::kSavePhotoFromMenuTapped); },
                       [this] { center.post(notifications::kSavePhotoFromMenuTapped); },
                       [this] { ++feedbacks; }, [this] { ++helps; }, [this] { ++batches; }});
    controller_->windowMain()->setGeometry(0, 0, 1220, 700);
    controller_->showWindow();
    QApplication::processEvents();
  }
  void TearDown() override {
    if (HasFailure()) {
      for (const std::string& line : log()) std::fprintf(stderr, "log: %s\n", line.c_str());
    }
    engine.open();
    EXPECT_TRUE(waitUntil([this] { return !session().isRunningAlgorithm(); }));
    controller_.reset();
    session_.reset();
    EXPECT_TRUE(waitUntil(isGlobalQueueIdle));
  }

  virtual std::string temporaryDirectory() const { return temporary.path().string() + "/"; }
  EditingSession& session() { return *session_; }
  MainScreenViewController& screen() { return *controller_->viewController(); }
  AppStoreWindow& window() { return *controller_->windowMain(); }
  template <typename View = QWidget>
  View& view(const char* name) {
    auto* found = window().findChild<View*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  void click(const char* name) {
    QTest::mouseClick(&view(name), Qt::LeftButton);
    QApplication::processEvents();
  }

  /// Serves the event loop until the condition holds; false if it never does.
  static bool waitUntil(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, kPatience);
  }
  /// Opens a photo and waits until its result is on the screen.
  bool openAndWait(const std::string& path) {
    screen().photoDraggedWithPath(path);
    return waitForResult();
  }
  /// The same for what was done to an open one; the file of the visible region is there too.
  bool waitForResult() {
    return waitUntil([this] {
      return isGlobalQueueIdle() && !session().isRunningAlgorithm() &&
             screen().preview().isResultShown() &&
             (view("vwDenoisedPreview").isVisible() ||
              view("vwDenoisedPreviewForDual").isVisible());
    });
  }
  /// Waits for one more run than there were, and its result.
  bool waitForRun(int runsBefore) {
    return waitUntil([&] { return engine.runs() == runsBefore + 1; }) && waitForResult();
  }
  /// What is seen of the photo, from the file that is written beside the run.
  Image regionSeen() {
    EXPECT_TRUE(waitUntil(isGlobalQueueIdle));
    QApplication::processEvents();
    const auto& file = session().selectedImageFileToProccessing();
    const auto image = file ? readImage(file->filePath) : Result<Image>(Error{"no region"});
    EXPECT_TRUE(image.ok());
    return image ? *image : Image();
  }
  /// What the engine makes of a picture with the last run's parameters.
  Image filtered(const Image& region) {
    Image result;
    std::atomic<bool> isDone = false;
    globalQueue().async([&] {
      result = engine.denoise(region, engine.last());
      isDone = true;
    });
    EXPECT_TRUE(waitUntil([&] { return isDone.load(); }));
    EXPECT_TRUE(result.isValid());
    return result;
  }
  /// A photo-like noisy picture as a file.
  std::string photo(const std::string& name = "photo.png") {
    std::string path = folder.file(name);
    if (!std::filesystem::exists(path)) std::filesystem::copy_file(VELMARA_DATA "/noisy.png", path);
    return path;
  }
  void note(const std::string& line) {
    const std::scoped_lock lock(logMutex_);
    log_.push_back(line);
  }
  std::vector<std::string> log() const {
    const std::scoped_lock lock(logMutex_);
    return log_;
  }

  ScratchFolder folder{inMemory()};
  ScratchFolder temporary{inMemory()};
  GatedEngine engine;
  HurriedTimers timers;
  NotificationCenter center;
  ScriptedAlerts alerts;
  ScriptedPanels panels;
  RecordingWorkspace workspace;
  UserDefaults defaults{temporary.file("settings.ini")};
  int terminations = 0;
  int shownInFront = 0;
  int feedbacks = 0;
  int helps = 0;
  int batches = 0;

 private:
  std::unique_ptr<EditingSession> session_;
  std::unique_ptr<MainWindowController> controller_;
  mutable std::mutex logMutex_;
  std::vector<std::string> log_;
};

}  // namespace velmara::testing_support
