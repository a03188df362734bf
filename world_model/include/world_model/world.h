#pragma once

#include <set>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

namespace VX::NextGenView {

class ForwardKinematicEngine;
class Robot;

// The robots a host application works with, and the engine that moves them.
class World {
 public:
  World();
  ~World();

  // A copy of the robots, ordered by pointer.
  std::set<boost::shared_ptr<Robot>> robots() const;
  void addRobot(const boost::shared_ptr<Robot>& robot);
  void removeRobot(const boost::shared_ptr<Robot>& robot);

  boost::shared_ptr<ForwardKinematicEngine> forwardKinematicEngine() const { return m_engine; }

  // Sets actuator commands by name, as a host applies the widget's motor
  // values. Unknown names are skipped with a warning record, and so are
  // joints that mimic another (they follow their leader); values that are
  // not finite are skipped with an error record. Returns how many commands
  // were applied. The two lists pair up element by element.
  int setActuatorCommands(const std::vector<std::string>& names, const std::vector<float>& values);

 private:
  boost::shared_ptr<std::set<boost::shared_ptr<Robot>>> m_robots;
  boost::shared_ptr<ForwardKinematicEngine> m_engine;
};

}  // namespace VX::NextGenView
