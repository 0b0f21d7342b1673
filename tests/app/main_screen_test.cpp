// The main screen as the program makes it, with real widgets, photos and runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSlider>

#include "app/screen_fixture.h"
#include "imaging/image_reader.h"
#include "preview/drop/dragging_view.h"
#include "preview/views/picture_view.h"
#include "session/bookmarks.h"
#include "support/run_program.h"
#include "widgets/icon_button.h"
#include "widgets/img_button.h"
#include "widgets/split_view.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::runProgram;
using testing_support::ScreenTest;

TEST_F(ScreenTest, AnEmptyWindowInvites) {
  EXPECT_TRUE(view("vwDragging").isVisible());
  EXPECT_FALSE(view("splitView").isVisible());
  for (const char* name : {"vwPreviewContainer", "vwBottom", "btnSaved", "btnCancelRun"}) {
    EXPECT_FALSE(view(name).isVisible()) << name;
  }
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "10 %");
  EXPECT_EQ(screen().preview().style(), PreviewStyle::kSingle);
  EXPECT_EQ(screen().preview().size(), PreviewSize::kFitToScreen);
  EXPECT_FALSE(view<QSlider>("sliderCustomDenoise").isEnabled());
  for (const char* name : {"btnExport", "btnZoomIn", "btnZoomOut", "btnDualMode", "btnAutoMode"}) {
    EXPECT_FALSE(view<ActionButton>(name).isEnabled()) << name;
  }
  EXPECT_TRUE(view<ActionButton>("btnAddPhoto").isEnabled());
  // One point of overlap hides the seam under the preview.
  const QRect preview = view("vwPreviewContainer").geometry();
  EXPECT_EQ(preview.bottom() + 1, view("vwBeforeAfter").geometry().top() + 1);
}

TEST_F(ScreenTest, TheHelpButtonOffersTwoItemsAndNoTitle) {
  EXPECT_EQ(view<ActionButton>("btnHelp").text(), "");
  click("btnHelp");
  QMenu* menu = nullptr;
  for (QMenu* candidate : screen().findChildren<QMenu*>()) {
    if (candidate->isVisible()) menu = candidate;
  }
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 2);
  EXPECT_EQ(menu->actions()[0]->text(), "Feedback");
  EXPECT_EQ(menu->actions()[1]->text(), "Help");
  menu->actions()[0]->trigger();
  menu->actions()[1]->trigger();
  menu->close();
  EXPECT_EQ(feedbacks, 1);
  EXPECT_EQ(helps, 1);
}

TEST_F(ScreenTest, EveryControlHasANameAndTheKeyboardReachesIt) {
  for (QWidget* control : screen().window()->findChildren<QWidget*>()) {
    const bool isControl = qobject_cast<ActionButton*>(control) != nullptr ||
                           qobject_cast<QSlider*>(control) != nullptr;
    if (!isControl || control->isHidden()) continue;
    EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
    EXPECT_TRUE((control->focusPolicy() & Qt::TabFocus) != 0)
        << control->objectName().toStdString();
  }
}

