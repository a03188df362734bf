#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include <world_model/actuator.h>
#include <world_model/forward_kinematic_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::CapturedRecords;
using test::loadRobot;

TEST(ActuatorStep, MovesAtMostMaxVelocityTimesTheStep) {
  Actuator actuator("j", -1.0f, 1.0f, 2.0f, false);
  actuator.setCommand(0.5f);
  actuator.step(0.1f);
  EXPECT_FLOAT_EQ(actuator.m_value, 0.2f);
  actuator.step(0.1f);
  EXPECT_FLOAT_EQ(actuator.m_value, 0.4f);
}

TEST(ActuatorStep, StopsAtTheCommandWithoutOvershoot) {
  Actuator actuator("j", -1.0f, 1.0f, 2.0f, false);
  actuator.setCommand(-0.3f);
  actuator.step(0.1f);
  actuator.step(0.1f);
  EXPECT_FLOAT_EQ(actuator.m_value, -0.3f);
  actuator.step(0.1f);
  EXPECT_FLOAT_EQ(actuator.m_value, -0.3f);
}

TEST(ActuatorStep, CommandsAreClampedToTheLimits) {
  Actuator actuator("j", -1.0f, 1.0f, 10.0f, false);
  actuator.setCommand(5.0f);
  EXPECT_FLOAT_EQ(actuator.command(), 1.0f);
  for (int i = 0; i < 10; ++i) actuator.step(0.1f);
  EXPECT_FLOAT_EQ(actuator.m_value, 1.0f);
  actuator.setCommand(-7.0f);
  EXPECT_FLOAT_EQ(actuator.command(), -1.0f);
}

TEST(ActuatorStep, AValueWrittenOutsideTheLimitsIsBroughtBack) {
  Actuator actuator("j", -1.0f, 1.0f, 0.1f, false);
  actuator.setCommand(1.0f);
  actuator.m_value = 3.0f;
  actuator.step(0.01f);
  EXPECT_FLOAT_EQ(actuator.m_value, 1.0f);
}

TEST(ActuatorStep, NotANumberCommandIsIgnored) {
  CapturedRecords captured;
  Actuator actuator("j", -1.0f, 1.0f, 1.0f, false);
  actuator.setCommand(0.5f);
  actuator.setCommand(std::numeric_limits<float>::quiet_NaN());
  EXPECT_FLOAT_EQ(actuator.command(), 0.5f);
  EXPECT_EQ(captured.count(2, "not a finite number"), 1);
}

TEST(ActuatorStep, ContinuousJointsHaveNoLimits) {
  Actuator actuator("wheel", -1.0f, 1.0f, 2.0f, true);
  EXPECT_TRUE(actuator.isContinuous());
  EXPECT_EQ(actuator.lowerLimit(), -std::numeric_limits<float>::infinity());
  EXPECT_EQ(actuator.upperLimit(), std::numeric_limits<float>::infinity());
  actuator.setCommand(10.0f);
  EXPECT_FLOAT_EQ(actuator.command(), 10.0f);
  actuator.step(4.0f);
  EXPECT_FLOAT_EQ(actuator.m_value, 8.0f);
  actuator.step(4.0f);
  EXPECT_FLOAT_EQ(actuator.m_value, 10.0f);
}

TEST(ActuatorStep, MissingVelocityGetsTheDefault) {
  EXPECT_FLOAT_EQ(Actuator::a_defaultMaxVelocity, 2.0f);
  EXPECT_FLOAT_EQ(Actuator("a", -1, 1, 0.0f, false).maxVelocity(), Actuator::a_defaultMaxVelocity);
  EXPECT_FLOAT_EQ(Actuator("b", -1, 1, -3.0f, false).maxVelocity(), Actuator::a_defaultMaxVelocity);
  EXPECT_FLOAT_EQ(Actuator("c", -1, 1, std::nanf(""), false).maxVelocity(), Actuator::a_defaultMaxVelocity);
  EXPECT_FLOAT_EQ(Actuator("d", -1, 1, 0.7f, false).maxVelocity(), 0.7f);
}

TEST(ActuatorStep, RestsAtZeroOrTheNearestLimit) {
  EXPECT_FLOAT_EQ(Actuator("a", -1, 1, 1, false).m_value, 0.0f);
  const Actuator above("b", 0.2f, 1.5f, 1, false);
  EXPECT_FLOAT_EQ(above.m_value, 0.2f);
  EXPECT_FLOAT_EQ(above.command(), 0.2f);
}

