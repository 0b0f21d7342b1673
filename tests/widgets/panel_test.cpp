#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

#include "support/scratch_folder.h"
#include "widgets/desktop_panels.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing_support::ScratchFolder;
using testing_support::writeFile;

class PanelTest : public testing::Test {
 protected:
  PanelTest() {
    window.show();
    writeFile(folder.file("a photo.JPG"), "x");
    writeFile(folder.file("notes.txt"), "x");
  }

  static QFileDialog* shown() {
    return qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
  }
  QLineEdit* nameField() { return shown()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")); }
  void begin(const SavePanelOptions& options) {
    panel = panels.beginSavePanel(options, [this](const std::string& path) {
      saved.push_back(path);
      parentAtAnswer = accessory.parentWidget();
    });
    ASSERT_NE(shown(), nullptr);
    shown()->setDirectory(QString::fromStdString(folder.path().string()));
  }
  void accept() { QMetaObject::invokeMethod(shown(), "accept"); }

  ScratchFolder folder;
  QWidget window;
  DesktopPanels panels{&window};
  std::shared_ptr<SavePanel> panel;
  QComboBox accessory;
  QWidget* parentAtAnswer = &window;
  std::vector<std::string> saved;
};

TEST_F(PanelTest, OpenGivesTheChosenFileOrNothing) {
  std::vector<std::vector<std::string>> answers;
  OpenPanelOptions options;
  options.title = "Open Image";
  options.allowedTypesTitle = "Images";
  options.allowedFileTypes = {"jpg", "JPG", "png"};
  for (const bool confirms : {true, false}) {
    panels.beginOpenPanel(options, [&](const auto& paths) { answers.push_back(paths); });
    ASSERT_NE(shown(), nullptr);
    EXPECT_EQ(shown()->windowTitle(), QStringLiteral("Open Image"));
    EXPECT_THAT(shown()->nameFilters(), ElementsAre(QStringLiteral("Images (*.jpg *.JPG *.png)")));
    EXPECT_EQ(shown()->windowModality(), Qt::WindowModal);
    shown()->setDirectory(QString::fromStdString(folder.path().string()));
    nameField()->setText(QStringLiteral("a photo.JPG"));
    if (confirms) {
      accept();
    } else {
      shown()->reject();
    }
  }
  EXPECT_THAT(answers, ElementsAre(ElementsAre(folder.file("a photo.JPG")), ElementsAre()));
}

TEST_F(PanelTest, SaveAlwaysEndsInAnAllowedExtension) {
  SavePanelOptions options;
  options.nameFieldStringValue = "IMG.v2";
  options.allowedFileTypes = {"png", "jpeg", "tiff"};
  begin(options);
  EXPECT_EQ(nameField()->text(), QStringLiteral("IMG.v2.png"));
  panel->setAllowedFileTypes({"tiff"});
  EXPECT_EQ(nameField()->text(), QStringLiteral("IMG.v2.tiff"));
  nameField()->setText(QStringLiteral("other.doc"));
  accept();
  begin(options);
  nameField()->setText(QStringLiteral("typed.JPEG"));
  accept();
  begin(options);
  panel->cancel();
  EXPECT_THAT(saved, ElementsAre(folder.file("other.doc.tiff"), folder.file("typed.jpeg"), ""));
  panel->setAllowedFileTypes({"gif"});  // Nothing stands there any more.
  panel->cancel();
  EXPECT_EQ(saved.size(), 3U);
}

TEST_F(PanelTest, AsksBeforeItReplacesTheFileThatWillReallyBeWritten) {
  writeFile(folder.file("taken.png"), "old");
  SavePanelOptions options;
  options.allowedFileTypes = {"png"};
  begin(options);
  nameField()->setText(QStringLiteral("taken"));
  int asked = 0;
  QTimer::singleShot(0, [&] {
    auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(question, nullptr);
    ++asked;
    question->button(QMessageBox::No)->click();
  });
  accept();
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(saved.empty());
  ASSERT_NE(shown(), nullptr);
  shown()->reject();
}

TEST_F(PanelTest, TheAccessoryViewIsShownAndGivenBack) {
  SavePanelOptions options;
  options.nameFieldStringValue = "photo";
  options.allowedFileTypes = {"png"};
  options.accessoryView = &accessory;
  for (int round = 0; round < 2; ++round) {
    begin(options);
    EXPECT_TRUE(accessory.isVisible());
    EXPECT_EQ(accessory.window(), shown());
    accept();
    EXPECT_EQ(parentAtAnswer, nullptr);
    EXPECT_EQ(accessory.parentWidget(), nullptr);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  EXPECT_EQ(saved.size(), 2U);
}

TEST_F(PanelTest, AnAccessoryViewOutlivesAPanelWhoseWindowGoes) {
  auto owner = std::make_unique<QWidget>();
  owner->show();
  auto brief = std::make_unique<DesktopPanels>(owner.get());
  SavePanelOptions options;
  options.accessoryView = &accessory;
  const auto open = brief->beginSavePanel(options, [&](const std::string&) { ADD_FAILURE(); });
  brief.reset();
  owner.reset();
  EXPECT_EQ(accessory.parentWidget(), nullptr);
  open->cancel();
}

}  // namespace
}  // namespace velmara
