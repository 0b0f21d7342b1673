#include "session/unsaved_changes.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "session/unsaved_window.h"

namespace velmara {
namespace {

using testing_support::UnsavedWindow;
using Step = std::function<void(UnsavedWindow&)>;

const std::map<std::string, Step> kEvents{
    {"open", [](UnsavedWindow& w) { w.open("b"); }},
    {"export", [](UnsavedWindow& w) { w.requestExport(); }},
    {"confirm", [](UnsavedWindow& w) { w.confirmExport(); }},
    {"cancel export", [](UnsavedWindow& w) { w.cancelExport(); }},
    {"run ends", [](UnsavedWindow& w) { w.finishRun(); }},
    {"written", [](UnsavedWindow& w) { w.written(); }},
    {"write failed", [](UnsavedWindow& w) { w.writeFailed(); }},
    {"save", [](UnsavedWindow& w) { w.save(); }},
    {"don't save", [](UnsavedWindow& w) { w.dontSave(); }},
    {"cancel", [](UnsavedWindow& w) { w.cancel(); }},
    {"close", [](UnsavedWindow& w) { w.close(); }},
    {"quit", [](UnsavedWindow& w) { w.quit(); }},
    {"level", [](UnsavedWindow& w) { w.changeLevel(); }},
};

void play(UnsavedWindow& window, const std::vector<std::string>& events) {
  for (const std::string& event : events) {
    window.done.clear();
    kEvents.at(event)(window);
  }
}

// How each state is reached, "a" being open.
const std::map<std::string, std::vector<std::string>> kStates{
    {"no photo", {}},
    {"unsaved", {"a"}},
    {"saved", {"a", "export", "confirm", "run ends", "written"}},
    {"running", {"a", "level"}},
    {"panel", {"a", "export"}},
    {"export run", {"a", "export", "confirm"}},
    {"writing", {"a", "export", "confirm", "run ends"}},
    {"writing again", {"a", "export", "confirm", "run ends", "written", "export", "confirm"}},
    {"asked, b waits", {"a", "open"}},
    {"asked to close", {"a", "close"}},
    {"b waits, panel", {"a", "open", "save"}},
    {"b waits, cancelled", {"a", "open", "save", "cancel export"}},
    {"b waits, writing", {"a", "open", "save", "confirm", "run ends"}},
    {"b waits, failed", {"a", "open", "save", "confirm", "run ends", "write failed"}},
    {"asked while writing", {"a", "export", "confirm", "run ends", "close"}},
};

void reach(UnsavedWindow& window, const std::string& state) {
  for (const std::string& event : kStates.at(state)) {
    if (event == "a") {
      window.open("a");
    } else {
      play(window, {event});
    }
  }
}

struct Row {
  const char* state;
  std::map<std::string, std::string> done;
};

const Row kTable[] = {
    {"no photo",
     {{"open", "open b"},
      {"export", "export off"},
      {"close", "terminateApp"},
      {"quit", "terminate"},
      {"save", ""},
      {"don't save", ""},
      {"cancel", ""}}},
    {"unsaved",
     {{"open", "ask"},
      {"export", "panel"},
      {"close", "ask"},
      {"quit", "ask"},
      {"save", ""},
      {"don't save", ""}}},
    {"saved",
     {{"open", "open b"}, {"export", "panel"}, {"close", "terminateApp"}, {"quit", "terminate"}}},
    {"running", {{"open", "ask"}, {"export", "export off"}, {"close", "ask"}, {"quit", "ask"}}},
    {"panel", {{"open", ""}, {"export", "export off"}, {"close", ""}, {"quit", ""}}},
    {"export run", {{"open", "ask"}, {"export", "export off"}, {"close", "ask"}}},
    {"writing",
     {{"open", "ask"},
      {"export", "export off"},
      {"close", "ask"},
      {"written", "rate"},
      {"write failed", "failure"}}},
    // Nothing is unsaved, but the file on its way is finished before the end.
    {"writing again",
     {{"open", "open b"},
      {"close", ""},
      {"quit", ""},
      {"written", "rate"},
      {"write failed", "failure"}}},
    {"asked, b waits",
     {{"open", ""},
      {"export", "export off"},
      {"close", ""},
      {"quit", ""},
      {"save", "close sheet, close off, panel"},
      {"don't save", "close sheet, close off, forget, open b"},
      {"cancel", "close sheet, close off"}}},
    {"asked to close",
     {{"open", ""},
      {"close", ""},
      {"save", "close sheet, close off, panel"},
      {"don't save", "close sheet, terminateApp"},
      {"cancel", "close sheet, close off"}}},
    {"b waits, panel", {{"open", ""}, {"close", ""}, {"confirm", ""}, {"cancel export", ""}}},
    {"b waits, cancelled",
     {{"open", "ask"}, {"export", "panel"}, {"close", "ask"}, {"quit", "ask"}}},
    {"b waits, writing",
     {{"written", "rate, rebuild, open b"},
      {"write failed", "failure"},
      {"open", "ask"},
      {"close", "ask"}}},
    {"b waits, failed", {{"open", "ask"}, {"export", "panel"}, {"close", "ask"}}},
    {"asked while writing",
     {{"written", "rate, close sheet, close off, terminateApp"},
      {"write failed", "failure"},
      {"don't save", "close sheet"},
      {"cancel", "close sheet, close off"},
      {"save", "close sheet, close off, export off"}}},
};

TEST(UnsavedChangesTest, EveryStateAnswersEveryEvent) {
  for (const Row& row : kTable) {
    for (const auto& [event, expected] : row.done) {
      UnsavedWindow window;
      reach(window, row.state);
      play(window, {event});
      EXPECT_EQ(window.done, expected) << row.state << ": " << event;
      EXPECT_EQ(window.lost, 0) << row.state << ": " << event;
    }
  }
}

TEST(UnsavedChangesTest, ASheetNamesThePhoto) {
  const auto facts = [] { return EditingFacts{true, "Berg %1.jpg", false, false}; };
  UnsavedChanges changes(facts);
  const UnsavedActions asked = changes.open("/photos/b.jpg");
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked.front().text,
            "Do you want to save the changes made to the document \"Berg %1.jpg\" ?");
  EXPECT_EQ(changes.imgPathToImportAfterExportWorkingImg, "/photos/b.jpg");
  EXPECT_TRUE(changes.isExportingWithAddingNewImage);
}

TEST(UnsavedChangesTest, StoriesEndAsTheyShould) {
  struct Story {
    const char* name;
    std::vector<std::string> events;
    const char* photo;
    bool isUnsaved;
    bool hasEnded;
  };
  const Story stories[] = {
      {"save, then the photo that waited",
       {"open", "save", "confirm", "run ends", "written"},
       "b",
       true,
       false},
      {"a photo that waits is not opened over a failed write, but after the next one",
       {"open", "save", "confirm", "run ends", "write failed", "export", "confirm", "written"},
       "b",
       true,
       false},
      {"a failed write leaves the result unsaved, though it is kept",
       {"export", "confirm", "run ends", "write failed"},
       "a",
       true,
       false},
      {"a cancelled panel keeps the photo waiting",
       {"open", "save", "cancel export", "export", "confirm", "run ends", "written"},
       "b",
       true,
       false},
      {"closing is not answered by opening what once waited",
       {"open", "save", "cancel export", "close", "don't save"},
       "a",
       true,
       true},
      {"Cancel forgets the waiting photo",
       {"open", "cancel", "export", "confirm", "run ends", "written"},
       "a",
       false,
       false},
      {"another level is unsaved again",
       {"export", "confirm", "run ends", "written", "level", "run ends"},
       "a",
       true,
       false},
      {"and its write may fail",
       {"export", "confirm", "run ends", "written", "level", "run ends", "export", "confirm",
        "run ends", "write failed", "open", "cancel"},
       "a",
       true,
       false},
      {"what changed while the file was written is asked for",
       {"open", "save", "confirm", "run ends", "level", "written", "don't save"},
       "b",
       true,
       false},
      {"saving does not end the program by itself",
       {"close", "save", "confirm", "run ends", "written"},
       "a",
       false,
       false},
      {"the file on its way is finished before the end",
       {"export", "confirm", "run ends", "written", "export", "confirm", "quit", "written"},
       "a",
       false,
       true},
      {"and if it cannot be, there is no end",
       {"export", "confirm", "run ends", "written", "export", "confirm", "quit", "write failed"},
       "a",
       false,
       false},
      {"nor if there is something new to lose by then",
       {"export", "confirm", "run ends", "written", "export", "confirm", "quit", "level",
        "written"},
       "a",
       true,
       false},
      {"Don't Save while an earlier export is written",
       {"export", "confirm", "run ends", "close", "don't save", "written"},
       "a",
       false,
       true},
      {"opening a photo calls the end off",
       {"export", "confirm", "run ends", "written", "export", "confirm", "close", "open",
        "written"},
       "b",
       true,
       false},
  };
  for (const Story& story : stories) {
    UnsavedWindow window;
    window.open("a");
    play(window, story.events);
    EXPECT_EQ(window.facts.fileName, story.photo) << story.name;
    EXPECT_EQ(window.changes.isUnsaved(), story.isUnsaved) << story.name;
    EXPECT_EQ(window.hasEnded, story.hasEnded) << story.name;
    EXPECT_EQ(window.lost, 0) << story.name;
  }
}

// Whatever is done in whatever order: no work is thrown away unasked, every failed write is told,
// and there is always a way on.
TEST(UnsavedChangesTest, NothingIsLostInAnyOrder) {
  std::mt19937 random(20240607);
  std::uniform_int_distribution<long> choice(0, static_cast<long>(kEvents.size()) - 1);
  for (int walk = 0; walk < 3000; ++walk) {
    UnsavedWindow window;
    std::string story;
    for (int step = 0; step < 80 && !window.hasEnded; ++step) {
      auto event = kEvents.begin();
      std::advance(event, choice(random));
      // Else most walks would end before anything has happened.
      if ((event->first == "close" || event->first == "quit") && step % 8 != 7) continue;
      story += event->first + ", ";
      window.done.clear();
      event->second(window);
      ASSERT_EQ(window.lost, 0) << story;
      ASSERT_FALSE(window.isPanelOpen && window.changes.isSheetShown()) << story;
      if (!window.facts.isRunningAlgorithm && !window.changes.isExportUnderWay()) {
        ASSERT_EQ(window.changes.isUnsaved(), window.hasUnsavedWork()) << story;
      }
    }
    if (window.hasEnded) continue;
    play(window, {"cancel export", "run ends", "written", "cancel", "open", "don't save"});
    ASSERT_TRUE(window.hasEnded || window.facts.fileName == "b") << story;
  }
}

}  // namespace
}  // namespace velmara
