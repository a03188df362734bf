// Numbers a host hands the world model that are not finite are refused at
// the door with an error record; the model keeps its last good state.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include <world_model/actuator.h>
#include <world_model/forward_kinematic_engine.h>
#include <world_model/link.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::CapturedRecords;
using test::loadRobot;

const float a_nonFinite[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                             -std::numeric_limits<float>::infinity()};

bool finite(const MK::Math::Transform& transform) { return transform.isometry().matrix().allFinite(); }

TEST(HostNumbers, HeadingThatIsNotFiniteIsRefused) {
  const boost::shared_ptr<Robot> robot = loadRobot("arm.urdf");
  ASSERT_TRUE(robot);
  robot->setHeading(0.5f);
  for (const float bad : a_nonFinite) {
    CapturedRecords captured;
    robot->setHeading(bad);
    EXPECT_FLOAT_EQ(robot->heading(), 0.5f) << bad;
    EXPECT_EQ(captured.count(2, "refuses the heading"), 1) << bad;
  }
  robot->updateKinematics();
  for (const boost::shared_ptr<Link>& link : robot->links()) EXPECT_TRUE(finite(link->globalTransform()));
}

TEST(HostNumbers, BasePositionWithACoordinateThatIsNotFiniteIsRefused) {
  const boost::shared_ptr<Robot> robot = loadRobot("arm.urdf");
  ASSERT_TRUE(robot);
  robot->setBasePosition({1, 2, 3});
  for (const float bad : a_nonFinite) {
    for (int axis = 0; axis < 3; ++axis) {
      MK::Math::Position3D position{4, 5, 6};
      (axis == 0 ? position.x : axis == 1 ? position.y : position.z) = bad;
      CapturedRecords captured;
      robot->setBasePosition(position);
      EXPECT_EQ(captured.count(2, "refuses the base position"), 1) << bad << " on axis " << axis;
      EXPECT_FLOAT_EQ(robot->basePosition().x, 1.0f);
      EXPECT_FLOAT_EQ(robot->basePosition().y, 2.0f);
      EXPECT_FLOAT_EQ(robot->basePosition().z, 3.0f);
    }
  }
  robot->updateKinematics();
  for (const boost::shared_ptr<Link>& link : robot->links()) EXPECT_TRUE(finite(link->globalTransform()));
}

TEST(HostNumbers, ActuatorCommandThatIsNotFiniteIsRefused) {
  for (const bool continuous : {false, true}) {
    Actuator actuator("j", -1.0f, 1.0f, 1.0f, continuous);
    actuator.setCommand(0.5f);
    for (const float bad : a_nonFinite) {
      CapturedRecords captured;
      actuator.setCommand(bad);
      EXPECT_FLOAT_EQ(actuator.command(), 0.5f) << bad;
      EXPECT_EQ(captured.count(2, "refuses the command"), 1) << bad;
    }
  }
}

TEST(HostNumbers, ActuatorValueThatIsNotFiniteIsRefusedOrRepairedAtTheNextStep) {
  Actuator actuator("wheel", 0.0f, 0.0f, 1.0f, true);
  actuator.setCommand(0.25f);
  actuator.setValue(0.125f);
  EXPECT_FLOAT_EQ(actuator.m_value, 0.125f);
  for (const float bad : a_nonFinite) {
    CapturedRecords captured;
    actuator.setValue(bad);
    EXPECT_FLOAT_EQ(actuator.m_value, 0.125f) << bad;
    EXPECT_EQ(captured.count(2, "refuses the position"), 1) << bad;
  }
  // Written straight into the public field: the next step puts the command there.
  for (const float bad : a_nonFinite) {
    CapturedRecords captured;
    actuator.m_value = bad;
    actuator.step(0.0f);
    EXPECT_FLOAT_EQ(actuator.m_value, 0.25f) << bad;
    EXPECT_EQ(captured.count(2, "not a finite number"), 1) << bad;
  }
}

TEST(HostNumbers, WorldRefusesCommandsThatAreNotFinite) {
  World world;
  const boost::shared_ptr<Robot> robot = loadRobot("arm.urdf");
  ASSERT_TRUE(robot);
  world.addRobot(robot);
  ASSERT_EQ(world.setActuatorCommands({"elbow"}, {0.5f}), 1);
  for (const float bad : a_nonFinite) {
    CapturedRecords captured;
    EXPECT_EQ(world.setActuatorCommands({"elbow", "elbow"}, {bad, -0.5f}), 1) << bad;
    EXPECT_EQ(captured.count(2, "is not a finite number; it is refused"), 1) << bad;
    EXPECT_FLOAT_EQ(robot->actuator("elbow")->command(), -0.5f);
    world.setActuatorCommands({"elbow"}, {0.5f});
  }
  world.forwardKinematicEngine()->run(40);
  for (const boost::shared_ptr<Link>& link : robot->links()) EXPECT_TRUE(finite(link->globalTransform()));
}

}  // namespace
}  // namespace VX::NextGenView
