#include "picture_pose.h"

#include <string>

#include <world_model/actuator.h>
#include <world_model/robot.h>

namespace VX::NextGenView {
namespace {

constexpr float a_quarterTurn = 1.5708f;

// Joint values of the left and right twins, in each joint's own sense: the
// roll and yaw joints of the bundled robot turn the same way on both sides,
// so a mirrored motion takes opposite values. The arms spread out with the
// forearms bent toward the viewer (shorter on the picture); the right arm
// bends a little more, because its clickable area is the smaller one. The
// legs stand a little apart with the feet flat.
struct TwinJoints {
  const char* joint;
  float left;
  float right;
};
const TwinJoints a_pose[] = {
    {"ShoulderRoll", 0.5f, -0.45f},
    {"ElbowYaw", a_quarterTurn, -a_quarterTurn},  // elbow roll now bends toward the viewer
    {"ElbowRoll", -0.95f, 1.15f},
    {"HipRoll", 0.08f, -0.08f},
    {"AnkleRoll", -0.08f, 0.08f},
};

void setJoint(const boost::shared_ptr<Robot>& robot, const std::string& name, float value) {
  if (const boost::shared_ptr<Actuator> actuator = robot->actuator(name)) {
    actuator->setCommand(value);
    actuator->m_value = actuator->command();  // clamped to the limits
  }
}

}  // namespace

void PicturePose::apply(const boost::shared_ptr<Robot>& robot) {
  for (const TwinJoints& twins : a_pose) {
    setJoint(robot, std::string("L") + twins.joint, twins.left);
    setJoint(robot, std::string("R") + twins.joint, twins.right);
  }
  robot->updateKinematics();
}

}  // namespace VX::NextGenView
