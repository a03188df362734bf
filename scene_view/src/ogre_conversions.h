#pragma once
// World-model types to OGRE types.

#include <Eigen/Core>
#include <OgreMatrix4.h>
#include <OgreNode.h>
#include <OgreQuaternion.h>
#include <OgreVector.h>

#include <mk/math/transform.h>

namespace VX::NextGenView {

inline Ogre::Vector3 toOgreVector(const Eigen::Vector3f& v) { return Ogre::Vector3(v.x(), v.y(), v.z()); }

inline Ogre::Vector3 toOgrePosition(const MK::Math::Transform& transform) {
  return toOgreVector(transform.translation());
}

inline Ogre::Quaternion toOgreOrientation(const MK::Math::Transform& transform) {
  const MK::Math::Quaternion q = MK::Math::quaternionFromTransform(transform);
  return Ogre::Quaternion(q.w, q.x, q.y, q.z);
}

inline Ogre::Matrix4 toOgreMatrix(const MK::Math::Transform& transform) {
  const Eigen::Matrix4f m = transform.isometry().matrix();
  return Ogre::Matrix4(m(0, 0), m(0, 1), m(0, 2), m(0, 3), m(1, 0), m(1, 1), m(1, 2), m(1, 3), m(2, 0), m(2, 1),
                       m(2, 2), m(2, 3), m(3, 0), m(3, 1), m(3, 2), m(3, 3));
}

inline Ogre::ColourValue toOgreColour(const Eigen::Vector4f& rgba) {
  return Ogre::ColourValue(rgba.x(), rgba.y(), rgba.z(), rgba.w());
}

// Moves the node only when its pose changes. Every set marks the node and its
// parents for OGRE's bounds update, which a still robot need not pay on each
// refresh tick. True when the node moved.
inline bool placeNode(Ogre::Node& node, const Ogre::Vector3& position, const Ogre::Quaternion& orientation) {
  bool moved = false;
  if (node.getPosition() != position) {
    node.setPosition(position);
    moved = true;
  }
  // The node keeps its orientation normalised: compare like with like. It
  // gets the raw one, as normalising twice can change the last bit.
  Ogre::Quaternion stored = orientation;
  stored.normalise();
  if (node.getOrientation() != stored) {
    node.setOrientation(orientation);
    moved = true;
  }
  return moved;
}

}  // namespace VX::NextGenView
