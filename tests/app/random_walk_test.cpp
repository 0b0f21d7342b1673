// Whatever is done to the window in whatever order: it stays usable, tells the truth about the
// photo, and comes to rest.
#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>

#include <fstream>
#include <random>

#include "app/screen_fixture.h"
#include "widgets/action_button.h"
#include "widgets/img_button.h"

namespace velmara {
namespace {

using testing_support::ScreenTest;

constexpr int kActions = 500;

class RandomWalk : public ScreenTest, public testing::WithParamInterface<int> {
 protected:
  /// One action of a user, drawn by lot; returns what it was.
  std::string act() {
    static const std::vector<std::pair<std::string, void (RandomWalk::*)()>> kAll{
        {"press a button", &RandomWalk::pressAButton},
        {"choose a level", &RandomWalk::chooseALevel},
        {"drop a file", &RandomWalk::dropAFile},
        {"save", &RandomWalk::save},
        {"answer the panel", &RandomWalk::answerThePanel},
        {"answer the question", &RandomWalk::answerTheQuestion},
        {"close", &RandomWalk::close},
        {"drag the picture", &RandomWalk::dragThePicture},
        {"type a key", &RandomWalk::typeAKey},
        {"resize", &RandomWalk::resize},
        {"lose a file", &RandomWalk::loseAFile},
        {"let the engine fail", &RandomWalk::letTheEngineFail},
        {"wait", &RandomWalk::wait}};
    const auto& [name, action] = kAll[upTo(kAll.size())];
    (this->*action)();
    QApplication::processEvents();
    return name;
  }

  /// What holds after every action.
  void expectSense() {
    const auto& current = session().selectedImageFile();
    EXPECT_EQ(session().hasPhoto(), current.has_value());
    if (!current) {
      EXPECT_TRUE(view("vwDragging").isVisible()) << "the invitation to drop a photo";
    }
    if (session().isRunningAlgorithm()) {
      EXPECT_TRUE(current.has_value());
      EXPECT_FALSE(view("sliderCustomDenoise").isEnabled());
      EXPECT_FALSE(window().isResizable());
    }
    if (const QWidget* focus = QApplication::focusWidget()) {
      EXPECT_TRUE(focus->isVisible());
    }
    const auto files = std::filesystem::directory_iterator(temporary.path());
    EXPECT_LE(std::distance(begin(files), end(files)), 3) << "temporary files";
  }

  /// Answers what is asked and waits until nothing is under way any more.
  void comeToRest() {
    engine.givesNothing = false;
    panels.answerSave({});
    if (isAsking()) click("btnCancelChanges");
    ASSERT_TRUE(waitUntil([this] {
      return isGlobalQueueIdle() && !session().isRunningAlgorithm() &&
             session().state() != EditState::kLoading &&
             session().runState().phase() == RunPhase::kIdle;
    }));
    EXPECT_FALSE(view("progressBar").isVisible());
    EXPECT_TRUE(window().isResizable());
    EXPECT_TRUE(view<ActionButton>("btnAddPhoto").isEnabled());
    EXPECT_TRUE(view<ActionButton>("btnCloseWindow").isEnabled());
    const auto& current = session().selectedImageFile();
    if (!current) return;
    EXPECT_TRUE(view("sliderCustomDenoise").isEnabled());
    EXPECT_TRUE(view<QLabel>("lblPath").text().endsWith(QString::fromStdString(current->filePath)));
  }

 private:
  std::size_t upTo(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }
  bool isAsking() {
    const auto* sheet = window().findChild<QWidget*>("windowSaveChanges");
    return sheet != nullptr && sheet->isVisible();
  }

  void pressAButton() {
    static constexpr const char* kButtons[] = {
        "btnSingleMode", "btnSplitMode", "btnDualMode", "btn100Percent", "btn200Percent",
        "btnFitScreen",  "btnZoomIn",    "btnZoomOut",  "btnAutoMode",   "btnDeepMode"};
    click(kButtons[upTo(std::size(kButtons))]);
  }
  void chooseALevel() { screen().changeLevel(static_cast<int>(upTo(9)) - 4); }
  void dropAFile() {
    static constexpr const char* kNames[] = {"a.png", "b.png", "small.png", "text.png", "gone.png"};
    const std::string name = kNames[upTo(std::size(kNames))];
    const std::string path = folder.file(name);
    if (name == "text.png") {
      std::ofstream(path) << "no picture";
    } else if (name == "small.png") {
      ASSERT_TRUE(QImage(60, 40, QImage::Format_RGB32).save(QString::fromStdString(path)));
    } else if (name != "gone.png") {
      photo(name);
    }
    screen().photoDraggedWithPath(path);
  }
  void save() { click("btnExport"); }
  void answerThePanel() {
    static constexpr const char* kAnswers[] = {"", "out.png", "out.jpg", "nowhere/out.png",
                                               "a.png"};
    const std::string answer = kAnswers[upTo(std::size(kAnswers))];
    panels.answerSave(answer.empty() ? answer : folder.file(answer));
  }
  void answerTheQuestion() {
    static constexpr const char* kAnswers[] = {"btnSaveChanges", "btnDontSaveChanges",
                                               "btnCancelChanges"};
    if (isAsking()) click(kAnswers[upTo(std::size(kAnswers))]);
  }
  // Where nothing would be lost the program would end here; the walk goes on.
  void close() {
    window().close();
    window().show();
  }
  void dragThePicture() {
    QWidget& area = view("vwPreviewContainer");
    const QPoint from(static_cast<int>(upTo(400)), static_cast<int>(upTo(300)));
    const QPoint to(static_cast<int>(upTo(400)), static_cast<int>(upTo(300)));
    QTest::mousePress(&area, Qt::LeftButton, {}, from);
    QMouseEvent moved(QEvent::MouseMove, to, area.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      {});
    QApplication::sendEvent(&area, &moved);
    if (upTo(4) != 0) QTest::mouseRelease(&area, Qt::LeftButton, {}, to);
  }
  void typeAKey() {
    static constexpr Qt::Key kKeys[] = {Qt::Key_Escape, Qt::Key_Left,  Qt::Key_Down,
                                        Qt::Key_Space,  Qt::Key_Right, Qt::Key_Up};
    QTest::keyClick(&view("vwPreviewContainer"), kKeys[upTo(std::size(kKeys))]);
  }
  void resize() {
    if (!window().isResizable()) return;
    window().resize(1220 + static_cast<int>(upTo(200)), 700 + static_cast<int>(upTo(100)));
  }
  void loseAFile() {
    if (const auto& current = session().selectedImageFile()) {
      std::filesystem::remove(current->filePath);
    }
  }
  void letTheEngineFail() { engine.givesNothing = upTo(3) == 0; }
  void wait() { QTest::qWait(static_cast<int>(upTo(60))); }

  std::mt19937 random_{static_cast<std::mt19937::result_type>(GetParam())};
};

TEST_P(RandomWalk, EndsInAWindowThatIsStillUsable) {
  std::string walk;
  for (int i = 0; i < kActions; ++i) {
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

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalk, testing::Range(1, 6));

}  // namespace
}  // namespace velmara
