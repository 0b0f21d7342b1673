// Looking closely: the wheel, the space bar and the keys on the picture.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QWheelEvent>

#include "app/screen_fixture.h"
#include "preview/views/picture_view.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using testing_support::runProgram;
using testing_support::ScreenTest;

class PreviewInputTest : public ScreenTest {
 protected:
  void turnWheel(QPoint position, int eighths, Qt::KeyboardModifiers modifiers) {
    auto& area = view("vwPreviewContainer");
    QWheelEvent event(position, area.mapToGlobal(position), {}, {0, eighths}, Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&area, &event);
  }
  std::string largePhoto() {
    runProgram({"convert", photo(), "-resize", "900x800!", folder.file("large.png")});
    return folder.file("large.png");
  }
  const PictureView& picture() { return view<PictureView>("imgPreviewPhoto"); }
};

TEST_F(PreviewInputTest, CtrlAndTheWheelZoomAboutThePointer) {
  ASSERT_TRUE(openAndWait(largePhoto()));
  click("btn100Percent");
  ASSERT_TRUE(waitForResult());
  const PixelRect before = picture().frame();
  const QPoint pointer(150, 120);
  turnWheel(pointer, 120, Qt::NoModifier);
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
  // A touchpad's turns come in parts.
  turnWheel(pointer, 60, Qt::ControlModifier);
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
  turnWheel(pointer, 60, Qt::ControlModifier);
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "110 %");
  ASSERT_TRUE(waitForResult());
  const PixelRect after = picture().frame();
  EXPECT_EQ(after.width, 990);
  // The same place of the photo lies under the pointer, to the pixel that rounding costs.
  EXPECT_NEAR((pointer.x() - after.x) / 1.1, pointer.x() - before.x, 1.0);
  EXPECT_NEAR((pointer.y() - after.y) / 1.1, pointer.y() - before.y, 1.0);

  // Over the right half of dual style it is the same place of the same photo.
  const QPoint right = pointer + QPoint(view("vwImageContainer").width(), 0);
  turnWheel(right, -120, Qt::ControlModifier);
  ASSERT_TRUE(waitForResult());
  EXPECT_NEAR(picture().frame().x, before.x, 1.0);
  EXPECT_NEAR(picture().frame().y, before.y, 1.0);

  // During a run nothing changes.
  engine.close();
  QTest::keyClick(&window(), Qt::Key_PageUp);
  ASSERT_TRUE(session().isRunningAlgorithm());
  turnWheel(pointer, 120, Qt::ControlModifier);
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
  engine.open();
  ASSERT_TRUE(waitForResult());
}

TEST_F(PreviewInputTest, TheSpaceBarHeldShowsTheOriginal) {
  ASSERT_TRUE(openAndWait(photo()));
  const int runs = engine.runs();
  auto& overlay = view("vwDenoisedPreviewForDual");
  QWidget* focus = QApplication::focusWidget();
  ASSERT_EQ(focus, &view("vwPreviewContainer"));
  QTest::keyPress(focus, Qt::Key_Space);
  EXPECT_FALSE(overlay.isVisible());
  QTest::keyRelease(focus, Qt::Key_Space);
  ASSERT_TRUE(waitForResult());
  EXPECT_TRUE(overlay.isVisible());
  EXPECT_EQ(engine.runs(), runs);

  // Whatever takes the release away does not leave the original there.
  QTest::keyPress(focus, Qt::Key_Space);
  EXPECT_FALSE(overlay.isVisible());
  view("btnExport").setFocus();
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(engine.runs(), runs);

  // A result of another zoom is not put back.
  focus->setFocus();
  QTest::keyPress(focus, Qt::Key_Space);
  engine.close();
  click("btnZoomIn");
  ASSERT_TRUE(waitUntil([this] { return session().isRunningAlgorithm(); }));
  QTest::keyRelease(focus, Qt::Key_Space);
  EXPECT_FALSE(screen().preview().isResultShown());
  engine.open();
  ASSERT_TRUE(waitForResult());
}

TEST_F(PreviewInputTest, ArrowKeysPanToTheEdgeAndEndInAFreshResult) {
  ASSERT_TRUE(openAndWait(largePhoto()));
  click("btn100Percent");
  ASSERT_TRUE(waitForResult());
  const int runs = engine.runs();
  auto& area = view("vwPreviewContainer");
  const QSize room = view("vwImageContainer").size();
  for (int i = 0; i < 30; ++i) QTest::keyClick(&area, Qt::Key_Left);
  EXPECT_EQ(picture().frame().x, 0);
  for (int i = 0; i < 30; ++i) QTest::keyClick(&area, Qt::Key_Up);
  EXPECT_EQ(picture().frame().y, 0);
  for (int i = 0; i < 30; ++i) QTest::keyClick(&area, Qt::Key_Right);
  EXPECT_EQ(picture().frame().x, room.width() - 900);
  for (int i = 0; i < 30; ++i) QTest::keyClick(&area, Qt::Key_Down);
  EXPECT_EQ(picture().frame().y, room.height() - 800);
  // At the edge nothing moves any more, but what is seen now has no result yet.
  EXPECT_FALSE(screen().preview().isResultShown());
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(engine.runs(), runs + 1);
}

// The pointer rests, the result comes, and the button is still held; the other one is pressed
// meanwhile.
TEST_F(PreviewInputTest, ADragGoesOnAfterTheResultOfItsPauseAndEndsWithItsButton) {
  ASSERT_TRUE(openAndWait(largePhoto()));
  click("btn100Percent");
  ASSERT_TRUE(waitForResult());
  auto& area = view("vwPreviewContainer");
  const auto send = [&](QEvent::Type type, Qt::MouseButtons held) {
    const QPointF at(280, 300);
    QMouseEvent event(type, at, area.mapToGlobal(at), Qt::RightButton, held, Qt::NoModifier);
    QApplication::sendEvent(&area, &event);
  };
  const int start = picture().frame().x;
  const int runs = engine.runs();
  QTest::mousePress(&area, Qt::LeftButton, {}, {300, 300});
  QTest::mouseMove(&area, {280, 300});
  EXPECT_EQ(picture().frame().x, start - 20);
  EXPECT_EQ(view<PictureView>("imgPreviewPhotoForDual").frame(), picture().frame());
  ASSERT_TRUE(waitForRun(runs));
  send(QEvent::MouseButtonPress, Qt::LeftButton | Qt::RightButton);
  send(QEvent::MouseButtonRelease, Qt::LeftButton);
  QTest::mouseMove(&area, {230, 300});
  EXPECT_EQ(picture().frame().x, start - 70);
  EXPECT_FALSE(screen().preview().isResultShown());
  QTest::mouseRelease(&area, Qt::LeftButton, {}, {230, 300});
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(engine.runs(), runs + 2);
  // Over with the button; a click without a drag only puts the result back.
  QTest::mouseMove(&area, {200, 300});
  EXPECT_EQ(picture().frame().x, start - 70);
  QTest::mouseClick(&area, Qt::LeftButton, {}, {300, 300});
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(engine.runs(), runs + 2);
}

}  // namespace
}  // namespace velmara
