// A run, what it takes away meanwhile, and its bar.
#include "session/run_state.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "session/progress_estimate.h"
#include "support/manual_time.h"

namespace velmara {
namespace {

using Events = std::vector<std::string>;

TEST(EstimateTest, DividesInWholeNumbers) {
  struct Case {
    std::int64_t width, height, rate;
    bool isExportingPhoto;
    double expected;
  };
  const Case cases[] = {
      {1000, 800, 400'000, false, 2.0},  {1000, 800, 400'000, true, 4.0},
      {1000, 800, 400'001, false, 1.0},  {1000, 800, 266'667, false, 2.0},
      {100, 100, 1'000'000, false, 1.0}, {100, 100, 1'000'000, true, 3.0},
      {1000, 800, 0, false, 1.0},        {1000, 800, -5, true, 3.0},
      {100'000, 50'000, 1, false, 5e9},  // beyond 32 bits
  };
  for (const Case& c : cases) {
    EXPECT_EQ(estimatedCompletionTime(c.width, c.height, c.rate, c.isExportingPhoto), c.expected)
        << c.width << " x " << c.height << " at " << c.rate;
  }
}

TEST(FinishWalkTest, StepsToTheEndAtOnce) {
  struct Case {
    double counter, estimate;
    std::vector<double> expected;
  };
  const Case cases[] = {
      {0.0, 1.0, {0, 1}},    {0.97, 1.0, {0, 1}},       // the counter counts whole
      {2.4, 4.0, {2, 3, 4}}, {95.0, 100.0, {97, 100}},  // steps of 3, each shown 2 further on
      {0.0, 0.0, {0}},                                  // nothing has run yet
  };
  for (const Case& c : cases) {
    EXPECT_EQ(finishWalk(c.counter, c.estimate), c.expected) << c.counter << " of " << c.estimate;
  }
  EXPECT_LE(finishWalk(0.0, 1e9).size(), 51U);
}

class RunStateTest : public testing::Test {
 protected:
  RunStateTest() {
    const auto on = [this](auto signal, auto action) {
      QObject::connect(&state, signal, &state, action);
    };
    on(&RunState::controlsChanged, [this](const ControlStates& states) { controls = states; });
    on(&RunState::progressShown, [this](double maximum) {
      record("bar of " + std::to_string(static_cast<int>(maximum)));
      isBarShown = true;
      barValues.clear();
    });
    on(&RunState::progressChanged, [this](double value) { barValues.push_back(value); });
    on(&RunState::progressHidden, [this] { isBarShown = false; });
    on(&RunState::defaultModeEntered, [this] { record("default mode"); });
    on(&RunState::runEnded, [this] { record("run ended"); });
    on(&RunState::settled, [this] { record("settled"); });
    state.reset();
  }
  void record(const std::string& event) { events.push_back(event); }
  Events takeEvents() { return std::exchange(events, {}); }

  // A letter a control: alive, inert (looks alive), disabled.
  std::string letters() const {
    std::string text;
    for (unsigned i = 0; i < kControlCount; ++i) {
      const auto control = static_cast<Control>(i);
      text += controls.isAlive(control) ? 'a' : controls.disabled.contains(control) ? 'd' : 'i';
    }
    return text;
  }

