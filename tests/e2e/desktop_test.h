#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <memory>
#include <optional>
#include <string>

#include "e2e/expected_photo.h"
#include "e2e/program.h"
#include "e2e/scene.h"
#include "e2e/virtual_display.h"
#include "e2e/waiting.h"
#include "support/scratch_folder.h"

namespace velmara::e2e {

/// The noisy photo that comes with the project, stored on its side.
inline const std::string kHarbour = VELMARA_DATA "/noisy-harbour.jpg";

/// The built program on a display of its own, driven by mouse and keys, looked at through its
/// pixels.
class DesktopTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Before SetUp: the screen's size, and device pixels a point.
  virtual QSize screenSize() const { return {1360, 800}; }
  virtual int scale() const { return 1; }

  VirtualDisplay& display() { return *display_; }
  Program& program() { return *program_; }

  /// A noisy photo of 900 x 700 whose pixels every decoder agrees on.
  std::string photo(const std::string& name = "photo.png");
  /// Opens it and expects it in dual style, fitted, with its result.
  void openInDual(const std::string& path, const ExpectedPhoto& expected);

  /// What dual style shows of a photo at a size: the original left; right its result, or the
  /// original while there is none.
  Scene dualScene(const ExpectedPhoto& photo, const QSize& size, float zoomFactor, bool hasResult,
                  const QPoint& dragged = {});
  /// What single style shows: the result, automatic or at a level.
  Scene singleScene(const ExpectedPhoto& photo, const QSize& size, float zoomFactor, int level = 0,
                    const QPoint& dragged = {});
  /// What split style shows: the original left of the line, the result right of it. The line itself
  /// is left out.
  Scene splitScene(const ExpectedPhoto& photo, const QSize& size, float zoomFactor, int line,
                   const QPoint& dragged = {});
  /// The left edge of the line of split style, from the preview area's: black, two columns of light
  /// grey, black.
  std::optional<int> lineAt();
  /// Waits until the screen shows a scene; adds a failure with pictures if it does not.
  testing::AssertionResult shows(const Scene& scene, const std::string& what);

  testing_support::ScratchFolder folder;

 private:
  Scene withFrame(Scene scene) const;

  std::unique_ptr<VirtualDisplay> display_;
  std::unique_ptr<Program> program_;
};

/// With photo() open: in dual style, fitted, with its result.
class OpenPhotoTest : public DesktopTest {
 protected:
  void SetUp() override {
    DesktopTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    expected = std::make_unique<ExpectedPhoto>(photo());
    openInDual(photo(), *expected);
  }

  std::unique_ptr<ExpectedPhoto> expected;
};

}  // namespace velmara::e2e
