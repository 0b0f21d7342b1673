#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/task_queue.h"
#include "session/denoise_engine.h"
#include "session/denoise_job.h"
#include "session/denoise_parameters.h"
#include "session/editing_screen.h"
#include "session/photo_file.h"
#include "session/run_state.h"

namespace velmara {

/// The photos being edited and the measured speed, owned by the application delegate. Main thread.
struct PhotoSlots {
  /// The whole current photo.
  std::optional<PhotoFile> selectedImageFile;
  /// The picture that the next preview run filters: the file of the visible region.
  std::optional<PhotoFile> selectedImageFileToProccessing;
  /// Its pixels, if they are at hand; else the file is read.
  Image selectedRegion;
  /// The current photo's pixels as an export would read them from its file, if they are in memory
  /// anyway because they are shown; else not valid.
  Image selectedImageAsStored;
  /// At most one.
  std::vector<PhotoFile> arraySelectedImagesToProcess;
  /// Pixels per second, 0 until measured.
  std::int64_t pixelsProcessRate = 0;
};

/// What the session works with; all of it must outlive the session and its runs.
struct EditingServices {
  const DenoiseEngine& engine;
  TaskQueue& mainQueue;
  TaskQueue& globalQueue;
  Scheduler& timers;
  LogSink log;
  /// The application's picture "noisy.png", which the speed is measured with.
  std::function<Image()> loadTestImage;
};

/// Turns what the user chose and the measured noise of the photo into the filter's parameters, runs
/// the filter off the main thread and brings the result back: to the preview, or to the export.
///
/// Main thread only. The operations carry the names of the main screen's, which forward to them.
class EditingSession {
 public:
  EditingSession(PhotoSlots& photos, EditingScreen& screen, EditingServices services);
  EditingSession(const EditingSession&) = delete;
  EditingSession& operator=(const EditingSession&) = delete;
  /// A run in flight ends without its result being taken.
  ~EditingSession() = default;

  /// The values of a screen just built: automatic mode, level 1, the mapping's start values, no
  /// run.
  void setupAdjustParamView();

  void btnAutoModeTapped();
  void sliderCustomDenoiseAction();
  void btnSoftModeAction();
  void btnHardModeAction();
  /// The photo or the region to filter has changed, or an export wants the whole photo filtered.
  void seletedPhotoToBeFilteredIsChanged();

  /// The front door of a run; refused while one is under way.
  void denoiseImageWithSliderValue(int thresholdValue, int denoiseLevelValue, bool autoMode);
  void applyOpenCVDenoiseAlgorithmWithSliderValue(int thresholdValue, int denoiseLevelValue,
                                                  bool autoMode);
  /// The parameters for a noise level. A manual choice leaves its mapping for later ones.
  SigmaThreshold getSigmaTresholdParamDictForPSNR(double psnr, bool isAutoMode, int thrsholdVal,
                                                  int denoiseLevelValue);
  /// Estimates the run about to start and shows the bar.
  void setupAndShowProgressBarViewForCurrentImage();

  void denoisingProcessCompletedWithOutputImage(const Image& image);
  void originalPhotoToExportDenoisingCompletedOutputImage(const PhotoFile& photo,
                                                          const Image& image);

  /// Another photo has become current: its noise is to be measured, it has no result yet, and what
  /// a run in flight makes of the old one is not to be shown.
  void photoBecameCurrent();
  /// What the run in flight filters is no longer what is seen: its preview result is dropped.
  void dropResultInFlight();

  RunState& runState() { return runState_; }
  const RunState& runState() const { return runState_; }
  bool hasPhoto() const { return !photos_.arraySelectedImagesToProcess.empty(); }

  /// Set before an export's run, cleared when it completes.
  bool isExportingPhoto = false;
  /// The result of the last export run; not valid after any other run has started or another photo
  /// has become current.
  Image lastExportedImage;
  /// 0 soft, 1 hard; nothing is computed from it.
  unsigned flagDenoiseModeSelected = 0;

  float psnrOfRealImage() const { return psnrOfRealImage_; }
  const ManualMapping& manualMapping() const { return mapping_; }

 private:
  /// Counts of the runs dispatched, the changes of photo and the changes of what is seen.
  struct Ticket {
    std::uint64_t run = 0;
    std::uint64_t photo = 0;
    std::uint64_t view = 0;
  };

  void calibrateIfNeeded(const DenoiseMode& mode);
  const std::optional<PhotoFile>& photoToFilter() const;
  void dispatchWorker(const PhotoFile& photo, const DenoiseMode& mode);
  void takeOutcome(const DenoiseJob& job, const Ticket& ticket, const DenoiseOutcome& outcome);
  void complete(const PhotoFile& photo, const Image& image, bool isExport);
  /// If an export waits for a run's result, there will be none.
  void exportRunFailed();

  PhotoSlots& photos_;
  EditingScreen& screen_;
  EditingServices services_;
  RunState runState_;
  ManualMapping mapping_;
  float psnrOfRealImage_ = 0.0F;
  Ticket now_;
  /// Lets what comes back from a queue know that the session is gone.
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
