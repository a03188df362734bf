#pragma once
// Helpers shared by the world model's tests.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ku/log.h>
#include <ku/record_capture.h>
#include <world_model/robot.h>

namespace VX::NextGenView::test {

inline std::string dataFile(const std::string& name) { return std::string(WORLD_MODEL_TEST_DATA) + "/" + name; }

// Loads a robot of the test data, failing the test when it does not load.
inline boost::shared_ptr<Robot> loadRobot(const std::string& name) {
  const RobotLoadResult result = Robot::loadFromUrdfFile(dataFile(name));
  EXPECT_TRUE(result.robot) << name << ": " << result.error;
  EXPECT_EQ(result.error, "");
  return result.robot;
}

// Captures every log record while alive; counts the world model's records.
class CapturedRecords : public ku::log::RecordCapture {
 public:
  int count(int level, const std::string& fragment) const {
    return ku::log::RecordCapture::count(level, "world.model", fragment);
  }
};

inline Eigen::Vector3f translationOf(const boost::shared_ptr<Link>& link) {
  return link->globalTransform().translation();
}

}  // namespace VX::NextGenView::test
