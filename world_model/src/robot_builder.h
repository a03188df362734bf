#pragma once

#include <string>

#include <urdf_model/model.h>

#include "urdf_outline.h"
#include "robot_joint_model.h"
#include "world_model/robot.h"

namespace VX::NextGenView {

// Makes a Robot out of a checked URDF outline and urdfdom's model of the
// same description: links with their visuals, joints parent before child,
// an actuator and a controller per moving joint, chains and twins, the base
// pose of the <base> annotation, and the kinematics of that pose. Floating
// and planar joints are held fixed (with a warning record); a <mimic> joint
// follows its leader and has neither actuator nor controller.
class RobotBuilder {
 public:
  // A URDF velocity of zero or none gives Actuator::a_defaultMaxVelocity.
  static RobotLoadResult build(const UrdfOutline& outline, const urdf::ModelInterface& model,
                               const std::string& baseFolder);

 private:
  RobotBuilder(const UrdfOutline& outline, const urdf::ModelInterface& model, const std::string& baseFolder);

  // A robot sharing one allocation with its reference count.
  static boost::shared_ptr<Robot> createRobot();

  std::string addLinks();
  std::string addJoints();
  std::string addJoint(const UrdfJointOutline& source);
  // The actuator (and, for a turning joint, the controller) of a moving
  // joint, or its <mimic> leader's name.
  std::string addMotion(const urdf::Joint& joint, const std::string& where, Robot::JointModel& model,
                        JointDescription& description);
  void linkMimicJoints();
  void sortDescriptionsByDocument();
  // The joints in depth-first order from the root, siblings in document order.
  std::vector<const UrdfJointOutline*> jointsFromRoot() const;

  const UrdfOutline& m_outline;
  const urdf::ModelInterface& m_model;
  const std::string& m_baseFolder;
  boost::shared_ptr<Robot> m_robot;
  std::map<std::string, boost::shared_ptr<Link>> m_linksByName;
};

}  // namespace VX::NextGenView
