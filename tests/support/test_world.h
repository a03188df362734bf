#pragma once
// Worlds for widget tests: the bundled robot, or robots from URDF text.

#include <gtest/gtest.h>

#include <string>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <world_model/robot.h>
#include <world_model/world.h>

namespace testing_support {

inline std::string bundledRobotPath() { return std::string(RENDERWIDGET_BUILD_DATA_DIR) + "/robots/zel/zel.urdf"; }

inline boost::shared_ptr<VX::NextGenView::Robot> loadRobot(const std::string& path = bundledRobotPath()) {
  VX::NextGenView::RobotLoadResult result = VX::NextGenView::Robot::loadFromUrdfFile(path);
  EXPECT_TRUE(result.robot) << result.error;
  return result.robot;
}

inline boost::shared_ptr<VX::NextGenView::World> worldWithBundledRobot() {
  auto world = boost::make_shared<VX::NextGenView::World>();
  if (auto robot = loadRobot()) world->addRobot(robot);
  return world;
}

}  // namespace testing_support
