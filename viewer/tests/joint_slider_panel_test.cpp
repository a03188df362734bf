#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QSlider>

#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "joint_slider_panel.h"
#include "motor_command_applier.h"
#include "support/test_world.h"

namespace {

using VX::NextGenView::Actuator;

TEST(JointSliderPanel, OneSliderPerActuatorWithinItsLimits) {
  auto world = testing_support::worldWithBundledRobot();
  JointSliderPanel panel(world);
  const boost::shared_ptr<VX::NextGenView::Robot> robot = *world->robots().begin();
  EXPECT_EQ(panel.actuatorNames().size(), static_cast<int>(robot->actuators().size()));
  for (const boost::shared_ptr<Actuator>& actuator : robot->actuators()) {
    QSlider* slider = panel.slider(QString::fromStdString(actuator->name()));
    ASSERT_NE(slider, nullptr) << actuator->name();
    EXPECT_NEAR(slider->minimum() / 1000.0, actuator->lowerLimit(), 1e-3) << actuator->name();
    EXPECT_NEAR(slider->maximum() / 1000.0, actuator->upperLimit(), 1e-3) << actuator->name();
  }
  EXPECT_EQ(panel.slider("NoSuchJoint"), nullptr);
}

TEST(JointSliderPanel, ContinuousJointsGetAFullTurn) {
  auto robot = VX::NextGenView::Robot::loadFromUrdfString(
                   "<robot name='r'><link name='a'/><link name='b'/>"
                   "<joint name='spin' type='continuous'><parent link='a'/><child link='b'/><axis xyz='0 0 1'/></joint>"
                   "</robot>")
                   .robot;
  ASSERT_TRUE(robot);
  auto world = boost::make_shared<VX::NextGenView::World>();
  world->addRobot(robot);
  JointSliderPanel panel(world);
  ASSERT_NE(panel.slider("spin"), nullptr);
  EXPECT_EQ(panel.slider("spin")->minimum(), -3142);
  EXPECT_EQ(panel.slider("spin")->maximum(), 3142);
}

TEST(JointSliderPanel, MovingASliderSetsTheCommand) {
  auto world = testing_support::worldWithBundledRobot();
  JointSliderPanel panel(world);
  MotorCommandApplier applier(world);
  QObject::connect(&panel, &JointSliderPanel::commandRequested, &applier, &MotorCommandApplier::onCommandRequested);
  QObject::connect(&applier, &MotorCommandApplier::commandsApplied, &panel, &JointSliderPanel::onCommandsApplied);
  QSignalSpy requested(&panel, &JointSliderPanel::commandRequested);
  panel.slider("HeadYaw")->setValue(400);
  EXPECT_EQ(requested.count(), 1) << "the command coming back does not ask again";
  EXPECT_FLOAT_EQ((*world->robots().begin())->actuator("HeadYaw")->command(), 0.4f);
}

TEST(JointSliderPanel, FollowsCommandsWithoutAskingAgain) {
  auto world = testing_support::worldWithBundledRobot();
  JointSliderPanel panel(world);
  QSignalSpy requested(&panel, &JointSliderPanel::commandRequested);
  panel.onCommandsApplied({"HeadPitch", "NoSuchJoint"}, {-0.25f, 1.0f});
  EXPECT_FLOAT_EQ(panel.sliderValue("HeadPitch"), -0.25f);
  EXPECT_EQ(requested.count(), 0);
}

}  // namespace
