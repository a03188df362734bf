#include "frame_change_watch.h"

#include <utility>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreLight.h>
#include <OgreRenderTarget.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>
#include <OgreViewport.h>
#include <Overlay/OgreOverlay.h>
#include <Overlay/OgreOverlayContainer.h>
#include <Overlay/OgreOverlayManager.h>
#include <Overlay/OgreTextAreaOverlayElement.h>

namespace VX::NextGenView {
namespace {

void add(std::vector<float>& numbers, const Ogre::Vector3& v) { numbers.insert(numbers.end(), {v.x, v.y, v.z}); }
void add(std::vector<float>& numbers, const Ogre::Quaternion& q) { numbers.insert(numbers.end(), {q.w, q.x, q.y, q.z}); }
void add(std::vector<float>& numbers, const Ogre::ColourValue& c) { numbers.insert(numbers.end(), {c.r, c.g, c.b, c.a}); }

void recordLens(const Ogre::Frustum& lens, std::vector<float>& numbers) {
  numbers.insert(numbers.end(), {lens.getFOVy().valueRadians(), lens.getAspectRatio(), lens.getNearClipDistance(),
                                 lens.getFarClipDistance(), float(lens.getProjectionType()),
                                 lens.getOrthoWindowWidth(), lens.getOrthoWindowHeight()});
}

void recordLight(const Ogre::Light& light, std::vector<float>& numbers) {
  numbers.push_back(float(light.getType()));
  add(numbers, light.getDiffuseColour());
  add(numbers, light.getSpecularColour());
}

}  // namespace

bool FrameChangeWatch::changed(Ogre::SceneManager& scene, Ogre::RenderTarget& target, std::uint64_t sceneChanges) {
  recordView(scene, target, m_view.current);
  bool different = m_view.renew();
  const bool walk = !m_known || sceneChanges != m_sceneChanges || ++m_callsSinceSceneWalk >= a_callsPerSceneWalk;
  if (walk) {
    recordNode(*scene.getRootSceneNode(), m_scene.current);
    different = m_scene.renew() || different;
    m_sceneChanges = sceneChanges;
    m_callsSinceSceneWalk = 0;
  }
  different = different || !m_known;
  m_known = true;
  return different;
}

void FrameChangeWatch::forget() { m_known = false; }

bool FrameChangeWatch::History::renew() {
  const bool different = !(current == last);
  std::swap(last, current);
  current.clear();
  return different;
}

void FrameChangeWatch::recordView(Ogre::SceneManager& scene, Ogre::RenderTarget& target, Record& record) const {
  record.numbers.insert(record.numbers.end(), {float(target.getWidth()), float(target.getHeight())});
  for (unsigned short i = 0; i < target.getNumViewports(); ++i) {
    const Ogre::Viewport* viewport = target.getViewport(i);
    add(record.numbers, viewport->getBackgroundColour());
    record.numbers.insert(record.numbers.end(), {viewport->getLeft(), viewport->getTop(), viewport->getWidth(),
                                                 viewport->getHeight(), float(viewport->getOverlaysEnabled())});
    const Ogre::Camera* camera = viewport->getCamera();
    record.identities.push_back(camera);
    if (!camera) continue;
    add(record.numbers, camera->getDerivedPosition());
    add(record.numbers, camera->getDerivedOrientation());
    recordLens(*camera, record.numbers);
  }
  for (const auto& entry : scene.getMovableObjects(Ogre::LightFactory::FACTORY_TYPE_NAME)) {
    const auto* light = static_cast<const Ogre::Light*>(entry.second);
    record.identities.push_back(light);
    record.numbers.push_back(light->isVisible() ? 1.0f : 0.0f);
    recordLight(*light, record.numbers);
    // The light's own derived pose follows its node only once OGRE updates
    // the scene graph, in the frame; the node's is up to date now.
    if (const Ogre::Node* node = light->getParentNode()) {
      add(record.numbers, node->_getDerivedPosition());
      add(record.numbers, node->_getDerivedOrientation());
    }
  }
  record.numbers.push_back(scene.isSkyBoxEnabled() ? 1.0f : 0.0f);
  add(record.numbers, scene.getAmbientLight());
  recordOverlays(record);
}

void FrameChangeWatch::recordNode(const Ogre::Node& node, Record& record) const {
  record.identities.push_back(&node);
  add(record.numbers, node.getPosition());
  add(record.numbers, node.getOrientation());
  add(record.numbers, node.getScale());
  // Every node below the root scene node is a scene node. The walk runs
  // often: objects are told apart by their type flags, which costs far less
  // than a cast that walks the class hierarchy.
  for (const Ogre::MovableObject* object : static_cast<const Ogre::SceneNode&>(node).getAttachedObjects()) {
    record.identities.push_back(object);
    record.numbers.push_back(object->isVisible() ? 1.0f : 0.0f);
    switch (object->getTypeFlags()) {
      case Ogre::SceneManager::ENTITY_TYPE_MASK: {
        const auto* entity = static_cast<const Ogre::Entity*>(object);
        for (const Ogre::SubEntity* part : entity->getSubEntities()) {
          record.identities.push_back(part->getMaterial().get());
          record.numbers.push_back(part->isVisible() ? 1.0f : 0.0f);
        }
        break;
      }
      case Ogre::SceneManager::FRUSTUM_TYPE_MASK:  // the cameras
        recordLens(*static_cast<const Ogre::Frustum*>(object), record.numbers);
        break;
      case Ogre::SceneManager::LIGHT_TYPE_MASK:
        recordLight(*static_cast<const Ogre::Light*>(object), record.numbers);
        break;
      default:
        break;
    }
  }
  for (const Ogre::Node* child : node.getChildren()) recordNode(*child, record);
}

void FrameChangeWatch::recordOverlays(Record& record) const {
  auto overlays = Ogre::OverlayManager::getSingleton().getOverlayIterator();
  while (overlays.hasMoreElements()) {
    const Ogre::Overlay& overlay = *overlays.getNext();
    record.identities.push_back(&overlay);
    record.numbers.push_back(overlay.isVisible() ? 1.0f : 0.0f);
    if (!overlay.isVisible()) continue;
    for (const Ogre::OverlayContainer* element : overlay.get2DElements()) recordElement(*element, record);
  }
}

void FrameChangeWatch::recordElement(const Ogre::OverlayElement& element, Record& record) const {
  record.identities.push_back(&element);
  record.numbers.push_back(element.isVisible() ? 1.0f : 0.0f);
  if (!element.isVisible()) return;
  record.numbers.insert(record.numbers.end(),
                        {element.getLeft(), element.getTop(), element.getWidth(), element.getHeight()});
  add(record.numbers, element.getColour());
  record.identities.push_back(element.getMaterial().get());
  record.texts.push_back(element.getCaption().asUTF8());
  if (const auto* text = dynamic_cast<const Ogre::TextAreaOverlayElement*>(&element)) {
    record.numbers.push_back(text->getCharHeight());
  }
  if (const auto* container = dynamic_cast<const Ogre::OverlayContainer*>(&element)) {
    for (const auto& child : const_cast<Ogre::OverlayContainer*>(container)->getChildren()) {
      recordElement(*child.second, record);
    }
  }
}

}  // namespace VX::NextGenView
