#include <gtest/gtest.h>

#include <limits>

#include <world_model/actuator.h>
#include <world_model/joint_controller.h>
#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

// Loaded from text: a revolute joint with a long axis, a fixed one, a continuous one.
const char* const a_description = R"(<?xml version="1.0"?>
<robot name="handles">
  <link name="base"/><link name="a"/><link name="b"/><link name="c"/>
  <joint name="turn" type="revolute">
    <parent link="base"/><child link="a"/>
    <axis xyz="0 0 2"/>
    <limit lower="-1" upper="1" effort="1" velocity="1"/>
  </joint>
  <joint name="weld" type="fixed">
    <parent link="a"/><child link="b"/>
  </joint>
  <joint name="wheel" type="continuous">
    <parent link="b"/><child link="c"/>
    <axis xyz="0 1 0"/>
  </joint>
</robot>)";

class JointControllerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const RobotLoadResult result = Robot::loadFromUrdfString(a_description);
    ASSERT_TRUE(result.robot) << result.error;
    m_robot = result.robot;
    ASSERT_EQ(m_robot->jointControllers().size(), 2u);
    m_turn = m_robot->jointControllers()[0];
  }

  boost::shared_ptr<Robot> m_robot;
  boost::shared_ptr<JointController> m_turn;
};

TEST_F(JointControllerTest, OneControllerPerMovingJoint) {
  EXPECT_EQ(m_turn->name(), "turn_controller");
  EXPECT_EQ(m_turn->actuator(), m_robot->actuator("turn"));
  EXPECT_EQ(m_robot->jointControllers()[1]->name(), "wheel_controller");
  EXPECT_EQ(m_robot->jointControllers()[1]->actuator(), m_robot->actuator("wheel"));
  EXPECT_FALSE(m_robot->actuator("weld"));
}

TEST_F(JointControllerTest, AxisIsUnitLength) {
  EXPECT_TRUE(m_turn->localAxis().isApprox(Eigen::Vector3f(0, 0, 1)));
  EXPECT_TRUE(m_turn->rotationAxis().isApprox(Eigen::Vector3f(0, 0, 1)));
}

TEST_F(JointControllerTest, FirstRelativeCommandStartsFromThePresentPosition) {
  EXPECT_FALSE(m_turn->hasCommand());
  m_turn->actuator()->m_value = 0.3f;
  m_turn->addRelativeCommand(0.2f);
  EXPECT_TRUE(m_turn->hasCommand());
  EXPECT_FLOAT_EQ(m_turn->commandTarget(), 0.5f);
  // Later commands add to the target, whatever the joint does meanwhile.
  m_turn->actuator()->m_value = -0.8f;
  m_turn->addRelativeCommand(-0.1f);
  EXPECT_FLOAT_EQ(m_turn->commandTarget(), 0.4f);
  // The actuator's own command is the host's business.
  EXPECT_FLOAT_EQ(m_turn->actuator()->command(), 0.0f);
}

TEST_F(JointControllerTest, ResetStartsOverFromThePresentPosition) {
  m_turn->addRelativeCommand(0.6f);
  m_turn->resetCommand();
  EXPECT_FALSE(m_turn->hasCommand());
  m_turn->actuator()->m_value = -0.5f;
  m_turn->addRelativeCommand(0.1f);
  EXPECT_FLOAT_EQ(m_turn->commandTarget(), -0.4f);
}

TEST_F(JointControllerTest, TargetStaysWithinTheLimits) {
  m_turn->addRelativeCommand(0.7f);
  m_turn->addRelativeCommand(0.7f);
  EXPECT_FLOAT_EQ(m_turn->commandTarget(), 1.0f);
  const boost::shared_ptr<JointController> wheel = m_robot->jointControllers()[1];
  wheel->addRelativeCommand(50.0f);
  EXPECT_FLOAT_EQ(wheel->commandTarget(), 50.0f);
}

TEST_F(JointControllerTest, NotANumberAngleLeavesTheTarget) {
  m_turn->addRelativeCommand(0.25f);
  m_turn->addRelativeCommand(std::numeric_limits<float>::quiet_NaN());
  m_turn->addRelativeCommand(std::numeric_limits<float>::infinity());
  EXPECT_FLOAT_EQ(m_turn->commandTarget(), 0.25f);
  const boost::shared_ptr<JointController> wheel = m_robot->jointControllers()[1];
  wheel->addRelativeCommand(std::numeric_limits<float>::quiet_NaN());
  EXPECT_FALSE(wheel->hasCommand());
}

TEST(JointControllerAlone, WorksWithoutARobot) {
  const boost::shared_ptr<Actuator> actuator(new Actuator("j", -2, 2, 1, false));
  JointController controller("j_controller", actuator, Eigen::Vector3f(0, 3, 0));
  EXPECT_TRUE(controller.localAxis().isApprox(Eigen::Vector3f(0, 1, 0)));
  EXPECT_FALSE(controller.mirrorController());
  EXPECT_FALSE(controller.mirrorReversed());
  controller.addRelativeCommand(1.5f);
  EXPECT_FLOAT_EQ(controller.commandTarget(), 1.5f);

  JointController detached("loose_controller", nullptr, Eigen::Vector3f::Zero());
  detached.addRelativeCommand(1.0f);
  EXPECT_FALSE(detached.hasCommand());
  EXPECT_TRUE(detached.localAxis().isApprox(Eigen::Vector3f::UnitX()));
}

}  // namespace
}  // namespace VX::NextGenView