TEST_F(ScreenTest, OpensAPhotoInDualStyleNoisyLeftAndCleanRight) {
  panels.openOptions.clear();
  click("btnAddPhoto");
  ASSERT_EQ(panels.openOptions.size(), 1U);
  EXPECT_FALSE(panels.openOptions[0].canChooseDirectories);
  EXPECT_FALSE(panels.openOptions[0].allowsMultipleSelection);
  EXPECT_EQ(view<ActionButton>("btnAddPhoto").state(), 1);
  panels.answerOpen({photo()});
  EXPECT_EQ(view<ActionButton>("btnAddPhoto").state(), 0);
  ASSERT_TRUE(waitForResult());

  EXPECT_EQ(screen().preview().style(), PreviewStyle::kDual);
  EXPECT_EQ(view<ActionButton>("btnDualMode").state(), 1);
  EXPECT_EQ(view<ActionButton>("btnFitScreen").state(), 1);
  EXPECT_TRUE(view("vwBeforeAfter").isVisible());
  EXPECT_FALSE(view("splitView").isVisible());
  EXPECT_TRUE(view<DraggingView>("vwDragging").liesOverPhoto());
  EXPECT_EQ(view<QLabel>("txtDenoiseMode").text(), "Auto");
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(),
            QStringLiteral("Strength %1 of 10").arg(engine.last().sigmaVal - 2));
  EXPECT_TRUE(view("vwBottom").isVisible());
  EXPECT_EQ(view<QLabel>("lblDimensions").text(), "256 x 256 px");
  ASSERT_EQ(engine.measured.size(), 1U);
  EXPECT_EQ(engine.measured[0], (FilterParameters{10, 5, 14}));

  // What each half shows is what it should, to the last sample.
  const Image region = regionSeen();
  const Image result = filtered(region);
  QImage left = view("vwImageContainer").grab().toImage();
  QImage right = view("vwImageContainerForDualMode").grab().toImage();
  const int x0 = view<PictureView>("imgPreviewPhoto").frame().x;
  const int y0 = view<PictureView>("imgPreviewPhoto").frame().y;
  int differing = 0;
  for (int y = 5; y < region.bitmap().height() - 5; y += 7) {
    for (int x = 5; x < region.bitmap().width() - 5; x += 7) {
      const std::uint8_t* noisy = region.bitmap().pixel(x, y);
      const std::uint8_t* clean = result.bitmap().pixel(x, y);
      ASSERT_EQ(left.pixel(x0 + x, y0 + y), qRgb(noisy[0], noisy[1], noisy[2])) << x << "," << y;
      ASSERT_EQ(right.pixel(x0 + x, y0 + y), qRgb(clean[0], clean[1], clean[2])) << x << "," << y;
      differing += noisy[0] != clean[0];
    }
  }
  EXPECT_GT(differing, 100);
}

TEST_F(ScreenTest, AStyleWithoutANewLayoutStartsNoRun) {
  ASSERT_TRUE(openAndWait(photo()));
  EXPECT_EQ(engine.runs(), 1);
  click("btnSplitMode");
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(engine.runs(), 2);
  EXPECT_TRUE(view("splitView").isVisible());
  click("btnSingleMode");
  click("btnSplitMode");
  click("btnSingleMode");
  EXPECT_EQ(engine.runs(), 2);
  EXPECT_FALSE(view("splitView").isVisible());
  EXPECT_TRUE(view("vwAfterFull").isVisible());
  click("btnSingleMode");
  EXPECT_EQ(view<ActionButton>("btnSingleMode").state(), 1);
  click("btnDualMode");
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(engine.runs(), 3);
}

TEST_F(ScreenTest, TheLineShowsTheOriginalLeftAndTheResultRight) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnSplitMode");
  ASSERT_TRUE(waitForResult());
  auto& line = view<CustomizedSplitView>("splitView");
  const Image region = regionSeen();
  const Image result = filtered(region);
  const auto& before = view<PictureView>("imgFilteredImgVWLeft");
  for (const double position : {100.0, 300.0, 40.0}) {
    line.setPosition(position, 0);
    ASSERT_TRUE(waitUntil([&] { return before.frame().width == static_cast<int>(position); }));
    QImage shown = view("vwImageContainer").grab().toImage();
    const int x0 = view<PictureView>("imgFilteredImgVWRight").frame().x;
    const int y0 = view<PictureView>("imgFilteredImgVWRight").frame().y;
    for (const int offset : {-20, -1, 0, 20}) {
      const int x = static_cast<int>(position) + offset;
      for (int y = 0; y < region.bitmap().height(); y += 11) {
        const std::uint8_t* p = (offset < 0 ? region.bitmap() : result.bitmap()).pixel(x, y);
        ASSERT_EQ(shown.pixel(x0 + x, y0 + y), qRgb(p[0], p[1], p[2])) << position << " " << offset;
      }
    }
  }
}

