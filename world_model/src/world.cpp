#include "world_model/world.h"

#include <algorithm>
#include <cmath>

#include <boost/make_shared.hpp>

#include <ku/log.h>

#include "world_model/forward_kinematic_engine.h"
#include "world_model/robot.h"

namespace VX::NextGenView {

World::World()
    : m_robots(boost::make_shared<std::set<boost::shared_ptr<Robot>>>()),
      m_engine(boost::make_shared<ForwardKinematicEngine>(m_robots)) {}

World::~World() = default;

// Not guarded: the world, its engine and the views share one thread.
std::set<boost::shared_ptr<Robot>> World::robots() const { return *m_robots; }

void World::addRobot(const boost::shared_ptr<Robot>& robot) {
  if (!robot) {
    ku::log::LogStream(ku::log::Warning, "addRobot", "world.model", __FILE__, __LINE__)
        << "A null robot is not added to the world" << std::endl;
    return;
  }
  m_robots->insert(robot);
}

void World::removeRobot(const boost::shared_ptr<Robot>& robot) { m_robots->erase(robot); }

int World::setActuatorCommands(const std::vector<std::string>& names, const std::vector<float>& values) {
  if (names.size() != values.size()) {
    ku::log::LogStream(ku::log::Warning, "setActuatorCommands", "world.model", __FILE__, __LINE__)
        << "Got " << names.size() << " actuator names and " << values.size()
        << " values; only the first " << std::min(names.size(), values.size()) << " pairs are applied" << std::endl;
  }
  const std::size_t count = std::min(names.size(), values.size());
  int applied = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!std::isfinite(values[i])) {
      ku::log::LogStream(ku::log::Error, "setActuatorCommands", "world.model", __FILE__, __LINE__)
          << "The command " << values[i] << " for actuator \"" << names[i]
          << "\" is not a finite number; it is refused" << std::endl;
      continue;
    }
    bool found = false;
    const JointDescription* mimic = nullptr;
    // Every robot that has an actuator of that name gets the command.
    for (const boost::shared_ptr<Robot>& robot : *m_robots) {
      if (const boost::shared_ptr<Actuator> actuator = robot->actuator(names[i])) {
        actuator->setCommand(values[i]);
        found = true;
      } else if (!mimic) {
        mimic = robot->mimicJoint(names[i]);
      }
    }
    if (found) {
      ++applied;
    } else if (mimic) {
      ku::log::LogStream(ku::log::Warning, "setActuatorCommands", "world.model", __FILE__, __LINE__)
          << "The joint \"" << names[i] << "\" mimics \"" << mimic->mimicJoint
          << "\" and takes no command of its own; its command is refused" << std::endl;
    } else {
      ku::log::LogStream(ku::log::Warning, "setActuatorCommands", "world.model", __FILE__, __LINE__)
          << "No robot has an actuator named \"" << names[i] << "\"; its command is skipped" << std::endl;
    }
  }
  return applied;
}

}  // namespace VX::NextGenView
