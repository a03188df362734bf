// The real viewer executable, run as a user runs it (headless with
// --screenshot), on the test's X display.
#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QSet>
#include <QSettings>
#include <QTemporaryDir>

#include "viewer_process.h"

namespace {

using viewer_testing::runViewer;
using viewer_testing::ViewerRun;

int distinctColours(const QImage& image) {
  QSet<QRgb> colours;
  for (int y = 0; y < image.height(); y += 2) {
    for (int x = 0; x < image.width(); x += 2) colours.insert(image.pixel(x, y) & 0xffffff);
  }
  return colours.size();
}

int pixelsOfColour(const QImage& image, const QColor& colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += (image.pixel(x, y) & 0xffffff) == (colour.rgb() & 0xffffff);
  }
  return count;
}

std::string describe(const ViewerRun& run) {
  return "exit " + std::to_string(run.exitCode) + (run.finished ? "" : " (did not finish)") + ":\n" +
         run.output.toStdString();
}

class ViewerProcess : public ::testing::Test {
 protected:
  QString path(const QString& name) const { return m_folder.filePath(name); }
  QString configHome() const { return m_folder.filePath("config"); }
  QString settingsFile() const { return configHome() + "/RenderWidget/viewer.conf"; }
  void writeMarker(bool value) {
    QSettings settings(settingsFile(), QSettings::IniFormat);
    settings.setValue("ogreInitSucceeded", value);
  }
  QVariant marker() const { return QSettings(settingsFile(), QSettings::IniFormat).value("ogreInitSucceeded"); }

  QTemporaryDir m_folder;
};

TEST_F(ViewerProcess, RendersTheBundledRobotIn3D) {
  const ViewerRun run = runViewer({"--screenshot", path("shot.png")}, configHome());
  ASSERT_TRUE(run.finished) << describe(run);
  ASSERT_EQ(run.exitCode, 0) << describe(run);
  EXPECT_TRUE(run.output.contains("3D view")) << describe(run);
  const QImage picture(path("shot.png"));
  ASSERT_FALSE(picture.isNull());
  EXPECT_EQ(picture.size(), QSize(800, 600));
  EXPECT_GT(distinctColours(picture), 50) << "a scene, not a blank window";
  EXPECT_EQ(marker(), QVariant(true)) << "the 3D start-up finished";
}

TEST_F(ViewerProcess, ViewpointAndSizeChangeThePicture) {
  const ViewerRun front = runViewer({"--screenshot", path("front.png"), "--size", "400x300"}, configHome());
  ASSERT_EQ(front.exitCode, 0) << describe(front);
  const ViewerRun top =
      runViewer({"--screenshot", path("top.png"), "--size", "400x300", "--viewpoint", "Top"}, configHome());
  ASSERT_EQ(top.exitCode, 0) << describe(top);
  const QImage frontPicture(path("front.png"));
  const QImage topPicture(path("top.png"));
  EXPECT_EQ(frontPicture.size(), QSize(400, 300));
  EXPECT_EQ(topPicture.size(), QSize(400, 300));
  EXPECT_NE(frontPicture, topPicture);
}

TEST_F(ViewerProcess, CollisionAndNoRingsChangeThePicture) {
  // A link whose visual box differs from its collision box, and one to its
  // left on a hinge facing the camera (the start-up framing takes in both).
  QFile urdf(path("collision.urdf"));
  ASSERT_TRUE(urdf.open(QIODevice::WriteOnly));
  urdf.write("<robot name='c'><link name='base'><visual><geometry><box size='0.2 0.2 0.2'/></geometry></visual>"
             "<collision><geometry><box size='0.1 0.1 0.3'/></geometry></collision></link>"
             "<link name='bumper'><visual><geometry><sphere radius='0.02'/></geometry></visual>"
             "<collision><geometry><sphere radius='0.1'/></geometry></collision></link>"
             "<joint name='hinge' type='revolute'><parent link='base'/><child link='bumper'/>"
             "<origin xyz='0 0.3 0'/><axis xyz='1 0 0'/><limit lower='-1' upper='1' effort='1' velocity='1'/>"
             "</joint></robot>");
  urdf.close();
  QImage pictures[3];
  const QStringList extra[3] = {{}, {"--collision"}, {"--no-rings"}};
  for (int i = 0; i < 3; ++i) {
    const QString file = path(QString("switches%1.png").arg(i));
    const ViewerRun run = runViewer(QStringList{"--screenshot", file, "--size", "320x240"} + extra[i] +
                                        QStringList{path("collision.urdf")},
                                    configHome());
    ASSERT_EQ(run.exitCode, 0) << describe(run);
    pictures[i] = QImage(file);
    ASSERT_FALSE(pictures[i].isNull());
  }
  EXPECT_NE(pictures[0], pictures[1]) << "--collision shows the collision shapes";
  EXPECT_NE(pictures[0], pictures[2]) << "--no-rings hides the hinge's ring";
}

