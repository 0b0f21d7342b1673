#include <gtest/gtest.h>

#include <QApplication>

#include "imaging/initialise.h"
#include "widgets/style.h"

// The test itself stays away from the display it drives.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  velmara::style::apply(application);
  velmara::initialiseImaging();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
