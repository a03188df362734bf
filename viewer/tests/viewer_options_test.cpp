#include <vector>

#include <gtest/gtest.h>

#include "viewer_options.h"

namespace {

ViewerOptions::Outcome parse(const QStringList& arguments, ViewerOptions* options, QString* message) {
  return ViewerOptions::parse(QStringList{"render_widget_viewer"} + arguments, options, message);
}

TEST(ViewerOptions, DefaultsShowTheBundledRobotInteractively) {
  ViewerOptions options;
  QString message;
  ASSERT_EQ(parse({}, &options, &message), ViewerOptions::Outcome::Run);
  EXPECT_TRUE(options.urdfFile.isEmpty());
  EXPECT_FALSE(options.force2D);
  EXPECT_FALSE(options.force3D);
  EXPECT_FALSE(options.headless());
  EXPECT_EQ(options.size, QSize(800, 600));
  EXPECT_TRUE(options.viewpoint.isEmpty());
  EXPECT_FALSE(options.collisionGeometry);
  EXPECT_TRUE(options.jointRings);
  EXPECT_FALSE(options.animate);
}

TEST(ViewerOptions, CollisionGeometryAndNoRings) {
  ViewerOptions options;
  QString message;
  ASSERT_EQ(parse({"--collision", "--no-rings"}, &options, &message), ViewerOptions::Outcome::Run);
  EXPECT_TRUE(options.collisionGeometry);
  EXPECT_FALSE(options.jointRings);
  EXPECT_FALSE(options.headless());
}

TEST(ViewerOptions, ReadsTheCheckModeAndRepeatedPackagePaths) {
  ViewerOptions options;
  QString message;
  ASSERT_EQ(parse({"--check", "--package-path", "/a", "r.urdf", "--package-path", "b"}, &options, &message),
            ViewerOptions::Outcome::Run)
      << message.toStdString();
  EXPECT_TRUE(options.check);
  EXPECT_EQ(options.packagePaths, (QStringList{"/a", "b"}));
  EXPECT_EQ(options.urdfFile, "r.urdf");
  EXPECT_FALSE(options.noBackground);
  EXPECT_FALSE(options.headless());
}

TEST(ViewerOptions, NoBackgroundGoesWithAScreenshotAndCheckWithNone) {
  ViewerOptions options;
  QString message;
  ASSERT_EQ(parse({"--screenshot", "a.png", "--no-background"}, &options, &message), ViewerOptions::Outcome::Run);
  EXPECT_TRUE(options.noBackground);
  EXPECT_EQ(parse({"--no-background"}, &options, &message), ViewerOptions::Outcome::Error);
  EXPECT_EQ(parse({"--check", "--screenshot", "a.png"}, &options, &message), ViewerOptions::Outcome::Error);
  EXPECT_TRUE(message.contains("--check")) << message.toStdString();
}

TEST(ViewerOptions, KnowsWhichArgumentsMayRunWithoutADisplay) {
  const auto mayRun = [](std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "render_widget_viewer");
    return ViewerOptions::mayRunWithoutDisplay(static_cast<int>(arguments.size()), const_cast<char**>(arguments.data()));
  };
  EXPECT_TRUE(mayRun({"--check", "r.urdf"}));
  EXPECT_TRUE(mayRun({"--help"}));
  EXPECT_TRUE(mayRun({"-v"}));
  EXPECT_FALSE(mayRun({"--screenshot", "a.png"}));
  EXPECT_FALSE(mayRun({}));
}

TEST(ViewerOptions, ReadsEveryOption) {
  ViewerOptions options;
  QString message;
  ASSERT_EQ(parse({"robot.urdf", "--2d", "--screenshot", "a.png", "--viewpoint", "top", "--size", "640x480", "--say",
                   "Hello", "--animate", "--window-screenshot", "w.png"},
                  &options, &message),
            ViewerOptions::Outcome::Run)
      << message.toStdString();
  EXPECT_EQ(options.urdfFile, "robot.urdf");
  EXPECT_TRUE(options.force2D);
  EXPECT_EQ(options.screenshotFile, "a.png");
  EXPECT_EQ(options.windowScreenshotFile, "w.png");
  EXPECT_EQ(options.viewpoint, "Top") << "names are matched without case and given as the camera menu has them";
  EXPECT_EQ(options.size, QSize(640, 480));
  EXPECT_EQ(options.sentence, "Hello");
  EXPECT_TRUE(options.animate);
  EXPECT_TRUE(options.headless());
}

TEST(ViewerOptions, RefusesBadInput) {
  const QList<QStringList> bad{
      {"--2d", "--3d"},        {"--viewpoint", "Diagonal"}, {"--size", "800"},        {"--size", "10x10"},
      {"--size", "800x600x3"}, {"--no-such-option"}, {"--screenshot"}};
  for (const QStringList& arguments : bad) {
    ViewerOptions options;
    QString message;
    EXPECT_EQ(parse(arguments, &options, &message), ViewerOptions::Outcome::Error) << arguments.join(' ').toStdString();
    EXPECT_FALSE(message.isEmpty()) << arguments.join(' ').toStdString();
  }
}

TEST(ViewerOptions, HelpExitsWithoutRunning) {
  ViewerOptions options;
  QString message;
  testing::internal::CaptureStdout();
  EXPECT_EQ(parse({"--help"}, &options, &message), ViewerOptions::Outcome::Exit);
  const std::string help = testing::internal::GetCapturedStdout();
  EXPECT_NE(help.find("--screenshot"), std::string::npos);
  EXPECT_EQ(help.find("--window-screenshot"), std::string::npos) << "a hidden option";
}

TEST(ViewerOptions, SeveralRobotFilesGoIntoOneWorld) {
  ViewerOptions options;
  QString message;
  ASSERT_EQ(ViewerOptions::parse({"viewer", "one.urdf", "--2d", "two.urdf"}, &options, &message),
            ViewerOptions::Outcome::Run)
      << message.toStdString();
  EXPECT_EQ(options.urdfFiles, QStringList({"one.urdf", "two.urdf"}));
  EXPECT_EQ(options.urdfFile, "one.urdf");
}

}  // namespace
