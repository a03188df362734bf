#include "world_model/forward_kinematic_engine.h"

#include <utility>

#include "world_model/robot.h"

namespace VX::NextGenView {

ForwardKinematicEngine::ForwardKinematicEngine(boost::weak_ptr<std::set<boost::shared_ptr<Robot>>> robots)
    : m_robots(std::move(robots)) {}

void ForwardKinematicEngine::run(int periodMs) {
  // The strong reference lives only for this step: the engine never keeps
  // the world's robots alive.
  const boost::shared_ptr<std::set<boost::shared_ptr<Robot>>> robots = m_robots.lock();
  if (!robots) return;
  const float seconds = periodMs > 0 ? static_cast<float>(periodMs) / 1000.0f : 0.0f;
  for (const boost::shared_ptr<Robot>& robot : *robots) {
    if (!robot) continue;
    for (const boost::shared_ptr<Actuator>& actuator : robot->actuators()) actuator->step(seconds);
    robot->updateKinematics();
  }
  ++m_steps;
}

}  // namespace VX::NextGenView
