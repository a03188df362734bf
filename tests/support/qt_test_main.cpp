// GoogleTest entry point for tests that need a QApplication (widgets, event
// loops, timers). The test command provides an X display (Xvfb when none).
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char** argv) {
  // Tests run in parallel: each process keeps its settings and logs apart.
  QTemporaryDir scratch;
  qputenv("XDG_CONFIG_HOME", (scratch.path() + "/config").toUtf8());
  qputenv("XDG_DATA_HOME", (scratch.path() + "/data").toUtf8());

  QApplication application(argc, argv);
  QApplication::setOrganizationName("RenderWidgetTests");
  QApplication::setApplicationName("render_widget_tests");
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
