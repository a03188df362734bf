#pragma once

#include <boost/shared_ptr.hpp>

namespace Ogre {
class Entity;
class SceneNode;
}  // namespace Ogre

namespace VX::NextGenView {

class Frame;

// The scene object showing one frame of the world model: a scene node and,
// once the render system is ready, one pickable entity named as the frame.
class Object3DView {
 public:
  virtual ~Object3DView();

  // Selection marks written by the widget: selecting writes true, true, true;
  // clearing writes false, false, true. m_changed asks update() to re-apply
  // the look and is reset there.
  bool m_selected = false;
  bool m_highlighted = false;
  bool m_changed = false;

  boost::shared_ptr<Frame> frame() const { return m_frame; }

  void setVisible(bool visible);
  bool isVisible() const { return m_visible; }

  Ogre::SceneNode* sceneNode() const { return m_node; }
  Ogre::Entity* entity() const { return m_entity; }  // null until built

 protected:
  Object3DView(boost::shared_ptr<Frame> frame, Ogre::SceneNode* node);

  boost::shared_ptr<Frame> m_frame;
  Ogre::SceneNode* m_node = nullptr;
  Ogre::Entity* m_entity = nullptr;
  bool m_visible = true;
};

}  // namespace VX::NextGenView
