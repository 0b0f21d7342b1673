// The batch window driven by drops, keys and buttons, with the real engine behind a gate.
#include "app/batch/batch_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QUrl>

#include <filesystem>

#include "app/batch/batch_table.h"
#include "app/screen_fixture.h"
#include "platform/timer.h"

namespace velmara {
namespace {

using testing_support::ScreenTest;
using testing_support::writeFile;

class BatchWindowTest : public ScreenTest {
 protected:
  void SetUp() override {
    ScreenTest::SetUp();
    photo("july/a.png");
    photo("july/b.png");
    writeFile(folder.file("july/broken.png"), "no picture");
    batch.showWindow();
  }
  void TearDown() override {
    engine.open();
    list.cancel();
    EXPECT_TRUE(waitUntil([this] { return !list.isRunning() && isGlobalQueueIdle(); }));
    ScreenTest::TearDown();
  }
  std::string photo(const std::string& name) {
    std::filesystem::create_directories(std::filesystem::path(folder.file(name)).parent_path());
    return ScreenTest::photo(name);
  }
  void drop(const std::string& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter({300, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&batch, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent event({300, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&batch, &event);
    const std::size_t before = list.entries().size();
    ASSERT_TRUE(waitUntil([&] { return list.entries().size() > before && isGlobalQueueIdle(); }));
  }
  template <typename View>
  View& part(const char* name) {
    return *batch.findChild<View*>(QString::fromLatin1(name));
  }
  void press(const char* name) { QTest::mouseClick(&part<QPushButton>(name), Qt::LeftButton); }
  QString cell(int row, int column) {
    const auto& model = *part<QTableView>("tablePhotos").model();
    return model.index(row, column).data().toString();
  }
  bool runToTheEnd() {
    press("btnStart");
    return waitUntil([this] { return !list.isRunning(); });
  }

  BatchList list{
      PhotoJobServices{engine, mainQueue(), globalQueue(), [](const std::string&) {}, {}},
      eventLoopTimers()};
  BatchWindow batch{list, alerts, panels, workspace};
};

TEST_F(BatchWindowTest, AFolderIsDroppedTreatedAndToldOf) {
  EXPECT_FALSE(part<QPushButton>("btnStart").isEnabled());
  drop(folder.file("july"));
  EXPECT_EQ(cell(0, BatchTable::kPhoto), "a.png");
  EXPECT_EQ(cell(0, BatchTable::kStrength), "As all");
  EXPECT_FALSE(cell(0, BatchTable::kNoise).isEmpty());
  EXPECT_THAT(cell(2, BatchTable::kState).toStdString(), testing::HasSubstr("not a picture"));

  // Into another folder, in a folder there, by a pattern that has to be right.
  part<QComboBox>("popFolder").setCurrentIndex(1);
  Q_EMIT part<QComboBox>("popFolder").activated(1);
  panels.answerOpen({folder.file("out")});
  part<QCheckBox>("chkKeepFolders").setChecked(true);
  part<QComboBox>("popFormat").setCurrentIndex(1);
  part<QLineEdit>("txtPattern").setText("always the same");
  EXPECT_FALSE(part<QPushButton>("btnStart").isEnabled());
  part<QLineEdit>("txtPattern").setText("{number} {name}");
  EXPECT_TRUE(part<QLabel>("lblExample").text().endsWith("1 a.jpg"));
  const auto model = part<QTableView>("tablePhotos").model();
  EXPECT_TRUE(model->setData(model->index(1, BatchTable::kStrength), 5));
  EXPECT_EQ(cell(1, BatchTable::kStrength), "Level 4");

  ASSERT_TRUE(runToTheEnd());
  EXPECT_TRUE(std::filesystem::exists(folder.file("out/1 a.jpg")));
  EXPECT_TRUE(std::filesystem::exists(folder.file("out/2 b.jpg")));
  EXPECT_EQ(cell(1, BatchTable::kState), "Done");
  EXPECT_TRUE(part<QLabel>("lblProgress").text().endsWith(", 1 failed"));
  EXPECT_TRUE(part<QPlainTextEdit>("txtFailures").toPlainText().startsWith("broken.png: "));
  press("btnShowFolder");
  EXPECT_TRUE(workspace.opened.at(0).first.ends_with("/out"));
}

TEST_F(BatchWindowTest, ClosingItAsksWhileItRuns) {
  drop(folder.file("july/a.png"));
  engine.close();
  press("btnStart");
  ASSERT_TRUE(waitUntil([this] { return engine.runs() == 1; }));
  EXPECT_FALSE(part<QWidget>("vwSettings").isEnabled());
  alerts.answers = {1, 0};
  batch.close();
  EXPECT_TRUE(batch.isVisible());
  EXPECT_FALSE(alerts.shown.empty());
  press("btnPause");
  EXPECT_EQ(part<QPushButton>("btnPause").text(), "Go On");
  QTest::keyClick(&batch, Qt::Key_Escape);
  engine.open();
  EXPECT_TRUE(waitUntil([this] { return !batch.isVisible(); }));
  EXPECT_FALSE(std::filesystem::exists(folder.file("july/a-denoised.png")));
}

}  // namespace
}  // namespace velmara
