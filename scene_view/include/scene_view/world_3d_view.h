#pragma once

#include <deque>

#include <boost/shared_ptr.hpp>

namespace Ogre {
class Root;
class SceneManager;
}  // namespace Ogre

namespace VX::NextGenView {

class JointController3DView;
class Link3DView;
class Object3DView;
class OgreEngine;
class World;

// The OGRE scene of a world model: one view per link and per joint controller.
class World3DView {
 public:
  // Builds the scene nodes at once; the meshes and entities follow as soon as
  // the render system is ready (at the first update()). Returns an empty
  // pointer when the engine or world is missing or has no root.
  static boost::shared_ptr<World3DView> createWorld3DView(boost::shared_ptr<OgreEngine> engine,
                                                          boost::shared_ptr<World> world);
  ~World3DView();

  // Brings the nodes to the world model's poses and the looks to the views' marks.
  void update();

  std::deque<boost::shared_ptr<Object3DView>> allObjects() const;
  std::deque<boost::shared_ptr<Link3DView>> linkViews() const;
  std::deque<boost::shared_ptr<JointController3DView>> jointControllerViews() const;

  // Shows every joint controller again (after a filter hid some).
  void showJointControllers();

  boost::shared_ptr<World> world() const;
  Ogre::Root* getOgreRoot() const;
  Ogre::SceneManager* getOgreSceneManager() const;

 private:
  World3DView();
  struct Impl;
  boost::shared_ptr<Impl> m_impl;
};

}  // namespace VX::NextGenView
