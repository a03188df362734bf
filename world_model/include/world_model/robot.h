#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include <mk/math/transform.h>

#include "world_model/actuator.h"
#include "world_model/actuators_tree.h"
#include "world_model/joint_controller.h"
#include "world_model/joint_description.h"
#include "world_model/link.h"

namespace VX::NextGenView {

class Robot;

// What loading a robot description gives: a robot, or an error and no robot.
struct RobotLoadResult {
  boost::shared_ptr<Robot> robot;
  std::string error;  // empty on success
};

class Robot {
 public:
  // Loads a URDF file; never throws and never returns a half-built robot.
  static RobotLoadResult loadFromUrdfFile(const std::string& path);
  // The same from URDF text; relative mesh files resolve against baseFolder.
  static RobotLoadResult loadFromUrdfString(const std::string& xml, const std::string& baseFolder = "");

  ~Robot();

  const std::string& name() const { return m_name; }

  // The pose of the root link in the world: a position and a heading about +Z.
  // After loading, the description's <base> annotation, or the origin.
  // A position or heading that is not finite is refused with an error record
  // (category "world.model"): the robot keeps its pose.
  MK::Math::Position3D basePosition() const { return m_basePosition; }
  void setBasePosition(const MK::Math::Position3D& position);
  float heading() const { return m_heading; }  // radians about +Z
  void setHeading(float radians);
  // Whether the description placed the robot with a <base> annotation.
  bool hasBaseAnnotation() const { return m_baseGiven; }

  // What the robot says now; empty when it says nothing.
  const std::string& sentence() const { return m_sentence; }
  void setSentence(const std::string& sentence) { m_sentence = sentence; }

  // The link of that name, or null. "TorsoLink" falls back to the root link
  // for robots that have no link of that name, so a camera can follow any robot.
  boost::shared_ptr<Link> link(const std::string& name) const;
  const std::vector<boost::shared_ptr<Link>>& links() const { return m_links; }  // root first
  boost::shared_ptr<Link> rootLink() const;

  const std::vector<boost::shared_ptr<Actuator>>& actuators() const { return m_actuators; }
  boost::shared_ptr<Actuator> actuator(const std::string& name) const;
  // One controller per revolute or continuous joint (prismatic and mimicking
  // joints have none).
  const std::vector<boost::shared_ptr<JointController>>& jointControllers() const { return m_jointControllers; }
  // Every joint of the description, in document order.
  const std::vector<JointDescription>& joints() const { return m_jointDescriptions; }
  // The joint of that name when it mimics another one; null otherwise.
  const JointDescription* mimicJoint(const std::string& name) const;
  // The link a joint controller turns (its joint's child); null for a
  // controller of another robot.
  boost::shared_ptr<Link> turnedLink(const boost::shared_ptr<JointController>& controller) const;

  // The chain holding a link; empty when the link belongs to no chain.
  std::string actuatorsTreeName(const std::string& linkName) const;
  // The links of a chain, from the root out; empty for an unknown chain.
  std::vector<boost::shared_ptr<Link>> linksTree(const std::string& chainName) const;
  // The root tree: one child per body chain, in the description's order.
  boost::shared_ptr<ActuatorsTree> rootTree() const { return m_rootTree; }

  // Recomputes every link's and controller's global transform from the base
  // pose and the actuators' present positions.
  void updateKinematics();

  struct JointModel;  // the kinematic structure, defined by the implementation

 private:
  Robot();
  friend class RobotBuilder;

  std::string m_name;
  MK::Math::Position3D m_basePosition;
  float m_heading = 0.0f;
  bool m_baseGiven = false;
  std::string m_sentence;
  std::vector<boost::shared_ptr<Link>> m_links;
  std::vector<boost::shared_ptr<Actuator>> m_actuators;
  std::vector<boost::shared_ptr<JointController>> m_jointControllers;
  std::vector<JointModel> m_joints;  // parent before child
  std::vector<JointDescription> m_jointDescriptions;
  boost::shared_ptr<ActuatorsTree> m_rootTree;
  std::map<std::string, std::string> m_chainOfLink;
};

}  // namespace VX::NextGenView
