#include "e2e/desktop_test.h"

#include <QPainter>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "support/run_program.h"

namespace velmara::e2e {

using testing_support::runProgram;

void DesktopTest::SetUp() {
  if (!canMakeDisplay()) GTEST_SKIP() << "Xvfb, openbox, xdotool or xprop is not installed";
  display_ = std::make_unique<VirtualDisplay>(screenSize());
  ASSERT_TRUE(display_->isReady());
  program_ = std::make_unique<Program>(*display_, scale());
  ASSERT_TRUE(program_->hasWindow()) << program_->log();
}

void DesktopTest::TearDown() {
  if (program_ == nullptr) return;
  if (const auto code = program_->process().exitCode()) {
    EXPECT_EQ(*code, 0) << program_->log();
  }
  if (HasFailure()) std::fprintf(stderr, "%s\n", program_->log().c_str());
}

std::string DesktopTest::photo(const std::string& name) {
  std::string path = folder.file(name);
  if (std::filesystem::exists(path)) return path;
  runProgram(
      {"convert", kHarbour, "-auto-orient", "-crop", "900x700+90+400", "+repage", "-strip", path});
  return path;
}

void DesktopTest::openInDual(const std::string& path, const ExpectedPhoto& expected) {
  ASSERT_TRUE(expected.isValid());
  ASSERT_TRUE(program().openByKeyboard(path));
  const QSize size = fittedSize(expected.upright().size(), program().leftHalf().size());
  ASSERT_TRUE(shows(dualScene(expected, size, 1.0F, true), "dual after opening"));
}

// The caption bar lies over the preview's last row.
Scene DesktopTest::withFrame(Scene scene) const {
  const int row = scale();
  scene.covered += QRect(0, scene.place.height() - row, scene.place.width(), row);
  return scene;
}

Scene DesktopTest::dualScene(const ExpectedPhoto& photo, const QSize& size, float zoomFactor,
                             bool hasResult, const QPoint& dragged) {
  const QRect left = program().leftHalf();
  const QRect right = program().rightHalf();
  Scene scene = emptyScene(left.united(right));
  const QRect standsAt = placeIn(left.size(), size, dragged);
  const QRect part = visiblePart(left.size(), standsAt);
  const QImage original = photo.original(size, part);
  const QPoint corner = standsAt.topLeft() + part.topLeft();
  QPainter painter(&scene.picture);
  painter.drawImage(corner, original);
  painter.drawImage(corner + QPoint(left.width(), 0),
                    hasResult ? photo.denoised(original, zoomFactor) : original);
  scene.covered += QRect(left.width(), 0, scale(), left.height());  // The line between the halves.
  return withFrame(scene);
}

Scene DesktopTest::singleScene(const ExpectedPhoto& photo, const QSize& size, float zoomFactor,
                               int level, const QPoint& dragged) {
  Scene scene = emptyScene(program().previewArea());
  const QRect standsAt = placeIn(scene.place.size(), size, dragged);
  const QRect part = visiblePart(scene.place.size(), standsAt);
  QPainter(&scene.picture)
      .drawImage(standsAt.topLeft() + part.topLeft(),
                 photo.denoised(photo.original(size, part), zoomFactor, level));
  return withFrame(scene);
}

Scene DesktopTest::splitScene(const ExpectedPhoto& photo, const QSize& size, float zoomFactor,
                              int line, const QPoint& dragged) {
  Scene scene = singleScene(photo, size, zoomFactor, 0, dragged);
  const QRect standsAt = placeIn(scene.place.size(), size, dragged);
  const QRect part = visiblePart(scene.place.size(), standsAt);
  QPainter painter(&scene.picture);
  painter.setClipRect(0, 0, line, scene.place.height());
  painter.drawImage(standsAt.topLeft() + part.topLeft(), photo.original(size, part));
  constexpr int kLineWidth = 6;
  scene.covered += QRect(line, 0, kLineWidth, scene.place.height());
  return scene;
}

std::optional<int> DesktopTest::lineAt() {
  const QRect area = program().previewArea();
  const QImage row = program().seen({area.left(), area.top() + 3, area.width(), 1});
  const auto isBlack = [&](int x) { return qGray(row.pixel(x, 0)) == 0; };
  const auto isLight = [&](int x) { return qGray(row.pixel(x, 0)) > 150; };
  for (int x = 1; x + 4 < row.width(); ++x) {
    if (isBlack(x) && isLight(x + 1) && isLight(x + 2) && isBlack(x + 3)) return x - 1;
  }
  return std::nullopt;
}

testing::AssertionResult DesktopTest::shows(const Scene& scene, const std::string& what) {
  QImage seen;
  const bool isShown = waitUntil([&] {
    seen = program().seen(scene.place);
    return differingPixels(seen, scene) == 0 || !program().process().isRunning();
  });
  if (isShown && program().process().isRunning()) return testing::AssertionSuccess();
  return testing::AssertionFailure() << keepFor(what, seen, scene);
}

}  // namespace velmara::e2e
