// The result on the clipboard, and pictures from there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>

#include "app/screen_fixture.h"

namespace velmara {
namespace {

using testing_support::ScreenTest;

class ClipboardTest : public ScreenTest {
 protected:
  void TearDown() override {
    QApplication::clipboard()->clear();
    ScreenTest::TearDown();
  }
  void press(Qt::Key key) { QTest::keyClick(&window(), key, Qt::ControlModifier); }
  // The PNG that others find there; not valid if it is none.
  static QImage copied() {
    const QMimeData* content = QApplication::clipboard()->mimeData();
    if (content == nullptr) return {};
    return QImage::fromData(content->data("image/png"), "PNG")
        .convertToFormat(QImage::Format_RGB32);
  }
};

TEST_F(ClipboardTest, TakesWhatASaveWouldWriteAndGivesItBackAsAPhoto) {
  press(Qt::Key_C);
  EXPECT_FALSE(view("btnSaved").isVisible()) << "without a photo";
  ASSERT_TRUE(openAndWait(photo()));
  const int runs = engine.runs();
  press(Qt::Key_C);
  press(Qt::Key_C);
  EXPECT_EQ(view<QPushButton>("btnSaved").text(), "Copying…");
  ASSERT_TRUE(waitUntil([] { return !copied().isNull(); }));
  EXPECT_EQ(engine.runs(), runs + 1);
  EXPECT_EQ(view<QPushButton>("btnSaved").text(), "Copied");
  EXPECT_TRUE(session().isUnsaved());

  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return !session().isUnsaved(); }));
  const QImage saved(QString::fromStdString(folder.file("out.png")));
  EXPECT_EQ(copied(), saved.convertToFormat(QImage::Format_RGB32));

  press(Qt::Key_V);
  ASSERT_TRUE(waitUntil([this] { return session().isPhotoTemporary(); }));
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(view<QLabel>("lblPath").text(), "From the clipboard");
  click("btnExport");
  EXPECT_EQ(panels.saveOptions.back().nameFieldStringValue, "Pasted Picture-denoised");
  EXPECT_EQ(panels.saveOptions.back().directory, picturesDirectory());
  panels.answerSave({});
}

TEST_F(ClipboardTest, OpensFilesAndDrawnPicturesAndSaysWhereThereIsNone) {
  QApplication::clipboard()->setText("no picture");
  press(Qt::Key_V);
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].informativeText, "there is no picture on the clipboard");

  auto* file = new QMimeData;
  file->setUrls({QUrl("https://velmara.invalid/a.png"),
                 QUrl::fromLocalFile(QString::fromStdString(photo("ü & b.png")))});
  QApplication::clipboard()->setMimeData(file);
  press(Qt::Key_V);
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(session().selectedImageFile()->filePath, folder.file("ü & b.png"));

  for (const char* name : {"Pasted Picture.png", "Pasted Picture 2.png"}) {
    QApplication::clipboard()->setImage(QImage(VELMARA_DATA "/noisy.png").copy(0, 0, 250, 200));
    screen().paste();  // The sheet that was closed before has the keys still.
    session().btnDontSaveChangesTapped();
    ASSERT_TRUE(waitUntil([&] { return session().selectedImageFile()->fileName == name; }));
    ASSERT_TRUE(waitForResult());
    EXPECT_EQ(session().selectedImageFile()->width, 250);
  }
}

}  // namespace
}  // namespace velmara
