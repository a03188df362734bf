// The real viewer executable on robots with prismatic, mimic and floating
// joints and package:// meshes (tests/data/gripper): the check mode and its
// exit codes, help and version without a display, --package-path, and
// screenshots without the sky.
#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include "viewer_process.h"

namespace {

using viewer_testing::runViewer;
using viewer_testing::ViewerRun;

const QString a_data = VIEWER_TEST_DATA;
const QString a_gripper = a_data + "/gripper/gripper.urdf";
const QString a_packages = a_data + "/packages";
const QStringList a_noDisplay{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};

std::string describe(const ViewerRun& run) {
  return "exit " + std::to_string(run.exitCode) + (run.finished ? "" : " (did not finish)") + ":\n" +
         run.output.toStdString();
}

ViewerRun runWithoutDisplay(const QStringList& arguments) { return runViewer(arguments, QString(), 60000, a_noDisplay); }

// The output's lines that start with `prefix`.
QStringList linesStartingWith(const ViewerRun& run, const QString& prefix) {
  QStringList found;
  for (const QString& line : run.output.split('\n')) {
    if (line.startsWith(prefix)) found << line;
  }
  return found;
}

TEST(ViewerCheck, EverythingShowableExitsZeroWithItsSummary) {
  const ViewerRun run = runWithoutDisplay({"--check", "--package-path", a_packages, a_gripper});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 0) << describe(run);
  EXPECT_EQ(linesStartingWith(run, "robot "),
            QStringList{"robot gripper: 7 links, 6 with geometry; 6 joints (1 revolute, 0 continuous, 3 prismatic, "
                        "1 fixed, 1 floating, 0 planar), 1 mimic; 72 triangles; 0 meshes missing"})
      << describe(run);
  // The floating joint is a problem worth a line, but everything can be shown.
  const QStringList problems = linesStartingWith(run, "problem: ");
  ASSERT_EQ(problems.size(), 1) << describe(run);
  EXPECT_TRUE(problems[0].contains("floating joint camera_mount")) << describe(run);
}

TEST(ViewerCheck, AMissingMeshExitsOneAndNamesEveryPathTried) {
  const ViewerRun run = runWithoutDisplay({"--check", a_gripper});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 1) << describe(run);
  EXPECT_EQ(linesStartingWith(run, "robot "),
            QStringList{"robot gripper: 7 links, 5 with geometry; 6 joints (1 revolute, 0 continuous, 3 prismatic, "
                        "1 fixed, 1 floating, 0 planar), 1 mimic; 60 triangles; 1 mesh missing"})
      << describe(run);
  const QStringList problems = linesStartingWith(run, "problem: ");
  ASSERT_EQ(problems.size(), 2) << describe(run);
  const QString missing = problems.filter("test_parts").value(0);
  EXPECT_TRUE(missing.startsWith(
      "problem: link finger_left, visual 0: mesh file \"package://test_parts/parts/finger.stl\" not found; tried: "))
      << describe(run);
  // Next to the description, and every folder above it.
  EXPECT_TRUE(missing.contains(a_data + "/gripper/test_parts/parts/finger.stl")) << describe(run);
  EXPECT_TRUE(missing.contains(a_data + "/test_parts/parts/finger.stl")) << describe(run);
  EXPECT_TRUE(missing.contains(" /parts/finger.stl")) << describe(run);
}

TEST(ViewerCheck, AnUnreadableMeshExitsOne) {
  const ViewerRun run = runWithoutDisplay({"--check", a_data + "/gripper/unreadable.urdf"});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 1) << describe(run);
  EXPECT_EQ(linesStartingWith(run, "robot "),
            QStringList{"robot unreadable: 2 links, 1 with geometry; 1 joint (0 revolute, 1 continuous, 0 prismatic, "
                        "0 fixed, 0 floating, 0 planar), 0 mimic; 12 triangles; 1 mesh missing"})
      << describe(run);
  const QStringList problems = linesStartingWith(run, "problem: link arm, visual 0: cannot read mesh file");
  EXPECT_EQ(problems.size(), 1) << describe(run);
}

TEST(ViewerCheck, ARobotThatCannotBeLoadedExitsTwo) {
  const ViewerRun run = runWithoutDisplay({"--check", a_data + "/gripper/absent.urdf"});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 2) << describe(run);
  EXPECT_TRUE(run.output.contains("absent.urdf: cannot be loaded: ")) << describe(run);
  EXPECT_TRUE(run.output.contains("does not exist")) << describe(run);
}

