#include "scene_view/object_3d_view.h"

#include <OgreEntity.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include <world_model/frame.h>

namespace VX::NextGenView {

Object3DView::Object3DView(boost::shared_ptr<Frame> frame, Ogre::SceneNode* node)
    : m_frame(std::move(frame)), m_node(node) {}

Object3DView::~Object3DView() = default;

void Object3DView::setVisible(bool visible) {
  m_visible = visible;
  applyVisibility();
}

void Object3DView::setShownByScene(bool shown) {
  if (m_shownByScene == shown) return;
  m_shownByScene = shown;
  applyVisibility();
}

void Object3DView::applyVisibility() {
  if (m_entity) {
    const std::uint32_t queryFlags = m_shownByScene ? m_queryFlags : 0u;
    if (m_entity->getVisible() != shown() || m_entity->getQueryFlags() != queryFlags) noteChange();
    m_entity->setVisible(shown());
    m_entity->setQueryFlags(queryFlags);
  }
  visibilityChanged();
}

void Object3DView::attachEntity(Ogre::Entity* entity, const std::string& highlightMaterial) {
  m_entity = entity;
  m_highlightMaterial = highlightMaterial;
  m_normalMaterials.clear();
  noteChange();
  if (!m_entity) return;
  for (unsigned i = 0; i < m_entity->getNumSubEntities(); ++i) {
    m_normalMaterials.push_back(m_entity->getSubEntity(i)->getMaterialName());
  }
  m_queryFlags = m_entity->getQueryFlags();
  m_entity->setVisible(shown());
  if (!m_shownByScene) m_entity->setQueryFlags(0u);
  applyLook();
}

void Object3DView::refresh() {
  if (m_frame && m_node) {
    const Eigen::Matrix4f pose = m_frame->globalTransform().isometry().matrix();
    // A pose that is not finite would trip OGRE's assertions: the node keeps its
    // last pose (the world model reports where the bad number came from).
    if (pose.allFinite() && (!m_placed || pose != m_placedPose)) {
      updatePose();
      m_placedPose = pose;
      m_placed = true;
    }
  }
  refreshDecorations();
  if (m_changed) {
    applyLook();
    m_changed = false;
  }
}

void Object3DView::detachFromScene() {
  noteChange();
  m_node = nullptr;
  m_entity = nullptr;
  m_showsHighlight = false;
}

void Object3DView::applyLook() {
  if (!m_entity) return;
  m_showsHighlight = m_selected || m_highlighted;
  const std::vector<std::string> resting = restingMaterials();
  for (unsigned i = 0; i < m_entity->getNumSubEntities(); ++i) {
    const std::string& material =
        m_showsHighlight || i >= resting.size() ? m_highlightMaterial : resting[i];
    if (m_entity->getSubEntity(i)->getMaterialName() != material) {
      m_entity->getSubEntity(i)->setMaterialName(material);
      noteChange();
    }
  }
}

}  // namespace VX::NextGenView
