#include <gtest/gtest.h>

#include <QSettings>

#include "startup_marker.h"
#include "view_mode_choice.h"
#include "viewer_options.h"

namespace {

// Each test process has its own settings (see qt_test_main).
class ViewModeChoiceTest : public ::testing::Test {
 protected:
  void SetUp() override { StartupMarker::clear(); }
  void TearDown() override { StartupMarker::clear(); }
};

TEST_F(ViewModeChoiceTest, ThreeDimensionalByDefault) {
  const ViewModeChoice choice = ViewModeChoice::choose(ViewerOptions());
  EXPECT_TRUE(choice.use3DView);
  EXPECT_TRUE(choice.reason.isEmpty());
}

TEST_F(ViewModeChoiceTest, SucceededMarkerKeeps3D) {
  StartupMarker::markSucceeded();
  EXPECT_FALSE(StartupMarker::lastStartFailed());
  EXPECT_TRUE(ViewModeChoice::choose(ViewerOptions()).use3DView);
}

TEST_F(ViewModeChoiceTest, UnfinishedStartGoesTo2DAndSaysWhy) {
  StartupMarker::markStarting();
  EXPECT_TRUE(StartupMarker::lastStartFailed());
  EXPECT_FALSE(QSettings().value(StartupMarker::a_key).toBool());
  const ViewModeChoice choice = ViewModeChoice::choose(ViewerOptions());
  EXPECT_FALSE(choice.use3DView);
  EXPECT_TRUE(choice.reason.contains("ogreInitSucceeded")) << choice.reason.toStdString();
  EXPECT_TRUE(choice.reason.contains("--3d")) << choice.reason.toStdString();
}

TEST_F(ViewModeChoiceTest, OptionsWinOverTheMarker) {
  StartupMarker::markStarting();
  ViewerOptions force3D;
  force3D.force3D = true;
  EXPECT_TRUE(ViewModeChoice::choose(force3D).use3DView);
  StartupMarker::markSucceeded();
  ViewerOptions force2D;
  force2D.force2D = true;
  const ViewModeChoice choice = ViewModeChoice::choose(force2D);
  EXPECT_FALSE(choice.use3DView);
  EXPECT_TRUE(choice.reason.isEmpty()) << "the user asked for it: nothing to explain";
}

TEST_F(ViewModeChoiceTest, ClearForgetsTheRecord) {
  StartupMarker::markStarting();
  StartupMarker::clear();
  EXPECT_FALSE(QSettings().contains(StartupMarker::a_key));
  EXPECT_FALSE(StartupMarker::lastStartFailed());
}

}  // namespace
