#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QSlider>

#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "joint_slider_panel.h"
#include "motor_command_applier.h"
#include "support/test_world.h"

#include <boost/make_shared.hpp>

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

class GripperSliders : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto loaded = VX::NextGenView::Robot::loadFromUrdfFile(VIEWER_TEST_DATA "/gripper/gripper.urdf");
    ASSERT_TRUE(loaded.robot) << loaded.error;
    m_robot = loaded.robot;
    m_world->addRobot(m_robot);
  }
  boost::shared_ptr<VX::NextGenView::World> m_world = boost::make_shared<VX::NextGenView::World>();
  boost::shared_ptr<VX::NextGenView::Robot> m_robot;
};

TEST_F(GripperSliders, MimicJointsHaveNoSlider) {
  JointSliderPanel panel(m_world);
  EXPECT_EQ(panel.actuatorNames(), (QStringList{"finger_left_joint", "lift", "wrist"}));
  EXPECT_EQ(panel.slider("finger_right_joint"), nullptr);
}

TEST_F(GripperSliders, PrismaticJointsSlideInMillimetres) {
  JointSliderPanel panel(m_world);
  MotorCommandApplier applier(m_world);
  QObject::connect(&panel, &JointSliderPanel::commandRequested, &applier, &MotorCommandApplier::onCommandRequested);
  QSlider* lift = panel.slider("lift");
  ASSERT_NE(lift, nullptr);
  // 0 to 300 mm in tenths of a millimetre.
  EXPECT_EQ(lift->minimum(), 0);
  EXPECT_EQ(lift->maximum(), 3000);
  EXPECT_EQ(lift->toolTip(), "lift: 0.0 to 300.0 mm");
  EXPECT_EQ(panel.shownValue("lift"), "0.0 mm");
  EXPECT_EQ(panel.slider("finger_left_joint")->minimum(), -100);
  QSignalSpy requested(&panel, &JointSliderPanel::commandRequested);
  lift->setValue(1255);
  ASSERT_EQ(requested.count(), 1);
  EXPECT_FLOAT_EQ(requested.at(0).at(1).toFloat(), 0.1255f) << "commands are in metres";
  EXPECT_FLOAT_EQ(m_robot->actuator("lift")->command(), 0.1255f);
  EXPECT_EQ(panel.shownValue("lift"), "125.5 mm");
  EXPECT_FLOAT_EQ(panel.sliderValue("lift"), 0.1255f);
  // Turning joints keep degrees.
  panel.slider("wrist")->setValue(500);
  EXPECT_EQ(panel.shownValue("wrist"), "28.6°");
}

}  // namespace
