#include <gtest/gtest.h>

#include <cmath>

#include <QSignalSpy>

#include <world_model/actuator.h>
#include <world_model/forward_kinematic_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "motor_command_applier.h"
#include "support/test_world.h"

namespace {

using VX::NextGenView::Actuator;

boost::shared_ptr<Actuator> actuator(const boost::shared_ptr<VX::NextGenView::World>& world, const std::string& name) {
  return (*world->robots().begin())->actuator(name);
}

TEST(MotorCommandApplier, CommandsReachTheActuators) {
  auto world = testing_support::worldWithBundledRobot();
  MotorCommandApplier applier(world);
  EXPECT_EQ(applier.onMotorValues({"HeadYaw", "LElbowRoll"}, {0.25f, -0.5f}), 2);
  EXPECT_FLOAT_EQ(actuator(world, "HeadYaw")->command(), 0.25f);
  EXPECT_FLOAT_EQ(actuator(world, "LElbowRoll")->command(), -0.5f);
  EXPECT_FLOAT_EQ(applier.command("HeadYaw"), 0.25f);
  EXPECT_FLOAT_EQ(actuator(world, "HeadYaw")->m_value, 0.0f) << "the engine moves the joint, not the applier";
}

TEST(MotorCommandApplier, UnknownNamesAreIgnored) {
  auto world = testing_support::worldWithBundledRobot();
  MotorCommandApplier applier(world);
  QSignalSpy applied(&applier, &MotorCommandApplier::commandsApplied);
  EXPECT_EQ(applier.onMotorValues({"NoSuchJoint", "HeadPitch"}, {1.0f, 0.1f}), 1);
  EXPECT_TRUE(std::isnan(applier.command("NoSuchJoint")));
  ASSERT_EQ(applied.count(), 1);
  EXPECT_EQ(applied[0][0].toStringList(), QStringList{"HeadPitch"});
  EXPECT_FLOAT_EQ(actuator(world, "HeadPitch")->command(), 0.1f);

  EXPECT_EQ(applier.onMotorValues({"NoSuchJoint"}, {1.0f}), 0);
  EXPECT_EQ(applied.count(), 1) << "nothing applied, nothing announced";
}

TEST(MotorCommandApplier, AnnouncesClampedCommands) {
  auto world = testing_support::worldWithBundledRobot();
  MotorCommandApplier applier(world);
  QSignalSpy applied(&applier, &MotorCommandApplier::commandsApplied);
  const float upper = actuator(world, "LElbowRoll")->upperLimit();
  applier.onCommandRequested("LElbowRoll", upper + 10.0f);
  ASSERT_EQ(applied.count(), 1);
  const QList<float> commands = applied[0][1].value<QList<float>>();
  ASSERT_EQ(commands.size(), 1);
  EXPECT_FLOAT_EQ(commands[0], upper);
}

TEST(MotorCommandApplier, ListsOfDifferentLengthsApplyTheirCommonPart) {
  auto world = testing_support::worldWithBundledRobot();
  MotorCommandApplier applier(world);
  EXPECT_EQ(applier.onMotorValues({"HeadYaw", "HeadPitch"}, {0.3f}), 1);
  EXPECT_FLOAT_EQ(actuator(world, "HeadYaw")->command(), 0.3f);
  EXPECT_FLOAT_EQ(actuator(world, "HeadPitch")->command(), 0.0f);
}

TEST(MotorCommandApplier, WithoutWorldDoesNothing) {
  MotorCommandApplier applier(nullptr);
  EXPECT_EQ(applier.onMotorValues({"HeadYaw"}, {0.3f}), 0);
  EXPECT_TRUE(std::isnan(applier.command("HeadYaw")));
}

TEST(MotorCommandApplier, TheEngineMovesTowardTheCommand) {
  auto world = testing_support::worldWithBundledRobot();
  MotorCommandApplier applier(world);
  applier.onMotorValues({"HeadYaw"}, {0.2f});
  for (int step = 0; step < 25; ++step) world->forwardKinematicEngine()->run(40);
  EXPECT_NEAR(actuator(world, "HeadYaw")->m_value, 0.2f, 1e-5f);
}

}  // namespace
