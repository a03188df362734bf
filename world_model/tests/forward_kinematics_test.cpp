#include <cmath>

#include <gtest/gtest.h>

#include <world_model/forward_kinematic_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::loadRobot;
using test::translationOf;

const float a_halfPi = static_cast<float>(M_PI / 2.0);
const float a_tolerance = 1e-5f;

void expectNear(const Eigen::Vector3f& actual, const Eigen::Vector3f& expected) {
  EXPECT_LT((actual - expected).norm(), a_tolerance) << "actual (" << actual.transpose() << "), expected ("
                                                     << expected.transpose() << ")";
}

class ArmKinematics : public ::testing::Test {
 protected:
  void SetUp() override {
    m_robot = loadRobot("arm.urdf");
    ASSERT_TRUE(m_robot);
  }
  void setJoints(float shoulder, float elbow) {
    m_robot->actuator("shoulder")->m_value = shoulder;
    m_robot->actuator("elbow")->m_value = elbow;
    m_robot->updateKinematics();
  }
  Eigen::Vector3f hand() const { return translationOf(m_robot->link("hand")); }

  boost::shared_ptr<Robot> m_robot;
};

TEST_F(ArmKinematics, PosesAreValidRightAfterLoading) {
  expectNear(translationOf(m_robot->link("base")), {0, 0, 0});
  expectNear(translationOf(m_robot->link("upper_arm")), {0, 0, 0.1f});
  expectNear(translationOf(m_robot->link("forearm")), {0.2f, 0, 0.1f});
  expectNear(hand(), {0.35f, 0, 0.1f});
}

TEST_F(ArmKinematics, ElbowAtHalfTurnPointsTheForearmDown) {
  setJoints(0, a_halfPi);
  // A turn of +pi/2 about +Y takes +X to -Z.
  expectNear(hand(), {0.2f, 0, 0.1f - 0.15f});
  EXPECT_TRUE(m_robot->link("hand")->globalTransform().isApprox(
      MK::Math::Transform::fromPosition(0.2f, 0, -0.05f) * MK::Math::Transform::fromRotY(a_halfPi)));
}

TEST_F(ArmKinematics, ShoulderAndElbowCompose) {
  setJoints(a_halfPi, a_halfPi);
  expectNear(translationOf(m_robot->link("forearm")), {0, 0.2f, 0.1f});
  expectNear(hand(), {0, 0.2f, -0.05f});
}

TEST_F(ArmKinematics, HeadingTurnsTheWholeRobot) {
  m_robot->setHeading(a_halfPi);
  m_robot->updateKinematics();
  expectNear(hand(), {0, 0.35f, 0.1f});
  EXPECT_TRUE(m_robot->rootLink()->globalTransform().isApprox(MK::Math::Transform::fromRotZ(a_halfPi)));
}

TEST_F(ArmKinematics, BasePositionTranslatesTheWholeRobot) {
  m_robot->setBasePosition({1, 2, 3});
  m_robot->updateKinematics();
  expectNear(translationOf(m_robot->rootLink()), {1, 2, 3});
  expectNear(hand(), {1.35f, 2, 3.1f});
}

TEST_F(ArmKinematics, BaseTranslationAppliesAfterTheHeading) {
  m_robot->setBasePosition({1, 0, 0});
  m_robot->setHeading(static_cast<float>(M_PI));
  m_robot->updateKinematics();
  expectNear(hand(), {0.65f, 0, 0.1f});
}

TEST_F(ArmKinematics, ControllersGiveAxisAndCentreInWorldCoordinates) {
  const auto& controllers = m_robot->jointControllers();
  ASSERT_EQ(controllers.size(), 2u);
  const boost::shared_ptr<JointController> shoulder = controllers[0];
  const boost::shared_ptr<JointController> elbow = controllers[1];
  ASSERT_EQ(elbow->name(), "elbow_controller");

  setJoints(a_halfPi, 0);
  expectNear(shoulder->rotationCenter(), {0, 0, 0.1f});
  expectNear(shoulder->rotationAxis(), {0, 0, 1});
  expectNear(elbow->rotationCenter(), {0, 0.2f, 0.1f});
  expectNear(elbow->rotationAxis(), {-1, 0, 0});

  m_robot->setBasePosition({1, 2, 3});
  m_robot->setHeading(a_halfPi);
  setJoints(0, 0.7f);
  expectNear(shoulder->rotationCenter(), {1, 2, 3.1f});
  expectNear(elbow->rotationCenter(), {1, 2.2f, 3.1f});
  expectNear(elbow->rotationAxis(), {-1, 0, 0});
  EXPECT_NEAR(elbow->rotationAxis().norm(), 1.0f, a_tolerance);
}

