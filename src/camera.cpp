#include "camera.h"

#include <algorithm>
#include <cmath>

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QWheelEvent>

#include <OgreCamera.h>
#include <OgreMath.h>
#include <OgreSceneNode.h>

#include <ku/log.h>

namespace VX::NextGenView {
namespace {

constexpr float kSqrtHalf = 0.70710677f;

// The home orientation: a quarter turn about X, then about Y. The camera then
// looks along -X of the elevation node, with +Y to its right and +Z up.
Ogre::Quaternion homeOrientation() {
  return Ogre::Quaternion(kSqrtHalf, kSqrtHalf, 0, 0) * Ogre::Quaternion(kSqrtHalf, 0, kSqrtHalf, 0);
}

// OGRE 1.12 deprecates a camera's own pose in favour of its node's; the rig
// keeps the camera's pose relative to the elevation node, as it always did.
void applyPose(Ogre::Camera* camera, const Ogre::Quaternion& orientation, const Ogre::Vector3& position) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  camera->setOrientation(orientation);
  camera->setPosition(position);
#pragma GCC diagnostic pop
}

// Brings a pending step into [-2π, 2π].
float wrapped(float step) {
  while (std::fabs(step) > Ogre::Math::TWO_PI) {
    step += step <= Ogre::Math::TWO_PI ? Ogre::Math::TWO_PI : -Ogre::Math::TWO_PI;
  }
  return step;
}

}  // namespace

Camera::Camera(Ogre::Camera* camera, Ogre::Viewport* viewport, Ogre::SceneNode* node)
    : m_camera(camera),
      m_viewport(viewport),
      m_targetNode(node),
      m_elevationNode(nullptr),
      m_azimuthNode(nullptr),
      m_menu(nullptr),
      m_azimuthStep(0),
      m_elevationStep(0),
      m_keyUp(false),
      m_keyDown(false),
      m_keyLeft(false),
      m_keyRight(false),
      m_keyPageUp(false),
      m_keyPageDown(false),
      m_lastMouseX(0),
      m_lastMouseY(0),
      m_pressX(0),
      m_pressY(0),
      m_position(Ogre::Vector3::ZERO),
      m_orientation(Ogre::Quaternion::IDENTITY) {
  m_azimuthNode = m_targetNode->createChildSceneNode(Ogre::Vector3::ZERO, Ogre::Quaternion::IDENTITY);
  m_elevationNode = m_azimuthNode->createChildSceneNode(Ogre::Vector3::ZERO, Ogre::Quaternion::IDENTITY);
  m_elevationNode->attachObject(m_camera);
  m_camera->setNearClipDistance(a_nearClipDistance);
  m_camera->setFarClipDistance(a_farClipDistance);
  createActions();
  onViewportFront();
}

// The menu has no parent and the nodes belong to OGRE's scene.
Camera::~Camera() = default;

void Camera::updateOrientation() {
  m_azimuthStep = wrapped(m_azimuthStep);
  m_elevationStep = wrapped(m_elevationStep);
  // A turn by nothing would still mark the rig for OGRE's update on every tick.
  if (m_azimuthStep != 0) m_azimuthNode->roll(Ogre::Radian(-m_azimuthStep), Ogre::Node::TS_LOCAL);
  if (m_elevationStep != 0) m_elevationNode->yaw(Ogre::Radian(-m_elevationStep), Ogre::Node::TS_LOCAL);
  m_azimuthStep = 0;
  m_elevationStep = 0;
  applyPose(m_camera, m_orientation, m_position);
}

void Camera::mousePressEvent(QMouseEvent* event) {
  if (event->buttons() & (Qt::LeftButton | Qt::RightButton | Qt::MiddleButton)) {
    m_lastMouseX = event->x();
    m_lastMouseY = event->y();
  }
  m_pressX = event->x();
  m_pressY = event->y();
}

void Camera::mouseMoveEvent(QMouseEvent* event) {
  const Qt::MouseButtons buttons = event->buttons();
  if (!(buttons & (Qt::LeftButton | Qt::RightButton | Qt::MiddleButton))) return;

  const bool meta = event->modifiers() & Qt::MetaModifier;
  if ((buttons & Qt::LeftButton) && !meta) {
    const int dx = m_lastMouseX - event->x();
    const int dy = m_lastMouseY - event->y();
    m_position.y += dx * a_panFactor * a_panScale;
    m_position.z += dy * a_panFactor * (-a_panScale);
  }
  if ((buttons & Qt::RightButton) || ((buttons & Qt::LeftButton) && meta)) {
    m_azimuthStep = (event->x() - m_lastMouseX) * a_rotationFactor;
    m_elevationStep = (event->y() - m_lastMouseY) * a_rotationFactor;
  }
  updateOrientation();
  m_lastMouseX = event->x();
  m_lastMouseY = event->y();
  emit moved();
}

void Camera::mouseReleaseEvent(QMouseEvent* event) {
  m_azimuthStep = 0;
  m_elevationStep = 0;
  // A right click that did not move opens the viewpoint menu.
  if (event->button() == Qt::RightButton && event->x() == m_pressX && event->y() == m_pressY) {
    emit showMenu(event);
  }
}

void Camera::mouseDoubleClickEvent(QMouseEvent*) {}

