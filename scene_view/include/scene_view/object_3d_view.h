#pragma once

#include <string>
#include <vector>

#include <cstdint>

#include <Eigen/Core>
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

  // Used by World3DView, which owns the OGRE objects behind the view.

  // Takes the entity built for this view; the materials it has now are its
  // normal look, `highlightMaterial` its selected look.
  void attachEntity(Ogre::Entity* entity, const std::string& highlightMaterial);
  // Brings the node to the frame's pose and the look to the marks.
  void refresh();
  // Forgets the node and entity, which the scene is about to destroy.
  virtual void detachFromScene();
  // A scene-wide switch: while false, the entity stays hidden and out of
  // scene queries (picking), whatever setVisible says. True by default.
  void setShownByScene(bool shown);
  bool isShownByScene() const { return m_shownByScene; }

  // True when the entity shows the selected look.
  bool showsHighlight() const { return m_showsHighlight; }

  // Counts the changes this view made to its OGRE node and objects (a pose,
  // a look, a visibility, an entity taken or let go); it never goes down.
  // Render on change redraws when a count moved.
  std::uint64_t changeCount() const { return m_changeCount; }

 protected:
  Object3DView(boost::shared_ptr<Frame> frame, Ogre::SceneNode* node);

  // Brings the node to the frame's pose; called only when that pose changed.
  virtual void updatePose() = 0;
  // Brings what else the view shows up to date; called on every refresh.
  virtual void refreshDecorations() {}
  // The materials of the entity's sub-entities when not selected.
  virtual std::vector<std::string> restingMaterials() const { return m_normalMaterials; }
  virtual void visibilityChanged() {}
  // Puts the highlight or the resting materials on the entity.
  void applyLook();
  // Visible, and not hidden by a scene-wide switch.
  bool shown() const { return m_visible && m_shownByScene; }
  // Called by every change to the node or objects.
  void noteChange() { ++m_changeCount; }

  boost::shared_ptr<Frame> m_frame;
  Ogre::SceneNode* m_node = nullptr;
  Ogre::Entity* m_entity = nullptr;
  bool m_visible = true;

 private:
  void applyVisibility();

  std::vector<std::string> m_normalMaterials;
  std::string m_highlightMaterial;
  bool m_showsHighlight = false;
  bool m_shownByScene = true;
  std::uint32_t m_queryFlags = 0;  // the entity's own, while shown by the scene
  std::uint64_t m_changeCount = 0;
  // The frame's pose the node was last placed at: a still frame costs no
  // conversion and no look at the (cold) OGRE node on a refresh tick.
  Eigen::Matrix4f m_placedPose = Eigen::Matrix4f::Zero();
  bool m_placed = false;
};

}  // namespace VX::NextGenView
