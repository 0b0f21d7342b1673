#include "session/editing_session.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/pixel_operations.h"
#include "engine/deep/deep_pictures.h"
#include "imaging/image_reader.h"
#include "session/bookmarks.h"
#include "session/editing_fixture.h"
#include "support/run_program.h"

namespace velmara {

namespace {

using Words = std::vector<std::string>;
using Parameters = std::vector<FilterParameters>;

class RunTest : public EditingTest {
 protected:
  void level(double value) {
    session->sliderCustomDenoiseAction(value);
    finish();
  }
};

TEST_F(RunTest, APreviewRunGoesItsSteps) {
  open(picture("photo.png"));
  log.clear();
  requestPreview();
  EXPECT_EQ(log,
            (Words{"seletedPhotoToBeFilteredIsChanged!!", "before denoiseImageWithSliderValue!!",
                   "Denoising Started", "after denoiseImageWithSliderValue!!"}));
  EXPECT_TRUE(session->isRunningAlgorithm());
  EXPECT_EQ(session->state(), EditState::kRunning);
  log.clear();
  globalQueue.runAll();
  mainQueue.runAll();
  EXPECT_EQ(log, (Words{"psnrOfInputImage 40.000000 sigma 6 templateWindow 3 searchWindow 7",
                        "Pixel Rate 400001 & Current Image Estimated Process Time 1.000000",
                        "Denoising Done !!"}));
  EXPECT_TRUE(isBarShown);
  EXPECT_TRUE(session->isRunningAlgorithm());
  EXPECT_EQ(takeTold(), Words{"result"});
  time.advance(0.1);
  EXPECT_FALSE(session->isRunningAlgorithm());
  EXPECT_EQ(takeTold(), Words{"default mode"});
  EXPECT_EQ(engine.sizes.back(), (Size{120, 100})) << "the region is what is filtered";
  EXPECT_EQ(engine.measured, (std::vector<Size>{{200, 150}})) << "the whole photo is measured";
  EXPECT_EQ(results.back().size(), (Size{120, 100}));
  EXPECT_EQ(session->txtDenoiseMode(), "Auto");
  EXPECT_EQ(session->txtCustomDenoiseVal(), "Strength 4 of 10");
  // The next start opens it again.
  const auto saved = savedPathsFromUserDefaults(true, defaults);
  EXPECT_EQ(saved, (std::vector<SavedPath>{{folder.file("photo.png"), {}}}));
}

TEST_F(RunTest, NoiseIsMeasuredOnceAPhotoAndTheSpeedBeforeEachExport) {
  zoom = 0.5F;
  open(picture("photo.png"));
  requestPreview();
  finish();
  EXPECT_EQ(engine.measured.size(), 1U);
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{5, 3, 7})) << "36 dB";
  EXPECT_EQ(engine.calibrated, (Parameters{{10, 5, 14}}));
  save("out.png");
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{9, 3, 8})) << "40 dB and stronger";
  EXPECT_EQ(engine.calibrated, (Parameters{{10, 5, 14}, {9, 3, 8}}));
  EXPECT_EQ(session->pixelsProcessRate(), 400'002);
  EXPECT_EQ(session->txtCustomDenoiseVal(), "Strength 3 of 10") << "what is seen";
  engine.noise = 28.0;
  zoom = 1.0F;
  open(picture("other.png", 160, 140));
  EXPECT_EQ(engine.measured.size(), 2U);
  EXPECT_EQ(session->psnrOfRealImage(), 28.0F);
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 3, 8}));
}

TEST_F(RunTest, AnExportFiltersTheWholePhotoOnceHoweverOftenItIsWritten) {
  makeSession({});
  open(picture("photo.png"));
  log.clear();
  save("no folder/out.png");
  EXPECT_TRUE(logged("Pixel Rate 400002 & Current Image Estimated Process Time 3.000000"));
  EXPECT_EQ(engine.sizes.back(), (Size{200, 150}));
  EXPECT_EQ(session->state(), EditState::kUnsaved);
  const std::size_t runs = engine.filtered.size();
  for (const char* name : {"first.png", "second.png"}) {
    save(name);
    EXPECT_TRUE(isWritten(name));
    EXPECT_EQ(session->state(), EditState::kSaved);
  }
  EXPECT_EQ(engine.filtered.size(), runs);
  ASSERT_EQ(alerts.shown.size(), 1U) << "and without a store nobody is asked to rate";
  EXPECT_EQ(alerts.shown[0].messageText, "“out.png” was not saved.");
  requestPreview();
  EXPECT_FALSE(session->lastExportedImage().isValid()) << "any run makes the result unsaved";
}

