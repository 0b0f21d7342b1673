// The program as main() runs it, with the services' addresses from its words and obedient to
// letters on its standard input: "f" fills the feedback form in and submits it, "c" closes the
// window.
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

#include "app/run_application.h"
#include "widgets/app_store_window.h"

namespace {

velmara::AppStoreWindow* mainWindow() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* window = qobject_cast<velmara::AppStoreWindow*>(widget)) return window;
  }
  return nullptr;
}

template <typename Widget>
Widget& part(const char* name) {
  return *mainWindow()->findChild<Widget*>(QLatin1String(name));
}

void submitFeedback() {
  for (QAction* item : mainWindow()->findChildren<QAction*>()) {
    if (item->text() == QStringLiteral("&Feedback…")) item->trigger();
  }
  part<QLineEdit>("txtFBEmailID").setText("a@b.co");
  part<QComboBox>("btnFBType").setCurrentIndex(1);
  part<QPlainTextEdit>("txtViewFBExp").setPlainText("text");
  part<QPushButton>("btnFBSubmit").click();
}

void obey() {
  char letter = 'c';
  if (::read(STDIN_FILENO, &letter, 1) == 1 && letter == 'f') {
    submitFeedback();
  } else {
    mainWindow()->close();
  }
}

void listen() {
  auto* input =
      new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, QCoreApplication::instance());
  QObject::connect(input, &QSocketNotifier::activated, obey);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(listen)

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  velmara::ServiceAddresses addresses = velmara::configuredAddresses();
  addresses.trackingService = argv[1];
  addresses.feedbackEndpoint = argv[2];
  return velmara::runApplication(argc, argv, addresses);
}
