// Looking closely: sizes, zoom steps, dragging the picture, resizing the window.
#include <gtest/gtest.h>

#include <QPoint>
#include <QRect>
#include <QSize>

#include <cmath>
#include <string>

#include "e2e/desktop_test.h"

namespace velmara::e2e {
namespace {

class LookingTest : public OpenPhotoTest {
 protected:
  QSize photoTimes(float factor) const {
    const QSize size = expected->upright().size();
    return {static_cast<int>(std::lround(size.width() * double{factor})),
            static_cast<int>(std::lround(size.height() * double{factor}))};
  }
  QSize fittedTimes(float factor) {
    return fittedSize(expected->upright().size(), program().leftHalf().size(), double{factor});
  }
  Scene result(const QSize& size, float factor, const QPoint& dragged = {}) {
    return dualScene(*expected, size, factor, true, dragged);
  }
};

TEST_F(LookingTest, SizesAndZoomStepsShowTheResultOfWhatIsVisible) {
  program().click("btn100Percent");
  ASSERT_TRUE(shows(result(photoTimes(1.0F), 1.0F), "actual size"));
  program().click("btn200Percent");
  ASSERT_TRUE(shows(result(photoTimes(2.0F), 2.0F), "double size"));
  program().click("btnZoomOut");
  ASSERT_TRUE(shows(result(photoTimes(1.9F), 1.9F), "one step out of double size"));
  display().key("ctrl+plus");
  ASSERT_TRUE(shows(result(photoTimes(2.0F), 2.0F), "one step in, by the keyboard"));
  program().click("btnFitScreen");
  ASSERT_TRUE(shows(result(fittedTimes(1.0F), 1.0F), "fit"));

  // While the whole picture is seen it stays in the middle, wherever the pointer is.
  display().moveTo(program().leftHalf().center() + QPoint(60, -40));
  display().keyDown("ctrl");
  display().turnWheel(-1);
  display().keyUp("ctrl");
  ASSERT_TRUE(shows(result(fittedTimes(0.9F), 0.9F), "one step out, by the wheel"));
  display().keyDown("ctrl");
  display().turnWheel(1);
  display().keyUp("ctrl");
  EXPECT_TRUE(shows(result(fittedTimes(1.0F), 1.0F), "one step in, by the wheel"));
}

TEST_F(LookingTest, APauseInADragAndItsEndGiveTheResultOfThePlace) {
  program().click("btn100Percent");
  const QSize size = photoTimes(1.0F);
  ASSERT_TRUE(shows(result(size, 1.0F), "actual size"));
  const int runs = program().timesLogged("Denoising Started");

  const QPoint hand = program().rightHalf().center();
  const QPoint first(-90, 50);
  const Scene moved = dualScene(*expected, size, 1.0F, false, first);
  const Scene paused = result(size, 1.0F, first);
  display().dragTo(hand, hand + first);
  EXPECT_TRUE(shows(moved, "both halves moved, without a result"));
  EXPECT_EQ(program().timesLogged("Denoising Started"), runs) << "before the pause";
  ASSERT_TRUE(shows(paused, "the pause in the drag"));
  EXPECT_EQ(program().timesLogged("Mouse Up"), 0);
  display().release();
  ASSERT_TRUE(shows(paused, "released"));

  // A drag without a pause has its result at its end; what is dragged too far stays.
  const QPoint second(60, -20);
  display().dragTo(hand, hand + second);
  display().release();
  ASSERT_TRUE(shows(result(size, 1.0F, first + second), "dragged on"));
  display().dragTo(hand, hand + QPoint(250, 0), 1);
  display().release();
  EXPECT_TRUE(shows(result(size, 1.0F, first + second), "not beyond the picture's edge"));
}

TEST_F(LookingTest, ALargePictureIsDraggedUnderTheLineOfSplitStyle) {
  program().click("btnSplitMode");
  ASSERT_TRUE(waitUntil([&] { return lineAt().has_value(); }));
  // A size that is chosen during the new style's run is refused.
  const QSize fit = fittedSize(expected->upright().size(), program().previewArea().size());
  ASSERT_TRUE(shows(splitScene(*expected, fit, 1.0F, *lineAt()), "split at fit"));
  program().click("btn200Percent");
  ASSERT_TRUE(program().waitForLog("Denoising Done !!", 3));
  ASSERT_TRUE(waitUntil([&] { return lineAt().has_value(); }));
  const QRect area = program().previewArea();
  const QPoint grip(area.left() + *lineAt() + 3, area.center().y());
  const int line = *lineAt() - 170;
  display().dragTo(grip, grip - QPoint(170, 0));
  display().release();
  ASSERT_TRUE(waitUntil([&] { return lineAt() == line; })) << lineAt().value_or(-1);
  const QSize size = photoTimes(2.0F);
  ASSERT_GT(size.width(), area.width());
  ASSERT_TRUE(shows(splitScene(*expected, size, 2.0F, line), "split at double size"));

  // The picture moves, the line stays.
  const QPoint hand = area.center() + QPoint(130, 60);
  const QPoint moved(-75, 45);
  display().dragTo(hand, hand + moved);
  display().release();
  EXPECT_TRUE(shows(splitScene(*expected, size, 2.0F, line, moved), "dragged in split style"));
}

TEST_F(LookingTest, ALevelChosenByTheKeyboardIsAnotherResult) {
  display().key("1");
  const QSize size = fittedSize(expected->upright().size(), program().previewArea().size());
  ASSERT_TRUE(shows(singleScene(*expected, size, 1.0F), "automatic"));
  display().key("Prior");
  ASSERT_TRUE(shows(singleScene(*expected, size, 1.0F, 2), "level 2"));
  display().key("a");
  EXPECT_TRUE(shows(singleScene(*expected, size, 1.0F), "automatic again"));
}

TEST_F(LookingTest, AWindowResizedByItsCornerShowsTheResultOfItsNewSize) {
  const QRect before = program().windowRect();
  const QPoint corner = before.bottomRight() - QPoint(2, 2);
  display().dragTo(corner, corner + QPoint(52, 31));
  display().release();
  ASSERT_TRUE(waitUntil([&] { return program().windowRect().width() > before.width() + 40; }));
  ASSERT_TRUE(waitUntil([&] { return program().windowRect().height() > before.height() + 20; }));
  EXPECT_EQ(program().windowRect().topLeft(), before.topLeft());
  ASSERT_TRUE(shows(result(fittedTimes(1.0F), 1.0F), "after the resize"));
  program().click("btn200Percent");
  EXPECT_TRUE(shows(result(photoTimes(2.0F), 2.0F), "double size in the larger window"));
}

/// The same screen with two device pixels a point.
class DenseScreenTest : public DesktopTest {
 protected:
  QSize screenSize() const override { return {2600, 1560}; }
  int scale() const override { return 2; }
};

TEST_F(DenseScreenTest, PhotoPixelsAreDevicePixelsAtActualSize) {
  const ExpectedPhoto expected(photo());
  openInDual(photo(), expected);
  program().click("btn100Percent");
  const QSize size = expected.upright().size();
  const QRect left = program().leftHalf();
  ASSERT_TRUE(shows(dualScene(expected, size, 1.0F, true), "actual size"));
  const QRect standsAt = placeIn(left.size(), size).translated(left.topLeft());
  EXPECT_EQ(meanDifference(program().seen(standsAt), expected.upright()), 0.0);
}

}  // namespace
}  // namespace velmara::e2e
