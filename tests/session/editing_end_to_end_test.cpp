#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "engine/denoise_algo_implementation.h"
#include "imaging/recompress_jpeg.h"
#include "imaging/utils.h"
#include "platform/dispatch.h"
#include "session/editing_session.h"
#include "session/recording_screen.h"
#include "support/manual_time.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

constexpr int kWidth = 160;
constexpr int kHeight = 120;

std::uint8_t cleanSample(int x, int channel) {
  return static_cast<std::uint8_t>(x < kWidth / 2 ? 70 + 20 * channel : 180 - 20 * channel);
}

// Two flat halves under noise.
Bitmap noisyPicture() {
  std::mt19937 random(5);
  std::normal_distribution<double> noise(0.0, 12.0);
  std::vector<std::uint8_t> samples;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      for (int c = 0; c < 3; ++c) {
        samples.push_back(
            static_cast<std::uint8_t>(std::clamp(cleanSample(x, c) + noise(random), 0.0, 255.0)));
      }
    }
  }
  return Bitmap::copyOf(samples, kWidth, kHeight, 3);
}

double errorOf(const Bitmap& bitmap) {
  double sum = 0.0;
  for (int y = 0; y < bitmap.height(); ++y) {
    for (int x = 0; x < bitmap.width(); ++x) {
      for (int c = 0; c < 3; ++c) {
        const double difference = 1.0 * bitmap.pixel(x, y)[c] - cleanSample(x, c);
        sum += difference * difference;
      }
    }
  }
  return sum / (bitmap.width() * bitmap.height() * 3.0);
}

// The real engine on the real queues, with the main thread's event loop turning.
class RealRunTest : public testing::Test {
 protected:
  RealRunTest() {
    Utils::sharedUtils().saveImageInSelectedFormat(4, folder_.file("photo.png"), noisyPicture());
    photos_.selectedImageFile = PhotoFile::initWithFileUrl(folder_.file("photo.png"));
    photos_.selectedImageFileToProccessing = photos_.selectedImageFile;
    photos_.arraySelectedImagesToProcess = {*photos_.selectedImageFile};
    session_.setupAdjustParamView();
  }

  static EngineEnvironment environment() {
    EngineEnvironment environment;
    environment.workers = &globalQueue();
    environment.mainQueue = &mainQueue();
    environment.recompressJpeg = recompressJpeg;
    return environment;
  }

  // Turns the event loop until the run has come back.
  void finishRun() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    const auto hasLogged = [&] {
      const auto& events = screen_.events;
      return std::find(events.begin(), events.end(), "Denoising Done !!") != events.end();
    };
    while (!hasLogged() && std::chrono::steady_clock::now() < deadline) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    time_.advance(1.0);
    ASSERT_TRUE(hasLogged());
  }

  testing_support::ScratchFolder folder_;
  testing_support::ManualTime time_;
  const DenoiseAlgoImplementation algorithm_{environment()};
  const AlgorithmEngine engine_{algorithm_};
  RecordingScreen screen_;
  PhotoSlots photos_;
  // The worker logs too, so only the main thread's lines are written down.
  EditingSession session_{photos_, screen_,
                          EditingServices{engine_, mainQueue(), globalQueue(), time_,
                                          [this](const std::string& line) {
                                            if (mainQueue().isCurrent()) screen_.record(line);
                                          },
                                          [] { return Image(noisyPicture()); }}};
};

TEST_F(RealRunTest, APreviewIsCleanerThanThePhoto) {
  session_.seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_FALSE(session_.runState().isRunningAlgorithm());
  EXPECT_GT(photos_.pixelsProcessRate, 0);
  EXPECT_GT(session_.psnrOfRealImage(), 0.0F);
  const Bitmap& result = screen_.previews.at(0).bitmap();
  ASSERT_EQ(result.width(), kWidth);
  ASSERT_EQ(result.height(), kHeight);
  EXPECT_LT(errorOf(result), 0.5 * errorOf(noisyPicture()));
}

TEST_F(RealRunTest, AnExportIsTheWholePhoto) {
  screen_.zoom = 0.5F;
  session_.isExportingPhoto = true;
  session_.seletedPhotoToBeFilteredIsChanged();
  finishRun();
  EXPECT_FALSE(session_.isExportingPhoto);
  const Bitmap& result = session_.lastExportedImage.bitmap();
  ASSERT_EQ(result.width(), kWidth);
  EXPECT_LT(errorOf(result), 0.5 * errorOf(noisyPicture()));
}

TEST_F(RealRunTest, AnExportOfThePixelsAtHandIsThatOfTheFile) {
  std::vector<Image> results;
  for (const Image& atHand : {Image(), Image(noisyPicture())}) {
    photos_.selectedImageAsStored = atHand;
    session_.isExportingPhoto = true;
    session_.seletedPhotoToBeFilteredIsChanged();
    finishRun();
    screen_.takeEvents();
    results.push_back(session_.lastExportedImage);
  }
  ASSERT_TRUE(results[0].isValid());
  EXPECT_TRUE(std::ranges::equal(results[0].bitmap().bytes(), results[1].bitmap().bytes()));
  // Another photo has other pixels.
  session_.photoBecameCurrent();
  EXPECT_FALSE(photos_.selectedImageAsStored.isValid());
}

TEST_F(RealRunTest, StrongerLevelsSmoothMore) {
  std::vector<double> errors;
  for (const double level : {1.0, 10.0}) {
    screen_.slider = level;
    session_.sliderCustomDenoiseAction();
    finishRun();
    screen_.takeEvents();
    errors.push_back(errorOf(screen_.previews.back().bitmap()));
  }
  EXPECT_LT(errors[1], errors[0]);
}

}  // namespace
}  // namespace velmara
