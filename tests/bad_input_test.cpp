// What the library does with bad input and hostile situations: each case
// ends in a defined outcome (a log record, a null result, an exception the
// caller was told about), never a crash.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

#include <OgreCamera.h>
#include <OgreException.h>
#include <OgreRenderWindow.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <ku/record_capture.h>

#include <scene_view/world_3d_view.h>
#include <world_model/actuator.h>
#include <world_model/forward_kinematic_engine.h>
#include <world_model/joint_controller.h>
#include <world_model/link.h>
#include <world_model/robot.h>

#include "camera.h"
#include "selection.h"
#include "world_view_container.h"
#include "support/widget_window.h"

using testing_support::WidgetWindow;
using VX::NextGenView::RenderWidget;

namespace {

TEST(BadInput, WidgetOfHeightZeroStillBuildsAndRecoversWhenItGrows) {
  WidgetWindow window;
  ASSERT_NE(window.widget, nullptr);
  window.widget->setFixedHeight(0);
  ku::log::RecordCapture captured;
  ASSERT_TRUE(window.show());
  EXPECT_EQ(captured.count(2, "rdr.widget"), 0);
  const float ratio = window.widget->camera()->ogreCamera()->getAspectRatio();
  EXPECT_TRUE(std::isinf(ratio) || std::isnan(ratio)) << "the division is not guarded";
  window.widget->updateView();  // draws nothing visible, and does not fail
  // Nothing to pick and nothing to save in a view of no height.
  QSignalSpy picks(VX::NextGenView::RenderWidgetTestAccess::selection(*window.widget).get(),
                   &VX::NextGenView::Selection::objectSelected);
  QTest::mouseClick(window.widget, Qt::LeftButton, Qt::NoModifier, QPoint(5, 0));
  ASSERT_EQ(picks.count(), 1);
  EXPECT_TRUE(picks.at(0).at(0).toString().isNull()) << "a click there picks nothing";
  QTemporaryDir empty;
  window.widget->saveScreenshot(empty.filePath("flat.png"), true);
  EXPECT_FALSE(QFile::exists(empty.filePath("flat.png")));

  window.widget->setFixedHeight(300);
  QTest::qWait(100);
  EXPECT_EQ(window.widget->renderWindow()->getHeight(), 300u);
  EXPECT_NEAR(window.widget->camera()->ogreCamera()->getAspectRatio(), window.widget->width() / 300.0f, 1e-5);
  window.widget->updateView();
  QTemporaryDir folder;
  window.widget->saveScreenshot(folder.filePath("grown.png"));
  const QImage grown(folder.filePath("grown.png"));
  ASSERT_EQ(grown.height(), 300);
  EXPECT_NE(grown.pixel(grown.width() / 2, 150), grown.pixel(0, 0)) << "the robot is drawn again";

  window.widget->setFixedHeight(0);  // and back to nothing
  QTest::qWait(100);
  window.widget->updateView();
  EXPECT_GE(window.widget->renderWindow()->getHeight(), 1u) << "never less than a pixel";
}

// A world of one robot from URDF text; mesh files resolve against `folder`.
boost::shared_ptr<VX::NextGenView::World> worldFromUrdf(const std::string& urdf, const std::string& folder = "") {
  const VX::NextGenView::RobotLoadResult loaded = VX::NextGenView::Robot::loadFromUrdfString(urdf, folder);
  EXPECT_TRUE(loaded.robot) << loaded.error;
  auto world = boost::make_shared<VX::NextGenView::World>();
  if (loaded.robot) world->addRobot(loaded.robot);
  return world;
}

std::string box(const char* size) {
  return std::string("<visual><geometry><box size='") + size + "'/></geometry></visual>";
}

TEST(BadInput, MeshFilesThatDoNotLoadLeaveTheirLinkWithoutThem) {
  QTemporaryDir folder;
  QFile garbage(folder.filePath("garbage.stl"));
  ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
  garbage.write("this is not a mesh");
  garbage.close();
  const std::string urdf =
      "<robot name='meshes'>"
      "<link name='base'>" + box("0.2 0.2 0.2") + "<visual><geometry><mesh filename='missing.stl'/></geometry></visual></link>"
      "<link name='only_garbage'><visual><geometry><mesh filename='garbage.stl'/></geometry></visual></link>"
      "<joint name='j' type='fixed'><parent link='base'/><child link='only_garbage'/></joint></robot>";
  ku::log::RecordCapture captured;
  WidgetWindow window(worldFromUrdf(urdf, folder.path().toStdString()));
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  Ogre::SceneManager* scene = window.widget->worldView()->getOgreSceneManager();
  EXPECT_TRUE(scene->hasEntity("base")) << "the box still shows";
  EXPECT_FALSE(scene->hasEntity("only_garbage")) << "nothing left to show";
  EXPECT_EQ(captured.count(3, "rdr.scene", "missing.stl"), 1);
  EXPECT_EQ(captured.count(3, "rdr.scene", "garbage.stl"), 1);
  EXPECT_EQ(captured.count(3, "rdr.scene", "only_garbage has nothing to show"), 1);
}

TEST(BadInput, RobotWithoutTorsoLinkIsFollowedByItsRoot) {
  const std::string urdf = "<robot name='plain'><link name='base_link'>" + box("0.1 0.1 0.1") + "</link></robot>";
  auto world = worldFromUrdf(urdf);
  auto robot = *world->robots().begin();
  robot->setBasePosition({1.0f, 2.0f, 0.5f});
  robot->updateKinematics();
  WidgetWindow window(world);
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  const Ogre::Vector3 target = window.widget->camera()->targetNode()->getPosition();
  EXPECT_NEAR(target.x, 1.0f, 1e-5);
  EXPECT_NEAR(target.y, 2.0f, 1e-5);
  EXPECT_NEAR(target.z, 0.5f, 1e-5);
}

// Every scene node's own pose and scale, from the root down, is finite.
int nodesNotFinite(const Ogre::Node* node) {
  int bad = 0;
  const Ogre::Quaternion q = node->getOrientation();
  if (node->getPosition().isNaN() || q.isNaN() || node->getScale().isNaN() ||
      !std::isfinite(node->getPosition().squaredLength()) || !std::isfinite(q.Norm())) {
    ++bad;
  }
  for (const Ogre::Node* child : node->getChildren()) bad += nodesNotFinite(child);
  return bad;
}

TEST(BadInput, HostNumbersThatAreNotFiniteNeverReachTheScene) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  auto robot = *window.world->robots().begin();
  auto engine = window.world->forwardKinematicEngine();
  // Rings with a command show their marker, which reads the actuator's position.
  for (const auto& controller : robot->jointControllers()) controller->addRelativeCommand(0.1f);
  engine->run(40);
  window.widget->updateView();
  Ogre::SceneManager* scene = window.widget->worldView()->getOgreSceneManager();
  Ogre::SceneNode* target = window.widget->camera()->targetNode();
  const Ogre::Vector3 followed = target->getPosition();
  std::vector<std::string> names;
  for (const auto& actuator : robot->actuators()) names.push_back(actuator->name());

