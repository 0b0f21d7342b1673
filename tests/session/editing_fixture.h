#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "imaging/utils.h"
#include "session/editing_session.h"
#include "session/recording_screen.h"
#include "support/manual_time.h"
#include "support/scratch_folder.h"

namespace velmara {

/// A queue whose tasks wait until the test runs them, on the test's own thread.
class HeldQueue final : public TaskQueue {
 public:
  void async(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
  bool isCurrent() const override { return true; }
  void runAll() {
    while (!tasks_.empty()) {
      const auto task = std::move(tasks_.front());
      tasks_.pop_front();
      task();
    }
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

/// A flat gray picture in a file.
inline PhotoFile writtenPhoto(const std::string& path, int width, int height) {
  const std::vector<std::uint8_t> samples(
      static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3, 120);
  Utils::sharedUtils().saveImageInSelectedFormat(4, path,
                                                 Bitmap::copyOf(samples, width, height, 3));
  return PhotoFile::initWithFileUrl(path);
}

class EditingTest : public testing::Test {
 protected:
  EditingTest() {
    photos.selectedImageFile = writtenPhoto(folder.file("photo.png"), 200, 150);
    photos.selectedImageFileToProccessing = writtenPhoto(folder.file("region.png"), 120, 100);
    photos.arraySelectedImagesToProcess = {*photos.selectedImageFile};
    session->setupAdjustParamView();
    screen.takeEvents();
  }

  /// Lets the worker and everything on the main thread come to an end.
  void finishRun() {
    mainQueue.runAll();
    globalQueue.runAll();
    time.advance(1.0);
  }

  bool logged(const std::string& text) const {
    return std::ranges::find(screen.events, text) != screen.events.end();
  }

  testing_support::ScratchFolder folder;
  testing_support::ManualTime time;
  HeldQueue mainQueue;
  HeldQueue globalQueue;
  ScriptedEngine engine;
  RecordingScreen screen;
  PhotoSlots photos;
  std::unique_ptr<EditingSession> session = std::make_unique<EditingSession>(
      photos, screen,
      EditingServices{engine, mainQueue, globalQueue, time,
                      [this](const std::string& line) { screen.record(line); },
                      [] { return Image(); }});
};

}  // namespace velmara
