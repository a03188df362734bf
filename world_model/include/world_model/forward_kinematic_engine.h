#pragma once

#include <set>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

namespace VX::NextGenView {

class Robot;

// Moves every robot of a world one step: each actuator toward its command
// (bounded by its velocity and limits), then every link's global transform.
class ForwardKinematicEngine {
 public:
  explicit ForwardKinematicEngine(boost::weak_ptr<std::set<boost::shared_ptr<Robot>>> robots);

  // One step of periodMs milliseconds. Does nothing once the world is gone.
  void run(int periodMs);
  int stepCount() const { return m_steps; }

 private:
  boost::weak_ptr<std::set<boost::shared_ptr<Robot>>> m_robots;
  int m_steps = 0;
};

}  // namespace VX::NextGenView
