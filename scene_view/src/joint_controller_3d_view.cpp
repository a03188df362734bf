#include "scene_view/joint_controller_3d_view.h"

#include <cmath>

#include <OgreEntity.h>
#include <OgreSceneNode.h>

#include <world_model/actuator.h>
#include <world_model/joint_controller.h>

#include "ogre_conversions.h"

namespace VX::NextGenView {

JointController3DView::JointController3DView(boost::shared_ptr<JointController> controller, Ogre::SceneNode* node)
    : Object3DView(controller, node), m_controller(std::move(controller)) {}

void JointController3DView::attachCommandMarker(Ogre::SceneNode* markerNode, Ogre::Entity* marker, float ringRadius,
                                                const std::string& restMaterial,
                                                const std::string& commandedMaterial) {
  m_markerNode = markerNode;
  m_marker = marker;
  m_ringRadius = ringRadius;
  m_restMaterial = restMaterial;
  m_commandedMaterial = commandedMaterial;
  noteChange();
  updateCommandMarker();
  applyLook();
}

void JointController3DView::detachFromScene() {
  Object3DView::detachFromScene();
  m_markerNode = nullptr;
  m_marker = nullptr;
  m_showsCommand = false;
}

// The ring lies in its node's XY plane: the node sits at the joint, turned
// so that its +Z is the joint axis. It turns with the joint, so the ring's
// +X moves as the joint does.
void JointController3DView::updatePose() {
  const MK::Math::Transform pose = m_controller->globalTransform();
  const Ogre::Vector3 axis = toOgreVector(m_controller->localAxis()).normalisedCopy();
  if (placeNode(*m_node, toOgrePosition(pose),
                toOgreOrientation(pose) * Ogre::Vector3::UNIT_Z.getRotationTo(axis, Ogre::Vector3::UNIT_X))) {
    noteChange();
  }
}

void JointController3DView::refreshDecorations() { updateCommandMarker(); }

std::vector<std::string> JointController3DView::restingMaterials() const {
  std::vector<std::string> materials = Object3DView::restingMaterials();
  if (!m_restMaterial.empty()) materials.assign(materials.size(), m_showsCommand ? m_commandedMaterial : m_restMaterial);
  return materials;
}

void JointController3DView::visibilityChanged() {
  const bool markerShown = shown() && m_showsCommand;
  if (m_marker && m_marker->getVisible() != markerShown) {
    m_marker->setVisible(markerShown);
    noteChange();
  }
}

void JointController3DView::updateCommandMarker() {
  const bool hasCommand = m_controller->hasCommand() && m_controller->actuator();
  const float angle = hasCommand ? m_controller->commandTarget() - m_controller->actuator()->m_value : 0.0f;
  // A position written into the actuator that is not finite waits for the next step to repair it.
  if (hasCommand && m_markerNode && std::isfinite(angle)) {
    const Ogre::Vector3 onTheRing(m_ringRadius * std::cos(angle), m_ringRadius * std::sin(angle), 0.0f);
    if (placeNode(*m_markerNode, onTheRing, m_markerNode->getOrientation())) noteChange();
  }
  if (hasCommand != m_showsCommand) {
    m_showsCommand = hasCommand;
    applyLook();
  }
  visibilityChanged();
}

}  // namespace VX::NextGenView
