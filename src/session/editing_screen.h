#pragma once

#include <string>

#include "base/image.h"
#include "session/photo_file.h"
#include "session/run_state.h"

namespace velmara {

/// The main screen as the editing session sees it. Main thread only.
class EditingScreen : public RunScreen {
 public:
  /// State of `btnAutoMode`.
  virtual bool isAutoModeOn() const = 0;
  virtual void setAutoModeOn(bool on) = 0;
  /// Value of `sliderCustomDenoise`, 1.0 to 10.0; setting it sends no action.
  virtual double sliderCustomDenoise() const = 0;
  virtual void setSliderCustomDenoise(double value) = 0;
  virtual void setTxtCustomDenoiseVal(const std::string& text) = 0;
  /// "Auto" or "Manual".
  virtual void setTxtDenoiseMode(const std::string& text) = 0;
  /// Turns on the size button of the current preview size.
  virtual void settingUpUIElementsForCurrentSelections() = 0;
  virtual float currentZooomFactor() const = 0;

  /// A photo or a region of it is about to be filtered: fill the labels from the whole photo's
  /// record, show the bottom bar and the preview container, give `btnExport` its hover image.
  virtual void showSelectedPhoto(const PhotoFile& selectedImageFile) = 0;

  /// The result of a preview run: `imgFilteredOriginal` and `imgFilteredBeforeClickedPrvw`. The
  /// controls come back, and the result is laid over the preview, 0.1 s later.
  virtual void previewFinished(const Image& result) = 0;
  /// A preview run ended whose photo or region is no longer what is shown; its result is gone.
  virtual void previewResultDropped() = 0;
  /// The result of an export run for a photo, pixels as stored, ready to be turned upright and
  /// written.
  virtual void exportFinished(const PhotoFile& photo, const Image& result) = 0;
  /// The run of an export ended without a result, or could not begin.
  virtual void exportRunFailed() = 0;
};

}  // namespace velmara