TEST_F(ViewerProcess, Shows2DPictureView) {
  const ViewerRun run = runViewer({"--2d", "--screenshot", path("flat.png")}, configHome());
  ASSERT_EQ(run.exitCode, 0) << describe(run);
  EXPECT_TRUE(run.output.contains("2D view")) << describe(run);
  const QImage picture(path("flat.png"));
  EXPECT_EQ(picture.size(), QSize(800, 600));
  // The picture keeps its aspect: the view's background shows beside it, or
  // everywhere when the pictures are not staged.
  EXPECT_GT(pixelsOfColour(picture, QColor(84, 84, 168)), 800 * 600 / 20);
  if (QFile::exists(RENDERWIDGET_BUILD_DATA_DIR "/media/images/ogre/zel.png")) {
    EXPECT_GT(distinctColours(picture), 50) << "the robot's picture";
  }
}

TEST_F(ViewerProcess, MissingUrdfSaysSoAndFails) {
  const ViewerRun run = runViewer({"--screenshot", path("none.png"), "/no/such/robot.urdf"}, configHome());
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 2) << describe(run);
  EXPECT_TRUE(run.output.contains("Cannot show the robot: /no/such/robot.urdf")) << describe(run);
  EXPECT_FALSE(QFile::exists(path("none.png")));
}

TEST_F(ViewerProcess, MalformedUrdfSaysSoAndFails) {
  QFile urdf(path("broken.urdf"));
  ASSERT_TRUE(urdf.open(QIODevice::WriteOnly));
  urdf.write("<robot name='broken'>\n  <link name='a'>\n</robot>\n");
  urdf.close();
  const ViewerRun run = runViewer({"--screenshot", path("none.png"), path("broken.urdf")}, configHome());
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 2) << describe(run);
  EXPECT_TRUE(run.output.contains("Cannot show the robot: " + path("broken.urdf"))) << describe(run);
  EXPECT_TRUE(run.output.contains("line")) << "XML errors give their line: " << describe(run);
}

TEST_F(ViewerProcess, BadOptionFails) {
  const ViewerRun run = runViewer({"--viewpoint", "Sideways"}, configHome());
  ASSERT_TRUE(run.finished) << describe(run);
  EXPECT_EQ(run.exitCode, 2) << describe(run);
  EXPECT_TRUE(run.output.contains("Sideways")) << describe(run);
}

TEST_F(ViewerProcess, UnfinishedLast3DStartLeadsTo2D) {
  writeMarker(false);
  const ViewerRun run = runViewer({"--screenshot", path("shot.png")}, configHome());
  ASSERT_EQ(run.exitCode, 0) << describe(run);
  EXPECT_TRUE(run.output.contains("The last 3D start-up did not finish")) << describe(run);
  EXPECT_TRUE(run.output.contains("(2D view)")) << describe(run);
  EXPECT_GT(pixelsOfColour(QImage(path("shot.png")), QColor(84, 84, 168)), 0);
  EXPECT_EQ(marker(), QVariant(false)) << "still unproven";
}

TEST_F(ViewerProcess, Forced3DRetriesAfterAnUnfinishedStart) {
  writeMarker(false);
  const ViewerRun run = runViewer({"--3d", "--screenshot", path("shot.png")}, configHome());
  ASSERT_EQ(run.exitCode, 0) << describe(run);
  EXPECT_TRUE(run.output.contains("(3D view)")) << describe(run);
  EXPECT_EQ(marker(), QVariant(true));
}

TEST_F(ViewerProcess, Unusable3DEngineFallsBackTo2D) {
  // The user's engine configuration comes first and names no usable renderer.
  ASSERT_TRUE(QDir().mkpath(configHome() + "/balterconix/ogre"));
  QFile configuration(configHome() + "/balterconix/ogre/engine.cfg");
  ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
  configuration.write("Plugin=RenderSystem_GL\nRenderSystem=No Such Rendering Subsystem\n");
  configuration.close();
  const ViewerRun run = runViewer({"--screenshot", path("shot.png")}, configHome());
  ASSERT_TRUE(run.finished) << describe(run);
  ASSERT_EQ(run.exitCode, 0) << describe(run);
  EXPECT_TRUE(run.output.contains("The 3D view could not be built")) << describe(run);
  EXPECT_TRUE(run.output.contains("(2D view)")) << describe(run);
  EXPECT_EQ(marker(), QVariant(false)) << "the next start goes straight to the 2D view";
}

TEST_F(ViewerProcess, ScreenshotErrorsAreReportedNotFatal) {
  for (const QString& file : {QString("/no/such/folder/shot.png"), path("shot.nosuchformat")}) {
    const ViewerRun run = runViewer({"--screenshot", file}, configHome());
    ASSERT_TRUE(run.finished) << describe(run);
    EXPECT_EQ(run.exitCode, 1) << describe(run);
    EXPECT_TRUE(run.output.contains("Cannot save the screenshot " + file)) << describe(run);
  }
}

TEST_F(ViewerProcess, WindowScreenshotHoldsViewAndSliders) {
  const ViewerRun run = runViewer({"--window-screenshot", path("window.png")}, configHome());
  ASSERT_EQ(run.exitCode, 0) << describe(run);
  const QImage picture(path("window.png"));
  ASSERT_FALSE(picture.isNull());
  EXPECT_GT(picture.width(), 800) << "the view and the joints dock";
  EXPECT_GT(picture.height(), 600) << "the view, the menus, toolbar and status bar";
  EXPECT_GT(distinctColours(picture), 50);
}

}  // namespace
