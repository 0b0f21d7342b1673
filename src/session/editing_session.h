#pragma once

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/bundle.h"
#include "platform/panels.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"
#include "session/denoise_parameters.h"
#include "session/edit_table.h"
#include "session/export_formats.h"
#include "session/noise_gauge.h"
#include "session/photo_job.h"
#include "session/run_state.h"

namespace velmara {

/// What the session works with; all of it must outlive the session and its jobs.
struct EditingServices {
  /// What jobs work with.
  PhotoJobServices jobs;
  /// The desktop's part, and the program's facts.
  Scheduler& timers;
  AlertPresenter& alerts;
  UserDefaults& defaults;
  Workspace& workspace;
  const BundleFacts& bundle;
  /// Where the program may be rated; empty: nobody is asked to.
  std::string storePage;
  /// Ends the program.
  std::function<void()> terminateApp;
  /// Brings the main window to the front.
  std::function<void()> showAppInFront;
  /// Where photos that are no files of the user's are kept for now; ends in "/". Empty: there are
  /// none.
  std::string temporaryDirectory = {};
};

/// The one model of the edit: the photo, the parameters chosen for it, the run or export under way,
/// and the work that is in no file yet. What may happen when stands in the table of edit_table.cpp;
/// this class does what the table says and tells the window by its signals. It owns the one job
/// that is under way at a time.
///
/// The window forwards what its controls send and shows what the signals say. Fields and operations
/// carry the names of the main screen's. Main thread only.
class EditingSession : public QObject {
  Q_OBJECT

 public:
  /// Without a photo. The timers and everything else in `services` outlive the session.
  explicit EditingSession(EditingServices services);
  /// A job under way ends without its result being taken.
  ~EditingSession() override;

  // The photo, in editing_session.cpp.

  /// Where the edit stands; unsaved from the moment a photo is opened until a result is in a file.
  EditState state() const { return state_; }
  EditTalk talk() const { return talk_; }
  bool hasPhoto() const { return !arraySelectedImagesToProcess_.empty(); }
  bool isUnsaved() const { return state_ != EditState::kEmpty && state_ != EditState::kSaved; }
  /// Whether the photo is a file of our own, which goes when the program ends.
  bool isPhotoTemporary() const;
  /// The whole current photo.
  const std::optional<PhotoFile>& selectedImageFile() const { return selectedImageFile_; }
  /// At most one.
  const std::vector<PhotoFile>& arraySelectedImagesToProcess() const {
    return arraySelectedImagesToProcess_;
  }
  /// The photo as it was read, for as long as it is open and fits the memory.
  const LoadedPhoto& photo() const { return photo_; }

  /// A screen just built, without a photo: automatic mode, level 1, the mapping's start values, no
  /// run.
  void setupAdjustParamView();
  /// A photo was dropped, or chosen in the open panel: opens it, asking first where work would be
  /// lost.
  void photoDraggedWithPath(const std::string& path);
  /// Makes a file the current photo, if it is a picture.
  void updateSelectedImageToBeFilteredWithPath(const std::string& path);
  /// Remembers the photo in the settings.
  void saveBookmarkPathsFromTableView();
  /// Opens the remembered photo, if none is open yet and it is not in the trash.
  void loadLastWorkedImageFromDefaults();

  // Parameters and runs, in editing_session_run.cpp.

  /// Whether the strength is chosen by the noise.
  bool isAutoModeOn() const { return parameters_.isAutoModeOn; }
  /// Whether the deep method works in place of the levels' filter.
  bool isDeepModeOn() const { return parameters_.isDeepModeOn; }
  /// Whether the photo has noise that only the deep method reaches, and it is off. Measured after
  /// the first preview, while nothing else is done.
  bool isNoiseBeyondLevels() const;
  /// The noise beside the strength of what is seen; none while it is not measured.
  std::optional<NoiseGauge> noiseGauge() const;
  /// 1.0 to 10.0; during a run the next one's, if that is chosen already.
  double sliderCustomDenoise() const;
  /// The level in percent; in automatic mode what it chose, in words, once it has.
  std::string txtCustomDenoiseVal() const;
  /// How a level is shown: in percent, or as the deep method takes it.
  std::string levelLabel(double sliderValue) const;
  /// "Auto" or "Manual"; empty before the first run.
  const std::string& txtDenoiseMode() const { return parameters_.txtDenoiseMode; }

