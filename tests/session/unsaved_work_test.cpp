// What happens to work that is in no file: every state answers every event, and whatever is done in
// whatever order, nothing is lost and nobody is trapped.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "session/editing_fixture.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

class UnsavedWorkTest : public EditingTest {
 protected:
  using Step = std::function<void(UnsavedWorkTest&)>;

  UnsavedWorkTest() {
    // The invitation is another matter.
    makeSession({});
    for (const char* name : {"a.png", "b.png", "c.png"}) picture(name);
    testing_support::writeFile(folder.file("bad.png"), "no picture");
  }

  static const std::map<std::string, Step>& events() {
    static const std::map<std::string, Step> kEvents{
        {"open", [](auto& t) { t.session->photoDraggedWithPath(t.folder.file("b.png")); }},
        {"open bad", [](auto& t) { t.session->photoDraggedWithPath(t.folder.file("bad.png")); }},
        {"save", [](auto& t) { t.session->btnExportDenoisedImageTapped(); }},
        {"confirm", [](auto& t) { t.confirm("out.png"); }},
        {"confirm in vain", [](auto& t) { t.confirm("no folder/out.png"); }},
        {"cancel panel", [](auto& t) { t.confirm({}); }},
        {"finish", [](auto& t) { t.finish(); }},
        {"stop", [](auto& t) { t.session->cancelRun(); }},
        {"Save", [](auto& t) { t.answer(&EditingSession::btnSaveChangesTapped); }},
        {"Don't Save", [](auto& t) { t.answer(&EditingSession::btnDontSaveChangesTapped); }},
        {"Cancel", [](auto& t) { t.answer(&EditingSession::btnCancelChangesTapped); }},
        {"close", [](auto& t) { t.session->btnCloseWindowTapped(); }},
        {"quit", [](auto& t) { t.session->btncloseFileFromMenuTapped(); }},
        {"level", [](auto& t) { t.session->sliderCustomDenoiseAction(5.0); }},
        {"zoom", [](auto& t) { t.requestPreview(); }},
    };
    return kEvents;
  }
  void play(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      if (name == "a") {
        open(folder.file("a.png"));
      } else {
        events().at(name)(*this);
      }
    }
  }
  void confirm(const std::string& name) {
    if (isPanelShown) savePanel(name);
  }
  void answer(void (EditingSession::*button)()) {
    if (isSheetShown) (session.get()->*button)();
  }
  std::string photo() const {
    const auto& file = session->selectedImageFile();
    return file ? file->fileName.substr(0, 1) : "-";
  }
  // What there is to be seen, in words.
  std::string seen() const {
    std::string words = photo();
    if (isSheetShown) words += ", asked";
    if (isPanelShown) words += ", panel";
    if (session->isExportingWithAddingNewImage()) words += ", one waits";
    if (session->isUnsaved()) words += ", unsaved";
    if (isWritten("out.png")) words += ", written";
    if (!alerts.shown.empty()) words += ", told";
    if (terminations > 0) words += ", ended";
    return words;
  }
};

using Names = std::vector<std::string>;

// How each state is reached.
const std::map<std::string, Names> kStates{
    {"empty", {}},
    {"loading", {"open"}},
    {"unsaved", {"a"}},
    {"saved", {"a", "save", "confirm", "finish"}},
    {"running", {"a", "zoom"}},
    {"panel", {"a", "save"}},
    {"run under the panel", {"a", "save", "zoom"}},
    {"export due", {"a", "save", "zoom", "confirm"}},
    {"exporting", {"a", "save", "confirm"}},
    {"exporting again", {"a", "save", "confirm", "finish", "save", "confirm"}},
    {"asked to open", {"a", "open"}},
    {"asked to close", {"a", "close"}},
    {"asked during a run", {"a", "zoom", "open"}},
    {"asked while exporting", {"a", "save", "confirm", "open"}},
    {"to be closed while exporting", {"a", "save", "confirm", "close"}},
    {"b waits, panel", {"a", "open", "Save"}},
    {"b waits, exporting", {"a", "open", "Save", "confirm"}},
};