TEST_F(ScreenTest, NothingMovesDuringARun) {
  ASSERT_TRUE(openAndWait(photo()));
  // Auto cannot be switched off by its own button; a level does that.
  click("btnAutoMode");
  EXPECT_EQ(view<ActionButton>("btnAutoMode").state(), 1);
  EXPECT_EQ(engine.runs(), 1);
  engine.close();
  screen().changeLevel(1);
  ASSERT_TRUE(session().isRunningAlgorithm());
  ASSERT_TRUE(waitUntil([this] { return engine.runs() == 2; }));
  EXPECT_TRUE(waitUntil([this] { return view<QProgressBar>("progressBar").isVisible(); }));
  EXPECT_FALSE(window().isResizable());
  for (const char* name :
       {"btnExport", "btnFitScreen", "btn100Percent", "btn200Percent", "btnCloseWindow",
        "btnMinimizeWindow", "btnZoomWindow", "btnZoomIn", "btnZoomOut", "btnSingleMode",
        "btnSplitMode", "btnDualMode", "btnAutoMode", "btnDeepMode", "btnAddPhoto"}) {
    click(name);
    QTest::keyClick(&view(name), Qt::Key_Space);
  }
  QTest::mouseClick(&view("sliderCustomDenoise"), Qt::LeftButton);
  EXPECT_EQ(engine.runs(), 2);
  EXPECT_EQ(terminations, 0);
  EXPECT_EQ(panels.openOptions.size() + panels.saveOptions.size(), 0U);
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
  EXPECT_EQ(screen().preview().style(), PreviewStyle::kDual);
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "20 %");
  EXPECT_TRUE(window().isVisible() && !window().isMinimized());
  // The menu still gets the user out: it asks about the unsaved result.
  center.post(notifications::kClosePhotoFromMenuTapped);
  EXPECT_EQ(terminations, 0);
  engine.open();
  ASSERT_TRUE(waitForResult());
  EXPECT_TRUE(window().isResizable());
}

TEST_F(ScreenTest, ARunWithoutAResultGivesTheControlsBack) {
  ASSERT_TRUE(openAndWait(photo()));
  engine.givesNothing = true;
  screen().changeLevel(1);
  ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
  ASSERT_TRUE(waitUntil([this] { return !session().isRunningAlgorithm(); }));
  EXPECT_TRUE(view<ActionButton>("btnZoomIn").isEnabled());
  EXPECT_TRUE(window().isResizable());
  EXPECT_TRUE(view("vwDenoisedPreviewForDual").isVisible()) << "what was shown before";
  EXPECT_EQ(view<ActionButton>("btnAutoMode").state(), 1);
}

TEST_F(ScreenTest, EscapeAndTheButtonBesideTheBarStopARun) {
  ASSERT_TRUE(openAndWait(photo()));
  for (const bool isKey : {true, false}) {
    engine.close();
    const int runs = engine.runs();
    screen().changeLevel(5);
    ASSERT_TRUE(waitUntil([&] { return engine.runs() == runs + 1; }));
    EXPECT_TRUE(view("btnCancelRun").isVisible());
    isKey ? QTest::keyClick(&window(), Qt::Key_Escape) : click("btnCancelRun");
    engine.open();
    ASSERT_TRUE(waitForResult());
    EXPECT_FALSE(view("btnCancelRun").isVisible());
    EXPECT_EQ(view<QLabel>("txtDenoiseMode").text(), "Auto");
    EXPECT_EQ(view<QSlider>("sliderCustomDenoise").value(), 100);
  }
}

TEST_F(ScreenTest, LevelsAndAutoRunAgain) {
  ASSERT_TRUE(openAndWait(photo()));
  auto& slider = view<QSlider>("sliderCustomDenoise");
  slider.setValue(749);
  ASSERT_TRUE(waitForRun(1));
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "70 %");
  EXPECT_EQ(view<QLabel>("txtDenoiseMode").text(), "Manual");
  EXPECT_EQ(view<ActionButton>("btnAutoMode").state(), 0);
  EXPECT_EQ(engine.last().templateWinSize, 3);
  screen().changeLevel(3);
  ASSERT_TRUE(waitForRun(2));
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "100 %");
  EXPECT_EQ(engine.last().templateWinSize, 4);
  click("btnAutoMode");
  ASSERT_TRUE(waitForRun(3));
  EXPECT_EQ(slider.value(), slider.minimum());
  EXPECT_EQ(view<QLabel>("txtDenoiseMode").text(), "Auto");
  EXPECT_TRUE(view<QLabel>("txtCustomDenoiseVal").text().startsWith("Strength "));
}