  /// The button has toggled itself before; only a manual level may leave it off.
  void btnAutoModeTapped(bool isOn);
  /// Switches the deep method and runs again, with the same mode and level. Refused during a run.
  void btnDeepModeTapped(bool isOn);
  /// A level chosen during a run is the next run's.
  void sliderCustomDenoiseAction(double value);
  /// Kept, without a button: notes the mode and runs again with the same level.
  void btnSoftModeAction();
  void btnHardModeAction();

  /// What is seen of the photo, at which zoom and where: what the next preview run filters. The
  /// size is the pixels' own.
  void setRegion(const Image& region, float currentZooomFactor, const ShownPlace& place);
  /// The region is in its file now.
  void setSelectedImageFileToProccessing(const PhotoFile& region);
  /// What was handed in last; nothing before the first region.
  const std::optional<PhotoFile>& selectedImageFileToProccessing() const {
    return selectedImageFileToProccessing_;
  }
  /// The photo or the region to filter has changed, or an export wants the whole photo filtered.
  void seletedPhotoToBeFilteredIsChanged();
  /// What the run in flight filters is no longer what is seen: its result is dropped.
  void dropResultInFlight();
  /// Stops the run or the export under way: an export leaves no file, a preview what was shown
  /// before it.
  void cancelRun();

  /// The front door of a run; refused while one is under way.
  void denoiseImageWithSliderValue(int thresholdValue, int denoiseLevelValue, bool autoMode);
  /// The run itself, which the front door asks for.
  void applyOpenCVDenoiseAlgorithmWithSliderValue(int thresholdValue, int denoiseLevelValue,
                                                  bool autoMode);
  /// The parameters for a noise level. A manual choice leaves its mapping for later ones.
  SigmaThreshold getSigmaTresholdParamDictForPSNR(double psnr, bool isAutoMode, int thrsholdVal,
                                                  int denoiseLevelValue);
  /// Estimates the run under way and shows the bar.
  void setupAndShowProgressBarViewForCurrentImage();
  /// Takes the result of a preview; one that is not valid changes nothing.
  void denoisingProcessCompletedWithOutputImage(const Image& image);
  /// Takes the result of an export that was written.
  void originalPhotoToExportDenoisingCompletedOutputImage(const Image& image);

  /// Bar, controls and the settling delay.
  RunState& runState() { return runState_; }
  const RunState& runState() const { return runState_; }
  /// Whether a run is under way, and whether it is an export.
  bool isRunningAlgorithm() const { return runState_.isRunningAlgorithm(); }
  bool isExportingPhoto() const { return state_ == EditState::kExporting; }
  /// 0 soft, 1 hard; nothing is computed from it.
  unsigned flagDenoiseModeSelected() const { return flagDenoiseModeSelected_; }
  /// In dB; 0 until measured.
  float psnrOfRealImage() const { return psnrOfRealImage_; }
  /// Pixels per second; 0 until measured.
  std::int64_t pixelsProcessRate() const { return pixelsProcessRate_; }
  /// What manual choices have left for later ones.
  const ManualMapping& manualMapping() const { return mapping_; }

  // Export and unsaved work, in editing_session_export.cpp.

  /// The button or the menu's command: shows the save panel, or does what the state allows.
  void btnExportDenoisedImageTapped();
  /// How the save panel is to be set up, and its formats, from savePanelShown on.
  SavePanelOptions savePanelOptions() const;
  const ExportFormats& exportFormats() const { return exportFormats_; }
  /// The save panel was answered; an empty path stands for its cancel button.
  void savePanelAnswered(const std::string& path);
  /// The result of the last export, pixels as stored; not valid after any other run has started or
  /// another photo has become current.
  const Image& lastExportedImage() const { return lastExportedImage_; }

  /// Works out the whole photo's result as an export would, as the bytes of a PNG, and hands it
  /// over when it is done. The edit and its run go on as if nothing had been asked. False without a
  /// photo that is loaded, and while an earlier request is under way; nothing is handed over then.
  bool encodeResult(std::function<void(const PhotoJobResult&)> finished);

  /// The three answers; without the sheet they do nothing.
  void btnSaveChangesTapped() { take(EditEvent::kSaveChanges); }
  void btnDontSaveChangesTapped() { take(EditEvent::kDontSave); }
  void btnCancelChangesTapped() { take(EditEvent::kCancel); }
  /// The window's button, or the menu's commands to close and to quit.
  void btnCloseWindowTapped() { take(EditEvent::kClose); }
  /// The same from the menu, which is noted.
  void btncloseFileFromMenuTapped();
  /// Whether the window may close now; otherwise the user is asked, and the answer closes it.
  bool windowShouldClose();
  /// Counts an export, and invites to rate when it is time.
  void showAlertForRateApp();