void Camera::wheelEvent(QWheelEvent* event) {
  const Ogre::Vector3 step(0, 0, event->angleDelta().y() > 0 ? -a_wheelStep : a_wheelStep);
  m_position += m_orientation * step;
  updateOrientation();
  emit moved();
}

void Camera::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up: m_keyUp = true; break;
    case Qt::Key_Down: m_keyDown = true; break;
    case Qt::Key_Left: m_keyLeft = true; break;
    case Qt::Key_Right: m_keyRight = true; break;
    case Qt::Key_PageUp: m_keyPageUp = true; break;
    case Qt::Key_PageDown: m_keyPageDown = true; break;
    default: break;
  }
  update();
}

void Camera::keyReleaseEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up: m_keyUp = false; break;
    case Qt::Key_Down: m_keyDown = false; break;
    case Qt::Key_Left: m_keyLeft = false; break;
    case Qt::Key_Right: m_keyRight = false; break;
    case Qt::Key_PageUp: m_keyPageUp = false; break;
    case Qt::Key_PageDown: m_keyPageDown = false; break;
    default: break;
  }
}

void Camera::update() {
  if (m_keyRight) m_position.y += a_keyStep;
  if (m_keyLeft) m_position.y -= a_keyStep;
  if (m_keyUp) m_position.x -= a_keyStep;
  if (m_keyDown) m_position.x += a_keyStep;
  if (m_keyPageUp) m_position.z += a_keyStep;
  if (m_keyPageDown) m_position.z -= a_keyStep;
  updateOrientation();
  emit moved();
}

void Camera::resetPosition() {
  m_azimuthNode->resetOrientation();
  m_elevationNode->resetOrientation();
  m_position = Ogre::Vector3(m_homeDistance, 0, 0);
  m_orientation = homeOrientation();
}

void Camera::updateTargetPosition(const MK::Math::Position3D& position, const float& angle) {
  // A number that is not finite would reach OGRE's node and trip its assertions.
  if (!std::isfinite(position.x) || !std::isfinite(position.y) || !std::isfinite(position.z) ||
      !std::isfinite(angle)) {
    ku::log::LogStream(ku::log::Error, "updateTargetPosition", "rdr.widget", "", 0)
        << "The camera keeps its target: position (" << position.x << ", " << position.y << ", " << position.z
        << ") and heading " << angle << " are not all finite" << std::endl;
    return;
  }
  const Ogre::Quaternion heading(Ogre::Radian(angle), Ogre::Vector3::UNIT_Z);
  // Set only on a change: a still target costs OGRE no update each tick.
  const Ogre::Vector3 target = Ogre::Vector3(position.x, position.y, position.z) + heading * m_targetOffset;
  if (m_targetNode->getPosition() != target) m_targetNode->setPosition(target);
  Ogre::Quaternion stored = heading;
  stored.normalise();  // as the node keeps it
  if (m_targetNode->getOrientation() != stored) m_targetNode->setOrientation(heading);
  updateOrientation();
}

void Camera::setHomeDistance(float distance) {
  if (!std::isfinite(distance) || distance <= 0.0f) return;
  m_homeDistance = distance;
  // The far side of a framed robot lies within about twice the home distance;
  // the default distance keeps the default clip.
  m_camera->setFarClipDistance(a_farClipDistance * std::max(1.0f, distance));
}

void Camera::setTargetOffset(const Ogre::Vector3& offset) {
  if (std::isfinite(offset.x) && std::isfinite(offset.y) && std::isfinite(offset.z)) m_targetOffset = offset;
}

void Camera::createActions() {
  m_menu = new QMenu(nullptr);
  const struct {
    const char* label;
    const char* slot;
  } viewpoints[] = {
      {QT_TR_NOOP("Top"), SLOT(onViewportTop())},     {QT_TR_NOOP("Bottom"), SLOT(onViewportBottom())},
      {QT_TR_NOOP("Left"), SLOT(onViewportLeft())},   {QT_TR_NOOP("Right"), SLOT(onViewportRight())},
      {QT_TR_NOOP("Front"), SLOT(onViewportFront())}, {QT_TR_NOOP("Back"), SLOT(onViewportBack())},
  };
  for (const auto& viewpoint : viewpoints) {
    QAction* action = new QAction(tr(viewpoint.label), this);
    connect(action, SIGNAL(triggered()), this, viewpoint.slot);
    m_menu->addAction(action);
  }
}

void Camera::goToViewpoint(float azimuthStep, float elevationStep) {
  resetPosition();
  m_azimuthStep = azimuthStep;
  m_elevationStep = elevationStep;
  updateOrientation();
  emit moved();
}

void Camera::onViewportTop() { goToViewpoint(0, Ogre::Math::HALF_PI); }
void Camera::onViewportBottom() { goToViewpoint(0, -Ogre::Math::HALF_PI); }
void Camera::onViewportLeft() { goToViewpoint(-Ogre::Math::HALF_PI, 0); }
void Camera::onViewportRight() { goToViewpoint(Ogre::Math::HALF_PI, 0); }
void Camera::onViewportFront() { goToViewpoint(0, 0); }
void Camera::onViewportBack() { goToViewpoint(Ogre::Math::PI, 0); }

}  // namespace VX::NextGenView
