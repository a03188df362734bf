#include <gtest/gtest.h>

#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::CapturedRecords;
using test::loadRobot;

boost::shared_ptr<JointController> controllerOf(const boost::shared_ptr<Robot>& robot, const std::string& joint) {
  for (const boost::shared_ptr<JointController>& controller : robot->jointControllers()) {
    if (controller->name() == joint + "_controller") return controller;
  }
  ADD_FAILURE() << "no controller for " << joint;
  return nullptr;
}

// Both point at each other, with the same reversal.
void expectTwins(const boost::shared_ptr<Robot>& robot, const std::string& left, const std::string& right,
                 bool reversed) {
  const boost::shared_ptr<JointController> a = controllerOf(robot, left);
  const boost::shared_ptr<JointController> b = controllerOf(robot, right);
  ASSERT_TRUE(a && b);
  EXPECT_EQ(a->mirrorController(), b) << left;
  EXPECT_EQ(b->mirrorController(), a) << right;
  EXPECT_EQ(a->mirrorReversed(), reversed) << left;
  EXPECT_EQ(b->mirrorReversed(), reversed) << right;
}

TEST(MirrorByAnnotation, PairsTheNamedJoints) {
  CapturedRecords captured;
  const boost::shared_ptr<Robot> robot = loadRobot("mirror_annotated.urdf");
  ASSERT_TRUE(robot);
  expectTwins(robot, "port_oar", "starboard_oar", true);
  expectTwins(robot, "port_flap", "starboard_flap", false);
}

TEST(MirrorByAnnotation, AxesThatDoNotMirrorAreLoggedAndNotReversed) {
  CapturedRecords captured;
  const boost::shared_ptr<Robot> robot = loadRobot("mirror_annotated.urdf");
  ASSERT_TRUE(robot);
  expectTwins(robot, "port_odd", "starboard_odd", false);
  EXPECT_EQ(captured.count(3, "port_odd"), 1);
}

TEST(MirrorByName, PairsSideMarkedNames) {
  const boost::shared_ptr<Robot> robot = loadRobot("mirror_names.urdf");
  ASSERT_TRUE(robot);
  expectTwins(robot, "LShoulderPitch", "RShoulderPitch", false);  // pitch: same axis, same value
  expectTwins(robot, "LShoulderRoll", "RShoulderRoll", true);     // roll about the same axis: reversed
  expectTwins(robot, "l_hip", "r_hip", false);                    // yaw axes already mirrored
  expectTwins(robot, "knee_l", "knee_r", false);
}

TEST(MirrorByName, ComparesAxesInTheRobotFrame) {
  const boost::shared_ptr<Robot> robot = loadRobot("mirror_names.urdf");
  ASSERT_TRUE(robot);
  // The left wrist reads -X in a frame turned half a turn: +X on the body, like the right one.
  expectTwins(robot, "left_wrist", "right_wrist", true);
}

TEST(MirrorByName, UnmarkedOrUnmatchedJointsHaveNoTwin) {
  const boost::shared_ptr<Robot> robot = loadRobot("mirror_names.urdf");
  ASSERT_TRUE(robot);
  for (const std::string joint : {"Lift", "Rift", "LEye"}) {
    const boost::shared_ptr<JointController> controller = controllerOf(robot, joint);
    ASSERT_TRUE(controller);
    EXPECT_FALSE(controller->mirrorController()) << joint;
    EXPECT_FALSE(controller->mirrorReversed()) << joint;
  }
}

TEST(MirrorByAnnotation, AnnotationNamingAnUnknownJointIsAnError) {
  const RobotLoadResult result = Robot::loadFromUrdfString(R"(<robot name="r">
    <mirror joint="a" twin="ghost"/>
    <link name="base"/><link name="l"/>
    <joint name="a" type="continuous"><parent link="base"/><child link="l"/></joint>
  </robot>)");
  EXPECT_FALSE(result.robot);
  EXPECT_NE(result.error.find("ghost"), std::string::npos) << result.error;
  EXPECT_NE(result.error.find("line 2"), std::string::npos) << result.error;
}

}  // namespace
}  // namespace VX::NextGenView