TEST_F(RunTest, WhatIsSavedIsTheLevelOfTheRunUnderThePanel) {
  open(picture("photo.png"));
  session->btnExportDenoisedImageTapped();
  session->sliderCustomDenoiseAction(2.0);
  savePanel("out.png");
  EXPECT_FALSE(session->isExportingPhoto());
  finish();
  EXPECT_TRUE(isWritten("out.png"));
  EXPECT_EQ(engine.filtered.back().templateWinSize, 1);
}

TEST_F(RunTest, AutomaticModeIsLeftByTheSliderOnly) {
  for (const bool hasPhoto : {false, true}) {
    if (hasPhoto) open(picture("photo.png"));
    session->btnAutoModeTapped(false);
    EXPECT_TRUE(session->isAutoModeOn());
    EXPECT_FALSE(session->isRunningAlgorithm()) << "a click that would switch it off";
  }
  level(9.5);
  EXPECT_FALSE(session->isAutoModeOn());
  EXPECT_EQ(session->txtCustomDenoiseVal(), "100 %");
  EXPECT_EQ(session->txtDenoiseMode(), "Manual");
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 4, 10}));
  requestPreview();
  finish();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 4, 10})) << "another region, same mode";
  session->btnHardModeAction();
  EXPECT_EQ(session->flagDenoiseModeSelected(), 1U);
  finish();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 4, 10})) << "soft and hard are the same";
  session->btnSoftModeAction();
  EXPECT_EQ(session->flagDenoiseModeSelected(), 0U);
  finish();
  // A manual run leaves its mapping for later ones, until the screen is built anew; the second file
  // is written without a run.
  for (const char* name : {"a.png", "b.png"}) save(name);
  EXPECT_EQ(session->manualMapping(), (ManualMapping{3.0F, 0.5F, 2.0F, 0.8F}));
  EXPECT_EQ(session->getSigmaTresholdParamDictForPSNR(30.0, false, 2, 10), (SigmaThreshold{8, 7}));

  session->btnAutoModeTapped(true);
  EXPECT_EQ(session->sliderCustomDenoise(), 1.0);
  EXPECT_EQ(session->txtCustomDenoiseVal(), "") << "no level that has gone stale";
  finish();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{6, 3, 7}));
  EXPECT_EQ(session->txtCustomDenoiseVal(), "Strength 4 of 10");
  session->setupAdjustParamView();
  EXPECT_EQ(session->manualMapping(), ManualMapping{});
  level(3.0);
  session->btnAutoModeTapped(false);
  EXPECT_TRUE(session->isAutoModeOn()) << "never off by its own button";
}

TEST_F(RunTest, DeepTakesThePlaceOfTheFilterUntilItIsSwitchedOff) {
  Utils::sharedUtils().saveImageInSelectedFormat(4, folder.file("noisy.png"),
                                                 withWhiteNoise(scene(200, 150), 30.0));
  region = withWhiteNoise(scene(120, 100), 30.0);
  session->btnDeepModeTapped(true);
  EXPECT_FALSE(session->isDeepModeOn()) << "there is no photo";
  open(folder.file("noisy.png"));
  EXPECT_TRUE(session->isNoiseBeyondLevels());
  const std::size_t runs = engine.filtered.size();
  const auto tap = [&](bool isOn) {
    session->btnDeepModeTapped(isOn);
    finish();
  };
  tap(true);
  EXPECT_FALSE(session->isNoiseBeyondLevels()) << "nothing to be told of";
  const struct {
    double level;
    const char* label;
  } rows[] = {
      {0.0, "Noise × 1.0"}, {6.0, "Noise × 1.2"}, {1.0, "Noise × 0.2"}, {10.0, "Noise × 2.0"}};
  for (const auto& row : rows) {
    if (row.level > 0.0) level(row.level);
    EXPECT_EQ(session->txtCustomDenoiseVal(), row.label);
    EXPECT_EQ(session->isAutoModeOn(), row.level == 0.0);
  }
  EXPECT_EQ(results.size(), 5U);
  EXPECT_GT(psnrBetween(results[1].bitmap(), results[3].bitmap()), 5.0);
  session->btnDeepModeTapped(false);
  session->cancelRun();
  finish();
  EXPECT_TRUE(session->isDeepModeOn()) << "a run that was stopped";
  session->btnAutoModeTapped(true);
  finish();
  EXPECT_EQ(session->sliderCustomDenoise(), 5.0) << "as measured";
  save("out.png");
  EXPECT_EQ(engine.filtered.size(), runs);
  EXPECT_EQ(engine.calibrated.size(), 1U) << "by the first run";
  const auto written = readImage(folder.file("out.png"));
  EXPECT_GT(psnrBetween(asRgba(written->bitmap()), asRgba(scene(200, 150))), 26.0);

  open(picture("clean.png"));
  EXPECT_TRUE(session->isDeepModeOn());
  EXPECT_EQ(session->txtCustomDenoiseVal(), "No noise found");
  tap(false);
  EXPECT_EQ(engine.filtered.size(), runs + 1);
  EXPECT_EQ(session->sliderCustomDenoise(), 1.0);
  EXPECT_FALSE(session->isNoiseBeyondLevels());
}

