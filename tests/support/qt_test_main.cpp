// GoogleTest entry point for tests that need a QApplication (widgets, event
// loops, timers). The test command provides an X display (Xvfb when none).
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setOrganizationName("RenderWidgetTests");
  QApplication::setApplicationName("render_widget_tests");
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
