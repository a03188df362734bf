#pragma once

#include <map>
#include <string>
#include <vector>

#include <Eigen/Core>

#include "urdf_annotations.h"

namespace VX::NextGenView {

struct UrdfJointOutline {
  std::string name;
  std::string type;
  std::string parent;
  std::string child;
  int line = 0;
};

// The structure of a URDF read straight from its XML: what the URDF parser
// does not keep (document order, line numbers, annotations) and what it does
// not report clearly (why a description is rejected).
struct UrdfOutline {
  std::string robotName;
  std::string rootLink;
  std::vector<std::string> links;        // document order
  std::vector<UrdfJointOutline> joints;  // document order
  // Every named material that has a colour, robot-level definitions first.
  std::map<std::string, Eigen::Vector4f> materialColors;
  // Every named material that has a <texture filename>, as written, likewise.
  std::map<std::string, std::string> materialTextures;
  UrdfAnnotations annotations;
};

// Reads and checks the outline: well-formed XML, a named <robot>, links,
// joints of a supported type between known links, one root and no link
// unreachable from it, annotations naming existing links and joints.
// Returns an error message (with a line number where there is one), or an
// empty string when the description is sound.
std::string readUrdfOutline(const std::string& xml, UrdfOutline& outline);

}  // namespace VX::NextGenView
