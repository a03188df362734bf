#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "robot_joint_model.h"
#include "urdf_annotations.h"

namespace VX::NextGenView {

// The body chains of a robot and the chain of each link.
struct RobotChains {
  boost::shared_ptr<ActuatorsTree> rootTree;
  std::map<std::string, std::string> chainOfLink;  // links in no chain are absent
};

// Each annotated chain holds the subtree from its root link, except the
// subtrees of other chains' roots. Without annotations, every joint leaving
// the root link starts a chain named after its child link. Joints are given
// parent before child; a chain's links and actuators keep that order.
RobotChains buildChains(const std::string& robotName, const boost::shared_ptr<Link>& rootLink,
                        const std::vector<Robot::JointModel>& joints, const std::vector<ChainAnnotation>& annotated);

}  // namespace VX::NextGenView
