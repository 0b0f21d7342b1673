// Panels and alerts as the desktop shows them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/scratch_folder.h"
#include "widgets/desktop_alerts.h"
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
      EXPECT_EQ(accessory.parentWidget(), nullptr) << "given back";
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
  std::vector<std::string> saved;
};

// The folder used last is where the next panel of its kind opens; the first opens beside the photo.
TEST_F(PanelTest, EachKindOpensInTheFolderUsedLast) {
  const auto folderShown = [] { return shown()->directory().absolutePath().toStdString(); };
  const std::string used = folder.file("used");
  const std::string given = folder.path().string();
  std::filesystem::create_directory(used);
  std::filesystem::copy_file(folder.file("a photo.JPG"), used + "/a.jpg");
  SavePanelOptions options;
  options.allowedFileTypes = {"png"};
  options.directory = given;
  const auto answer = [&](bool isSaving, const char* name, const std::string& expected) {
    isSaving ? void(panel = panels.beginSavePanel(options, [](const auto&) {}))
             : panels.beginOpenPanel({}, [](const auto&) {});
    EXPECT_TRUE(expected.empty() || folderShown() == expected) << isSaving << folderShown();
    shown()->setDirectory(QString::fromStdString(used));
    nameField()->setText(QString::fromLatin1(name));
    *name == 0 ? shown()->reject() : accept();
  };
  answer(true, "", given);
  answer(true, "b", given);
  answer(true, "", used);
  answer(false, "a.jpg", {});
  answer(false, "", used);
  std::filesystem::remove_all(used);
  answer(true, "", given);
}

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
    confirms ? accept() : shown()->reject();
  }
  EXPECT_THAT(answers, ElementsAre(ElementsAre(folder.file("a photo.JPG")), ElementsAre()));
}

TEST_F(PanelTest, SaveAlwaysEndsInAnAllowedExtension) {
  SavePanelOptions options;
  options.nameFieldStringValue = "IMG.v2";
  options.allowedFileTypes = {"png", "jpeg", "tiff"};
  options.accessoryView = &accessory;
  begin(options);
  EXPECT_EQ(accessory.window(), shown());
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

const Alert kQuestion{"Could not save changes while quitting. Quit anyway?",
                      "Quitting now will lose any changes you have made since the last successful "
                      "save",
                      {"Quit anyway", "Cancel"}};

class AlertTest : public testing::Test {
 protected:
  AlertTest() {
    window.setGeometry(100, 100, 800, 600);
    window.show();
  }

  static AlertDialog* shown() {
    return qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
  }

  // Shows the alert and does something with it once it stands there.
  int answer(const Alert& alert, const std::function<void(AlertDialog&)>& user) {
    QTimer::singleShot(0, [user] {
      ASSERT_NE(shown(), nullptr);
      ASSERT_TRUE(QTest::qWaitForWindowActive(shown()));
      user(*shown());
    });
    return alerts.runModal(alert);
  }

  static QPushButton& button(AlertDialog& dialog, const char* title) {
    const auto all = dialog.findChildren<QPushButton*>();
    return **std::find_if(all.begin(), all.end(), [title](QPushButton* candidate) {
      return candidate->text() == QLatin1String(title);
    });
  }

  QWidget window;
  DesktopAlerts alerts{&window};
};

TEST_F(AlertTest, AnswersWithTheButtonPressed) {
  const auto click = [](const char* title) {
    return
        [title](AlertDialog& alert) { QTest::mouseClick(&button(alert, title), Qt::LeftButton); };
  };
  const auto key = [](Qt::Key pressed) {
    return [pressed](AlertDialog& dialog) { QTest::keyClick(&dialog, pressed); };
  };
  EXPECT_EQ(answer(kQuestion, click("Quit anyway")), 0);
  EXPECT_EQ(answer(kQuestion, click("Cancel")), 1);
  EXPECT_EQ(answer(kQuestion, key(Qt::Key_Return)), 0);
  EXPECT_EQ(answer(kQuestion, key(Qt::Key_Escape)), 1);
  EXPECT_EQ(answer(kQuestion, [](AlertDialog& dialog) { dialog.close(); }), 1);
  EXPECT_EQ(answer(kQuestion,
                   [](AlertDialog& dialog) {
                     QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
                     QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
                   }),
            1);
  const Alert plain{"Can't Process", "", {}};
  EXPECT_EQ(answer(plain, click("OK")), 0);
  EXPECT_EQ(answer(plain, key(Qt::Key_Escape)), 0);
}

TEST_F(AlertTest, StandsInTheMiddleOfItsWindowAndItsTextsAreNeverCut) {
  answer(kQuestion, [&](AlertDialog& dialog) {
    const QPoint middle = dialog.geometry().center();
    EXPECT_NEAR(middle.x(), window.geometry().center().x(), 1);
    EXPECT_NEAR(middle.y(), window.geometry().center().y(), 1);
    EXPECT_TRUE(button(dialog, "Quit anyway").isDefault());
    EXPECT_GT(button(dialog, "Quit anyway").x(), button(dialog, "Cancel").x());
    EXPECT_EQ(dialog.accessibleName(), QString::fromStdString(kQuestion.messageText));
    dialog.close();
  });
  Alert alert = kQuestion;
  alert.messageText = "Do you want to save the changes made to the document \"<b>a&b</b> " +
                      std::string(120, 'w') + " a very long name with many words in it.jpg\" ?";
  alert.informativeText = std::string(400, 'x') + " end";
  answer(alert, [&](AlertDialog& dialog) {
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
      if (label->text().isEmpty()) continue;
      EXPECT_GE(label->height(), label->heightForWidth(label->width()));
      EXPECT_TRUE(dialog.rect().contains(label->geometry()));
      const QRect room(0, 0, label->width(), dialog.height());
      EXPECT_LE(label->fontMetrics().boundingRect(room, Qt::TextWordWrap, label->text()).width(),
                label->width())
          << "words of any length are broken";
    }
    EXPECT_EQ(dialog.findChildren<QLabel*>()[1]->textFormat(), Qt::PlainText);
    dialog.close();
  });
}

TEST_F(AlertTest, SheetsAnswerLaterAndOnce) {
  std::vector<int> answers;
  alerts.beginSheet(kQuestion, [&](int answered) { answers.push_back(answered); });
  const QPointer<AlertDialog> dialog = shown();
  ASSERT_FALSE(dialog.isNull());
  EXPECT_LT(dialog->geometry().center().y(), window.geometry().center().y());
  QTest::mouseClick(&button(*dialog, "Cancel"), Qt::LeftButton);
  EXPECT_THAT(answers, ElementsAre(1));
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(dialog.isNull());
  EXPECT_EQ(answers.size(), 1U);
}

TEST_F(AlertTest, ThePresenterSurvivesTheEndOfItsWindow) {
  auto brief = std::make_unique<QWidget>();
  brief->show();
  DesktopAlerts presenter(brief.get());
  QTimer::singleShot(0, [&] { brief.reset(); });
  EXPECT_EQ(presenter.runModal(kQuestion), 1);
  QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
  EXPECT_EQ(presenter.runModal(kQuestion), 1);
}

}  // namespace
}  // namespace velmara
