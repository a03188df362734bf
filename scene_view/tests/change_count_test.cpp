// The 3D view's change count: it stays while the scene is still and moves
// with every kind of change the view makes to the OGRE scene, which is what
// render on change relies on to skip walking the scene.
#include <gtest/gtest.h>

#include <world_model/actuator.h>
#include <world_model/joint_controller.h>

#include "scene_fixture.h"
#include "scene_view/joint_controller_3d_view.h"
#include "scene_view/link_3d_view.h"

namespace VX::NextGenView {
namespace {

class ChangeCount : public testing::SceneFixture {
 protected:
  void SetUp() override {
    testing::SceneFixture::SetUp();
    openWindow();
    view->update();
    m_count = view->changeCount();
  }
  // True when the count moved since the last call.
  bool moved() {
    const std::uint64_t count = view->changeCount();
    const bool different = count != m_count;
    m_count = count;
    return different;
  }

  std::uint64_t m_count = 0;
};

TEST_F(ChangeCount, StaysWhileNothingChanges) {
  for (int i = 0; i < 3; ++i) {
    runKinematics(1);
    view->update();
    EXPECT_FALSE(moved()) << "update " << i;
  }
}

TEST_F(ChangeCount, MovesWithALinkPose) {
  robot->actuator("LElbowRoll")->m_value = -0.5f;
  robot->updateKinematics();
  view->update();
  EXPECT_TRUE(moved());
  view->update();
  EXPECT_FALSE(moved());
}

TEST_F(ChangeCount, MovesWithTheSelectedLook) {
  const auto link = view->linkViews().front();
  link->m_selected = link->m_highlighted = link->m_changed = true;
  view->update();
  EXPECT_TRUE(moved());
  link->m_changed = true;  // the same look again
  view->update();
  EXPECT_FALSE(moved());
  link->m_selected = link->m_highlighted = false;
  link->m_changed = true;
  view->update();
  EXPECT_TRUE(moved());
}

TEST_F(ChangeCount, MovesWithVisibility) {
  const auto ring = view->jointControllerViews().front();
  ring->setVisible(false);
  EXPECT_TRUE(moved());
  ring->setVisible(false);
  EXPECT_FALSE(moved()) << "already hidden";
  view->showJointControllers();
  EXPECT_TRUE(moved());
  view->setJointControllersShown(false);
  EXPECT_TRUE(moved());
  view->setJointControllersShown(true);
  EXPECT_TRUE(moved());
}

TEST_F(ChangeCount, MovesWithAPendingCommandAndItsMarker) {
  const auto ring = view->jointControllerViews().front();
  ring->jointController()->addRelativeCommand(0.5f);
  view->update();
  EXPECT_TRUE(moved()) << "the marker shows";
  ring->jointController()->addRelativeCommand(0.2f);
  view->update();
  EXPECT_TRUE(moved()) << "the marker goes round the ring";
  ring->jointController()->resetCommand();
  view->update();
  EXPECT_TRUE(moved()) << "the marker goes";
}

TEST_F(ChangeCount, MovesWithTheCollisionGeometry) {
  view->setCollisionGeometryShown(true);
  EXPECT_TRUE(moved());
  view->setCollisionGeometryShown(false);
  EXPECT_TRUE(moved());
}

TEST_F(ChangeCount, MovesWithRobotsAddedAndRemoved) {
  const RobotLoadResult second = Robot::loadFromUrdfFile(testing::bundledRobotPath());
  ASSERT_TRUE(second.robot);
  world->addRobot(second.robot);
  view->update();
  EXPECT_TRUE(moved());
  world->removeRobot(second.robot);
  view->update();
  EXPECT_TRUE(moved());
  view->update();
  EXPECT_FALSE(moved());
}

}  // namespace
}  // namespace VX::NextGenView