TEST_F(ScreenTest, DeepShowsAt100PercentWhatIsSaved) {
  runProgram({"convert", photo(), "-seed", "1", "-attenuate", "2", "+noise", "Gaussian",
              folder.file("noisy.png")});
  ASSERT_TRUE(openAndWait(folder.file("noisy.png")));
  click("btn100Percent");
  ASSERT_TRUE(waitForResult());
  EXPECT_TRUE(view("lblNoise").isVisible());
  const int runs = engine.runs();
  QTest::keyClick(&window(), Qt::Key_D);
  EXPECT_TRUE(view("progressBar").isVisible());
  ASSERT_TRUE(waitForResult());
  EXPECT_FALSE(view("lblNoise").isVisible());
  EXPECT_EQ(view<ActionButton>("btnDeepMode").state(), 1);
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), QStringLiteral("Noise × 1.0"));
  EXPECT_EQ(engine.runs(), runs);
  panels.saveOptions.clear();
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return session().state() == EditState::kSaved; }));
  ASSERT_TRUE(waitForResult());
  const QImage saved =
      QImage(QString::fromStdString(folder.file("out.png"))).convertToFormat(QImage::Format_RGB32);
  EXPECT_TRUE(waitUntil([&] {
    const PixelRect seen = view<PictureView>("imgFilteredImgVWRightForDual").frame();
    const QImage shown = view("vwImageContainerForDualMode").grab().toImage();
    return shown.copy(seen.x, seen.y, saved.width(), saved.height())
               .convertToFormat(QImage::Format_RGB32) == saved;
  }));
  click("btnDeepMode");
  ASSERT_TRUE(waitForRun(runs));
}

TEST_F(ScreenTest, TheHandleIsActedOnWhenItIsLetGo) {
  ASSERT_TRUE(openAndWait(photo()));
  auto& slider = view<QSlider>("sliderCustomDenoise");
  const auto at = [&](int level) {
    return QPoint(8 + (slider.width() - 16) * (level - 1) / 9, slider.height() / 2);
  };
  QTest::mousePress(&slider, Qt::LeftButton, {}, at(1));
  for (int level = 2; level <= 8; ++level) QTest::mouseMove(&slider, at(level));
  QApplication::processEvents();
  EXPECT_EQ(engine.runs(), 1);
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "80 %") << "seen while it moves";
  QTest::mouseMove(&slider, at(1));
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, at(1));
  QApplication::processEvents();
  EXPECT_EQ(engine.runs(), 1);
  EXPECT_TRUE(view<QLabel>("txtCustomDenoiseVal").text().startsWith("Strength "));
  QTest::mousePress(&slider, Qt::LeftButton, {}, at(1));
  QTest::mouseMove(&slider, at(8));
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, at(8));
  ASSERT_TRUE(waitForRun(1));
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "80 %");

  // A click on the groove is one step, however long the button stays down.
  QTest::mousePress(&slider, Qt::LeftButton, {}, at(1));
  QTest::qWait(700);
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, at(1));
  ASSERT_TRUE(waitForRun(2));
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "70 %");

  // What is chosen during a run is the next run's.
  engine.close();
  QTest::keyClick(&window(), Qt::Key_PageUp);
  ASSERT_TRUE(waitUntil([this] { return engine.runs() == 4; }));
  QTest::keyClick(&window(), Qt::Key_PageUp);
  QTest::keyClick(&window(), Qt::Key_PageUp);
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), "100 %");
  engine.open();
  ASSERT_TRUE(waitForRun(4));
  EXPECT_EQ(engine.last().templateWinSize, 4);
}

TEST_F(ScreenTest, TheFocusComesBackAfterARun) {
  ASSERT_TRUE(openAndWait(photo()));
  for (const char* name : {"btnZoomIn", "sliderCustomDenoise"}) {
    QWidget& control = view(name);
    control.setFocus();
    engine.close();
    const int runs = engine.runs();
    QTest::keyClick(&control, control.inherits("QSlider") ? Qt::Key_Right : Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return engine.runs() == runs + 1; })) << name;
    EXPECT_EQ(window().focusWidget(), &view("vwPreviewContainer")) << "where no key does harm";
    QTest::keyClick(window().focusWidget(), Qt::Key_Return);
    engine.open();
    ASSERT_TRUE(waitForResult()) << name;
    EXPECT_EQ(window().focusWidget(), &control);
    EXPECT_EQ(engine.runs(), runs + 1);
  }
}

