#include "ring_sizing.h"

#include <algorithm>
#include <cmath>

namespace VX::NextGenView {

float RingSizing::radius(float robotExtent, float linkExtent) {
  if (!std::isfinite(robotExtent) || robotExtent <= 0.0f) return a_defaultRadius;
  const float robotRing = a_ringToRobotSize * robotExtent;
  if (!std::isfinite(linkExtent) || linkExtent <= 0.0f) return robotRing;
  const float aroundLink = std::clamp(robotRing, a_smallestToLinkSize * linkExtent, a_largestToLinkSize * linkExtent);
  return std::clamp(aroundLink, a_smallestToRobotSize * robotExtent, a_largestToRobotSize * robotExtent);
}

}  // namespace VX::NextGenView
