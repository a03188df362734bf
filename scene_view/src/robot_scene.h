#pragma once

#include <deque>

#include <boost/shared_ptr.hpp>

namespace Ogre {
class SceneManager;
class SceneNode;
}  // namespace Ogre

namespace VX::NextGenView {

class JointController3DView;
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
  // Creates the link entities, then the rings sized to the robot. A link or
  // ring that fails is reported and left without an entity.
  void build(SceneAssets& assets);
  // Node poses from the world model, looks from the views' marks.
  void refresh();

 private:
  // Each returns true when the entity had to take a suffixed name.
  bool buildLink(Link3DView& view, SceneAssets& assets);
  bool buildRing(JointController3DView& view, float radius, SceneAssets& assets);
  float ringRadius() const;
  void destroy();

  boost::shared_ptr<Robot> m_robot;
  Ogre::SceneManager* m_sceneManager;
  std::deque<boost::shared_ptr<Link3DView>> m_links;
  std::deque<boost::shared_ptr<JointController3DView>> m_controllers;
  bool m_built = false;
};

}  // namespace VX::NextGenView