// What is seen once an event in a state has come to its end. Work is asked for before it goes.
const std::map<std::string, std::map<std::string, std::string>> kTable{
    {"empty",
     {{"open", "b, unsaved"},
      {"open bad", "-, told"},
      {"save", "-"},
      {"close", "-, ended"},
      {"quit", "-, ended"},
      {"level", "-"}}},
    {"loading",
     {{"open", "b, asked, one waits, unsaved"},
      {"close", "b, asked, unsaved"},
      {"save", "b, unsaved"},
      {"stop", "b, unsaved"}}},
    {"unsaved",
     {{"open", "a, asked, one waits, unsaved"},
      {"save", "a, panel, unsaved"},
      {"close", "a, asked, unsaved"},
      {"quit", "a, asked, unsaved"},
      {"level", "a, unsaved"}}},
    {"saved",
     {{"open", "b, unsaved, written"},
      {"open bad", "a, written, told"},
      {"save", "a, panel, written"},
      {"close", "a, written, ended"},
      {"quit", "a, written, ended"},
      {"level", "a, unsaved, written"}}},
    {"running",
     {{"open", "a, asked, one waits, unsaved"},
      {"save", "a, unsaved"},
      {"close", "a, asked, unsaved"},
      {"stop", "a, unsaved"}}},
    {"panel",
     {{"open", "a, panel, unsaved"},
      {"close", "a, panel, unsaved"},
      {"quit", "a, panel, unsaved"},
      {"confirm", "a, written"},
      {"confirm in vain", "a, unsaved, told"},
      {"cancel panel", "a, unsaved"}}},
    {"run under the panel", {{"confirm", "a, written"}, {"cancel panel", "a, unsaved"}}},
    {"export due",
     {{"finish", "a, written"},
      {"save", "a, written"},
      {"close", "a, written, ended"},
      {"open", "b, unsaved, written"}}},
    {"exporting",
     {{"finish", "a, written"},
      {"stop", "a, unsaved"},
      {"save", "a, written"},
      {"close", "a, written, ended"},
      {"open", "b, unsaved, written"},
      {"open bad", "a, written, told"}}},
    {"exporting again", {{"finish", "a, written"}, {"close", "a, written, ended"}}},
    {"asked to open",
     {{"open", "a, asked, one waits, unsaved"},
      {"close", "a, asked, one waits, unsaved"},
      {"save", "a, asked, one waits, unsaved"},
      {"Save", "a, panel, one waits, unsaved"},
      {"Don't Save", "b, unsaved"},
      {"Cancel", "a, unsaved"}}},
    {"asked to close",
     {{"close", "a, asked, unsaved"},
      {"open", "a, asked, one waits, unsaved"},
      {"Save", "a, panel, unsaved"},
      {"Don't Save", "a, unsaved, ended"},
      {"Cancel", "a, unsaved"}}},
    {"asked during a run",
     {{"finish", "a, asked, one waits, unsaved"},
      {"Save", "a, panel, one waits, unsaved"},
      {"Don't Save", "b, unsaved"}}},
    // The answer to the question comes of itself once the file is there.
    {"asked while exporting",
     {{"finish", "b, unsaved, written"},
      {"Save", "b, unsaved, written"},
      {"Don't Save", "b, unsaved"},
      {"Cancel", "a, written"},
      {"stop", "a, asked, one waits, unsaved"}}},
    {"to be closed while exporting",
     {{"finish", "a, written, ended"},
      {"Save", "a, written"},
      {"Don't Save", "a, unsaved, ended"},
      {"Cancel", "a, written"},
      {"stop", "a, asked, unsaved"}}},
    {"b waits, panel",
     {{"confirm", "b, unsaved, written"},
      {"confirm in vain", "a, one waits, unsaved, told"},
      {"cancel panel", "a, one waits, unsaved"}}},
    {"b waits, exporting",
     {{"finish", "b, unsaved, written"}, {"stop", "a, unsaved"}, {"close", "a, written, ended"}}},
};

// A session of its own for one row of the table.
class Story final : public UnsavedWorkTest {
 public:
  std::string endOf(const std::string& state, const std::string& event) {
    play(kStates.at(state));
    alerts.shown.clear();
    play({event, "finish"});
    EXPECT_FALSE(session->isRunningAlgorithm()) << state << ": " << event;
    return seen();
  }

 private:
  void TestBody() override {}
};

TEST(UnsavedWorkTableTest, EveryStateAnswersEveryEvent) {
  for (const auto& [state, row] : kTable) {
    for (const auto& [event, expected] : row) {
      EXPECT_EQ(Story().endOf(state, event), expected) << state << ": " << event;
    }
  }
}

