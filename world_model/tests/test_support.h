#pragma once
// Helpers shared by the world model's tests.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ku/log.h>
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

// Captures every log record while alive.
class CapturedRecords {
 public:
  CapturedRecords() : m_id(ku::log::addSink([this](const ku::log::Record& r) { records.push_back(r); })) {}
  ~CapturedRecords() { ku::log::removeSink(m_id); }
  CapturedRecords(const CapturedRecords&) = delete;
  CapturedRecords& operator=(const CapturedRecords&) = delete;

  // Records of the world model at that level whose text contains the fragment.
  int count(int level, const std::string& fragment) const {
    int found = 0;
    for (const ku::log::Record& record : records) {
      if (record.level == level && record.category == "world.model" && record.text.find(fragment) != std::string::npos) {
        ++found;
      }
    }
    return found;
  }

  std::vector<ku::log::Record> records;

 private:
  ku::log::SinkId m_id;
};

inline Eigen::Vector3f translationOf(const boost::shared_ptr<Link>& link) {
  return link->globalTransform().translation();
}

}  // namespace VX::NextGenView::test
