#pragma once
// Test fixture: OGRE started from the staged configuration, a world holding
// the bundled robot, and its 3D view. openWindow() does what the widget does
// once it is shown: initialise the root and create a render window (here
// OGRE's own window on the test display), then update the view.

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <OgreRenderWindow.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>

#include <ku/path.h>
#include <render_engine/ogre_engine.h>
#include <scene_view/joint_controller_3d_view.h>
#include <scene_view/link_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/forward_kinematic_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "temporary_folder.h"

namespace VX::NextGenView::testing {

inline std::string bundledRobotPath() { return std::string(RENDERWIDGET_BUILD_DATA_DIR) + "/robots/zel/zel.urdf"; }

class SceneFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    engine = boost::make_shared<OgreEngine>(ku::path::findConf("balterconix", "ogre"),
                                            (logs.path() / "ogre.log").string());
    ASSERT_NE(engine->root(), nullptr);
    world = boost::make_shared<World>();
    const RobotLoadResult loaded = Robot::loadFromUrdfFile(bundledRobotPath());
    ASSERT_TRUE(loaded.robot) << loaded.error;
    robot = loaded.robot;
    world->addRobot(robot);
    view = World3DView::createWorld3DView(engine, world);
    ASSERT_TRUE(view);
  }

  void TearDown() override {
    view.reset();  // the scene goes before OGRE
    world.reset();
    engine.reset();
  }

  void openWindow(unsigned width = 640, unsigned height = 480) {
    engine->root()->initialise(false);
    window = engine->root()->createRenderWindow("scene test", width, height, false);
    ASSERT_NE(window, nullptr);
    view->update();
  }

  Ogre::SceneManager* sceneManager() const { return engine->sceneManager(); }

  void runKinematics(int steps) {
    for (int i = 0; i < steps; ++i) world->forwardKinematicEngine()->run(40);
  }

  TemporaryFolder logs;
  boost::shared_ptr<OgreEngine> engine;
  boost::shared_ptr<World> world;
  boost::shared_ptr<Robot> robot;
  boost::shared_ptr<World3DView> view;
  Ogre::RenderWindow* window = nullptr;
};

}  // namespace VX::NextGenView::testing