TEST_F(RunTest, SmallPhotosPassThroughUnfiltered) {
  region = grayPicture(99, 101);
  open(picture("small.png", 99, 101));
  EXPECT_EQ(results.size(), 1U);
  save("out.png");
  EXPECT_TRUE(engine.filtered.empty());
  region = grayPicture(100, 100);
  requestPreview();
  finish();
  EXPECT_EQ(engine.filtered.size(), 1U);
}

TEST_F(RunTest, WhatIsChosenDuringARunIsTheNextRuns) {
  open(picture("photo.png"));
  requestPreview();
  const std::size_t waiting = globalQueue.size();
  session->btnAutoModeTapped(false);
  EXPECT_TRUE(session->isAutoModeOn());
  session->sliderCustomDenoiseAction(4.0);
  session->sliderCustomDenoiseAction(9.5);
  requestPreview();
  EXPECT_EQ(globalQueue.size(), waiting) << "one run at a time";
  EXPECT_EQ(session->txtCustomDenoiseVal(), "100 %");
  finish();
  EXPECT_EQ(engine.filtered.back(), (FilterParameters{8, 4, 10}));
  EXPECT_EQ(engine.filtered.size(), 3U)
      << "the first photo's, the interrupted, and the last chosen";
}

TEST_F(RunTest, ARunThatFailsEndsInTheDefaultModeAndIsToldOnce) {
  open(picture("photo.png"));
  level(3.0);
  engine.gives = false;
  for (const double value : {5.0, 6.0}) {
    level(value);
    EXPECT_FALSE(session->isRunningAlgorithm());
    EXPECT_EQ(session->runState().controls().disabled, ControlSet{});
    EXPECT_EQ(session->txtCustomDenoiseVal(), "30 %") << "that of the result that is seen";
  }
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "The photo could not be denoised.");
  EXPECT_NE(alerts.shown[0].informativeText, "");
  engine.gives = true;
  level(5.0);
  EXPECT_EQ(session->txtCustomDenoiseVal(), "50 %");
}

TEST_F(RunTest, CancellingLeavesWhatWasShown) {
  open(picture("photo.png"));
  level(3.0);
  told.clear();
  session->sliderCustomDenoiseAction(8.0);
  session->sliderCustomDenoiseAction(9.0);
  session->cancelRun();
  finish();
  EXPECT_EQ(takeTold(), Words{"default mode"});
  EXPECT_EQ(session->txtCustomDenoiseVal(), "30 %");
  EXPECT_EQ(session->sliderCustomDenoise(), 3.0);
  EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(RunTest, AResultThatNoLongerBelongsToTheScreenIsDropped) {
  open(picture("photo.png"));
  requestPreview();
  session->dropResultInFlight();
  finish();
  EXPECT_EQ(takeTold(), (Words{"dropped", "default mode"}));
  EXPECT_EQ(session->psnrOfRealImage(), 40.0F) << "the photo is still the one that was measured";
}

TEST_F(RunTest, AReplacedOriginalIsNotTurnedAgain) {
  const std::string path = folder.file("side.jpg");
  testing_support::runProgram({"convert", "-size", "200x120", "plasma:", path});
  testing_support::runProgram({"exiv2", "-Mset Exif.Image.Orientation Short 6", path});
  open(path);
  alerts.answers = {1, 0};
  save("side.jpg");
  EXPECT_EQ(session->state(), EditState::kUnsaved) << "the question was answered with Cancel";
  save("side.jpg");
  EXPECT_EQ(alerts.shown.at(1).messageText, "Replace the original “side.jpg”?");
  EXPECT_EQ(session->selectedImageFile()->width, 120);
  save("again.png");
  EXPECT_EQ(readImage(folder.file("again.png"))->bitmap().width(), 120);
}

TEST_F(RunTest, AWorkerMayOutliveTheSession) {
  open(picture("photo.png"));
  requestPreview();
  session.reset();
  finish();
  EXPECT_EQ(results.size(), 1U);
}

TEST_F(RunTest, AcceptingTheInvitationOpensTheStoreAndEndsIt) {
  open(picture("photo.png"));
  save("out.png");
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Would you like to rate the app on the Mac App Store?");
  EXPECT_EQ(workspace.opened.at(0).first, "appstream://velmara");
  EXPECT_EQ(defaults.value("appVersion").toString().toStdString(), mainBundle().CFBundleVersion);
  save("second.png");
  EXPECT_EQ(alerts.shown.size(), 1U);
}

}  // namespace
}  // namespace velmara
