#include "view_framing.h"

#include <algorithm>
#include <cmath>

namespace VX::NextGenView {

bool ViewFraming::fit(const Ogre::AxisAlignedBox& box, const Ogre::Radian& fieldOfViewY, float aspectRatio,
                      float nearClipDistance, ViewFraming* framing) {
  if (!box.isFinite() || !framing) return false;
  const float tanHalfY = std::tan(fieldOfViewY.valueRadians() / 2.0f);
  const float tanHalfX = tanHalfY * aspectRatio;
  if (!(tanHalfY > 0.0f) || !(tanHalfX > 0.0f) || !std::isfinite(tanHalfX)) return false;

  const Ogre::Vector3 half = box.getHalfSize();
  // A viewpoint on `depth`'s axis sees the other two across and up; its
  // nearest face is `depth` closer than the target and must still fit.
  auto distanceFor = [&](float depth, float across, float up) {
    const float fitAcross = across / (tanHalfX * a_fill);
    const float fitUp = up / (tanHalfY * a_fill);
    return depth + std::max({fitAcross, fitUp, 2.0f * nearClipDistance});
  };
  // Front and back look along X (Y across, Z up); left and right along Y
  // (X across, Z up); top and bottom along Z (Y across, X up).
  const float distance = std::max({distanceFor(half.x, half.y, half.z), distanceFor(half.y, half.x, half.z),
                                   distanceFor(half.z, half.y, half.x)});
  if (!std::isfinite(distance) || distance <= 0.0f) return false;
  framing->targetOffset = box.getCenter();
  framing->homeDistance = distance;
  return true;
}

}  // namespace VX::NextGenView
