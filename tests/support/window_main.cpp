#include <gtest/gtest.h>

#include <QApplication>

#include "widgets/style.h"

// For tests that make widgets.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  velmara::style::apply(application);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