TEST(ViewerCheck, TheBundledRobotIsShowable) {
  const ViewerRun run = runWithoutDisplay({"--check"});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 0) << describe(run);
  const QStringList summary = linesStartingWith(run, "robot zel: ");
  ASSERT_EQ(summary.size(), 1) << describe(run);
  EXPECT_TRUE(summary[0].contains("26 revolute")) << describe(run);
  EXPECT_TRUE(summary[0].endsWith("0 meshes missing")) << describe(run);
  EXPECT_TRUE(linesStartingWith(run, "problem: ").isEmpty()) << describe(run);
}

TEST(ViewerWithoutDisplay, HelpNamesTheNewOptions) {
  const ViewerRun run = runWithoutDisplay({"--help"});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 0) << describe(run);
  for (const char* option : {"--check", "--version", "--package-path <dir>", "--no-background", "--screenshot"}) {
    EXPECT_TRUE(run.output.contains(option)) << option << "\n" << describe(run);
  }
}

TEST(ViewerWithoutDisplay, VersionIsPrinted) {
  const ViewerRun run = runWithoutDisplay({"--version"});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 0) << describe(run);
  EXPECT_EQ(run.output.trimmed(), QString("render_widget_viewer ") + RENDERWIDGET_VERSION) << describe(run);
}

TEST(ViewerWithoutDisplay, ABadCommandLineStillExitsTwo) {
  const ViewerRun run = runWithoutDisplay({"--check", "--no-such-option"});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 2) << describe(run);
  EXPECT_TRUE(run.output.contains("no-such-option")) << describe(run);
}

// Counts the pixels of the four 10 × 10 corners that are pure white.
int whiteCornerPixels(const QImage& picture) {
  int white = 0;
  for (const QPoint corner : {QPoint(0, 0), QPoint(picture.width() - 10, 0), QPoint(0, picture.height() - 10),
                              QPoint(picture.width() - 10, picture.height() - 10)}) {
    for (int y = 0; y < 10; ++y) {
      for (int x = 0; x < 10; ++x) white += (picture.pixel(corner + QPoint(x, y)) & 0xffffff) == 0xffffff;
    }
  }
  return white;
}

TEST(ViewerScreenshot, NoBackgroundHidesTheSky) {
  QTemporaryDir folder;
  const QString plain = folder.filePath("gripper.png");
  const QString bare = folder.filePath("gripper_no_background.png");
  const QStringList common{"--package-path", a_packages, "--size", "320x240", a_gripper};
  const ViewerRun withSky = runViewer(QStringList{"--screenshot", plain} + common, folder.filePath("config"));
  ASSERT_EQ(withSky.exitCode, 0) << describe(withSky);
  const ViewerRun withoutSky =
      runViewer(QStringList{"--screenshot", bare, "--no-background"} + common, folder.filePath("config"));
  ASSERT_EQ(withoutSky.exitCode, 0) << describe(withoutSky);
  const QImage skyPicture(plain);
  const QImage barePicture(bare);
  ASSERT_EQ(barePicture.size(), QSize(320, 240));
  EXPECT_EQ(whiteCornerPixels(barePicture), 400);
  EXPECT_LT(whiteCornerPixels(skyPicture), 40) << "the sky shows in the corners";
  // The robot is still there: its blue torso.
  int blue = 0;
  for (int y = 0; y < barePicture.height(); ++y) {
    for (int x = 0; x < barePicture.width(); ++x) {
      const QColor colour = barePicture.pixelColor(x, y);
      blue += colour.blue() > 120 && colour.red() < 80 && colour.green() < 100;
    }
  }
  EXPECT_GT(blue, 50);
  // Kept for a look: the test's artefacts folder.
  barePicture.save("viewer_gripper_no_background.png");
  skyPicture.save("viewer_gripper.png");
}

TEST(ViewerScreenshot, NoBackgroundNeedsAScreenshot) {
  const ViewerRun run = runWithoutDisplay({"--check", "--no-background"});
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 2) << describe(run);
  EXPECT_TRUE(run.output.contains("--no-background goes with --screenshot")) << describe(run);
}

}  // namespace
