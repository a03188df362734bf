#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <Eigen/Core>

#include "world_model/frame.h"

namespace VX::NextGenView {

class Actuator;

// The on-screen handle of a revolute or continuous joint. Its frame has a
// name of its own (the joint's name followed by "_controller") and sits at
// the joint, in the child link's joint frame.
class JointController : public Frame {
 public:
  JointController(std::string name, boost::shared_ptr<Actuator> actuator, Eigen::Vector3f localAxis);

  boost::shared_ptr<Actuator> actuator() const { return m_actuator; }

  // The joint axis (unit length) and a point on it, in world coordinates.
  Eigen::Vector3f rotationAxis() const;
  Eigen::Vector3f rotationCenter() const;
  // The axis in the joint frame, as the description gives it (unit length).
  const Eigen::Vector3f& localAxis() const { return m_localAxis; }

  // The joint on the other side of the robot; null when there is none.
  boost::shared_ptr<JointController> mirrorController() const { return m_mirror.lock(); }
  // True when the twin turns with the opposite sign for a mirrored motion.
  bool mirrorReversed() const { return m_mirrorReversed; }
  void setMirror(const boost::shared_ptr<JointController>& twin, bool reversed);

  // The target being dragged toward, shown by the scene: the first relative
  // command starts from the actuator's present position.
  void addRelativeCommand(float angle);
  void resetCommand();
  bool hasCommand() const { return m_hasCommand; }
  float commandTarget() const { return m_commandTarget; }

 private:
  boost::shared_ptr<Actuator> m_actuator;
  Eigen::Vector3f m_localAxis;
  boost::weak_ptr<JointController> m_mirror;
  bool m_mirrorReversed = false;
  bool m_hasCommand = false;
  float m_commandTarget = 0.0f;
};

}  // namespace VX::NextGenView
