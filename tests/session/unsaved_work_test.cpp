// What happens to work that is in no file: every state answers every event, and whatever is done in
// whatever order, nothing is lost and nobody is trapped.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include "session/editing_fixture.h"

namespace velmara {
namespace {

class UnsavedWorkTest : public EditingTest {
 protected:
  using Step = std::function<void(UnsavedWorkTest&)>;

  UnsavedWorkTest() {
    // The invitation is another matter.
    makeSession({});
    for (const char* name : {"a.png", "b.png"}) picture(name);
    testing_support::writeFile(folder.file("bad.png"), "no picture");
    const std::string whole = testing_support::contentsOf(folder.file("a.png"));
    testing_support::writeFile(folder.file("cut.png"), whole.substr(0, whole.size() / 2));
  }

  static const std::map<std::string, Step>& events() {
    using Session = EditingSession;
    static const auto open = [](const char* name) {
      return [name](auto& t) { t.session->photoDraggedWithPath(t.folder.file(name)); };
    };
    static const std::map<std::string, Step> kEvents{
        {"open", open("b.png")},
        {"open bad", open("bad.png")},
        {"open cut", open("cut.png")},
        {"save", [](auto& t) { t.session->btnExportDenoisedImageTapped(); }},
        {"confirm", [](auto& t) { t.confirm("out.png"); }},
        {"confirm in vain", [](auto& t) { t.confirm("no folder/out.png"); }},
        {"cancel panel", [](auto& t) { t.confirm({}); }},
        {"finish", [](auto& t) { t.finish(); }},
        {"stop", [](auto& t) { t.session->cancelRun(); }},
        {"Save", [](auto& t) { t.answer(&Session::btnSaveChangesTapped); }},
        {"Don't Save", [](auto& t) { t.answer(&Session::btnDontSaveChangesTapped); }},
        {"Cancel", [](auto& t) { t.answer(&Session::btnCancelChangesTapped); }},
        {"close", [](auto& t) { t.session->btnCloseWindowTapped(); }},
        {"quit", [](auto& t) { t.session->btncloseFileFromMenuTapped(); }},
        {"level", [](auto& t) { t.session->sliderCustomDenoiseAction(5.0); }},
        {"zoom", [](auto& t) { t.requestPreview(); }},
        {"restore", [](auto& t) { t.session->loadLastWorkedImageFromDefaults(); }},
    };
    return kEvents;
  }
  /// Does what stands there, between semicolons; "a" opens the first photo.
  void play(const std::string& story) {
    std::istringstream words(story);
    for (std::string name; std::getline(words >> std::ws, name, ';');) {
      name == "a" ? open(folder.file("a.png")) : events().at(name)(*this);
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

// How a state is reached, an event, and what is seen once that has come to its end.
constexpr const char* kTable[][3] = {
    {"", "open", "b, unsaved"},
    {"", "open bad", "-, told"},
    {"", "save", "-"},
    {"", "close", "-, ended"},
    {"", "quit", "-, ended"},
    {"", "level", "-"},
    // Loading. Work is asked for before it goes.
    {"open", "open", "b, asked, one waits, unsaved"},
    {"open", "close", "b, asked, unsaved"},
    {"open", "save", "b, unsaved"},
    {"open", "stop", "b, unsaved"},
    {"open cut", "finish", "-, told"},
    {"open cut", "open", "b, unsaved, told"},
    {"open cut;finish", "restore", "-"},
    // A result that is in no file.
    {"a", "open", "a, asked, one waits, unsaved"},
    {"a", "save", "a, panel, unsaved"},
    {"a", "close", "a, asked, unsaved"},
    {"a", "quit", "a, asked, unsaved"},
    {"a", "level", "a, unsaved"},
    {"a;zoom", "open", "a, asked, one waits, unsaved"},
    {"a;zoom", "save", "a, unsaved"},
    {"a;zoom", "close", "a, asked, unsaved"},
    {"a;zoom", "stop", "a, unsaved"},
    {"a;zoom;open bad", "Don't Save", "-, told"},
    // One that is in a file.
    {"a;save;confirm;finish", "open", "b, unsaved, written"},
    {"a;save;confirm;finish", "open bad", "a, written, told"},
    {"a;save;confirm;finish", "save", "a, panel, written"},
    {"a;save;confirm;finish", "close", "a, written, ended"},
    {"a;save;confirm;finish", "quit", "a, written, ended"},
    {"a;save;confirm;finish", "level", "a, unsaved, written"},
    // The panel is shown, once with a run under it.
    {"a;save", "open", "a, panel, unsaved"},
    {"a;save", "close", "a, panel, unsaved"},
    {"a;save", "quit", "a, panel, unsaved"},
    {"a;save", "confirm", "a, written"},
    {"a;save", "confirm in vain", "a, unsaved, told"},
    {"a;save", "cancel panel", "a, unsaved"},
    {"a;save;zoom", "confirm", "a, written"},
    {"a;save;zoom", "cancel panel", "a, unsaved"},
    {"a;save;zoom;confirm", "save", "a, written"},
    {"a;save;zoom;confirm", "close", "a, written, ended"},
    {"a;save;zoom;confirm", "open", "b, unsaved, written"},
    // Exporting, once more after that.
    {"a;save;confirm", "finish", "a, written"},
    {"a;save;confirm", "stop", "a, unsaved"},
    {"a;save;confirm", "save", "a, written"},
    {"a;save;confirm", "close", "a, written, ended"},
    {"a;save;confirm", "open", "b, unsaved, written"},
    {"a;save;confirm", "open bad", "a, written, told"},
    {"a;save;confirm;finish;save;confirm", "finish", "a, written"},
    {"a;save;confirm;finish;save;confirm", "close", "a, written, ended"},
    // Asked, idle and during a run.
    {"a;open", "open", "a, asked, one waits, unsaved"},
    {"a;open", "close", "a, asked, one waits, unsaved"},
    {"a;open", "save", "a, asked, one waits, unsaved"},
    {"a;open", "Save", "a, panel, one waits, unsaved"},
    {"a;open", "Don't Save", "b, unsaved"},
    {"a;open", "Cancel", "a, unsaved"},
    {"a;open bad", "Don't Save", "-, told"},
    {"a;close", "close", "a, asked, unsaved"},
    {"a;close", "open", "a, asked, one waits, unsaved"},
    {"a;close", "Save", "a, panel, unsaved"},
    {"a;close", "Don't Save", "a, unsaved, ended"},
    {"a;close", "Cancel", "a, unsaved"},
    {"a;zoom;open", "finish", "a, asked, one waits, unsaved"},
    {"a;zoom;open", "Save", "a, panel, one waits, unsaved"},
    {"a;zoom;open", "Don't Save", "b, unsaved"},
    // The answer to the question comes of itself once the file is there.
    {"a;save;confirm;open", "Save", "b, unsaved, written"},
    {"a;save;confirm;open", "Don't Save", "b, unsaved"},
    {"a;save;confirm;open", "Cancel", "a, written"},
    {"a;save;confirm;open", "stop", "a, asked, one waits, unsaved"},
    {"a;save;confirm;close", "Save", "a, written"},
    {"a;save;confirm;close", "Don't Save", "a, unsaved, ended"},
    {"a;save;confirm;close", "Cancel", "a, written"},
    {"a;save;confirm;close", "stop", "a, asked, unsaved"},
    // The question was answered with "Save".
    {"a;open;Save", "confirm", "b, unsaved, written"},
    {"a;open;Save", "confirm in vain", "a, one waits, unsaved, told"},
    {"a;open;Save", "cancel panel", "a, one waits, unsaved"},
    {"a;open;Save;confirm", "stop", "a, unsaved"},
    {"a;zoom;open;Save", "confirm", "b, unsaved, written"},
    {"a;open;Save;confirm", "close", "a, written, ended"},
};

// A session of its own for one row of the table.
class Story final : public UnsavedWorkTest {
 public:
  std::string endOf(const std::string& state, const std::string& event) {
    play(state);
    alerts.shown.clear();
    play(event + ";finish");
    EXPECT_FALSE(session->isRunningAlgorithm());
    if (!session->hasPhoto()) {
      EXPECT_EQ(session->runState().controls(), controlsWithoutPhoto());
    }
    return seen();
  }

 private:
  void TestBody() override {}
};

TEST(UnsavedWorkTableTest, EveryStateAnswersEveryEvent) {
  for (const auto& [state, event, end] : kTable) {
    EXPECT_EQ(Story().endOf(state, event), end) << state << ": " << event;
  }
}

TEST_F(UnsavedWorkTest, TheSheetNamesThePhotoThatIsOpen) {
  open(picture("Berg %1.png"));
  session->photoDraggedWithPath(folder.file("b.png"));
  EXPECT_EQ(told.back(), "Do you want to save the changes made to the document \"Berg %1.png\" ?");
  EXPECT_EQ(session->imgPathToImportAfterExportWorkingImg(), folder.file("b.png"));
}

// 2,000 actions in one session. What it says of itself is compared with an account of our own.
TEST_F(UnsavedWorkTest, NothingIsLostInAnyOrder) {
  std::mt19937 random(20261125);
  std::uniform_int_distribution<long> choice(0, static_cast<long>(events().size()) - 1);
  std::uniform_int_distribution<int> percent(0, 99);
  std::string story;
  for (int step = 0; step < 2000; ++step) {
    auto event = std::next(events().begin(), choice(random));
    if (percent(random) < 30) event = events().find("finish");
    story.append(event->first).append("; ");
    if (story.size() > 400) story.erase(0, story.size() - 400);
    const bool wasUnsaved = session->isUnsaved();
    const bool mayLose = isSheetShown && event->first == "Don't Save";
    const std::string before = photo();
    const std::size_t failures = alerts.shown.size();
    std::filesystem::remove(folder.file("out.png"));
    engine.gives = percent(random) >= 5;
    event->second(*this);

    SCOPED_TRACE(story);
    // The photo changes, and the program ends, only over saved work or when the user says so.
    if (photo() != before && wasUnsaved) {
      ASSERT_TRUE(mayLose || isWritten("out.png") || alerts.shown.size() > failures);
    }
    ASSERT_TRUE(std::exchange(terminations, 0) == 0 || !session->isUnsaved() || mayLose);
    const EditState state = session->state();
    const EditTalk talk = session->talk();
    ASSERT_EQ(isSheetShown, talk == EditTalk::kAskingToOpen || talk == EditTalk::kAskingToClose);
    ASSERT_EQ(isPanelShown, talk == EditTalk::kPanel);
    ASSERT_EQ(state == EditState::kEmpty, !session->hasPhoto());
    ASSERT_EQ(session->hasPhoto(), session->selectedImageFile().has_value());
    ASSERT_TRUE(state != EditState::kSaved || session->lastExportedImage().isValid());
    ASSERT_FALSE(session->isRunningAlgorithm() &&
                 (state == EditState::kEmpty || state == EditState::kLoading));
    if (event->first == "finish") {
      // Nobody is trapped: everything under way has come to an end.
      ASSERT_FALSE(session->isRunningAlgorithm() || isBarShown);
      ASSERT_TRUE(state == EditState::kEmpty || state == EditState::kUnsaved ||
                  state == EditState::kSaved);
    }
  }
  // And there is a way out.
  engine.gives = true;
  play("cancel panel;finish;Cancel;close;Don't Save");
  EXPECT_EQ(terminations, 1);
}

}  // namespace
}  // namespace velmara
