#pragma once

#include <deque>
#include <vector>

#include <boost/shared_ptr.hpp>

#include <OgreMesh.h>

namespace Ogre {
class SceneManager;
class SceneNode;
}  // namespace Ogre

namespace VX::NextGenView {

class JointController3DView;
class Link;
class Link3DView;
class Robot;
class SceneAssets;

// The views of one robot: a scene node per link and per joint controller
// from the start, their entities once build() runs (when the render system
// is ready).
class RobotScene {
 public:
  RobotScene(boost::shared_ptr<Robot> robot, Ogre::SceneManager* sceneManager, Ogre::SceneNode* parent);
  ~RobotScene();  // destroys the entities and nodes

  RobotScene(const RobotScene&) = delete;
  RobotScene& operator=(const RobotScene&) = delete;

  const boost::shared_ptr<Robot>& robot() const { return m_robot; }
  const std::deque<boost::shared_ptr<Link3DView>>& linkViews() const { return m_links; }
  const std::deque<boost::shared_ptr<JointController3DView>>& controllerViews() const { return m_controllers; }

  bool built() const { return m_built; }
  // Creates the link entities, then the rings sized to the links they turn. A link or
  // ring that fails is reported and left without an entity.
  void build(SceneAssets& assets);
  // Node poses from the world model, looks from the views' marks.
  void refresh();

  // The scene-wide switches. Collision geometry replaces each link's visuals
  // (entities are rebuilt under the link's name, so picking is unchanged);
  // hidden rings are not drawn nor picked. Both hold for a later build().
  void setCollisionGeometryShown(bool shown, SceneAssets* assets);
  void setRingsShown(bool shown);

 private:
  // Each returns true when the entity had to take a suffixed name.
  bool buildLink(std::size_t index, SceneAssets& assets);
  Ogre::MeshPtr linkMesh(std::size_t index, SceneAssets& assets);
  bool buildRing(JointController3DView& view, float radius, SceneAssets& assets);
  float robotExtentOfLinks() const;
  float linkExtent(const boost::shared_ptr<Link>& link) const;
  void destroy();

  boost::shared_ptr<Robot> m_robot;
  Ogre::SceneManager* m_sceneManager;
  std::deque<boost::shared_ptr<Link3DView>> m_links;
  std::deque<boost::shared_ptr<JointController3DView>> m_controllers;
  // Per link view, made on first use; null when there is nothing to show.
  std::vector<Ogre::MeshPtr> m_visualMeshes;
  std::vector<Ogre::MeshPtr> m_collisionMeshes;
  std::vector<bool> m_visualMeshesMade;
  std::vector<bool> m_collisionMeshesMade;
  bool m_built = false;
  bool m_collisionsShown = false;
  bool m_ringsShown = true;
};

}  // namespace VX::NextGenView
