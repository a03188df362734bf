#include "world_model/actuators_tree.h"

#include <utility>

namespace VX::NextGenView {

ActuatorsTree::ActuatorsTree(std::string name) : m_name(std::move(name)) {}

void ActuatorsTree::addChild(boost::shared_ptr<ActuatorsTree> child) {
  if (child) m_children.push_back(std::move(child));
}

void ActuatorsTree::addActuator(boost::shared_ptr<Actuator> actuator) {
  if (actuator) m_actuators.push_back(std::move(actuator));
}

void ActuatorsTree::addLink(boost::shared_ptr<Link> link) {
  if (link) m_links.push_back(std::move(link));
}

}  // namespace VX::NextGenView