TEST_F(ArmKinematics, ControllerFrameIsTheJointFrame) {
  setJoints(0.4f, -0.9f);
  const boost::shared_ptr<JointController> elbow = m_robot->jointControllers()[1];
  EXPECT_TRUE(elbow->globalTransform().isApprox(m_robot->link("forearm")->globalTransform()));
  const MK::Math::Transform expected = MK::Math::Transform::fromPosition(0, 0, 0.1f) *
                                       MK::Math::Transform::fromRotZ(0.4f) * MK::Math::Transform::fromPosition(0.2f, 0, 0) *
                                       MK::Math::Transform::fromRotY(-0.9f);
  EXPECT_TRUE(elbow->globalTransform().isApprox(expected));
}

TEST_F(ArmKinematics, EngineStepsMoveTheLinks) {
  World world;
  world.addRobot(m_robot);
  m_robot->actuator("elbow")->setCommand(a_halfPi);
  // 1 rad/s: 40 steps of 40 ms cover 1.6 rad, more than pi/2.
  for (int i = 0; i < 40; ++i) world.forwardKinematicEngine()->run(40);
  EXPECT_FLOAT_EQ(m_robot->actuator("elbow")->m_value, a_halfPi);
  expectNear(hand(), {0.2f, 0, -0.05f});
}

TEST(RobotLinks, TorsoLinkFallsBackToTheRoot) {
  const boost::shared_ptr<Robot> robot = loadRobot("arm.urdf");
  ASSERT_TRUE(robot);
  EXPECT_EQ(robot->link("TorsoLink"), robot->rootLink());
  EXPECT_EQ(robot->rootLink()->name(), "base");
  EXPECT_EQ(robot->link("forearm")->name(), "forearm");
  EXPECT_FALSE(robot->link("nothing"));
  EXPECT_EQ(robot->links().size(), 4u);
}

TEST_F(ArmKinematics, EachControllerTurnsItsJointsChildLink) {
  EXPECT_EQ(m_robot->turnedLink(m_robot->jointControllers().at(0)), m_robot->link("upper_arm"));
  EXPECT_EQ(m_robot->turnedLink(m_robot->jointControllers().at(1)), m_robot->link("forearm"));
  EXPECT_EQ(m_robot->turnedLink(nullptr), nullptr);
  const boost::shared_ptr<Robot> other = loadRobot("arm.urdf");
  EXPECT_EQ(m_robot->turnedLink(other->jointControllers().at(0)), nullptr) << "another robot's controller";
}

TEST(BaseAnnotation, IsKnownToHaveBeenGivenOrNot) {
  const RobotLoadResult placed = Robot::loadFromUrdfString(
      "<robot name='r'><link name='a'/><base y='0.5'/></robot>");
  ASSERT_TRUE(placed.robot) << placed.error;
  EXPECT_TRUE(placed.robot->hasBaseAnnotation());
  const RobotLoadResult unplaced = Robot::loadFromUrdfString("<robot name='r'><link name='a'/></robot>");
  ASSERT_TRUE(unplaced.robot) << unplaced.error;
  EXPECT_FALSE(unplaced.robot->hasBaseAnnotation());
  const RobotLoadResult atOrigin = Robot::loadFromUrdfString("<robot name='r'><link name='a'/><base/></robot>");
  ASSERT_TRUE(atOrigin.robot) << atOrigin.error;
  EXPECT_TRUE(atOrigin.robot->hasBaseAnnotation()) << "a base at the origin is still a placement";
}

}  // namespace
}  // namespace VX::NextGenView
