#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include <Eigen/Core>
#include <mk/math/transform.h>

#include "world_model/robot.h"

namespace VX::NextGenView {

// One joint of a robot's kinematic tree: the child link's frame is the
// parent link's frame, then the joint origin, then the turn about the axis
// (or, for a prismatic joint, the slide along it).
struct Robot::JointModel {
  std::string name;
  boost::shared_ptr<Link> parent;
  boost::shared_ptr<Link> child;
  MK::Math::Transform origin;                          // parent link frame to joint frame
  Eigen::Vector3f axis = Eigen::Vector3f::UnitX();     // unit, in the joint frame
  bool prismatic = false;                              // slides along the axis (metres)
  boost::shared_ptr<Actuator> actuator;                // null for a fixed or mimicking joint
  boost::shared_ptr<JointController> controller;       // only for a turning joint with an actuator

  // A mimicking joint sits at mimicMultiplier × leader + mimicOffset, the
  // leader being the actuator at the end of a chain of mimics (null when
  // that chain ends at a fixed or unknown joint: the leader then counts 0).
  bool mimic = false;
  std::string mimicJoint;
  boost::shared_ptr<Actuator> mimicLeader;
  float mimicMultiplier = 1.0f;
  float mimicOffset = 0.0f;

  // The joint's present position: its actuator's, its leader's image, or 0.
  float position() const {
    if (actuator) return actuator->m_value;
    if (mimic) return mimicMultiplier * (mimicLeader ? mimicLeader->m_value : 0.0f) + mimicOffset;
    return 0.0f;
  }

  // The joint frame for a parent frame and the given joint position.
  MK::Math::Transform jointFrame(const MK::Math::Transform& parentFrame, float position) const {
    if (prismatic) {
      const Eigen::Vector3f shift = axis * position;
      return parentFrame * origin * MK::Math::Transform::fromPosition(shift.x(), shift.y(), shift.z());
    }
    return parentFrame * origin * MK::Math::Transform::fromAxisAngle(axis, position);
  }
};

}  // namespace VX::NextGenView
