// The program as main() runs it, with the address of its tracking service from its words. It closes
// its window when there is something to read on its standard input.
#include <QApplication>
#include <QSocketNotifier>
#include <QWidget>

#include <unistd.h>

#include "app/run_application.h"

namespace {

void listen() {
  auto* input =
      new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, QCoreApplication::instance());
  QObject::connect(input, &QSocketNotifier::activated, input, [input] {
    input->setEnabled(false);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "windowMain") widget->close();
    }
  });
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(listen)

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  velmara::ServiceAddresses addresses = velmara::configuredAddresses();
  addresses.trackingService = argv[1];
  return velmara::runApplication(argc, argv, {}, addresses);
}
