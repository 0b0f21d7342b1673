#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "imaging/utils.h"
#include "session/editing_session.h"
#include "support/manual_time.h"
#include "support/scratch_folder.h"
#include "support/scripted_desktop.h"

namespace velmara {

/// A queue whose tasks wait until the test runs them, on the test's own thread.
class HeldQueue final : public TaskQueue {
 public:
  void async(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
  bool isCurrent() const override { return true; }
  /// Runs what waits; false if nothing did.
  bool runAll() {
    const bool hasTasks = !tasks_.empty();
    while (!tasks_.empty()) {
      const auto task = std::move(tasks_.front());
      tasks_.pop_front();
      task();
    }
    return hasTasks;
  }
  std::size_t size() const { return tasks_.size(); }

 private:
  std::deque<std::function<void()>> tasks_;
};

/// An engine that answers from its fields and writes down what it was asked.
class ScriptedEngine final : public DenoiseEngine {
 public:
  Image denoise(const Image& image, const FilterParameters& parameters,
                const RunWatch&) const override {
    filtered.push_back(parameters);
    sizes.push_back(image.size());
    return gives ? image : Image();
  }
  double psnr(const Image& image) const override {
    measured.push_back(image.size());
    return noise;
  }
  std::int64_t processingSpeed(const Image&, const FilterParameters& parameters,
                               JobControl*) const override {
    calibrated.push_back(parameters);
    return 400'000 + static_cast<std::int64_t>(calibrated.size());
  }

  bool gives = true;
  double noise = 40.0;
  mutable std::vector<FilterParameters> filtered, calibrated;
  mutable std::vector<Size> sizes, measured;
};

inline Bitmap grayPicture(int width, int height) {
  const std::vector<std::uint8_t> samples(
      static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3, 120);
  return Bitmap::copyOf(samples, width, height, 3);
}

/// The session with a window that has no widgets: it writes down what it is told, and asks for the
/// filtering of a region of each photo it shows, as the preview does.
class EditingTest : public testing::Test {
 protected:
  EditingTest() { makeSession("appstream://velmara"); }

  void makeSession(const std::string& storePage) {
    const auto write = [this](const std::string& line) { log.push_back(line); };
    session = std::make_unique<EditingSession>(
        EditingServices{{engine, mainQueue, globalQueue, write, [] { return Image(); }},
                        time,
                        alerts,
                        defaults,
                        workspace,
                        mainBundle(),
                        storePage,
                        [this] { ++terminations; },
                        [this] { told.emplace_back("in front"); }});
    connectWindow();
  }

  /// Writes a flat gray picture and returns its path.
  std::string picture(const std::string& name, int width = 200, int height = 150) const {
    Utils::sharedUtils().saveImageInSelectedFormat(4, folder.file(name),
                                                   grayPicture(width, height));
    return folder.file(name);
  }
  /// Lets all work and everything on the main thread come to an end.
  void finish() {
    do {
      while (globalQueue.runAll() || mainQueue.runAll()) {
      }
      time.advance(1.0);
    } while (globalQueue.size() + mainQueue.size() > 0);
  }
  /// Opens a photo and finishes its first run.
  void open(const std::string& path) {
    session->photoDraggedWithPath(path);
    finish();
    told.clear();
  }
  void requestPreview() {
    session->setRegion(Image(region), zoom, {{0, 0, region.width(), region.height()}, shown});
    session->seletedPhotoToBeFilteredIsChanged();
  }
  /// Answers the save panel.
  void savePanel(const std::string& name) {
    isPanelShown = false;
    session->savePanelAnswered(name.empty() ? name : folder.file(name));
  }
  /// Saves the photo, from the button to the file.
  void save(const std::string& name) {
    session->btnExportDenoisedImageTapped();
    savePanel(name);
    finish();
  }
  bool isWritten(const std::string& name) const {
    return std::filesystem::exists(folder.file(name));
  }
  bool logged(const std::string& text) const { return std::ranges::find(log, text) != log.end(); }
  std::vector<std::string> takeTold() { return std::exchange(told, {}); }

  testing_support::ScratchFolder folder{testing_support::inMemory()};
  testing_support::ManualTime time;
  HeldQueue mainQueue;
  HeldQueue globalQueue;
  ScriptedEngine engine;
  testing_support::ScriptedAlerts alerts;
  testing_support::RecordingWorkspace workspace;
  UserDefaults defaults{folder.file("settings.ini")};
  std::vector<std::string> log;
  int terminations = 0;

  // The window.
  Bitmap region = grayPicture(120, 100);
  float zoom = 1.0F;
  Size shown{200, 150};
  bool isSheetShown = false;
  bool isPanelShown = false;
  bool isBarShown = false;
  std::vector<Image> results;
  std::vector<std::string> told;

  std::unique_ptr<EditingSession> session;

 private:
  void connectWindow() {
    EditingSession* edit = session.get();
    using Session = EditingSession;
    const auto on = [edit](auto signal, auto action) {
      QObject::connect(edit, signal, edit, action);
    };
    const auto tell = [this, on](auto signal, const char* words) {
      on(signal, [this, words] { told.emplace_back(words); });
    };
    tell(&Session::photoForgotten, "empty");
    tell(&Session::photoOpened, "opened");
    tell(&Session::previewResultDropped, "dropped");
    tell(&Session::exportButtonReleased, "export off");
    tell(&Session::closeButtonReleased, "close off");
    on(&Session::photoLoaded, [this] { mainQueue.async([this] { requestPreview(); }); });
    on(&Session::previewFinished, [this](const Image& result) {
      told.emplace_back("result");
      results.push_back(result);
    });
    on(&Session::saveChangesAsked, [this](const std::string& header) {
      told.push_back(header);
      isSheetShown = true;
    });
    on(&Session::saveChangesAnswered, [this] { isSheetShown = false; });
    on(&Session::savePanelShown, [this] { isPanelShown = true; });
    on(&Session::savePanelClosed, [this] {
      if (isPanelShown) savePanel({});
    });
    const RunState* run = &edit->runState();
    QObject::connect(run, &RunState::progressShown, edit, [this] { isBarShown = true; });
    QObject::connect(run, &RunState::progressHidden, edit, [this] { isBarShown = false; });
    QObject::connect(run, &RunState::defaultModeEntered, edit,
                     [this] { told.emplace_back("default mode"); });
  }
};

}  // namespace velmara
