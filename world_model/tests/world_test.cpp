#include <functional>

#include <gtest/gtest.h>

#include <boost/weak_ptr.hpp>

#include <world_model/forward_kinematic_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::CapturedRecords;
using test::loadRobot;

TEST(World, AddsAndRemovesRobots) {
  World world;
  EXPECT_TRUE(world.robots().empty());
  const boost::shared_ptr<Robot> first = loadRobot("arm.urdf");
  const boost::shared_ptr<Robot> second = loadRobot("arm.urdf");
  ASSERT_TRUE(first && second);
  world.addRobot(first);
  world.addRobot(second);
  world.addRobot(first);  // already there
  EXPECT_EQ(world.robots().size(), 2u);
  world.removeRobot(first);
  ASSERT_EQ(world.robots().size(), 1u);
  EXPECT_EQ(*world.robots().begin(), second);
  world.removeRobot(first);  // no longer there: nothing happens
  EXPECT_EQ(world.robots().size(), 1u);
}

TEST(World, RobotsAreACopyOrderedByPointer) {
  World world;
  std::vector<boost::shared_ptr<Robot>> robots;
  for (int i = 0; i < 5; ++i) {
    robots.push_back(loadRobot("arm.urdf"));
    ASSERT_TRUE(robots.back());
    world.addRobot(robots.back());
  }
  std::set<boost::shared_ptr<Robot>> copy = world.robots();
  ASSERT_EQ(copy.size(), 5u);
  const Robot* previous = nullptr;
  for (const boost::shared_ptr<Robot>& robot : copy) {
    if (previous) {
      EXPECT_TRUE(std::less<const Robot*>()(previous, robot.get()));
    }
    previous = robot.get();
  }
  copy.clear();
  EXPECT_EQ(world.robots().size(), 5u);
}

TEST(World, NullRobotIsRefusedWithARecord) {
  World world;
  CapturedRecords captured;
  world.addRobot(nullptr);
  EXPECT_TRUE(world.robots().empty());
  EXPECT_EQ(captured.count(3, "null robot"), 1);
}

TEST(World, EngineDoesNothingOnceTheWorldIsGone) {
  const boost::shared_ptr<Robot> robot = loadRobot("arm.urdf");
  ASSERT_TRUE(robot);
  auto world = std::make_unique<World>();
  world->addRobot(robot);
  const boost::shared_ptr<ForwardKinematicEngine> engine = world->forwardKinematicEngine();
  robot->actuator("shoulder")->setCommand(1.0f);
  engine->run(100);
  EXPECT_EQ(engine->stepCount(), 1);
  EXPECT_FLOAT_EQ(robot->actuator("shoulder")->m_value, 0.1f);

  world.reset();
  engine->run(100);
  EXPECT_EQ(engine->stepCount(), 1);
  EXPECT_FLOAT_EQ(robot->actuator("shoulder")->m_value, 0.1f);
}

TEST(World, EngineDoesNotKeepTheRobotsAlive) {
  boost::shared_ptr<ForwardKinematicEngine> engine;
  boost::weak_ptr<Robot> watched;
  {
    World world;
    const boost::shared_ptr<Robot> robot = loadRobot("arm.urdf");
    ASSERT_TRUE(robot);
    world.addRobot(robot);
    watched = robot;
    engine = world.forwardKinematicEngine();
  }
  EXPECT_TRUE(watched.expired());
  engine->run(40);
  EXPECT_EQ(engine->stepCount(), 0);
}

TEST(World, EngineStepsEveryRobotAndCounts) {
  World world;
  const boost::shared_ptr<Robot> first = loadRobot("arm.urdf");
  const boost::shared_ptr<Robot> second = loadRobot("arm.urdf");
  ASSERT_TRUE(first && second);
  world.addRobot(first);
  world.addRobot(second);
  EXPECT_EQ(world.setActuatorCommands({"elbow"}, {-1.0f}), 1);
  world.forwardKinematicEngine()->run(250);
  world.forwardKinematicEngine()->run(0);  // no time: no motion, poses refreshed
  EXPECT_EQ(world.forwardKinematicEngine()->stepCount(), 2);
  for (const boost::shared_ptr<Robot>& robot : {first, second}) {
    EXPECT_FLOAT_EQ(robot->actuator("elbow")->m_value, -0.25f);
  }
}

}  // namespace
}  // namespace VX::NextGenView
