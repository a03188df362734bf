// Prismatic, mimic, floating and planar joints (data/joints/lift_gripper.urdf).
#include <gtest/gtest.h>

#include <world_model/forward_kinematic_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::CapturedRecords;
using test::translationOf;

const float a_tolerance = 1e-5f;

void expectNear(const Eigen::Vector3f& actual, const Eigen::Vector3f& expected) {
  EXPECT_LT((actual - expected).norm(), a_tolerance) << "actual (" << actual.transpose() << "), expected ("
                                                     << expected.transpose() << ")";
}

class JointTypes : public ::testing::Test {
 protected:
  void SetUp() override {
    const RobotLoadResult result = Robot::loadFromUrdfFile(test::dataFile("joints/lift_gripper.urdf"));
    ASSERT_TRUE(result.robot) << result.error;
    m_robot = result.robot;
  }
  Eigen::Vector3f at(const std::string& link) const { return translationOf(m_robot->link(link)); }
  void set(const std::string& actuator, float value) {
    m_robot->actuator(actuator)->m_value = value;
    m_robot->updateKinematics();
  }

  CapturedRecords m_captured;
  boost::shared_ptr<Robot> m_robot;
};

TEST_F(JointTypes, PrismaticJointsAreActuatorsInMetres) {
  const boost::shared_ptr<Actuator> lift = m_robot->actuator("lift");
  ASSERT_TRUE(lift);
  EXPECT_TRUE(lift->isPrismatic());
  EXPECT_FLOAT_EQ(lift->lowerLimit(), 0.0f);
  EXPECT_FLOAT_EQ(lift->upperLimit(), 0.3f);
  EXPECT_FLOAT_EQ(lift->maxVelocity(), 0.1f);
  // No velocity given: half a metre per second.
  EXPECT_FLOAT_EQ(m_robot->actuator("finger_left_joint")->maxVelocity(), 0.5f);
  EXPECT_FALSE(m_robot->actuator("wrist")->isPrismatic());
  lift->setCommand(1.0f);
  EXPECT_FLOAT_EQ(lift->command(), 0.3f) << "clamped to the upper limit, in metres";
}

TEST_F(JointTypes, PrismaticJointTranslatesAlongItsAxis) {
  expectNear(at("torso"), {0.1f, 0, 0});
  set("lift", 0.25f);
  expectNear(at("torso"), {0.1f, 0, 0.25f});
  expectNear(at("hand"), {0.15f, 0, 0.55f});
  // The engine moves it at its velocity: 0.1 m/s for 1 s, from 0.25 toward 0.
  m_robot->actuator("lift")->setCommand(0.0f);
  World world;
  world.addRobot(m_robot);
  world.forwardKinematicEngine()->run(1000);
  EXPECT_NEAR(m_robot->actuator("lift")->m_value, 0.15f, a_tolerance);
  expectNear(at("torso"), {0.1f, 0, 0.15f});
}

TEST_F(JointTypes, OnlyTurningJointsWithActuatorsHaveControllers) {
  ASSERT_EQ(m_robot->jointControllers().size(), 1u);
  EXPECT_EQ(m_robot->jointControllers().front()->name(), "wrist_controller");
  std::vector<std::string> actuators;
  for (const auto& actuator : m_robot->actuators()) actuators.push_back(actuator->name());
  EXPECT_EQ(actuators, (std::vector<std::string>{"lift", "finger_left_joint", "wrist"}));
}

TEST_F(JointTypes, PrismaticMimicFollowsItsLeader) {
  EXPECT_FALSE(m_robot->actuator("finger_right_joint")) << "a mimic joint has no actuator";
  expectNear(at("finger_right"), {0.1f, -0.02f, 0.2f});
  set("finger_left_joint", 0.03f);
  expectNear(at("finger_left"), {0.1f, 0.05f, 0.2f});
  expectNear(at("finger_right"), {0.1f, -0.05f, 0.2f});
}

TEST_F(JointTypes, RevoluteMimicsFollowTheirLeaderThroughAChain) {
  // thumb = 0.5 wrist + 0.1; tip = 2 thumb. At rest the thumb is already at 0.1.
  expectNear(at("tip"), {0.15f + 0.0995004f, 0.0099833f, 0.35f});
  set("wrist", 0.4f);
  // The tip's frame turned by wrist + thumb = 0.7 rad puts it 0.1 m out.
  expectNear(at("thumb"), {0.15f, 0, 0.35f});
  expectNear(at("tip"), {0.15f + 0.0764842f, 0.0644218f, 0.35f});
  // And the tip's own frame has turned by 0.4 + 0.3 + 0.6 = 1.3 rad.
  const Eigen::Vector3f tipX = m_robot->link("tip")->globalTransform().applyToVector(Eigen::Vector3f::UnitX());
  expectNear(tipX, {0.2674988f, 0.9635582f, 0});
}

