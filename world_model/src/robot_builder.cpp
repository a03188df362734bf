#include "robot_builder.h"

#include <cmath>

#include <functional>
#include <new>

#include <boost/make_shared.hpp>

#include <ku/log.h>

#include "chain_builder.h"
#include "mirror_pairing.h"
#include "robot_joint_model.h"
#include "urdf_conversions.h"
#include "visual_converter.h"

namespace VX::NextGenView {

RobotBuilder::RobotBuilder(const UrdfOutline& outline, const urdf::ModelInterface& model,
                           const std::string& baseFolder)
    : m_outline(outline), m_model(model), m_baseFolder(baseFolder), m_robot(createRobot()) {}

// boost::shared_ptr compares by its reference count's address. With the robot
// and its count in one block, as boost::make_shared would place them, a
// world's std::set<boost::shared_ptr<Robot>> is ordered by robot address.
// make_shared itself cannot reach Robot's private constructor.
boost::shared_ptr<Robot> RobotBuilder::createRobot() {
  struct Storage {
    alignas(Robot) unsigned char bytes[sizeof(Robot)];
    Robot* robot = nullptr;
    ~Storage() {
      if (robot) robot->~Robot();
    }
  };
  const boost::shared_ptr<Storage> storage = boost::make_shared<Storage>();
  storage->robot = new (storage->bytes) Robot();
  return boost::shared_ptr<Robot>(storage, storage->robot);
}

RobotLoadResult RobotBuilder::build(const UrdfOutline& outline, const urdf::ModelInterface& model,
                                    const std::string& baseFolder) {
  RobotBuilder builder(outline, model, baseFolder);
  Robot& robot = *builder.m_robot;
  robot.m_name = outline.robotName;
  std::string error = builder.addLinks();
  if (error.empty()) error = builder.addJoints();
  if (!error.empty()) return RobotLoadResult{nullptr, error};

  RobotChains chains = buildChains(robot.m_name, robot.rootLink(), robot.m_joints, outline.annotations.chains);
  robot.m_rootTree = chains.rootTree;
  robot.m_chainOfLink = std::move(chains.chainOfLink);
  pairMirrorJoints(robot.m_joints, outline.annotations.mirrors);

  robot.m_basePosition = outline.annotations.basePosition;
  robot.m_heading = outline.annotations.baseHeading;
  robot.updateKinematics();
  return RobotLoadResult{builder.m_robot, std::string()};
}

std::vector<const UrdfJointOutline*> RobotBuilder::jointsFromRoot() const {
  std::vector<const UrdfJointOutline*> ordered;
  const std::function<void(const std::string&)> visit = [&](const std::string& link) {
    for (const UrdfJointOutline& joint : m_outline.joints) {
      if (joint.parent != link) continue;
      ordered.push_back(&joint);
      visit(joint.child);
    }
  };
  // The outline holds a tree: no loop, so the walk ends.
  visit(m_outline.rootLink);
  return ordered;
}

// Numbers that overflow single precision (or say "nan") would put a link at
// infinity; such descriptions are refused.
static bool isFinite(const Visual& visual) {
  return visual.origin.isometry().matrix().allFinite() && visual.boxSize.allFinite() &&
         std::isfinite(visual.radius) && std::isfinite(visual.length) && visual.meshScale.allFinite();
}

// Root first, then each joint's child in the order of the joints.
std::string RobotBuilder::addLinks() {
  std::vector<std::string> names{m_outline.rootLink};
  for (const UrdfJointOutline* joint : jointsFromRoot()) names.push_back(joint->child);
  for (const std::string& name : names) {
    const urdf::LinkConstSharedPtr source = m_model.getLink(name);
    if (!source) return "the URDF parser has no link \"" + name + "\"";
    boost::shared_ptr<Link> link(new Link(name, convertVisuals(*source, m_outline.materialColors, m_baseFolder)));
    for (const Visual& visual : link->visuals()) {
      if (!isFinite(visual)) return "the link \"" + name + "\" has a visual whose origin or size is not a finite number";
    }
    m_linksByName[name] = link;
    m_robot->m_links.push_back(link);
  }
  return {};
}

std::string RobotBuilder::addJoints() {
  for (const UrdfJointOutline* joint : jointsFromRoot()) {
    const std::string error = addJoint(*joint);
    if (!error.empty()) return error;
  }
  return {};
}

std::string RobotBuilder::addJoint(const UrdfJointOutline& source) {
  const urdf::JointConstSharedPtr joint = m_model.getJoint(source.name);
  if (!joint) return "the URDF parser has no joint \"" + source.name + "\"";
  Robot::JointModel model;
  model.name = source.name;
  model.parent = m_linksByName.at(source.parent);
  model.child = m_linksByName.at(source.child);
  model.origin = transformFromUrdf(joint->parent_to_joint_origin_transform);
  const std::string where = "line " + std::to_string(source.line) + ": the joint \"" + source.name + "\" ";
  if (!model.origin.isometry().matrix().allFinite()) return where + "has an origin that is not a finite number";

  const bool continuous = joint->type == urdf::Joint::CONTINUOUS;
  if (continuous || joint->type == urdf::Joint::REVOLUTE) {
    const Eigen::Vector3f axis = vectorFromUrdf(joint->axis);
    if (!axis.allFinite()) return where + "has an axis that is not a finite number";
    if (axis.norm() < 1e-6f) return where + "has a zero axis";
    model.axis = axis.normalized();
    const float lower = joint->limits ? static_cast<float>(joint->limits->lower) : 0.0f;
    const float upper = joint->limits ? static_cast<float>(joint->limits->upper) : 0.0f;
    const float velocity = joint->limits ? static_cast<float>(joint->limits->velocity) : 0.0f;
    if (!continuous && !(std::isfinite(lower) && std::isfinite(upper))) {
      return where + "has limits that are not finite numbers";
    }
    if (!continuous && lower > upper) return where + "has a lower limit above its upper limit";
    if (!(velocity > 0.0f)) {
      ku::log::LogStream(ku::log::Verbose, "build", "world.model", __FILE__, __LINE__)
          << "The joint " << source.name << " gives no velocity; it moves at " << Actuator::a_defaultMaxVelocity
          << " rad/s" << std::endl;
    }
    model.actuator.reset(new Actuator(source.name, lower, upper, velocity, continuous));
    model.controller.reset(new JointController(source.name + "_controller", model.actuator, model.axis));
    m_robot->m_actuators.push_back(model.actuator);
    m_robot->m_jointControllers.push_back(model.controller);
  }
  m_robot->m_joints.push_back(model);
  return {};
}

}  // namespace VX::NextGenView
