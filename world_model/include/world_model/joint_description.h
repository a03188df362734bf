#pragma once

#include <string>

namespace VX::NextGenView {

// What the robot description says of one joint, for hosts that list or count
// joints. A mimicking joint follows its leader (position = multiplier ×
// leader + offset): it has no actuator of its own and takes no command.
struct JointDescription {
  std::string name;
  // As written: "revolute", "continuous", "prismatic", "fixed", "floating" or
  // "planar" (the last two are held fixed at their origin).
  std::string type;
  std::string mimicJoint;  // the leader's name; empty for a joint that mimics none
  float multiplier = 1.0f;
  float offset = 0.0f;

  bool isMimic() const { return !mimicJoint.empty(); }
};

}  // namespace VX::NextGenView
