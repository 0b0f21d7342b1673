#include <gtest/gtest.h>

#include <QApplication>

#include <cstdio>

#include "widgets/style.h"

namespace {

// A painter that is used wrongly draws all the same, and says so only here.
void failOnPainterFaults(QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                         const QString& text) {
  if (text.startsWith("QPainter::")) ADD_FAILURE() << text.toStdString();
  std::fprintf(stderr, "%s\n", qPrintable(text));
}

}  // namespace

// For tests that make widgets.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(failOnPainterFaults);
  QApplication application(argc, argv);
  velmara::style::apply(application);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