TEST_F(ScreenTest, ToolTipsNameTheControlsAndTheirKeys) {
  const std::pair<const char*, const char*> tips[] = {
      {"btnAddPhoto", "Open Image\nCtrl+O"},
      {"btnExport", "Save\nCtrl+S"},
      {"btn100Percent", "Actual Size\nCtrl+1"},
      {"btn200Percent", "Double Size\nCtrl+2"},
      {"btnFitScreen", "Fit To Screen\nCtrl+0"},
      {"btnZoomIn", "Zoom In\nCtrl++"},
      {"btnZoomOut", "Zoom Out\nCtrl+-"},
      {"btnSingleMode", "Single Mode\n1"},
      {"btnSplitMode", "Split Mode\n2"},
      {"btnDualMode", "Dual Mode\n3"},
      {"btnAutoMode", "Auto Mode\nA"},
      {"btnDeepMode", "Deep, For Strong Noise\nD"},
      {"sliderCustomDenoise", "Select Denoise Level\nPage Up, Page Down"},
      {"btnHelp", "Help"},
      {"btnFeedback", "Submit Feedback"}};
  for (const auto& [name, tip] : tips) EXPECT_EQ(view(name).toolTip(), tip) << name;
}

TEST_F(ScreenTest, ZoomStopsAtItsEnds) {
  ASSERT_TRUE(openAndWait(photo()));
  for (int step = 1; step <= 5; ++step) {
    click("btnZoomOut");
    ASSERT_TRUE(waitForResult()) << step;
  }
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "50 %");
  const int runs = engine.runs();
  click("btnZoomOut");
  QApplication::processEvents();
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "50 %");
  EXPECT_EQ(engine.runs(), runs);
  click("btn200Percent");
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "200 %");
  EXPECT_EQ(view<ActionButton>("btn200Percent").state(), 1);
  EXPECT_EQ(view<ActionButton>("btnFitScreen").state(), 0);
}

TEST_F(ScreenTest, RefusesWhatIsNoPhoto) {
  testing_support::writeFile(folder.file("notes.jpg"), "no picture at all");
  std::filesystem::copy_file(photo(), folder.file("photo.unknown"));
  for (const char* name : {"notes.jpg", "photo.unknown", "missing.png"}) {
    alerts.shown.clear();
    screen().photoDraggedWithPath(folder.file(name));
    ASSERT_EQ(alerts.shown.size(), 1U) << name;
    EXPECT_EQ(alerts.shown[0].messageText, "File Format Not Suppored");
    EXPECT_EQ(alerts.shown[0].informativeText, "");
    EXPECT_FALSE(session().hasPhoto());
    EXPECT_FALSE(view<ActionButton>("btnExport").isEnabled());
    EXPECT_TRUE(view("vwDragging").isVisible());
  }
  click("btnCloseWindow");
  EXPECT_EQ(terminations, 1);
  ASSERT_TRUE(openAndWait(photo("IMG_1.PNG")));
  EXPECT_TRUE(window().isResizable());
}

TEST_F(ScreenTest, ABadFileAfterDontSaveShowsTheEmptyScreen) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnZoomIn");
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(view<ActionButton>("btnZoomIn").state(), 1);
  testing_support::writeFile(folder.file("notes.jpg"), "no picture at all");
  screen().photoDraggedWithPath(folder.file("notes.jpg"));
  click("btnDontSaveChanges");
  EXPECT_EQ(alerts.shown.size(), 1U);
  EXPECT_TRUE(view("vwDragging").isVisible());
  for (const char* name : {"vwPreviewContainer", "vwBottom"}) {
    EXPECT_FALSE(view(name).isVisible()) << name;
  }
  EXPECT_EQ(view<ActionButton>("btnZoomIn").state(), 0);
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
  ASSERT_TRUE(openAndWait(photo()));
}

TEST_F(ScreenTest, ThePhotoOfTheLastTimeIsOpenedWhereOneIsRemembered) {
  saveBookmarkPathsFromTableView({PhotoFile::initWithFileUrl(photo())}, defaults);
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(session().selectedImageFile()->fileName, "photo.png");
  const auto saved = savedPathsFromUserDefaults(true, defaults);
  ASSERT_EQ(saved.size(), 1U);
  EXPECT_EQ(saved[0].path, photo());
}

