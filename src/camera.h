#pragma once

#include <QObject>

#include <OgreQuaternion.h>
#include <OgreVector.h>

#include <mk/math/transform.h>

class QKeyEvent;
class QMenu;
class QMouseEvent;
class QWheelEvent;

namespace Ogre {
class Camera;
class SceneNode;
class Viewport;
}  // namespace Ogre

namespace VX::NextGenView {

// The orbit camera of the 3D view. The OGRE camera hangs at the end of a node
// chain: target node (follows the robot's torso and heading) → azimuth node
// (turns about its local Z) → elevation node (turns about its local Y) →
// camera, which keeps its own position and orientation relative to the
// elevation node. Mouse, wheel and keys move it; every change emits moved().
class Camera : public QObject {
  Q_OBJECT

 public:
  static constexpr float a_nearClipDistance = 0.01f;
  static constexpr float a_farClipDistance = 10.0f;
  static constexpr float a_keyStep = 0.1f;
  static constexpr float a_wheelStep = 0.1f;
  static constexpr float a_panFactor = 0.00002f;
  static constexpr float a_panScale = 75.0f;
  static constexpr float a_rotationFactor = 0.02f;

  Camera(Ogre::Camera* camera, Ogre::Viewport* viewport, Ogre::SceneNode* node);
  ~Camera() override;

  Ogre::Camera* ogreCamera() const { return m_camera; }
  QMenu* cameraMenu() const { return m_menu; }

  // Both orbit nodes back to identity and the camera to its home pose,
  // without applying it to the OGRE camera and without emitting moved().
  void resetPosition();
  // Places the target node at the followed point, turned by `angle` about +Z
  // (plus the target offset, in that turned frame).
  // Numbers that are not finite are refused with an error record ("rdr.widget").
  void updateTargetPosition(const MK::Math::Position3D& position, const float& angle);

  // How far out the home pose stands from the target: 1 unless a host frames
  // its robot. The viewpoints and resetPosition use it; the far clip grows
  // with it (never below a_farClipDistance). Only finite positive distances
  // are taken; the pose changes at the next viewpoint.
  void setHomeDistance(float distance);
  float homeDistance() const { return m_homeDistance; }
  // Where the camera orbits, from the followed point, in the followed
  // robot's turned frame: zero unless a host frames its robot (a robot whose
  // root is at its feet is then orbited about its middle).
  void setTargetOffset(const Ogre::Vector3& offset);
  const Ogre::Vector3& targetOffset() const { return m_targetOffset; }

  // The chain's nodes, for callers that need world poses.
  Ogre::SceneNode* targetNode() const { return m_targetNode; }
  Ogre::SceneNode* azimuthNode() const { return m_azimuthNode; }
  Ogre::SceneNode* elevationNode() const { return m_elevationNode; }
  const Ogre::Vector3& position() const { return m_position; }
  const Ogre::Quaternion& orientation() const { return m_orientation; }

 signals:
  void moved();
  void showMenu(QMouseEvent* event);

 public slots:
  void update();
  void keyPressEvent(QKeyEvent* event);
  void keyReleaseEvent(QKeyEvent* event);
  void mouseDoubleClickEvent(QMouseEvent* event);
  void mouseMoveEvent(QMouseEvent* event);
  void mousePressEvent(QMouseEvent* event);
  void mouseReleaseEvent(QMouseEvent* event);
  void wheelEvent(QWheelEvent* event);

 private slots:
  void onViewportTop();
  void onViewportBottom();
  void onViewportLeft();
  void onViewportRight();
  void onViewportFront();
  void onViewportBack();
  void updateOrientation();

 private:
  void createActions();
  // The three steps of every viewpoint: reset, one pending turn, apply.
  void goToViewpoint(float azimuthStep, float elevationStep);

  Ogre::Camera* m_camera;
  Ogre::Viewport* m_viewport;
  Ogre::SceneNode* m_targetNode;
  Ogre::SceneNode* m_elevationNode;
  Ogre::SceneNode* m_azimuthNode;
  QMenu* m_menu;
  float m_azimuthStep;
  float m_elevationStep;
  bool m_keyUp;
  bool m_keyDown;
  bool m_keyLeft;
  bool m_keyRight;
  bool m_keyPageUp;
  bool m_keyPageDown;
  int m_lastMouseX;
  int m_lastMouseY;
  int m_pressX;
  int m_pressY;
  Ogre::Vector3 m_position;
  Ogre::Quaternion m_orientation;
  float m_homeDistance = 1.0f;
  Ogre::Vector3 m_targetOffset = Ogre::Vector3::ZERO;
};

}  // namespace VX::NextGenView