TEST_F(JointTypes, DescriptionsListEveryJointWithItsTypeAndLeader) {
  std::vector<std::string> types;
  for (const JointDescription& joint : m_robot->joints()) types.push_back(joint.name + ":" + joint.type);
  EXPECT_EQ(types, (std::vector<std::string>{"lift:prismatic", "finger_left_joint:prismatic",
                                             "finger_right_joint:prismatic", "wrist:revolute", "thumb_joint:revolute",
                                             "tip_joint:continuous", "camera_mount:floating", "cart_rail:planar"}));
  const JointDescription* thumb = m_robot->mimicJoint("thumb_joint");
  ASSERT_TRUE(thumb);
  EXPECT_EQ(thumb->mimicJoint, "wrist");
  EXPECT_FLOAT_EQ(thumb->multiplier, 0.5f);
  EXPECT_FLOAT_EQ(thumb->offset, 0.1f);
  EXPECT_FLOAT_EQ(m_robot->mimicJoint("finger_right_joint")->multiplier, -1.0f);
  EXPECT_FALSE(m_robot->mimicJoint("wrist"));
}

TEST_F(JointTypes, CommandToAMimicJointIsRefusedWithAWarning) {
  World world;
  world.addRobot(m_robot);
  EXPECT_EQ(world.setActuatorCommands({"finger_right_joint", "wrist"}, {0.01f, 0.5f}), 1);
  EXPECT_EQ(m_captured.count(3, "\"finger_right_joint\" mimics \"finger_left_joint\""), 1);
  EXPECT_FLOAT_EQ(m_robot->actuator("wrist")->command(), 0.5f);
  EXPECT_FLOAT_EQ(m_robot->actuator("finger_left_joint")->command(), 0.0f) << "the leader is left alone";
}

TEST_F(JointTypes, FloatingAndPlanarJointsAreHeldFixedWithOneWarningEach) {
  EXPECT_EQ(m_captured.count(3, "floating joint camera_mount"), 1);
  EXPECT_EQ(m_captured.count(3, "planar joint cart_rail"), 1);
  EXPECT_EQ(m_captured.count(3, "held fixed"), 2);
  expectNear(at("camera"), {0, 0, 1});
  expectNear(at("cart"), {1, 0, 0});
  EXPECT_FALSE(m_robot->actuator("camera_mount"));
  EXPECT_FALSE(m_robot->actuator("cart_rail"));
}

TEST(MimicJoints, UnknownLeaderLeavesTheJointAtItsOffsetWithAWarning) {
  CapturedRecords captured;
  const RobotLoadResult result = Robot::loadFromUrdfString(R"(<robot name="r">
      <link name="a"/><link name="b"/>
      <joint name="j" type="continuous"><parent link="a"/><child link="b"/><axis xyz="0 0 1"/>
        <mimic joint="ghost" multiplier="3" offset="1.5707963"/></joint></robot>)");
  ASSERT_TRUE(result.robot) << result.error;
  EXPECT_EQ(captured.count(3, "mimics the unknown joint \"ghost\""), 1);
  const Eigen::Vector3f bX = result.robot->link("b")->globalTransform().applyToVector(Eigen::Vector3f::UnitX());
  expectNear(bX, {0, 1, 0});
}

TEST(Actuators, PrismaticDefaultVelocityIsHalfAMetrePerSecond) {
  const Actuator slide("slide", 0, 1, 0, false, Actuator::Motion::Translation);
  EXPECT_FLOAT_EQ(slide.maxVelocity(), Actuator::a_defaultMaxLinearVelocity);
  EXPECT_FLOAT_EQ(Actuator::a_defaultMaxLinearVelocity, 0.5f);
  const Actuator turn("turn", 0, 1, 0, false);
  EXPECT_FLOAT_EQ(turn.maxVelocity(), 2.0f);
  EXPECT_FALSE(turn.isPrismatic());
}

}  // namespace
}  // namespace VX::NextGenView