  /// Another photo waits until the question is answered or the export is over, and its path.
  bool isExportingWithAddingNewImage() const {
    return !imgPathToImportAfterExportWorkingImg_.empty();
  }
  const std::string& imgPathToImportAfterExportWorkingImg() const {
    return imgPathToImportAfterExportWorkingImg_;
  }
  /// A request to close came from the menu.
  bool isQuitFromMenu() const { return isQuitFromMenu_; }

 Q_SIGNALS:
  /// There is no photo: the screen as it was built.
  void photoForgotten();
  /// Another photo has become current; its pixels follow.
  void photoOpened();
  /// Its pixels are there.
  void photoLoaded(const LoadedPhoto& photo);
  /// A run on the photo begins, or its record has changed: the labels are to be filled.
  void photoShown(const PhotoFile& selectedImageFile);
  /// The visible region is another one.
  void selectedImageFileToProccessingChanged();
  /// Mode, level or their labels, or the photo's noise.
  void parametersChanged();
  /// The result of a preview run: `imgFilteredOriginal` and `imgFilteredBeforeClickedPrvw`. It is
  /// laid over the preview when the default mode is entered.
  void previewFinished(const Image& result);
  /// A preview run ended whose region is no longer what is seen.
  void previewResultDropped();

  /// The question about unsaved changes is to be shown, and to go.
  void saveChangesAsked(const std::string& header);
  void saveChangesAnswered();
  /// The save panel is to be shown, and to go.
  void savePanelShown();
  void savePanelClosed();
  /// The button's state is to be off again.
  void exportButtonReleased();
  /// The same of the window's close button.
  void closeButtonReleased();
  /// An export is in its file.
  void photoSaved(const std::string& path);
  /// The controls are back after an export, whatever its end.
  void exportEnded();

 private:
  /// What the user has chosen, and how it is shown.
  struct Parameters {
    bool isAutoModeOn = true;
    double sliderCustomDenoise = 1.0;
    std::string txtCustomDenoiseVal;
    std::string txtDenoiseMode;
    bool isDeepModeOn = false;
  };

  void take(EditEvent event);
  void perform(EditAction action);
  void openPhoto(const std::string& path, bool isScreenRebuilt);
  void forgetPhoto();
  void photoBecameCurrent(const LoadedPhoto& photo);
  void loadPhoto();
  void photoWasRead(const PhotoJobResult& result);

  void startJob(PhotoJobRequest request, void (EditingSession::*finished)(const PhotoJobResult&));
  void dropJob();
  void takeMeasurements(const PhotoJobResult& result);
  void previewRunFinished(const PhotoJobResult& result);
  std::string labelAfter(const PhotoJobResult& result) const;
  double restingLevel() const;
  void measureNoiseMeanwhile();
  void noiseWasMeasured(const PhotoJobResult& result);
  void runWasEnded();

  void ask();
  void beginExport();
  void exportFinished(const PhotoJobResult& result);
  void takeReplacedPhoto(const PhotoJobResult& result);
  PhotoOutput output() const;
  void offerRating();

  EditingServices services_;
  RunState runState_;
  EditState state_ = EditState::kEmpty;
  EditTalk talk_ = EditTalk::kNone;

  std::optional<PhotoFile> selectedImageFile_;
  std::optional<PhotoFile> selectedImageFileToProccessing_;
  std::vector<PhotoFile> arraySelectedImagesToProcess_;
  LoadedPhoto photo_;
  std::string pathToOpen_;
  std::string imgPathToImportAfterExportWorkingImg_;

  Parameters parameters_;
  /// Those of the result that is seen.
  std::optional<Parameters> shownParameters_;
  std::optional<double> nextLevel_;
  unsigned flagDenoiseModeSelected_ = 0;
  Image region_;
  float currentZooomFactor_ = 1.0F;
  ShownPlace place_;
  float psnrOfRealImage_ = 0.0F;
  std::optional<DeepNoise> deepNoise_;
  ManualMapping mapping_;
  std::int64_t pixelsProcessRate_ = 0;
  bool isResultWanted_ = false;
  bool isCancelled_ = false;
  bool hasToldFailure_ = false;

  std::shared_ptr<PhotoJob> job_;
  std::shared_ptr<PhotoJob> encoding_;
  /// Which job is the one whose end counts.
  std::uint64_t jobNumber_ = 0;

  ExportFormats exportFormats_;
  std::string fileTypeToExportImage_;
  std::string pathToExportImage_;
  std::string failure_;
  Image lastExportedImage_;
  bool isQuitFromMenu_ = false;
  bool hasExported_ = false;

  /// Lets what comes back from a queue know that the session is gone.
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
