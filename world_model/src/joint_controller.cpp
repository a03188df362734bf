#include "world_model/joint_controller.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "world_model/actuator.h"

namespace VX::NextGenView {
namespace {

// A zero axis cannot be turned about; the description's default axis stands in.
Eigen::Vector3f unitAxis(const Eigen::Vector3f& axis) {
  const float norm = axis.norm();
  return norm > 1e-6f ? Eigen::Vector3f(axis / norm) : Eigen::Vector3f::UnitX();
}

}  // namespace

JointController::JointController(std::string name, boost::shared_ptr<Actuator> actuator, Eigen::Vector3f localAxis)
    : Frame(std::move(name)), m_actuator(std::move(actuator)), m_localAxis(unitAxis(localAxis)) {}

// The frame turns with the joint about its own axis, so the axis keeps its
// direction in the frame and the frame's origin lies on it.
Eigen::Vector3f JointController::rotationAxis() const {
  return unitAxis(globalTransform().applyToVector(m_localAxis));
}

Eigen::Vector3f JointController::rotationCenter() const { return globalTransform().translation(); }

void JointController::setMirror(const boost::shared_ptr<JointController>& twin, bool reversed) {
  m_mirror = twin;
  m_mirrorReversed = twin ? reversed : false;
}

void JointController::addRelativeCommand(float angle) {
  // A drag that cannot tell its direction gives a not-a-number angle: the
  // target keeps where it was rather than poisoning the scene.
  if (!m_actuator || !std::isfinite(angle)) return;
  if (!m_hasCommand) {
    m_commandTarget = m_actuator->m_value;
    m_hasCommand = true;
  }
  // The target stays where the joint can go.
  m_commandTarget = std::clamp(m_commandTarget + angle, m_actuator->lowerLimit(), m_actuator->upperLimit());
}

void JointController::resetCommand() {
  m_hasCommand = false;
  m_commandTarget = m_actuator ? m_actuator->m_value : 0.0f;
}

}  // namespace VX::NextGenView
