#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QSize>

#include <memory>
#include <string>

#include "e2e/program.h"
#include "e2e/virtual_display.h"
#include "support/scratch_folder.h"

namespace velmara::e2e {

/// A photo whose truth is known: flat fields of colour, and what a noisy camera made of them.
struct KnownPhoto {
  explicit KnownPhoto(const QSize& size = {480, 320}, unsigned seed = 1);

  /// Whether a picture is the truth with at most half of the noise left.
  bool isCleanIn(const QImage& picture) const;

  QImage truth, noisy;
};

/// The mean difference of a sample; 255 if the sizes differ.
double meanDifference(const QImage& one, const QImage& other);

/// The built program on a display of its own, driven by mouse and keys, looked at through its
/// pixels.
class DesktopTest : public testing::Test {
 protected:
  void SetUp() override { setUp({1360, 800}, 1); }
  void TearDown() override;
  /// The screen's size, and device pixels a point.
  void setUp(const QSize& screen, int scale);

  VirtualDisplay& display() { return *display_; }
  Program& program() { return *program_; }
  void key(const char* keys) { display().keys({keys}); }

  /// The photo as a file, in the format of the name.
  std::string fileOf(const KnownPhoto& photo, const std::string& name = "photo.png") const;
  /// Waits until the photo that was just opened has its result, and looks at it at actual size.
  testing::AssertionResult showsOpened(const KnownPhoto& photo);
  /// Waits until dual style shows it at actual size: left all of its own pixels, right the clean
  /// ones. Keeps a picture of the screen if it does not.
  testing::AssertionResult shows(const KnownPhoto& photo);
  bool waitForFile(const std::string& path);

  testing_support::ScratchFolder folder;

 private:
  bool isShown(const KnownPhoto& photo, const QImage& window) const;

  int scale_ = 1;
  std::unique_ptr<VirtualDisplay> display_;
  std::unique_ptr<Program> program_;
  int results_ = 0;
};

}  // namespace velmara::e2e