TEST_F(UnsavedWorkTest, TheSheetNamesThePhotoThatIsOpen) {
  open(picture("Berg %1.png"));
  session->photoDraggedWithPath(folder.file("b.png"));
  EXPECT_EQ(told.back(), "Do you want to save the changes made to the document \"Berg %1.png\" ?");
  EXPECT_EQ(session->imgPathToImportAfterExportWorkingImg(), folder.file("b.png"));
}

// "Don't Save", and then it is no photo: nothing of the old one is left.
TEST_F(UnsavedWorkTest, ABadFileAfterDontSaveLeavesTheEmptyScreen) {
  play({"a", "open bad", "Don't Save", "finish"});
  EXPECT_EQ(seen(), "-, told");
  EXPECT_EQ(told.back(), "empty");
  EXPECT_EQ(session->runState().controls(), controlsWithoutPhoto());
}

TEST_F(UnsavedWorkTest, APhotoCutShortIsToldAndWhatWaitedIsOpened) {
  const std::string whole = testing_support::contentsOf(folder.file("a.png"));
  testing_support::writeFile(folder.file("cut.png"), whole.substr(0, whole.size() / 2));
  session->photoDraggedWithPath(folder.file("cut.png"));
  play({"open", "finish"});
  EXPECT_EQ(seen(), "b, unsaved, told");
  EXPECT_EQ(alerts.shown[0].messageText, "File Format Not Suppored");
}

// 2,000 actions in one session. What it says of itself is compared with an account of our own.
TEST_F(UnsavedWorkTest, NothingIsLostInAnyOrder) {
  std::mt19937 random(20261125);
  std::uniform_int_distribution<long> choice(0, static_cast<long>(events().size()) - 1);
  std::uniform_int_distribution<int> percent(0, 99);
  std::string story;
  std::string opened = "-";
  for (int step = 0; step < 2000; ++step) {
    auto event = events().begin();
    std::advance(event, choice(random));
    if (percent(random) < 30) event = events().find("finish");
    story.append(event->first).append(", ");
    if (story.size() > 400) story.erase(0, story.size() - 400);
    const bool wasUnsaved = session->isUnsaved();
    const bool mayLose = isSheetShown && event->first == "Don't Save";
    const std::string before = photo();
    const std::size_t failures = alerts.shown.size();
    std::filesystem::remove(folder.file("out.png"));
    const bool failsToGive = percent(random) < 5;
    engine.gives = !failsToGive;
    event->second(*this);

    SCOPED_TRACE(story);
    // The photo changes only over saved work, or when the user says so.
    if (photo() != before && wasUnsaved) {
      ASSERT_TRUE(mayLose || isWritten("out.png") || alerts.shown.size() > failures);
    }
    if (terminations > 0) {
      ASSERT_TRUE(!session->isUnsaved() || mayLose);
      terminations = 0;  // The end was refused: the walk goes on.
    }
    ASSERT_FALSE(isSheetShown && isPanelShown);
    ASSERT_EQ(isSheetShown, session->talk() == EditTalk::kAskingToOpen ||
                                session->talk() == EditTalk::kAskingToClose);
    ASSERT_EQ(isPanelShown, session->talk() == EditTalk::kPanel);
    ASSERT_EQ(session->state() == EditState::kEmpty, !session->hasPhoto());
    ASSERT_EQ(session->hasPhoto(), session->selectedImageFile().has_value());
    if (session->state() == EditState::kSaved) {
      ASSERT_TRUE(session->lastExportedImage().isValid());
    }
    if (event->first == "finish") {
      // Nobody is trapped: everything under way has come to an end.
      ASSERT_FALSE(session->isRunningAlgorithm());
      ASSERT_NE(session->state(), EditState::kLoading);
      ASSERT_NE(session->state(), EditState::kExportDue);
      ASSERT_NE(session->state(), EditState::kExporting);
      ASSERT_FALSE(isBarShown);
      if (session->hasPhoto()) {
        ASSERT_TRUE(session->runState().controls().isAlive(Control::btnAddPhoto) ||
                    !alerts.shown.empty());
      }
    }
    if (session->isRunningAlgorithm()) {
      ASSERT_TRUE(session->state() == EditState::kRunning ||
                  session->state() == EditState::kExportDue ||
                  session->state() == EditState::kExporting ||
                  session->state() == EditState::kSaved || session->state() == EditState::kUnsaved);
    }
  }
  // And there is a way out.
  engine.gives = true;
  play({"cancel panel", "finish", "Cancel", "close", "Don't Save"});
  EXPECT_EQ(terminations, 1);
}

}  // namespace
}  // namespace velmara
