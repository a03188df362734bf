#pragma once

#include <cstdint>
#include <deque>

#include <boost/shared_ptr.hpp>

#include <OgreAxisAlignedBox.h>
#include <OgreMatrix4.h>

namespace Ogre {
class Root;
class SceneManager;
}  // namespace Ogre

namespace VX::NextGenView {

class JointController3DView;
class Link3DView;
class Object3DView;
class OgreEngine;
class Robot;
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

  // The box around all link geometry, in world coordinates or in the frame
  // `toFrame` maps world points into; null while nothing has an entity (the
  // entities come with the first update() after the render window exists).
  // Rings and markers do not count. Poses are those of the last update().
  Ogre::AxisAlignedBox boundingBox(const Ogre::Affine3& toFrame = Ogre::Affine3::IDENTITY) const;
  // The same for one robot's links; null for a robot not in the view.
  Ogre::AxisAlignedBox robotBoundingBox(const boost::shared_ptr<Robot>& robot) const;

  // Shows every joint controller again (after a filter hid some).
  void showJointControllers();

  // Hides or shows all joint rings at once (shown by default). Hidden rings
  // are neither drawn nor picked, whatever setVisible and
  // showJointControllers do meanwhile.
  void setJointControllersShown(bool shown);
  bool jointControllersShown() const;

  // Shows each link's collision geometry, see-through, instead of its
  // visuals (off by default). A link with collision geometry and no visual
  // is then seen, and picked like any link.
  void setCollisionGeometryShown(bool shown);
  bool collisionGeometryShown() const;

  // Moves with every change update() and the calls above made to the OGRE
  // scene: poses, looks, visibility, robots added or removed. A still scene
  // keeps it, so render on change reads it instead of walking the scene.
  std::uint64_t changeCount() const;

  boost::shared_ptr<World> world() const;
  Ogre::Root* getOgreRoot() const;
  Ogre::SceneManager* getOgreSceneManager() const;

 private:
  World3DView();
  struct Impl;
  boost::shared_ptr<Impl> m_impl;
};

}  // namespace VX::NextGenView
