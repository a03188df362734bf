#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include <Eigen/Core>
#include <mk/math/transform.h>

#include "world_model/robot.h"

namespace VX::NextGenView {

// One joint of a robot's kinematic tree: the child link's frame is the
// parent link's frame, then the joint origin, then the turn about the axis.
struct Robot::JointModel {
  std::string name;
  boost::shared_ptr<Link> parent;
  boost::shared_ptr<Link> child;
  MK::Math::Transform origin;                          // parent link frame to joint frame
  Eigen::Vector3f axis = Eigen::Vector3f::UnitX();     // unit, in the joint frame
  boost::shared_ptr<Actuator> actuator;                // null for a fixed joint
  boost::shared_ptr<JointController> controller;       // null for a fixed joint

  // The joint frame for a parent frame and the given joint position.
  MK::Math::Transform jointFrame(const MK::Math::Transform& parentFrame, float position) const {
    return parentFrame * origin * MK::Math::Transform::fromAxisAngle(axis, position);
  }
};

}  // namespace VX::NextGenView
