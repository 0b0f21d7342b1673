#include "session/editing_session.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "session/editing_fixture.h"

namespace velmara {

namespace {

using Events = std::vector<std::string>;
using Parameters = std::vector<FilterParameters>;

TEST_F(EditingTest, StartsAutomaticAtLevelOneWithoutControls) {
  EXPECT_TRUE(screen.autoMode);
  EXPECT_EQ(screen.slider, 1.0);
  EXPECT_EQ(screen.txtCustomDenoiseVal, "10 %");
  EXPECT_EQ(screen.controls, controlsWithoutPhoto());
  EXPECT_EQ(session->manualMapping(), ManualMapping{});
}

TEST_F(EditingTest, APreviewRunGoesItsSteps) {
  session->seletedPhotoToBeFilteredIsChanged();
  EXPECT_EQ(screen.takeEvents(),
            (Events{"seletedPhotoToBeFilteredIsChanged!!", "labels photo.png",
                    "before denoiseImageWithSliderValue!!", "mode Auto", "Denoising Started",
                    "size buttons", "after denoiseImageWithSliderValue!!"}));
  EXPECT_TRUE(session->runState().isRunningAlgorithm());
  mainQueue.runAll();
  EXPECT_EQ(
      screen.takeEvents(),
      (Events{"Pixel Rate 400001 & Current Image Estimated Process Time 1.000000", "bar of 1"}));
  globalQueue.runAll();
  EXPECT_EQ(screen.takeEvents(),
            (Events{"psnrOfInputImage 40.000000 sigma 6 templateWindow 3 searchWindow 7",
                    "Denoising Done !!", "preview finished"}));
  EXPECT_TRUE(session->runState().isRunningAlgorithm());
  time.advance(0.1);
  EXPECT_FALSE(session->runState().isRunningAlgorithm());
  EXPECT_EQ(screen.takeEvents(), Events{"set up preview"});
  EXPECT_EQ(engine.sizes, (std::vector<Size>{{120, 100}})) << "the region is what is filtered";
  EXPECT_EQ(engine.measured, (std::vector<Size>{{200, 150}})) << "the whole photo is measured";
  EXPECT_EQ(screen.previews.at(0).size(), (Size{120, 100}));
}

TEST_F(EditingTest, MeasuresEachPhotoOnce) {
  for (int run = 0; run < 3; ++run) {
    session->seletedPhotoToBeFilteredIsChanged();
    finishRun();
  }
  EXPECT_EQ(engine.measured.size(), 1U);
  session->photoBecameCurrent();
  EXPECT_EQ(session->psnrOfRealImage(), 0.0F);
  engine.noise = 28.0;
  session->seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_EQ(engine.measured.size(), 2U);
  EXPECT_EQ(session->psnrOfRealImage(), 28.0F);
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 3, 8}));
}

TEST_F(EditingTest, APreviewIsMappedByItsZoomAnExportIsNot) {
  screen.zoom = 0.5F;
  session->seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{5, 3, 7})) << "36 dB";
  session->isExportingPhoto = true;
  session->seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{9, 3, 8})) << "40 dB and stronger";
}