  for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                          -std::numeric_limits<float>::infinity()}) {
    SCOPED_TRACE(bad);
    ku::log::RecordCapture captured;
    robot->setHeading(bad);
    robot->setBasePosition({bad, 0.0f, 0.0f});
    EXPECT_EQ(window.world->setActuatorCommands(names, std::vector<float>(names.size(), bad)), 0);
    robot->actuators().front()->setValue(bad);
    // A host that writes the public position field directly, then draws before the next step.
    for (const auto& actuator : robot->actuators()) actuator->m_value = bad;
    window.widget->updateView();
    EXPECT_EQ(nodesNotFinite(scene->getRootSceneNode()), 0);
    engine->run(40);
    window.widget->updateView();
    EXPECT_EQ(nodesNotFinite(scene->getRootSceneNode()), 0);
    // A torso pose that is not finite, written past the world model: the camera refuses it.
    robot->link("TorsoLink")->setGlobalTransform(MK::Math::Transform::fromPosition({bad, 1.0f, 1.0f}));
    window.widget->updateView();
    EXPECT_EQ(nodesNotFinite(scene->getRootSceneNode()), 0);
    EXPECT_TRUE(target->getPosition().positionEquals(followed, 1e-4f));

    EXPECT_EQ(captured.count(2, "world.model", "refuses the heading"), 1);
    EXPECT_EQ(captured.count(2, "world.model", "refuses the base position"), 1);
    EXPECT_EQ(captured.count(2, "world.model", "it is refused"), static_cast<int>(names.size()));
    EXPECT_EQ(captured.count(2, "world.model", "refuses the position"), 1);
    EXPECT_EQ(captured.count(2, "world.model", "written into it"), static_cast<int>(names.size()));
    EXPECT_GE(captured.count(2, "rdr.widget", "are not all finite"), 1);
    engine->run(40);  // the torso back where the kinematics put it
  }
  // The robot is still drawn where it was.
  window.widget->updateView();
  QTemporaryDir folder;
  window.widget->saveScreenshot(folder.filePath("after.png"));
  const QImage after(folder.filePath("after.png"));
  ASSERT_FALSE(after.isNull());
  EXPECT_NE(after.pixel(after.width() / 2, after.height() / 2), after.pixel(1, 1)) << "the robot is drawn";
  EXPECT_TRUE(target->getPosition().positionEquals(followed, 1e-4f));
}