  ControlStates controls;
  bool isBarShown = false;
  std::vector<double> barValues;
  Events events;
  testing_support::ManualTime time;
  RunState state{time, [this](const std::string& line) { record(line); }};
};

// In the order of Control: add, export, fit, 100, 200, close, minimise, zoom window, zoom in, zoom
// out, single, split, dual, noise, auto, deep, slider.
TEST_F(RunStateTest, EachStateTakesItsControls) {
  EXPECT_EQ(letters(), "addddaaaddddddddd") << "no photo";
  state.changeControls(controlsWithPhoto);
  EXPECT_EQ(letters(), "aaaaaaaadaaaaaaaa") << "zoom in waits for the first result";
  state.denoisingProcessStarted();
  EXPECT_EQ(letters(), "iiiiiiiidiiiiiiid") << "running";
  EXPECT_TRUE(controls.isDropAreaHidden);
  EXPECT_FALSE(controls.isWindowResizable);
  state.enableActionsInDeafultMode();
  EXPECT_EQ(letters(), "aaaaaaaaaaaaaaaaa") << "done";
  EXPECT_FALSE(controls.isDropAreaHidden);
  EXPECT_TRUE(controls.isWindowResizable);
  state.startTimerEvent();
  EXPECT_EQ(letters(), "aaaaaaaaiiaaaaiid") << "settling";
  state.stopTimerEvent();
  EXPECT_EQ(letters(), "aaaaaaaaaaaaaaaaa");
  state.changeControls(controlsAfterZoomIn);
  EXPECT_EQ(letters(), "aaaaaaaadaaaaaaaa") << "zoomed in";
  state.changeControls(controlsAfterZoomOut);
  EXPECT_EQ(letters(), "aaaaaaaadiaaaaaaa") << "zoomed out";
  state.enableActionsInDeafultMode();
  EXPECT_EQ(letters(), "aaaaaaaaaaaaaaaaa");
}

TEST_F(RunStateTest, ARunGoesThroughItsPhases) {
  EXPECT_EQ(state.phase(), RunPhase::kIdle);
  state.startTimerEvent();
  EXPECT_EQ(state.phase(), RunPhase::kWaitingToSettle);
  time.advance(1.5);
  EXPECT_EQ(state.phase(), RunPhase::kIdle);
  state.isBeforeCallingAlgo = true;
  state.denoisingProcessStarted();
  state.startProgress(2.0);
  EXPECT_FALSE(state.isBeforeCallingAlgo);
  EXPECT_EQ(state.phase(), RunPhase::kRunning);
  state.enableActionsInDeafultModeAfterDelay();
  time.advance(0.09);
  EXPECT_EQ(state.phase(), RunPhase::kRunning);
  time.advance(0.01);
  EXPECT_EQ(state.phase(), RunPhase::kFinishingTheBar);
  time.advance(0.3);
  EXPECT_EQ(state.phase(), RunPhase::kIdle);
  EXPECT_EQ(takeEvents(), (Events{"settled", "Denoising Started", "bar of 2", "default mode",
                                  "run ended", "Progress Completed", "Progress Completed"}));
  EXPECT_FALSE(isBarShown);
}

TEST_F(RunStateTest, TheBarTakesFiftyStepsAndWaitsBeforeTheEnd) {
  state.denoisingProcessStarted();
  state.startProgress(2.0);
  time.advance(0.04);
  EXPECT_EQ(barValues.size(), 1U);
  time.advance(0.96);
  EXPECT_EQ(barValues.size(), 25U);
  EXPECT_NEAR(barValues.back(), 1.0, 1e-9);
  time.advance(5.0);
  EXPECT_DOUBLE_EQ(barValues.back(), 2.0 - 2.0 / 30.0);
  EXPECT_TRUE(isBarShown);
  state.enableActionsInDeafultMode();
  EXPECT_GE(barValues.back(), 2.0);
  EXPECT_EQ(state.progressTimeCounter(), 2.0);
  EXPECT_TRUE(std::ranges::is_sorted(barValues.end() - 2, barValues.end()));
  state.denoisingProcessStarted();
  state.startProgress(2.0);
  time.advance(1.0);
  state.startProgress(10.0);
  time.advance(1.0);
  EXPECT_EQ(barValues.size(), 5U) << "one timer, of the second run's step";
}

TEST_F(RunStateTest, OnlyTheLastOfSeveralZoomsSettles) {
  state.startTimerEvent();
  time.advance(1.0);
  state.startTimerEvent();
  time.advance(1.4);
  EXPECT_EQ(takeEvents(), Events{});
  time.advance(0.2);
  EXPECT_EQ(takeEvents(), Events{"settled"});
  time.advance(5.0);
  EXPECT_EQ(takeEvents(), Events{});
  state.startTimerEvent();
  state.stopTimerEvent();
  EXPECT_EQ(takeEvents(), Events{"default mode"});
  time.advance(5.0);
  EXPECT_EQ(state.phase(), RunPhase::kIdle);
  EXPECT_EQ(takeEvents(), Events{"Progress Completed"});
}

// The end of a run whose result led to the next one at once must not end that one.
TEST_F(RunStateTest, ANewRunOutlivesThePutBackOfTheOldOne) {
  state.denoisingProcessStarted();
  state.enableActionsInDeafultModeAfterDelay();
  time.advance(0.05);
  state.denoisingProcessStarted();
  time.advance(10.0);
  EXPECT_TRUE(state.isRunningAlgorithm());
}

TEST_F(RunStateTest, NothingFiresAfterItIsGone) {
  {
    RunState other(time, [](const std::string&) {});
    other.startProgress(1.0);
    other.startTimerEvent();
    other.enableActionsInDeafultModeAfterDelay();
    other.enableActionsInDeafultMode();
    takeEvents();
  }
  EXPECT_EQ(time.pending(), 0U);
}

}  // namespace
}  // namespace velmara