TEST_F(EditingTest, TheSpeedIsMeasuredOnceForPreviewsAndBeforeEachExport) {
  session->denoiseImageWithSliderValue(1, 1, true);
  finishRun();
  session->denoiseImageWithSliderValue(2, 9, false);
  finishRun();
  EXPECT_EQ(engine.calibrated, Parameters{kFirstCalibration});

  session->isExportingPhoto = true;
  session->denoiseImageWithSliderValue(1, 1, true);
  finishRun();
  session->isExportingPhoto = true;
  session->denoiseImageWithSliderValue(2, 9, false);
  finishRun();
  EXPECT_EQ(engine.calibrated, (Parameters{kFirstCalibration, {9, 3, 8}, {10, 4, 10}}));
  EXPECT_EQ(photos.pixelsProcessRate, 400'003);
}

// An export before anything was measured takes the first measurement's values.
TEST_F(EditingTest, AnExportWithUnknownSpeedIsCalibratedLikeTheFirstRun) {
  session->isExportingPhoto = true;
  session->denoiseImageWithSliderValue(1, 1, true);
  EXPECT_EQ(engine.calibrated, Parameters{kFirstCalibration});
}

TEST_F(EditingTest, AnExportFiltersTheWholePhotoAndKeepsItsResult) {
  session->isExportingPhoto = true;
  session->seletedPhotoToBeFilteredIsChanged();
  mainQueue.runAll();
  EXPECT_TRUE(logged("Pixel Rate 400001 & Current Image Estimated Process Time 3.000000"));
  finishRun();
  EXPECT_FALSE(session->isExportingPhoto);
  EXPECT_TRUE(logged("export finished photo.png"));
  EXPECT_EQ(screen.exports.at(0).size(), (Size{200, 150}));
  EXPECT_TRUE(session->lastExportedImage.isValid());
  EXPECT_TRUE(screen.previews.empty());

  session->seletedPhotoToBeFilteredIsChanged();
  EXPECT_FALSE(session->lastExportedImage.isValid()) << "any run makes the result unsaved";
}

TEST_F(EditingTest, RefusesEverythingDuringARun) {
  session->seletedPhotoToBeFilteredIsChanged();
  const std::size_t dispatched = globalQueue.size();
  screen.takeEvents();
  screen.autoMode = false;  // as the button's own click leaves it
  session->btnAutoModeTapped();
  EXPECT_TRUE(screen.autoMode);
  screen.slider = 7.0;
  session->sliderCustomDenoiseAction();
  session->btnHardModeAction();
  session->denoiseImageWithSliderValue(2, 5, false);
  EXPECT_EQ(screen.takeEvents(), Events{});
  EXPECT_TRUE(screen.autoMode);
  EXPECT_EQ(globalQueue.size(), dispatched);
}

TEST_F(EditingTest, WithoutAPhotoNothingRuns) {
  photos = {};
  screen.autoMode = false;
  session->btnAutoModeTapped();
  EXPECT_TRUE(screen.autoMode);
  session->sliderCustomDenoiseAction();
  EXPECT_TRUE(screen.autoMode);
  session->seletedPhotoToBeFilteredIsChanged();
  EXPECT_EQ(screen.takeEvents(), Events{});
}

TEST_F(EditingTest, AutomaticModeIsLeftByTheSliderOnly) {
  screen.autoMode = false;
  session->btnAutoModeTapped();
  EXPECT_TRUE(screen.autoMode);
  EXPECT_FALSE(session->runState().isRunningAlgorithm()) << "a click that would switch it off";

  screen.slider = 9.5;
  session->sliderCustomDenoiseAction();
  EXPECT_FALSE(screen.autoMode);
  EXPECT_EQ(screen.txtCustomDenoiseVal, "100 %");
  EXPECT_TRUE(logged("mode Manual"));
  finishRun();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 4, 10}));

  screen.autoMode = true;  // clicked on
  session->btnAutoModeTapped();
  EXPECT_EQ(screen.slider, 1.0);
  finishRun();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{6, 3, 7}));
}

TEST_F(EditingTest, SoftAndHardGiveTheSameParameters) {
  screen.slider = 3.0;
  session->btnHardModeAction();
  EXPECT_EQ(session->flagDenoiseModeSelected, 1U);
  finishRun();
  session->btnSoftModeAction();
  EXPECT_EQ(session->flagDenoiseModeSelected, 0U);
  finishRun();
  EXPECT_EQ(engine.filtered.at(0), engine.filtered.at(1));
}

TEST_F(EditingTest, ARegionChangeKeepsTheMode) {
  screen.autoMode = false;
  screen.slider = 10.0;
  session->seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_FALSE(screen.autoMode);
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 4, 10}));
}

TEST_F(EditingTest, ManualRunsLeaveTheirMapping) {
  session->denoiseImageWithSliderValue(2, 10, false);
  EXPECT_EQ(session->manualMapping(), ManualMapping{}) << "the worker's choice comes back with it";
  finishRun();
  EXPECT_EQ(session->manualMapping(), (ManualMapping{3.0F, 0.5F, 2.0F, 0.8F}));
  EXPECT_EQ(session->getSigmaTresholdParamDictForPSNR(30.0, false, 2, 10), (SigmaThreshold{8, 7}));
  session->setupAdjustParamView();
  EXPECT_EQ(session->manualMapping(), ManualMapping{});
}

