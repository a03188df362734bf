#include "mirror_pairing.h"

#include <cctype>
#include <map>
#include <string>
#include <utility>

#include <ku/log.h>

namespace VX::NextGenView {
namespace {

const float a_axisTolerance = 1e-3f;

// Side markers, left then right, at the start or at the end of a name.
const std::pair<const char*, const char*> a_sidePrefixes[] = {
    {"L", "R"}, {"l_", "r_"}, {"left_", "right_"}, {"Left", "Right"}, {"LEFT_", "RIGHT_"}};
const std::pair<const char*, const char*> a_sideSuffixes[] = {{"_l", "_r"}, {"_left", "_right"}, {"_L", "_R"}};

bool startsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }

bool endsWith(const std::string& text, const std::string& suffix) {
  return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// The right-side name of a left-side joint; empty when the name has no left marker.
std::string rightSideName(const std::string& name) {
  for (const auto& [left, right] : a_sidePrefixes) {
    const std::string prefix(left);
    if (!startsWith(name, prefix) || name.size() == prefix.size()) continue;
    // A bare "L" marks a side only before a capital, digit or underscore (not "Lift").
    const unsigned char next = static_cast<unsigned char>(name[prefix.size()]);
    if (prefix == "L" && !std::isupper(next) && !std::isdigit(next) && next != '_') continue;
    return right + name.substr(prefix.size());
  }
  for (const auto& [left, right] : a_sideSuffixes) {
    const std::string suffix(left);
    if (endsWith(name, suffix) && name.size() > suffix.size()) return name.substr(0, name.size() - suffix.size()) + right;
  }
  return {};
}

// Each joint's axis in the root link's frame with every joint at zero.
std::map<std::string, Eigen::Vector3f> restAxes(const std::vector<Robot::JointModel>& joints) {
  std::map<const Link*, MK::Math::Transform> frames;
  std::map<std::string, Eigen::Vector3f> axes;
  for (const Robot::JointModel& joint : joints) {
    const MK::Math::Transform frame = frames[joint.parent.get()] * joint.origin;  // identity for the root
    frames[joint.child.get()] = frame;
    axes[joint.name] = frame.applyToVector(joint.axis).normalized();
  }
  return axes;
}

bool isReversed(const std::string& joint, const Eigen::Vector3f& axis, const std::string& twin,
                const Eigen::Vector3f& twinAxis) {
  const Eigen::Vector3f image(-axis.x(), axis.y(), -axis.z());
  if ((twinAxis - image).norm() < a_axisTolerance) return false;
  if ((twinAxis + image).norm() < a_axisTolerance) return true;
  ku::log::LogStream(ku::log::Warning, "pairMirrorJoints", "world.model", __FILE__, __LINE__)
      << "The axes of the twin joints " << joint << " and " << twin
      << " are not mirror images of each other; the twin is taken as not reversed" << std::endl;
  return false;
}

}  // namespace

void pairMirrorJoints(const std::vector<Robot::JointModel>& joints, const std::vector<MirrorAnnotation>& annotated) {
  std::map<std::string, const Robot::JointModel*> movable;
  for (const Robot::JointModel& joint : joints) {
    if (joint.controller) movable[joint.name] = &joint;
  }
  const std::map<std::string, Eigen::Vector3f> axes = restAxes(joints);

  std::vector<std::pair<std::string, std::string>> pairs;
  for (const MirrorAnnotation& mirror : annotated) pairs.emplace_back(mirror.joint, mirror.twin);
  for (const Robot::JointModel& joint : joints) {
    const std::string twin = rightSideName(joint.name);
    if (joint.controller && !twin.empty() && movable.count(twin)) pairs.emplace_back(joint.name, twin);
  }

  for (const auto& [name, twinName] : pairs) {
    const auto first = movable.find(name);
    const auto second = movable.find(twinName);
    if (first == movable.end() || second == movable.end()) continue;
    const boost::shared_ptr<JointController>& controller = first->second->controller;
    const boost::shared_ptr<JointController>& twin = second->second->controller;
    // An annotated pair comes first and keeps its joints.
    if (controller->mirrorController() || twin->mirrorController()) continue;
    const bool reversed = isReversed(name, axes.at(name), twinName, axes.at(twinName));
    controller->setMirror(twin, reversed);
    twin->setMirror(controller, reversed);
  }
}

}  // namespace VX::NextGenView
