#pragma once

namespace VX::NextGenView {

// How large a joint's ring is. A ring keeps the robot's proportion (7 % of
// its size: about 4 cm on the 0.55 m bundled robot) unless the link it turns
// is far from the robot's typical limb: then the ring follows the link, so
// that a 2 m humanoid's finger rings do not drown its hand and a 5 cm
// finger's rings do not hide inside it. A lone ring stays within bounds of
// the robot's size; rings nested around one joint centre (a shoulder's pitch
// and roll) each grow past the last, and so may exceed a_largestToRobotSize.
struct RingSizing {
  static constexpr float a_ringToRobotSize = 0.07f;
  // Around a link: at least this fraction of its largest side (its sides then
  // stay inside the ring) and at most this multiple of it.
  static constexpr float a_smallestToLinkSize = 0.3f;
  static constexpr float a_largestToLinkSize = 1.9f;
  static constexpr float a_smallestToRobotSize = 0.02f;
  static constexpr float a_largestToRobotSize = 0.15f;
  static constexpr float a_defaultRadius = 0.04f;

  // `robotExtent` and `linkExtent` are the largest sides of the boxes around
  // the robot's and the turned link's geometry; zero (or not finite) when
  // they have none. A link without geometry gets the robot's ring size.
  static float radius(float robotExtent, float linkExtent);
};

}  // namespace VX::NextGenView
