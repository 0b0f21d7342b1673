// The main screen as the program makes it, with real widgets, photos and runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSlider>

#include <algorithm>

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

class PixelTest : public ScreenTest {
 protected:
  static int differingPixels(const Image& one, const Image& other) {
    int count = 0;
    const Bitmap& a = one.bitmap();
    for (int y = 0; y < a.height(); ++y) {
      for (int x = 0; x < a.width(); ++x) {
        count += a.pixel(x, y)[0] != other.bitmap().pixel(x, y)[0] ? 1 : 0;
      }
    }
    return count;
  }
  /// Whether a container shows these columns of a picture where its picture stands.
  void expectShown(const char* container, const Image& picture, int from, int to) {
    const QImage shown = view(container).grab().toImage();
    const PixelRect frame = view<PictureView>("imgPreviewPhoto").frame();
    for (int y = 0; y < picture.bitmap().height(); y += 7) {
      for (int x = from; x < to; ++x) {
        const std::uint8_t* p = picture.bitmap().pixel(x, y);
        ASSERT_EQ(shown.pixel(frame.x + x, frame.y + y), qRgb(p[0], p[1], p[2])) << x << "," << y;
      }
    }
  }
};

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
  for (const auto* button : window().findChildren<ActionButton*>()) {
    static const QStringList alive{"btnAddPhoto",       "btnHelp",       "btnCloseWindow",
                                   "btnMinimizeWindow", "btnZoomWindow", "btnBatchProcess"};
    EXPECT_EQ(button->isEnabled(), alive.contains(button->objectName()))
        << button->objectName().toStdString();
  }
  // One point of overlap hides the seam under the preview.
  const QRect preview = view("vwPreviewContainer").geometry();
  EXPECT_EQ(preview.bottom(), view("vwBeforeAfter").geometry().top());

  click("btnHelp");
  const auto menus = screen().findChildren<QMenu*>();
  const auto menu = std::ranges::find_if(menus, &QMenu::isVisible);
  ASSERT_NE(menu, menus.end());
  QStringList items;
  for (QAction* item : (*menu)->actions()) {
    items << item->text();
    item->trigger();
  }
  (*menu)->close();
  EXPECT_EQ(items, QStringList({"Feedback", "Help"}));
  EXPECT_TRUE(feedbacks == 1 && helps == 1);
}

TEST_F(PixelTest, OpensAPhotoInDualStyleNoisyLeftAndCleanRight) {
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

  // What each half shows is what it should, to the last sample.
  const Image region = regionSeen();
  const Image result = filtered(region);
  EXPECT_GT(differingPixels(region, result), 1000);
  expectShown("vwImageContainer", region, 0, region.bitmap().width());
  expectShown("vwImageContainerForDualMode", result, 0, region.bitmap().width());
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

TEST_F(PixelTest, TheLineShowsTheOriginalLeftAndTheResultRight) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnSplitMode");
  ASSERT_TRUE(waitForResult());
  const Image region = regionSeen();
  const Image result = filtered(region);
  for (const int position : {100, 300, 40}) {
    view<CustomizedSplitView>("splitView").setPosition(position, 0);
    const auto& before = view<PictureView>("imgFilteredImgVWLeft");
    ASSERT_TRUE(waitUntil([&] { return before.frame().width == position; }));
    expectShown("vwImageContainer", region, 0, position);
    expectShown("vwImageContainer", result, position, region.bitmap().width());
  }
}

