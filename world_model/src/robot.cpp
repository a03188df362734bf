#include "world_model/robot.h"

#include <cmath>

#include <ku/log.h>

#include "robot_joint_model.h"

namespace VX::NextGenView {
namespace {

const char* const a_torsoLinkName = "TorsoLink";

}  // namespace

Robot::Robot() : m_rootTree(new ActuatorsTree("")) {}

Robot::~Robot() = default;

void Robot::setBasePosition(const MK::Math::Position3D& position) {
  if (!std::isfinite(position.x) || !std::isfinite(position.y) || !std::isfinite(position.z)) {
    ku::log::LogStream(ku::log::Error, "setBasePosition", "world.model", __FILE__, __LINE__)
        << "Robot " << m_name << " refuses the base position (" << position.x << ", " << position.y << ", "
        << position.z << "): not a finite position" << std::endl;
    return;
  }
  m_basePosition = position;
}

void Robot::setHeading(float radians) {
  if (!std::isfinite(radians)) {
    ku::log::LogStream(ku::log::Error, "setHeading", "world.model", __FILE__, __LINE__)
        << "Robot " << m_name << " refuses the heading " << radians << ": not a finite angle" << std::endl;
    return;
  }
  m_heading = radians;
}

boost::shared_ptr<Link> Robot::rootLink() const { return m_links.empty() ? nullptr : m_links.front(); }

boost::shared_ptr<Link> Robot::turnedLink(const boost::shared_ptr<JointController>& controller) const {
  for (const JointModel& joint : m_joints) {
    if (controller && joint.controller == controller) return joint.child;
  }
  return nullptr;
}

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

const JointDescription* Robot::mimicJoint(const std::string& name) const {
  for (const JointDescription& joint : m_jointDescriptions) {
    if (joint.name == name && joint.isMimic()) return &joint;
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
    const MK::Math::Transform frame = joint.jointFrame(joint.parent->globalTransform(), joint.position());
    joint.child->setGlobalTransform(frame);
    if (joint.controller) joint.controller->setGlobalTransform(frame);
  }
}

}  // namespace VX::NextGenView
