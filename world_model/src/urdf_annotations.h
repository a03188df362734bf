#pragma once
// What this library reads from a URDF beyond the URDF format itself. URDF
// parsers ignore unknown elements, so these are children of <robot>:
//
//   <chain name="LArm" root="LShoulderLink"/>  a body chain: the subtree from
//                                              that link, up to other chains' roots
//   <mirror joint="LElbowRoll" twin="RElbowRoll"/>  a pair of twin joints
//   <base x="0" y="0" z="0.33" heading="0"/>   the base pose after loading
//                                              (metres, radians about +Z)

#include <string>
#include <vector>

#include <mk/math/transform.h>

namespace tinyxml2 {
class XMLElement;
}

namespace VX::NextGenView {

struct ChainAnnotation {
  std::string name;
  std::string rootLink;
  int line = 0;
};

struct MirrorAnnotation {
  std::string joint;
  std::string twin;
  int line = 0;
};

struct UrdfAnnotations {
  std::vector<ChainAnnotation> chains;    // in document order
  std::vector<MirrorAnnotation> mirrors;  // in document order
  MK::Math::Position3D basePosition;
  float baseHeading = 0.0f;
  bool baseGiven = false;  // a <base> element was there
};

// Reads the annotations among the children of <robot>. Returns an error
// message naming the line of a malformed annotation, or an empty string.
// Whether the names refer to existing links and joints is checked later.
std::string readUrdfAnnotations(const tinyxml2::XMLElement& robot, UrdfAnnotations& annotations);

}  // namespace VX::NextGenView
