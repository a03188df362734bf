#pragma once

#include <OgreAxisAlignedBox.h>
#include <OgreMath.h>
#include <OgreVector.h>

namespace VX::NextGenView {

// How the orbit camera should stand so that a box is seen whole from each of
// its six viewpoints: where it orbits (the box's centre) and how far out its
// home pose is. The box is given in the camera target's frame (the followed
// point, turned by the followed robot's heading), in which the viewpoints
// look along the axes.
struct ViewFraming {
  // The share of the view's half-width and half-height the box may take at
  // its nearest face: the rest is margin.
  static constexpr float a_fill = 0.8f;

  Ogre::Vector3 targetOffset = Ogre::Vector3::ZERO;
  float homeDistance = 1.0f;

  // Null or infinite boxes, or a view without a valid frustum, give no
  // framing (false).
  static bool fit(const Ogre::AxisAlignedBox& box, const Ogre::Radian& fieldOfViewY, float aspectRatio,
                  float nearClipDistance, ViewFraming* framing);
};

}  // namespace VX::NextGenView