TEST(BadInput, HugeRobotLoadsAndRenders) {
  // A snake of 400 revolute joints: 401 links and 400 rings.
  std::string urdf = "<robot name='snake'><link name='l0'>" + box("0.02 0.02 0.02") + "</link>";
  for (int i = 1; i <= 400; ++i) {
    const std::string link = "l" + std::to_string(i);
    urdf += "<link name='" + link + "'>" + box("0.02 0.02 0.02") + "</link><joint name='j" + std::to_string(i) +
            "' type='revolute'><parent link='l" + std::to_string(i - 1) + "'/><child link='" + link +
            "'/><origin xyz='0 0 0.025'/><axis xyz='0 1 0'/><limit lower='-1' upper='1' effort='1' velocity='1'/></joint>";
  }
  urdf += "</robot>";
  auto world = worldFromUrdf(urdf);
  ASSERT_EQ((*world->robots().begin())->links().size(), 401u);
  WidgetWindow window(world);
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  EXPECT_EQ(window.widget->worldView()->linkViews().size(), 401u);
  EXPECT_EQ(window.widget->worldView()->jointControllerViews().size(), 400u);
  EXPECT_TRUE(window.widget->worldView()->getOgreSceneManager()->hasEntity("l400"));
}

TEST(BadInput, FailedScreenshotsKeepTheSky) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  QTemporaryDir folder;
  Ogre::SceneManager* scene = window.widget->worldView()->getOgreSceneManager();
  EXPECT_THROW(window.widget->saveScreenshot(folder.filePath("shot.nosuchformat"), true), Ogre::Exception);
  EXPECT_TRUE(scene->isSkyBoxEnabled()) << "the sky comes back after a failed background-hidden shot";
  // An unwritable path fails silently inside OGRE's image codec: no file, no
  // exception. Hosts check for the file (the viewer does).
  EXPECT_NO_THROW(window.widget->saveScreenshot("/proc/no/such/folder/shot.png", true));
  EXPECT_FALSE(QFile::exists("/proc/no/such/folder/shot.png"));
  EXPECT_TRUE(scene->isSkyBoxEnabled());
  window.widget->updateView();
  window.widget->saveScreenshot(folder.filePath("after.png"), false);
  EXPECT_FALSE(QImage(folder.filePath("after.png")).isNull()) << "the view works on";
}

// Runs inside a child process started without an X display (see below).
TEST(BadInputChild, ThreeDViewWithoutDisplay) {
  if (qEnvironmentVariableIsEmpty("RENDER_WIDGET_NO_DISPLAY_CHILD")) GTEST_SKIP() << "runs as a child process only";
  ku::log::RecordCapture captured;
  VX::WorldViewContainer container(nullptr, QString(), nullptr, testing_support::worldWithBundledRobot(), true);
  container.resize(400, 300);
  container.show();
  EXPECT_EQ(container.view(), nullptr) << "no fallback: the container stays empty";
  EXPECT_EQ(container.menu(), nullptr);
  EXPECT_FALSE(QSettings().value("ogreInitSucceeded").toBool());
  EXPECT_EQ(captured.count(2, "rdr.engine", "open X display"), 1);
  EXPECT_EQ(captured.count(2, "rdr.widget", "Failed to create world view ! "), 1);
}

TEST(BadInput, ThreeDViewAskedForWithoutAnXDisplay) {
  QProcess child;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.remove("DISPLAY");
  environment.insert("QT_QPA_PLATFORM", "offscreen");
  environment.insert("RENDER_WIDGET_NO_DISPLAY_CHILD", "1");
  child.setProcessEnvironment(environment);
  child.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=BadInputChild.ThreeDViewWithoutDisplay"});
  ASSERT_TRUE(child.waitForFinished(60000));
  const QString output = QString::fromUtf8(child.readAllStandardOutput() + child.readAllStandardError());
  EXPECT_EQ(child.exitStatus(), QProcess::NormalExit) << output.toStdString();
  EXPECT_EQ(child.exitCode(), 0) << output.toStdString();
  EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.toStdString();
}

}  // namespace