TEST_F(EditingTest, SmallPhotosPassThroughUnfiltered) {
  photos.selectedImageFileToProccessing = writtenPhoto(folder.file("small.png"), 100, 99);
  session->seletedPhotoToBeFilteredIsChanged();
  EXPECT_EQ(globalQueue.size(), 0U);
  EXPECT_EQ(screen.previews.at(0).size(), (Size{100, 99})) << "handed over at once";
  finishRun();
  EXPECT_FALSE(session->runState().isRunningAlgorithm());

  photos.selectedImageFileToProccessing = writtenPhoto(folder.file("larger.png"), 100, 100);
  session->seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_EQ(engine.filtered.size(), 1U);

  photos.selectedImageFile = writtenPhoto(folder.file("small-photo.png"), 20, 30);
  session->isExportingPhoto = true;
  session->seletedPhotoToBeFilteredIsChanged();
  EXPECT_EQ(screen.exports.at(0).size(), (Size{20, 30}));
  EXPECT_FALSE(session->isExportingPhoto);
}

TEST_F(EditingTest, AFileThatCannotBeReadStartsNoRun) {
  const std::string path = folder.file("broken.png");
  testing_support::writeFile(path, "no picture");
  photos.selectedImageFileToProccessing->filePath = path;
  session->seletedPhotoToBeFilteredIsChanged();
  EXPECT_EQ(screen.takeEvents(), Events{});
  // Through the front door the run starts and stays: nothing completes it.
  session->denoiseImageWithSliderValue(1, 1, true);
  finishRun();
  EXPECT_TRUE(session->runState().isRunningAlgorithm());
  EXPECT_TRUE(engine.filtered.empty());
}

TEST_F(EditingTest, NoResultLeavesTheRunningMode) {
  engine.gives = false;
  session->seletedPhotoToBeFilteredIsChanged();
  finishRun();
  time.advance(60.0);
  EXPECT_TRUE(session->runState().isRunningAlgorithm());
  EXPECT_FALSE(logged("Denoising Done !!"));
  EXPECT_TRUE(screen.previews.empty());

  session->setupAdjustParamView();
  engine.gives = false;
  session->isExportingPhoto = true;
  session->seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_FALSE(session->isExportingPhoto);
  EXPECT_TRUE(screen.exports.empty());
}

TEST_F(EditingTest, AResultThatNoLongerBelongsToTheScreenIsDropped) {
  const auto dropsWhen = [&](void (EditingSession::*change)()) {
    session->seletedPhotoToBeFilteredIsChanged();
    (session.get()->*change)();
    screen.takeEvents();
    finishRun();
    EXPECT_TRUE(logged("preview dropped"));
    EXPECT_FALSE(session->runState().isRunningAlgorithm()) << "the controls come back";
  };
  dropsWhen(&EditingSession::dropResultInFlight);
  EXPECT_EQ(session->psnrOfRealImage(), 40.0F) << "the photo is still the one that was measured";
  dropsWhen(&EditingSession::photoBecameCurrent);
  EXPECT_EQ(session->psnrOfRealImage(), 0.0F) << "that was another photo's noise";
  EXPECT_TRUE(screen.previews.empty());
}

// The photo is exchanged while its export runs: the file is still written, but the next export must
// not take this picture for the new photo's.
TEST_F(EditingTest, AnExportOutlivesItsPhotoButIsNotKeptForTheNext) {
  session->isExportingPhoto = true;
  session->seletedPhotoToBeFilteredIsChanged();
  photos.selectedImageFile = writtenPhoto(folder.file("next.png"), 180, 160);
  session->photoBecameCurrent();
  finishRun();
  EXPECT_TRUE(logged("export finished photo.png"));
  EXPECT_EQ(screen.exports.at(0).size(), (Size{200, 150}));
  EXPECT_FALSE(session->lastExportedImage.isValid());
}

// A screen that is built anew ends its run; the worker of the old run comes late.
TEST_F(EditingTest, ALateWorkerDoesNotEndTheNextRun) {
  session->seletedPhotoToBeFilteredIsChanged();
  session->setupAdjustParamView();
  session->seletedPhotoToBeFilteredIsChanged();
  mainQueue.runAll();
  globalQueue.runAll();
  EXPECT_EQ(engine.filtered.size(), 2U);
  EXPECT_EQ(screen.previews.size(), 1U);
}

TEST_F(EditingTest, AWorkerMayOutliveTheSession) {
  session->seletedPhotoToBeFilteredIsChanged();
  session.reset();
  screen.takeEvents();
  finishRun();
  EXPECT_TRUE(screen.previews.empty());
  EXPECT_FALSE(logged("bar of 1"));
}

}  // namespace
}  // namespace velmara
