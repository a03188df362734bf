// Feeds arbitrary text to the URDF loader, then exercises everything the views
// read from a robot that loaded: chains, twins, controllers, kinematics.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include <ku/log.h>

#include <world_model/forward_kinematic_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

using VX::NextGenView::Robot;

namespace {

void check(bool condition) {
  if (!condition) __builtin_trap();
}

bool finite(const MK::Math::Transform& transform) { return transform.isometry().matrix().allFinite(); }

void exercise(const boost::shared_ptr<Robot>& robot) {
  check(robot->rootLink() != nullptr);
  check(robot->link("TorsoLink") != nullptr);  // the root stands in for a missing torso
  for (const auto& chain : robot->rootTree()->children()) {
    check(!robot->linksTree(chain->name()).empty() || chain->links().empty());
    for (const auto& link : chain->links()) check(robot->actuatorsTreeName(link->name()) == chain->name());
  }
  for (const auto& controller : robot->jointControllers()) {
    check(controller->actuator() != nullptr);
    const Eigen::Vector3f axis = controller->rotationAxis();
    check(std::fabs(axis.norm() - 1.0f) < 1e-3f);
    if (const auto twin = controller->mirrorController()) check(twin->mirrorController() == controller);
    controller->addRelativeCommand(0.25f);
    controller->resetCommand();
  }
  VX::NextGenView::World world;
  world.addRobot(robot);
  for (const auto& actuator : robot->actuators()) actuator->setCommand(actuator->upperLimit());
  for (int step = 0; step < 3; ++step) world.forwardKinematicEngine()->run(40);
  for (const auto& link : robot->links()) check(finite(link->globalTransform()));
}

}  // namespace

// Records of rejected input would flood the output: keep them off stderr.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ku::log::removeSink(ku::log::defaultSinkId());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string xml(reinterpret_cast<const char*>(data), size);
  const VX::NextGenView::RobotLoadResult result = Robot::loadFromUrdfString(xml, "/nonexistent");
  // Exactly one of the two: a robot, or an error saying why not.
  check(static_cast<bool>(result.robot) == result.error.empty());
  if (result.robot) exercise(result.robot);
  return 0;
}