TEST_F(ScreenTest, TheTitleBarsButtonsActOnTheWindow) {
  click("btnMinimizeWindow");
  EXPECT_TRUE(window().isMinimized());
  window().showNormal();
  QApplication::processEvents();
  const QSize before = window().size();
  click("btnZoomWindow");
  EXPECT_NE(window().size(), before);
  click("btnZoomWindow");
  EXPECT_EQ(window().size(), before);
  EXPECT_EQ(view<ActionButton>("btnZoomWindow").state(), 0);
  click("btnCloseWindow");
  EXPECT_EQ(terminations, 1);
}

TEST_F(ScreenTest, RefusesWhatLiesInTheTrash) {
  const std::string trash = folder.file("Trash/files");
  std::filesystem::create_directories(trash);
  qputenv("XDG_DATA_HOME", folder.path().c_str());
  std::filesystem::copy_file(photo(), trash + "/photo.png");
  click("btnAddPhoto");
  panels.answerOpen({trash + "/photo.png"});
  qunsetenv("XDG_DATA_HOME");
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Can't Process");
  EXPECT_FALSE(session().hasPhoto());
}

TEST_F(ScreenTest, APhotoCutShortIsToldAndLeavesAnEmptyScreen) {
  const std::string whole = testing_support::contentsOf(photo());
  testing_support::writeFile(folder.file("cut.png"), whole.substr(0, whole.size() / 2));
  screen().photoDraggedWithPath(folder.file("cut.png"));
  ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
  EXPECT_EQ(alerts.shown[0].messageText, "File Format Not Suppored");
  EXPECT_FALSE(session().hasPhoto());
  EXPECT_TRUE(view("vwDragging").isVisible());
  ASSERT_TRUE(openAndWait(photo()));
}

TEST_F(ScreenTest, AUprightViewOfATurnedPhoto) {
  const std::string path = folder.file("turned.jpg");
  runProgram({"convert", photo(), "-crop", "240x120+0+0", "+repage", path});
  runProgram({"exiv2", "-Mset Exif.Image.Orientation Short 6", path});
  ASSERT_TRUE(openAndWait(path));
  const auto& shown = view<PictureView>("imgPreviewPhoto");
  EXPECT_LT(shown.frame().width, shown.frame().height);
  EXPECT_EQ(view<QLabel>("lblDimensions").text(), "120 x 240 px");
}

TEST_F(ScreenTest, AResizeEndsInAFreshResultOfWhatIsSeen) {
  ASSERT_TRUE(openAndWait(photo()));
  const int runs = engine.runs();
  window().resize(1300, 800);
  ASSERT_TRUE(waitUntil([&] { return engine.runs() == runs + 1; }));
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(regionSeen().bitmap().width(), view("vwImageContainer").width());
}

TEST_F(ScreenTest, DraggingALargePictureMovesBothHalvesAndRunsAgain) {
  auto& area = view("vwPreviewContainer");
  runProgram({"convert", photo(), "-resize", "900x900!", folder.file("large.png")});
  ASSERT_TRUE(openAndWait(folder.file("large.png")));
  click("btn200Percent");
  ASSERT_TRUE(waitForResult());
  const auto& left = view<PictureView>("imgPreviewPhoto");
  const PixelRect before = left.frame();
  const int runs = engine.runs();
  QTest::mousePress(&area, Qt::LeftButton, {}, {300, 300});
  EXPECT_FALSE(screen().preview().isResultShown());
  QTest::mouseMove(&area, {260, 280});
  QTest::mouseRelease(&area, Qt::LeftButton, {}, {260, 280});
  EXPECT_EQ(left.frame().x, before.x - 40);
  EXPECT_EQ(left.frame().y, before.y - 20);
  EXPECT_EQ(view<PictureView>("imgPreviewPhotoForDual").frame(), left.frame());
  ASSERT_TRUE(waitUntil([&] { return engine.runs() == runs + 1; }));
  ASSERT_TRUE(waitForResult());

  // A click without a drag only puts the result back.
  QTest::mousePress(&area, Qt::LeftButton, {}, {300, 300});
  QTest::mouseRelease(&area, Qt::LeftButton, {}, {300, 300});
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(engine.runs(), runs + 1);
}

}  // namespace
}  // namespace velmara