TEST_F(ScreenTest, NothingMovesDuringARun) {
  ASSERT_TRUE(openAndWait(photo()));
  engine.close();
  screen().changeLevel(1);
  ASSERT_TRUE(session().isRunningAlgorithm());
  ASSERT_TRUE(waitUntil([this] { return engine.runs() == 2; }));
  EXPECT_TRUE(waitUntil([this] { return view<QProgressBar>("progressBar").isVisible(); }));
  EXPECT_FALSE(window().isResizable());
  for (const char* name : {"btnExport", "btnFitScreen", "btn100Percent", "btn200Percent",
                           "btnCloseWindow", "btnMinimizeWindow", "btnZoomWindow", "btnZoomIn",
                           "btnZoomOut", "btnSingleMode", "btnSplitMode", "btnDualMode",
                           "btnNoiseMode", "btnAutoMode", "btnDeepMode", "btnAddPhoto"}) {
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

TEST_F(ScreenTest, ARunThatIsStoppedOrFailsLeavesWhatWasShown) {
  ASSERT_TRUE(openAndWait(photo()));
  for (const std::string end : {"key", "button", "failure"}) {
    SCOPED_TRACE(end);
    engine.close();
    engine.givesNothing = end == "failure";
    const int runs = engine.runs();
    screen().changeLevel(5);
    ASSERT_TRUE(waitUntil([&] { return engine.runs() == runs + 1; }));
    EXPECT_TRUE(view("btnCancelRun").isVisible());
    if (end == "key") QTest::keyClick(&window(), Qt::Key_Escape);
    if (end == "button") click("btnCancelRun");
    engine.open();
    ASSERT_TRUE(waitForResult());
    EXPECT_FALSE(view("btnCancelRun").isVisible());
    EXPECT_EQ(view<QLabel>("txtDenoiseMode").text(), "Auto");
    EXPECT_EQ(view<ActionButton>("btnAutoMode").state(), 1);
    EXPECT_EQ(view<QSlider>("sliderCustomDenoise").value(), 100);
    EXPECT_TRUE(view<ActionButton>("btnZoomIn").isEnabled() && window().isResizable());
    EXPECT_EQ(alerts.shown.size(), end == "failure" ? 1U : 0U);
  }
}

TEST_F(ScreenTest, TheHandleIsActedOnWhenItIsLetGo) {
  ASSERT_TRUE(openAndWait(photo()));
  auto& slider = view<QSlider>("sliderCustomDenoise");
  const auto at = [&](int level) {
    return QPoint(8 + (slider.width() - 16) * (level - 1) / 9, slider.height() / 2);
  };
  QTest::mousePress(&slider, Qt::LeftButton, {}, at(1));
  for (int level = 2; level <= 8; ++level) QTest::mouseMove(&slider, at(level));
  Q_EMIT session().parametersChanged();  // The noise has been measured meanwhile.
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
  ASSERT_TRUE(waitForRun(2));
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, at(1));
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
  EXPECT_EQ(view<QLabel>("txtDenoiseMode").text(), "Manual");

  // Auto is left by a level, and by nothing else; back in it the handle is where it began.
  for (int count = 0; count < 2; ++count) {
    click("btnAutoMode");
    ASSERT_TRUE(waitForRun(5));
    EXPECT_EQ(view<ActionButton>("btnAutoMode").state(), 1);
    EXPECT_EQ(slider.value(), slider.minimum());
  }
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

TEST_F(ScreenTest, ToolTipsNameTheControlsAndTheirKeysAndTheKeyboardReachesThem) {
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
      {"btnNoiseMode", "Removed Noise\n4"},
      {"btnAutoMode", "Auto Mode\nA"},
      {"btnDeepMode", "Deep, For Strong Noise\nD"},
      {"sliderCustomDenoise", "Select Denoise Level\nPage Up, Page Down"},
      {"btnHelp", "Help"},
      {"btnFeedback", "Submit Feedback"},
      {"btnCloseWindow", "Close\nCtrl+W"},
      {"btnMinimizeWindow", "Minimize"},
      {"btnZoomWindow", "Zoom"},
      {"btnCancelRun", "Stop\nEsc"}};
  for (const auto& [name, tip] : tips) {
    const QWidget& control = view(name);
    EXPECT_EQ(control.toolTip(), tip) << name;
    EXPECT_EQ(control.accessibleName(), QString(tip).section('\n', 0, 0)) << name;
    EXPECT_TRUE((control.focusPolicy() & Qt::TabFocus) != 0) << name;
  }
}

TEST_F(ScreenTest, RefusesWhatIsNoPhoto) {
  testing_support::writeFile(folder.file("notes.jpg"), "no picture at all");
  std::filesystem::copy_file(photo(), folder.file("photo.unknown"));
  const std::string whole = testing_support::contentsOf(photo());
  testing_support::writeFile(folder.file("cut.png"), whole.substr(0, whole.size() / 2));
  std::filesystem::create_directories(folder.file("Trash/files"));
  std::filesystem::copy_file(photo(), folder.file("Trash/files/photo.png"));
  qputenv("XDG_DATA_HOME", folder.path().c_str());
  const std::pair<const char*, const char*> rows[] = {{"notes.jpg", "File Format Not Suppored"},
                                                      {"photo.unknown", "File Format Not Suppored"},
                                                      {"missing.png", "File Format Not Suppored"},
                                                      {"cut.png", "File Format Not Suppored"},
                                                      {"Trash/files/photo.png", "Can't Process"}};
  for (const auto& [name, text] : rows) {
    alerts.shown.clear();
    click("btnAddPhoto");
    panels.answerOpen({folder.file(name)});
    ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); })) << name;
    EXPECT_EQ(alerts.shown[0].messageText, text);
    EXPECT_EQ(alerts.shown[0].informativeText.empty(), std::string(name) != "cut.png");
    EXPECT_FALSE(session().hasPhoto());
    EXPECT_FALSE(view<ActionButton>("btnExport").isEnabled());
    EXPECT_TRUE(view("vwDragging").isVisible());
  }
  qunsetenv("XDG_DATA_HOME");
  ASSERT_TRUE(openAndWait(photo("IMG_1.PNG")));
  // Over a photo that is given up for it, it leaves the screen as it was built.
  for (const char* zoom : {"btnZoomIn", "btnZoomOut"}) {
    click(zoom);
    ASSERT_TRUE(waitForResult());
    EXPECT_EQ(view<ActionButton>(zoom).state(), 1);
    // A run of what is seen is on its way.
    screen().preview().windowDidResize();
    screen().preview().windowDidEndLiveResize();
    screen().photoDraggedWithPath(folder.file("notes.jpg"));
    click("btnDontSaveChanges");
    EXPECT_EQ(view<ActionButton>(zoom).state(), 0);
    EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
    EXPECT_TRUE(view("vwDragging").isVisible());
    EXPECT_FALSE(view("vwPreviewContainer").isVisible() || view("vwBottom").isVisible());
    ASSERT_TRUE(openAndWait(photo()));
  }
}

// Stored on its side, it is shown upright.
// A photo is remembered before there is a window.
class RememberedTest : public ScreenTest {
 protected:
  RememberedTest() {
    runProgram({"convert", photo(), "-crop", "240x120+0+0", "+repage", path});
    runProgram({"exiv2", "-Mset Exif.Image.Orientation Short 6", path});
    saveBookmarkPathsFromTableView({PhotoFile::initWithFileUrl(path)}, defaults);
  }
  const std::string path = folder.file("turned.jpg");
};

TEST_F(RememberedTest, ThePhotoOfTheLastTimeIsOpened) {
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(session().selectedImageFile()->fileName, "turned.jpg");
  const auto& shown = view<PictureView>("imgPreviewPhoto");
  EXPECT_LT(shown.frame().width, shown.frame().height);
  EXPECT_EQ(view<QLabel>("lblDimensions").text(), "120 x 240 px");
  const auto saved = savedPathsFromUserDefaults(true, defaults);
  ASSERT_EQ(saved.size(), 1U);
  EXPECT_EQ(saved[0].path, path);
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

}  // namespace
}  // namespace velmara
