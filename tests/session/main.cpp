#include <gtest/gtest.h>

#include <QCoreApplication>

#include "imaging/initialise.h"

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  velmara::initialiseImaging();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
