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
  robot.m_baseGiven = outline.annotations.baseGiven;
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
  MeshPathResolver meshPaths(m_baseFolder);
  std::vector<std::string> names{m_outline.rootLink};
  for (const UrdfJointOutline* joint : jointsFromRoot()) names.push_back(joint->child);
  for (const std::string& name : names) {
    const urdf::LinkConstSharedPtr source = m_model.getLink(name);
    if (!source) return "the URDF parser has no link \"" + name + "\"";
    boost::shared_ptr<Link> link(
        new Link(name, convertVisuals(*source, m_outline.materialColors, m_outline.materialTextures, meshPaths),
                 convertCollisions(*source, meshPaths)));
    for (const Visual& visual : link->visuals()) {
      if (!isFinite(visual)) return "the link \"" + name + "\" has a visual whose origin or size is not a finite number";
    }
    for (const Visual& collision : link->collisions()) {
      if (!isFinite(collision)) {
        return "the link \"" + name + "\" has a collision whose origin or size is not a finite number";
      }
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
  linkMimicJoints();
  sortDescriptionsByDocument();
  return {};
}

void RobotBuilder::sortDescriptionsByDocument() {
  std::vector<JointDescription> sorted;
  for (const UrdfJointOutline& joint : m_outline.joints) {
    for (const JointDescription& description : m_robot->m_jointDescriptions) {
      if (description.name == joint.name) sorted.push_back(description);
    }
  }
  m_robot->m_jointDescriptions = std::move(sorted);
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

  JointDescription description;
  description.name = source.name;
  description.type = source.type;
  if (joint->type == urdf::Joint::FLOATING || joint->type == urdf::Joint::PLANAR) {
    // Their free motion belongs to a simulator; a viewer shows them at rest.
    ku::log::LogStream(ku::log::Warning, "build", "world.model", __FILE__, __LINE__)
        << "The " << source.type << " joint " << source.name << " (line " << source.line
        << ") is held fixed at its origin" << std::endl;
  }
  const bool continuous = joint->type == urdf::Joint::CONTINUOUS;
  const bool prismatic = joint->type == urdf::Joint::PRISMATIC;
  if (continuous || prismatic || joint->type == urdf::Joint::REVOLUTE) {
    const std::string error = addMotion(*joint, where, model, description);
    if (!error.empty()) return error;
  }
  m_robot->m_joints.push_back(model);
  m_robot->m_jointDescriptions.push_back(description);
  return {};
}

std::string RobotBuilder::addMotion(const urdf::Joint& joint, const std::string& where, Robot::JointModel& model,
                                    JointDescription& description) {
  const Eigen::Vector3f axis = vectorFromUrdf(joint.axis);
  if (!axis.allFinite()) return where + "has an axis that is not a finite number";
  if (axis.norm() < 1e-6f) return where + "has a zero axis";
  model.axis = axis.normalized();
  const bool continuous = joint.type == urdf::Joint::CONTINUOUS;
  model.prismatic = joint.type == urdf::Joint::PRISMATIC;
  if (joint.mimic && !joint.mimic->joint_name.empty()) {
    // A follower: no actuator, no controller; the leader is found once all joints exist.
    model.mimic = true;
    model.mimicJoint = joint.mimic->joint_name;
    model.mimicMultiplier = static_cast<float>(joint.mimic->multiplier);
    model.mimicOffset = static_cast<float>(joint.mimic->offset);
    if (!std::isfinite(model.mimicMultiplier) || !std::isfinite(model.mimicOffset)) {
      return where + "has a <mimic> multiplier or offset that is not a finite number";
    }
    description.mimicJoint = model.mimicJoint;
    description.multiplier = model.mimicMultiplier;
    description.offset = model.mimicOffset;
    return {};
  }
  const float lower = joint.limits ? static_cast<float>(joint.limits->lower) : 0.0f;
  const float upper = joint.limits ? static_cast<float>(joint.limits->upper) : 0.0f;
  const float velocity = joint.limits ? static_cast<float>(joint.limits->velocity) : 0.0f;
  if (!continuous && !(std::isfinite(lower) && std::isfinite(upper))) {
    return where + "has limits that are not finite numbers";
  }
  if (!continuous && lower > upper) return where + "has a lower limit above its upper limit";
  const Actuator::Motion motion = model.prismatic ? Actuator::Motion::Translation : Actuator::Motion::Rotation;
  model.actuator.reset(new Actuator(model.name, lower, upper, velocity, continuous, motion));
  if (!(velocity > 0.0f)) {
    ku::log::LogStream(ku::log::Verbose, "build", "world.model", __FILE__, __LINE__)
        << "The joint " << model.name << " gives no velocity; it moves at " << model.actuator->maxVelocity()
        << (model.prismatic ? " m/s" : " rad/s") << std::endl;
  }
  m_robot->m_actuators.push_back(model.actuator);
  // Rings turn: a sliding joint has no controller.
  if (!model.prismatic) {
    model.controller.reset(new JointController(model.name + "_controller", model.actuator, model.axis));
    m_robot->m_jointControllers.push_back(model.controller);
  }
  return {};
}

// Each follower gets the actuator at the end of its chain of leaders, the
// multipliers and offsets composed along the way.
void RobotBuilder::linkMimicJoints() {
  // The joints as described, before any follower is rewritten below.
  const std::vector<Robot::JointModel> described = m_robot->m_joints;
  std::map<std::string, const Robot::JointModel*> byName;
  for (const Robot::JointModel& joint : described) byName[joint.name] = &joint;
  for (Robot::JointModel& joint : m_robot->m_joints) {
    if (!joint.mimic) continue;
    float multiplier = joint.mimicMultiplier;
    float offset = joint.mimicOffset;
    std::string leaderName = joint.mimicJoint;
    std::string problem;
    for (std::size_t hops = 0; problem.empty(); ++hops) {
      const auto leader = byName.find(leaderName);
      if (leader == byName.end()) {
        problem = "mimics the unknown joint \"" + leaderName + "\"";
      } else if (hops > described.size()) {
        problem = "is part of a loop of <mimic> joints";
      } else if (leader->second->actuator) {
        joint.mimicLeader = leader->second->actuator;
        break;
      } else if (!leader->second->mimic) {
        break;  // a fixed leader stands at 0
      } else {
        offset += multiplier * leader->second->mimicOffset;
        multiplier *= leader->second->mimicMultiplier;
        leaderName = leader->second->mimicJoint;
      }
    }
    if (!problem.empty()) {
      ku::log::LogStream(ku::log::Warning, "build", "world.model", __FILE__, __LINE__)
          << "The joint " << joint.name << " " << problem << "; it stays at its offset " << joint.mimicOffset
          << std::endl;
      multiplier = 0.0f;
      offset = joint.mimicOffset;
    }
    joint.mimicMultiplier = multiplier;
    joint.mimicOffset = offset;
  }
}

}  // namespace VX::NextGenView
