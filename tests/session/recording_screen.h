#pragma once

#include <string>
#include <vector>

#include "session/editing_screen.h"

namespace velmara {

/// A main screen that writes down what happens to it, in order.
class RecordingScreen final : public EditingScreen {
 public:
  void applyControls(const ControlStates& states) override { controls = states; }
  void showProgressBar(double maximum) override {
    record("bar of " + std::to_string(static_cast<int>(maximum)));
    isBarShown = true;
    barValues.clear();
  }
  void setProgressBarValue(double value) override { barValues.push_back(value); }
  void hideProgressBar() override { isBarShown = false; }
  void setUpPreviewForDenoisedImage() override { record("set up preview"); }
  void performDenoiseOperation() override { record("settled"); }

  bool isAutoModeOn() const override { return autoMode; }
  void setAutoModeOn(bool on) override { autoMode = on; }
  double sliderCustomDenoise() const override { return slider; }
  void setSliderCustomDenoise(double value) override { slider = value; }
  void setTxtCustomDenoiseVal(const std::string& text) override { txtCustomDenoiseVal = text; }
  void setTxtDenoiseMode(const std::string& text) override { record("mode " + text); }
  void settingUpUIElementsForCurrentSelections() override { record("size buttons"); }
  float currentZooomFactor() const override { return zoom; }
  void showSelectedPhoto(const PhotoFile& photo) override { record("labels " + photo.fileName); }
  void previewFinished(const Image& result) override {
    record("preview finished");
    previews.push_back(result);
  }
  void previewResultDropped() override { record("preview dropped"); }
  void exportFinished(const PhotoFile& photo, const Image& result) override {
    record("export finished " + photo.fileName);
    exports.push_back(result);
  }
  void exportRunFailed() override { record("export failed"); }

  void record(const std::string& event) { events.push_back(event); }
  /// What was recorded since the last time.
  std::vector<std::string> takeEvents() { return std::exchange(events, {}); }

  ControlStates controls;
  bool isBarShown = false;
  std::vector<double> barValues;
  bool autoMode = true;
  double slider = 1.0;
  std::string txtCustomDenoiseVal;
  float zoom = 1.0F;
  std::vector<Image> previews;
  std::vector<Image> exports;
  std::vector<std::string> events;
};

}  // namespace velmara
