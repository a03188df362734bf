#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include <QSignalSpy>
#include <QTest>

#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "joint_animator.h"
#include "motor_command_applier.h"
#include "support/test_world.h"

namespace {

TEST(JointAnimator, EveryJointSwingsInsideItsLimits) {
  auto world = testing_support::worldWithBundledRobot();
  MotorCommandApplier applier(world);
  JointAnimator animator(world, &applier);
  const auto& actuators = (*world->robots().begin())->actuators();
  QList<QString> names;
  QList<float> low;
  animator.commandsAt(0.0, &names, &low);
  ASSERT_EQ(names.size(), static_cast<int>(actuators.size()));
  QList<float> high = low;
  for (double seconds = 0.0; seconds <= JointAnimator::a_waveSeconds; seconds += 0.25) {
    QList<QString> ignored;
    QList<float> values;
    animator.commandsAt(seconds, &ignored, &values);
    for (int i = 0; i < values.size(); ++i) {
      EXPECT_GE(values[i], actuators[i]->lowerLimit()) << names[i].toStdString();
      EXPECT_LE(values[i], actuators[i]->upperLimit()) << names[i].toStdString();
      low[i] = std::min(low[i], values[i]);
      high[i] = std::max(high[i], values[i]);
    }
  }
  // Over one wave every joint sweeps most of its range (a joint without limits, two radians).
  for (int i = 0; i < names.size(); ++i) {
    const float lower = actuators[i]->lowerLimit();
    const float upper = actuators[i]->upperLimit();
    const float range = std::isfinite(lower) && std::isfinite(upper) ? upper - lower : 2.0f;
    EXPECT_GT(high[i] - low[i], 0.75f * range) << names[i].toStdString();
  }
}

TEST(JointAnimator, StartedItSendsCommandsThroughTheApplier) {
  auto world = testing_support::worldWithBundledRobot();
  MotorCommandApplier applier(world);
  QSignalSpy applied(&applier, &MotorCommandApplier::commandsApplied);
  JointAnimator animator(world, &applier);
  QTest::qWait(3 * JointAnimator::a_periodMs);
  EXPECT_EQ(applied.count(), 0) << "nothing moves before start()";
  animator.start();
  ASSERT_TRUE(applied.wait(2000));
  const auto& actuators = (*world->robots().begin())->actuators();
  EXPECT_EQ(applied.at(0).at(0).toStringList().size(), static_cast<int>(actuators.size()));
  int commanded = 0;
  for (const auto& actuator : actuators) commanded += actuator->command() != 0.0f;
  EXPECT_GT(commanded, 0);
}

}  // namespace
