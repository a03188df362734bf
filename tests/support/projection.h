#pragma once
// Where a world point appears on a widget, through an OGRE camera.

#include <cmath>

#include <QPoint>
#include <QWidget>

#include <OgreCamera.h>

namespace testing_support {

// OGRE's projection, then the viewport's pixel grid (y grows downward).
inline QPoint pixelOf(const Ogre::Camera& camera, const QWidget& widget, const Ogre::Vector3& world) {
  const Ogre::Vector3 ndc = camera.getProjectionMatrix() * camera.getViewMatrix() * world;
  return QPoint(static_cast<int>(std::lround((ndc.x + 1.0f) * 0.5f * widget.width())),
                static_cast<int>(std::lround((1.0f - ndc.y) * 0.5f * widget.height())));
}

}  // namespace testing_support
