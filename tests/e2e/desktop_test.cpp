#include "e2e/desktop_test.h"

#include <QDir>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>

namespace velmara::e2e {
namespace {

constexpr const char* kResultShown = "Setting Up Preview Images After Denoising Completion !!";

}  // namespace

KnownPhoto::KnownPhoto(const QSize& size, unsigned seed)
    : truth(size, QImage::Format_RGB32), noisy(size, QImage::Format_RGB32) {
  std::mt19937 random(seed);
  std::normal_distribution noise(0.0, 4.0);
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) {
      const bool isRight = x >= size.width() / 2;
      const bool isBelow = y >= size.height() / 2;
      const int samples[] = {isRight ? 180 : 90, isBelow ? 190 : 110,
                             isRight == isBelow ? 70 : 150};
      const auto seen = [&](int i) {
        return samples[i] + static_cast<int>(std::lround(noise(random)));
      };
      truth.setPixel(x, y, qRgb(samples[0], samples[1], samples[2]));
      noisy.setPixel(x, y, qRgb(seen(0), seen(1), seen(2)));
    }
  }
}

bool KnownPhoto::isCleanIn(const QImage& picture) const {
  return meanDifference(picture, truth) < 0.5 * meanDifference(noisy, truth);
}

double meanDifference(const QImage& one, const QImage& other) {
  if (one.size() != other.size() || one.isNull()) return 255.0;
  double sum = 0.0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QRgb a = one.pixel(x, y);
      const QRgb b = other.pixel(x, y);
      sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
             std::abs(qBlue(a) - qBlue(b));
    }
  }
  return sum / (3.0 * one.width() * one.height());
}

void DesktopTest::setUp(const QSize& screen, int scale) {
  if (!canMakeDisplay()) GTEST_SKIP() << "Xvfb, openbox, xdotool or xprop is not installed";
  scale_ = scale;
  display_ = std::make_unique<VirtualDisplay>(screen);
  ASSERT_TRUE(display_->isReady());
  program_ = std::make_unique<Program>(*display_, scale);
  ASSERT_TRUE(program_->hasWindow()) << program_->log();
}

void DesktopTest::TearDown() {
  if (program_ == nullptr) return;
  if (!program_->process().isRunning()) {
    EXPECT_EQ(program_->process().waitForEnd(), 0);
  }
  if (HasFailure()) std::fprintf(stderr, "%s\n", program_->log().c_str());
}

std::string DesktopTest::fileOf(const KnownPhoto& photo, const std::string& name) const {
  EXPECT_TRUE(photo.noisy.save(QString::fromStdString(folder.file(name))));
  return folder.file(name);
}

bool DesktopTest::waitForFile(const std::string& path) {
  return waitUntil([&] { return std::filesystem::exists(path); });
}

testing::AssertionResult DesktopTest::showsOpened(const KnownPhoto& photo) {
  if (!program().waitForLog(kResultShown, results_ + 1)) {
    return testing::AssertionFailure() << "the opened photo has no result";
  }
  key("ctrl+1");
  return shows(photo);
}

testing::AssertionResult DesktopTest::shows(const KnownPhoto& photo) {
  QImage seen;
  const bool isSeen = waitUntil([&] {
    seen = display().screen(program().windowRect());
    return isShown(photo, seen) || !program().process().isRunning();
  });
  results_ = program().timesLogged(kResultShown);
  if (isSeen && program().process().isRunning()) return testing::AssertionSuccess();
  const QString failures = QStringLiteral(VELMARA_E2E_FAILURES);
  QDir().mkpath(failures);
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  const QString file = failures + QLatin1Char('/') + QLatin1String(test->name()) + ".png";
  seen.save(file);
  return testing::AssertionFailure() << "not shown; see " << file.toStdString();
}

// A few pixels of a noisy row are not found twice.
bool DesktopTest::isShown(const KnownPhoto& photo, const QImage& window) const {
  constexpr int kPixels = 16;
  const auto* row = reinterpret_cast<const QRgb*>(photo.noisy.constScanLine(0));
  const auto isSame = [](QRgb a, QRgb b) { return ((a ^ b) & RGB_MASK) == 0; };
  for (int y = 0; y < window.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(window.constScanLine(y));
    const auto* end = line + window.width() / 2;
    const auto* found = std::search(line, end, row, row + kPixels, isSame);
    if (found == end) continue;
    QRect place(QPoint(static_cast<int>(found - line), y), photo.noisy.size());
    if (meanDifference(window.copy(place), photo.noisy) != 0.0) return false;
    // Between the window's thin borders stand two halves of equal width.
    place.translate((window.width() / scale_ - 2) / 2 * scale_, 0);
    return photo.isCleanIn(window.copy(place));
  }
  return false;
}

}  // namespace velmara::e2e
