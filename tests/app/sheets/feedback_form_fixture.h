#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/sheets/feedback_window_controller.h"
#include "support/scripted_desktop.h"

namespace velmara::testing_support {

/// The feedback form on a window of the smallest size, open; what it sends and asks for is kept.
class FeedbackFormTest : public testing::Test {
 protected:
  using Receiver = std::function<void(const FeedbackReport&)>;

  FeedbackFormTest() {
    window.resize(1220, 700);
    window.show();
    open();
  }
  void open() {
    sheet.showSheet();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&sheet));
  }

  template <typename Widget = QWidget>
  Widget& part(const char* name) {
    auto* found = sheet.findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  void click(const char* name) { QTest::mouseClick(&part(name), Qt::LeftButton); }
  QString whatIsSent() { return part<QPlainTextEdit>("txtWhatIsSent").toPlainText(); }
  void fill(const char* address, int type, const char* text) {
    part<QLineEdit>("txtFBEmailID").setText(address);
    part<QComboBox>("btnFBType").setCurrentIndex(type);
    part<QPlainTextEdit>("txtViewFBExp").setPlainText(text);
  }
  static QString focusName() {
    const QWidget* widget = QApplication::focusWidget();
    return widget != nullptr ? widget->objectName() : QString();
  }
  // Which error labels show: "ETX" for all three.
  std::string errors() {
    std::string shown;
    for (const char* name : {"lblFBInvalidEmail", "lblFBInvalidType", "lblFBInvalidExp"}) {
      if (part(name).isVisible()) shown += name[13] == 'x' ? 'X' : name[12];
    }
    return shown;
  }

  QWidget window;
  ScriptedAlerts alerts;
  ScriptedPanels panels;
  bool isInternetAvailable = true;
  bool reachesNobody = false;
  std::vector<FeedbackForm> sent;  ///< or saved
  std::string savedTo;
  std::function<void(const std::string&)> saved;
  std::function<void()> whileSending = [] {};
  std::vector<std::pair<FeedbackForm, Receiver>> described;
  FeedbackServices services() {
    FeedbackServices services{.alerts = alerts, .panels = panels};
    services.reachesNobody = reachesNobody;
    services.isInternetAvailable = [this] { return isInternetAvailable; };
    services.extractInfoAndSendFeedback = [this](const FeedbackForm& form) {
      sent.push_back(form);
      whileSending();
    };
    services.describe = [this](const FeedbackForm& form, Receiver receiver) {
      described.emplace_back(form, std::move(receiver));
    };
    services.proposedFileName = [] { return "Velmara-Feedback 7.xml"; };
    services.saveReport = [this](const FeedbackForm& form, const std::string& path, auto done) {
      sent.push_back(form);
      savedTo = path;
      saved = std::move(done);
    };
    return services;
  }

  FeedbackWindowController sheet{services(), &window};
};

}  // namespace velmara::testing_support
