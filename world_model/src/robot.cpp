#include "world_model/robot.h"

#include "robot_joint_model.h"

namespace VX::NextGenView {
namespace {

const char* const a_torsoLinkName = "TorsoLink";

}  // namespace

Robot::Robot() : m_rootTree(new ActuatorsTree("")) {}

Robot::~Robot() = default;

boost::shared_ptr<Link> Robot::rootLink() const { return m_links.empty() ? nullptr : m_links.front(); }

boost::shared_ptr<Link> Robot::link(const std::string& name) const {
  for (const boost::shared_ptr<Link>& candidate : m_links) {
    if (candidate->name() == name) return candidate;
  }
  // Views and cameras follow "TorsoLink"; any robot answers with its root.
  if (name == a_torsoLinkName) return rootLink();
  return nullptr;
}

boost::shared_ptr<Actuator> Robot::actuator(const std::string& name) const {
  for (const boost::shared_ptr<Actuator>& candidate : m_actuators) {
    if (candidate->name() == name) return candidate;
  }
  return nullptr;
}

std::string Robot::actuatorsTreeName(const std::string& linkName) const {
  const auto found = m_chainOfLink.find(linkName);
  return found == m_chainOfLink.end() ? std::string() : found->second;
}

std::vector<boost::shared_ptr<Link>> Robot::linksTree(const std::string& chainName) const {
  if (!m_rootTree) return {};
  for (const boost::shared_ptr<ActuatorsTree>& chain : m_rootTree->children()) {
    if (chain->name() == chainName) return chain->links();
  }
  return {};
}

void Robot::updateKinematics() {
  const boost::shared_ptr<Link> root = rootLink();
  if (!root) return;
  root->setGlobalTransform(MK::Math::Transform::fromPosition(m_basePosition) * MK::Math::Transform::fromRotZ(m_heading));
  // m_joints lists every parent joint before its children.
  for (const JointModel& joint : m_joints) {
    const float position = joint.actuator ? joint.actuator->m_value : 0.0f;
    const MK::Math::Transform frame = joint.jointFrame(joint.parent->globalTransform(), position);
    joint.child->setGlobalTransform(frame);
    if (joint.controller) joint.controller->setGlobalTransform(frame);
  }
}

}  // namespace VX::NextGenView