TEST(UrdfActuators, LimitsAndVelocitiesComeFromTheDescription) {
  const boost::shared_ptr<Robot> robot = loadRobot("motion.urdf");
  ASSERT_TRUE(robot);
  ASSERT_EQ(robot->actuators().size(), 3u);
  const boost::shared_ptr<Actuator> slow = robot->actuator("slow");
  EXPECT_FLOAT_EQ(slow->lowerLimit(), -1.0f);
  EXPECT_FLOAT_EQ(slow->upperLimit(), 1.0f);
  EXPECT_FLOAT_EQ(slow->maxVelocity(), 0.5f);
  EXPECT_FALSE(slow->isContinuous());

  const boost::shared_ptr<Actuator> spin = robot->actuator("spin");
  EXPECT_TRUE(spin->isContinuous());
  EXPECT_TRUE(std::isinf(spin->upperLimit()));
  EXPECT_FLOAT_EQ(spin->maxVelocity(), Actuator::a_defaultMaxVelocity);

  const boost::shared_ptr<Actuator> lazy = robot->actuator("lazy");
  EXPECT_FLOAT_EQ(lazy->maxVelocity(), Actuator::a_defaultMaxVelocity);
  EXPECT_FLOAT_EQ(lazy->m_value, 0.2f);
  EXPECT_FALSE(robot->actuator("unknown"));
}

TEST(EngineStep, MovesEveryActuatorByVelocityTimesPeriod) {
  World world;
  const boost::shared_ptr<Robot> robot = loadRobot("motion.urdf");
  ASSERT_TRUE(robot);
  world.addRobot(robot);
  robot->actuator("slow")->setCommand(1.0f);
  robot->actuator("spin")->setCommand(-20.0f);
  world.forwardKinematicEngine()->run(100);
  EXPECT_FLOAT_EQ(robot->actuator("slow")->m_value, 0.05f);
  EXPECT_FLOAT_EQ(robot->actuator("spin")->m_value, -0.2f);
  for (int i = 0; i < 200; ++i) world.forwardKinematicEngine()->run(100);
  EXPECT_FLOAT_EQ(robot->actuator("slow")->m_value, 1.0f);
  EXPECT_FLOAT_EQ(robot->actuator("spin")->m_value, -20.0f);
  EXPECT_EQ(world.forwardKinematicEngine()->stepCount(), 201);
}

TEST(SetActuatorCommands, AppliesKnownNamesAndLogsUnknownOnes) {
  World world;
  const boost::shared_ptr<Robot> robot = loadRobot("motion.urdf");
  ASSERT_TRUE(robot);
  world.addRobot(robot);
  CapturedRecords captured;
  const int applied = world.setActuatorCommands({"slow", "NoSuchMotor", "spin"}, {0.5f, 1.0f, 3.0f});
  EXPECT_EQ(applied, 2);
  EXPECT_FLOAT_EQ(robot->actuator("slow")->command(), 0.5f);
  EXPECT_FLOAT_EQ(robot->actuator("spin")->command(), 3.0f);
  EXPECT_EQ(captured.count(3, "NoSuchMotor"), 1);
  EXPECT_EQ(captured.records().size(), 1u);
}

TEST(SetActuatorCommands, EveryRobotWithTheNameGetsTheCommand) {
  World world;
  const boost::shared_ptr<Robot> first = loadRobot("motion.urdf");
  const boost::shared_ptr<Robot> second = loadRobot("motion.urdf");
  ASSERT_TRUE(first && second);
  world.addRobot(first);
  world.addRobot(second);
  EXPECT_EQ(world.setActuatorCommands({"slow"}, {-0.25f}), 1);
  EXPECT_FLOAT_EQ(first->actuator("slow")->command(), -0.25f);
  EXPECT_FLOAT_EQ(second->actuator("slow")->command(), -0.25f);
}

TEST(SetActuatorCommands, MismatchedListsApplyTheCommonPrefix) {
  World world;
  const boost::shared_ptr<Robot> robot = loadRobot("motion.urdf");
  ASSERT_TRUE(robot);
  world.addRobot(robot);
  CapturedRecords captured;
  EXPECT_EQ(world.setActuatorCommands({"slow", "spin"}, {0.75f}), 1);
  EXPECT_FLOAT_EQ(robot->actuator("slow")->command(), 0.75f);
  EXPECT_FLOAT_EQ(robot->actuator("spin")->command(), 0.0f);
  EXPECT_EQ(captured.count(3, "2 actuator names and 1 values"), 1);
}

}  // namespace
}  // namespace VX::NextGenView
