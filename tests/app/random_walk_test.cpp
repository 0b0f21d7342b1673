// Whatever is done to the window in whatever order: it stays usable, tells the truth about the
// photo, and comes to rest.
#include <gtest/gtest.h>

#include <QLabel>

#include <random>

#include "app/screen_fixture.h"
#include "widgets/action_button.h"

namespace velmara {
namespace {

using testing_support::ScreenTest;

class RandomWalk : public ScreenTest, public testing::WithParamInterface<unsigned> {
 protected:
  using Names = std::vector<const char*>;

  int upTo(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
  const char* oneOf(const Names& names) {
    return names[static_cast<std::size_t>(upTo(static_cast<int>(names.size())))];
  }
  QPoint somewhere() { return {upTo(400), upTo(300)}; }
  bool isAsking() {
    const auto* sheet = window().findChild<QWidget*>("windowSaveChanges");
    return sheet != nullptr && sheet->isVisible();
  }

  /// One action of a user, drawn by lot; returns what it was.
  std::string act() {
    const std::pair<const char*, std::function<void()>> all[] = {
        {"press a button",
         [this] {
           click(oneOf({"btnSingleMode", "btnSplitMode", "btnDualMode", "btnNoiseMode",
                        "btn100Percent", "btnZoomIn", "btn200Percent", "btnFitScreen", "btnZoomOut",
                        "btnAutoMode", "btnDeepMode"}));
         }},
        {"choose a level", [this] { screen().changeLevel(upTo(9) - 4); }},
        {"drop a file",
         [this] {
           dropAFile(oneOf({"a.png", "b.png", "small.png", "text.png", "gone.png"}));
         }},
        {"save", [this] { click("btnExport"); }},
        {"answer the panel",
         [this] {
           const std::string answer = oneOf({"", "out.png", "out.jpg", "nowhere/out.png", "a.png"});
           panels.answerSave(answer.empty() ? answer : folder.file(answer));
         }},
        {"answer the question",
         [this] {
           const char* answer = oneOf({"btnSaveChanges", "btnDontSaveChanges", "btnCancelChanges"});
           if (isAsking()) click(answer);
         }},
        // Where nothing would be lost the program would end here; the walk goes on.
        {"close",
         [this] {
           window().close();
           window().show();
         }},
        {"drag the picture", [this] { dragThePicture(); }},
        {"type a key",
         [this] {
           constexpr Qt::Key kKeys[] = {Qt::Key_Escape, Qt::Key_Left,  Qt::Key_Down,
                                        Qt::Key_Space,  Qt::Key_Right, Qt::Key_Up};
           QTest::keyClick(&view("vwPreviewContainer"), kKeys[upTo(6)]);
         }},
        {"resize",
         [this] {
           if (window().isResizable()) window().resize(1220 + upTo(200), 700 + upTo(100));
         }},
        {"lose a file",
         [this] {
           if (session().hasPhoto()) std::filesystem::remove(session().photo().record.filePath);
         }},
        {"let the engine fail", [this] { engine.givesNothing = upTo(3) == 0; }},
        {"wait", [this] { QTest::qWait(upTo(60)); }}};
    const auto& [name, action] = all[upTo(static_cast<int>(std::size(all)))];
    action();
    QApplication::processEvents();
    return name;
  }

  /// What holds after every action.
  void expectSense() {
    const bool hasPhoto = session().hasPhoto();
    EXPECT_EQ(hasPhoto, session().selectedImageFile().has_value());
    EXPECT_TRUE(hasPhoto || view("vwDragging").isVisible()) << "the invitation to drop a photo";
    EXPECT_FALSE(session().isRunningAlgorithm() &&
                 (!hasPhoto || view("sliderCustomDenoise").isEnabled() || window().isResizable()));
    // Where windows are real, a closed one keeps the focus until the desktop gives it to another.
    const QWidget* focus = QApplication::focusWidget();
    EXPECT_TRUE(focus == nullptr || focus->isVisible() || !focus->window()->isVisible());
    const auto files = std::filesystem::directory_iterator(temporary.path());
    // Three photos' regions, and one of them being written anew.
    EXPECT_LE(std::distance(begin(files), end(files)), 4) << "temporary files";
  }

  /// Answers what is asked and waits until nothing is under way any more.
  void comeToRest() {
    engine.givesNothing = false;
    panels.answerSave({});
    if (isAsking()) click("btnCancelChanges");
    ASSERT_TRUE(waitUntil([this] {
      return isGlobalQueueIdle() && !session().isRunningAlgorithm() &&
             session().state() != EditState::kLoading &&
             session().runState().phase() == RunPhase::kIdle && window().isResizable() &&
             view("sliderCustomDenoise").isEnabled() == session().hasPhoto();
    })) << "what was begun before may begin one more run";
    EXPECT_FALSE(view("progressBar").isVisible());
    EXPECT_TRUE(view<ActionButton>("btnAddPhoto").isEnabled());
    EXPECT_TRUE(view<ActionButton>("btnCloseWindow").isEnabled());
    const auto& current = session().selectedImageFile();
    if (!current) return;
    EXPECT_TRUE(view("sliderCustomDenoise").isEnabled());
    EXPECT_TRUE(view<QLabel>("lblPath").text().endsWith(QString::fromStdString(current->filePath)));
  }

 private:
  void dropAFile(const std::string& name) {
    const std::string path = folder.file(name);
    if (name == "text.png") {
      testing_support::writeFile(path, "no picture");
    } else if (name == "small.png") {
      ASSERT_TRUE(QImage(60, 40, QImage::Format_RGB32).save(QString::fromStdString(path)));
    } else if (name != "gone.png") {
      photo(name);
    }
    screen().photoDraggedWithPath(path);
  }
  void dragThePicture() {
    QWidget& area = view("vwPreviewContainer");
    const QPoint to = somewhere();
    QTest::mousePress(&area, Qt::LeftButton, {}, somewhere());
    QMouseEvent moved(QEvent::MouseMove, to, area.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      {});
    QApplication::sendEvent(&area, &moved);
    if (upTo(4) != 0) QTest::mouseRelease(&area, Qt::LeftButton, {}, to);
  }

  std::mt19937 random_{GetParam()};
};

TEST_P(RandomWalk, EndsInAWindowThatIsStillUsable) {
  std::string walk;
  for (int i = 0; i < 1000; ++i) {
    walk += act() + "\n";
    expectSense();
    if (i % 50 == 49) comeToRest();
    ASSERT_FALSE(HasFailure()) << "after " << i << " actions, the last of them:\n"
                               << walk.substr(walk.size() > 600 ? walk.size() - 600 : 0);
  }
  // Not even now is the way in or out barred.
  ASSERT_NO_FATAL_FAILURE(comeToRest());
  screen().photoDraggedWithPath(photo("last.png"));
  if (session().talk() == EditTalk::kAskingToOpen) click("btnDontSaveChanges");
  EXPECT_TRUE(waitForResult());
  EXPECT_EQ(session().selectedImageFile()->fileName, "last.png");
}

// As many as VELMARA_WALKS says, when the tests are built and when they are run.
unsigned walks() {
  const int asked = qEnvironmentVariableIntValue("VELMARA_WALKS");
  return asked > 0 ? static_cast<unsigned>(asked) : 2;
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalk, testing::Range(1U, 1U + walks()));

}  // namespace
}  // namespace velmara
