// The list of a batch and its run, with real files, queues and a real loop.
#include "session/batch/batch_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/dispatch.h"
#include "session/editing_fixture.h"
#include "support/event_loop.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;
using State = BatchEntry::State;
using testing::ElementsAre;
using testing_support::ManualTime;
using testing_support::runUntil;
using testing_support::ScratchFolder;
using testing_support::writeFile;

// Lets a picture through when the test does.
class HeldEngine final : public DenoiseEngine {
 public:
  Image denoise(const Image& image, const FilterParameters& parameters,
                const RunWatch& watch) const override {
    if (watch.awaitRows) watch.awaitRows(image.bitmap().height());
    strengths.fetch_add(parameters.sigmaVal * 1000 + parameters.templateWinSize);
    while (!isOpen && !watch.control->isCancelled()) std::this_thread::yield();
    return watch.control->isCancelled() ? Image() : image;
  }
  double psnr(const Image&) const override { return 33.0; }
  std::int64_t processingSpeed(const Image&, const FilterParameters&, JobControl*) const override {
    return 1;
  }
  std::atomic<bool> isOpen = true;
  mutable std::atomic<int> strengths = 0;
};

class BatchListTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"a.png", "june/b.png", "june/c.png"}) {
      const std::string path = folder.file(name);
      fs::create_directories(fs::path(path).parent_path());
      const auto bytes = encodeImage(grayPicture(120, 100), nullptr, FileFormat::png);
      writeFile(path, std::string(bytes->begin(), bytes->end()));
    }
    writeFile(folder.file("june/broken.png"), "no picture");
    QObject::connect(list.get(), &BatchList::stateChanged, [this] { ++changes; });
  }
  void TearDown() override {
    engine.isOpen = true;
    if (list) list->cancel();
    EXPECT_TRUE(runUntil([this] { return !list || !list->isRunning(); }));
    list.reset();
    EXPECT_TRUE(runUntil(isGlobalQueueIdle));
  }
  // Adds the whole folder and waits until every photo was looked at.
  void addAll() {
    list->add({folder.path().string()});
    EXPECT_TRUE(runUntil([this] { return list->entries().size() == 4 && isAllLookedAt(); }));
  }
  bool isAllLookedAt() const {
    return std::ranges::all_of(list->entries(), [](const BatchEntry& entry) {
      return entry.facts || entry.state == State::failed;
    });
  }
  void run(const Treatment& treatment = {}) {
    list->start(treatment,
                {.folder = folder.file("out"), .existing = BatchNaming::Existing::replace});
    EXPECT_TRUE(runUntil([this] { return !list->isRunning(); }));
  }
  std::vector<State> states() const {
    std::vector<State> all;
    for (const BatchEntry& entry : list->entries()) all.push_back(entry.state);
    return all;
  }

  ScratchFolder folder;
  ManualTime time;
  HeldEngine engine;
  std::unique_ptr<BatchList> list = std::make_unique<BatchList>(
      PhotoJobServices{engine, mainQueue(), globalQueue(), [](const std::string&) {}, {}}, time,
      time);
  int changes = 0;
};

TEST_F(BatchListTest, PhotosAreLookedAtOnceEach) {
  addAll();
  list->add({folder.file("a.png"), folder.path().string()});
  EXPECT_TRUE(runUntil([this] { return !list->isSearching(); }));
  ASSERT_THAT(states(), ElementsAre(State::waiting, State::waiting, State::failed, State::waiting));
  const PhotoFacts& facts = *list->entries()[0].facts;
  EXPECT_EQ(facts.width, 120);
  EXPECT_EQ(facts.psnr, 33.0);
  EXPECT_EQ(facts.thumbnail.bitmap().width(), kThumbnailSide);
  EXPECT_EQ(list->entries()[2].reason, "it is not a picture of a kind that can be read");
  list->remove({0, 2});
  EXPECT_EQ(list->entries().size(), 2U);
  EXPECT_EQ(list->entries()[0].photo.subfolder, "june");
}

TEST_F(BatchListTest, WhatHasNoResultIsRunAgainAndOnlyThat) {
  addAll();
  run();
  EXPECT_THAT(states(), ElementsAre(State::written, State::written, State::failed, State::written));
  EXPECT_THAT(list->photosToRun(), ElementsAre(2));
  EXPECT_EQ(list->counts().written, 3);
  EXPECT_EQ(list->counts().failed, 1);
  // Its result is another one now.
  list->setTreatment(1, Treatment{DenoiseMode::manual(9), false});
  EXPECT_THAT(list->photosToRun(), ElementsAre(1, 2));
  list->remove({2});
  engine.strengths = 0;
  run();
  const FilterParameters nine = exportParameters(33.0, DenoiseMode::manual(9));
  EXPECT_EQ(engine.strengths, nine.sigmaVal * 1000 + nine.templateWinSize);
  EXPECT_THAT(list->photosToRun(), ElementsAre(0, 1, 2));
}

TEST_F(BatchListTest, WhatARunKeptFromBeingLookedAtIsLookedAtAfterIt) {
  engine.isOpen = false;
  list->add({folder.path().string()});
  EXPECT_TRUE(runUntil([this] { return list->entries().size() == 4; }));
  list->start({}, {.folder = folder.file("out")});
  list->cancel();
  EXPECT_TRUE(runUntil([this] { return !list->isRunning() && isAllLookedAt(); }));
}

TEST_F(BatchListTest, APauseIsNotCountedAndAStopLeavesTheRest) {
  addAll();
  engine.isOpen = false;
  list->start({}, {.folder = folder.file("out")});
  EXPECT_TRUE(runUntil([this] { return std::ranges::count(states(), State::working) > 0; }));
  EXPECT_FALSE(list->timeLeft());
  list->remove({0});
  EXPECT_EQ(list->entries().size(), 4U) << "none goes while it runs";
  list->setPaused(true);
  const int before = changes;
  time.advance(60);
  list->setPaused(false);
  time.advance(10);
  EXPECT_EQ(changes, before + 1);
  if (const auto left = list->timeLeft()) {
    EXPECT_NEAR(left->count(), 10 * (1 / list->progress() - 1), 1.0);
  }
  list->cancel();
  EXPECT_TRUE(runUntil([this] { return !list->isRunning(); }));
  EXPECT_EQ(std::ranges::count(states(), State::written), 0);
  EXPECT_TRUE(!fs::exists(folder.file("out")) || fs::is_empty(folder.file("out")));
  // And with the list gone nothing comes back.
  list->start({}, {.folder = folder.file("out")});
  list.reset();
}

}  // namespace
}  // namespace velmara
