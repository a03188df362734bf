#include "scene_view/world_3d_view.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <vector>

#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <ku/log.h>
#include <render_engine/ogre_engine.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "robot_scene.h"
#include "scene_assets.h"
#include "scene_view/joint_controller_3d_view.h"
#include "scene_view/link_3d_view.h"

namespace VX::NextGenView {
namespace {

const char* const a_category = "rdr.scene";

void logError(const char* function, const std::string& text) {
  ku::log::LogStream(ku::log::Error, function, a_category, __FILE__, __LINE__) << text << std::endl;
}

}  // namespace

struct World3DView::Impl {
  boost::shared_ptr<OgreEngine> engine;
  boost::shared_ptr<World> world;
  Ogre::SceneManager* sceneManager = nullptr;
  Ogre::SceneNode* rootNode = nullptr;
  std::vector<std::unique_ptr<RobotScene>> robots;  // in the world's order
  std::unique_ptr<SceneAssets> assets;              // once the render system is ready
  bool ringsShown = true;
  bool collisionsShown = false;
  std::uint64_t robotsChanged = 0;  // robots added or removed

  ~Impl() {
    // Entities before the meshes and materials they use; the engine (and so
    // the scene manager) outlives this, as we hold it.
    try {
      robots.clear();
      assets.reset();
      if (rootNode) sceneManager->destroySceneNode(rootNode);
    } catch (const std::exception& exception) {
      logError("~World3DView", std::string("Cannot release the scene: ") + exception.what());
    }
  }

  // Follows robots added to or removed from the world since the last call.
  void syncRobots() {
    std::vector<std::unique_ptr<RobotScene>> synced;
    for (const boost::shared_ptr<Robot>& robot : world->robots()) {
      if (!robot) continue;
      auto existing = std::find_if(robots.begin(), robots.end(),
                                   [&](const std::unique_ptr<RobotScene>& scene) { return scene && scene->robot() == robot; });
      if (existing != robots.end()) {
        synced.push_back(std::move(*existing));
      } else {
        synced.push_back(std::make_unique<RobotScene>(robot, sceneManager, rootNode));
        synced.back()->setRingsShown(ringsShown);
        synced.back()->setCollisionGeometryShown(collisionsShown, assets.get());
        ++robotsChanged;
      }
    }
    for (const auto& removed : robots) {  // the scenes not moved over
      if (removed) ++robotsChanged;
    }
    robots = std::move(synced);  // scenes of removed robots are destroyed here
  }
};

World3DView::World3DView() : m_impl(new Impl()) {}

World3DView::~World3DView() = default;

boost::shared_ptr<World3DView> World3DView::createWorld3DView(boost::shared_ptr<OgreEngine> engine,
                                                              boost::shared_ptr<World> world) {
  if (!engine || !engine->root() || !engine->sceneManager()) {
    logError("createWorld3DView", "Cannot create the 3D view of the world: OGRE is not running");
    return boost::shared_ptr<World3DView>();
  }
  if (!world) {
    logError("createWorld3DView", "Cannot create the 3D view of the world: no world");
    return boost::shared_ptr<World3DView>();
  }
  try {
    boost::shared_ptr<World3DView> view(new World3DView());
    Impl& impl = *view->m_impl;
    impl.engine = engine;
    impl.world = world;
    impl.sceneManager = engine->sceneManager();
    impl.rootNode = impl.sceneManager->getRootSceneNode()->createChildSceneNode();
    impl.syncRobots();
    return view;
  } catch (const std::exception& exception) {
    logError("createWorld3DView", std::string("Cannot create the 3D view of the world: ") + exception.what());
    return boost::shared_ptr<World3DView>();
  }
}

void World3DView::update() {
  Impl& impl = *m_impl;
  try {
    impl.syncRobots();
    // Meshes need hardware buffers, materials and textures a GL context:
    // both exist once the widget has created its render window.
    if (!impl.assets && impl.engine->renderSystemReady()) {
      impl.engine->initialiseResources();
      impl.assets = std::make_unique<SceneAssets>(impl.sceneManager);
    }
    for (const auto& scene : impl.robots) {
      if (impl.assets && !scene->built()) scene->build(*impl.assets);
      scene->refresh();
    }
    // World bounds now, so that scene queries (picking) agree with the
    // model before the next frame is drawn.
    impl.rootNode->_update(true, false);
  } catch (const std::exception& exception) {
    logError("update", std::string("Cannot update the 3D view of the world: ") + exception.what());
  }
}

std::deque<boost::shared_ptr<Object3DView>> World3DView::allObjects() const {
  std::deque<boost::shared_ptr<Object3DView>> objects;
  for (const auto& view : linkViews()) objects.push_back(view);
  for (const auto& view : jointControllerViews()) objects.push_back(view);
  return objects;
}

std::deque<boost::shared_ptr<Link3DView>> World3DView::linkViews() const {
  std::deque<boost::shared_ptr<Link3DView>> views;
  for (const auto& scene : m_impl->robots) views.insert(views.end(), scene->linkViews().begin(), scene->linkViews().end());
  return views;
}

std::deque<boost::shared_ptr<JointController3DView>> World3DView::jointControllerViews() const {
  std::deque<boost::shared_ptr<JointController3DView>> views;
  for (const auto& scene : m_impl->robots) {
    views.insert(views.end(), scene->controllerViews().begin(), scene->controllerViews().end());
  }
  return views;
}

namespace {

// The box of a link view's mesh, placed by its node's pose of the last update.
void mergeLinkBounds(const Link3DView& view, const Ogre::Affine3& toFrame, Ogre::AxisAlignedBox& bounds) {
  if (!view.entity() || !view.sceneNode()) return;
  Ogre::AxisAlignedBox linkBounds = view.entity()->getMesh()->getBounds();
  linkBounds.transform(toFrame * view.sceneNode()->_getFullTransform());
  bounds.merge(linkBounds);
}

}  // namespace

Ogre::AxisAlignedBox World3DView::boundingBox(const Ogre::Affine3& toFrame) const {
  Ogre::AxisAlignedBox bounds;
  for (const auto& view : linkViews()) {
    if (view) mergeLinkBounds(*view, toFrame, bounds);
  }
  return bounds;
}

Ogre::AxisAlignedBox World3DView::robotBoundingBox(const boost::shared_ptr<Robot>& robot) const {
  Ogre::AxisAlignedBox bounds;
  for (const auto& scene : m_impl->robots) {
    if (scene->robot() != robot) continue;
    for (const auto& view : scene->linkViews()) {
      if (view) mergeLinkBounds(*view, Ogre::Affine3::IDENTITY, bounds);
    }
  }
  return bounds;
}

void World3DView::showJointControllers() {
  for (const auto& view : jointControllerViews()) view->setVisible(true);
}

void World3DView::setJointControllersShown(bool shown) {
  m_impl->ringsShown = shown;
  for (const auto& scene : m_impl->robots) scene->setRingsShown(shown);
}

bool World3DView::jointControllersShown() const { return m_impl->ringsShown; }

void World3DView::setCollisionGeometryShown(bool shown) {
  Impl& impl = *m_impl;
  impl.collisionsShown = shown;
  try {
    for (const auto& scene : impl.robots) scene->setCollisionGeometryShown(shown, impl.assets.get());
    impl.rootNode->_update(true, false);
  } catch (const std::exception& exception) {
    logError("setCollisionGeometryShown", std::string("Cannot switch the geometry shown: ") + exception.what());
  }
}

bool World3DView::collisionGeometryShown() const { return m_impl->collisionsShown; }

// The views' own counts only grow, so their sum moves with any change; the
// robots' count covers views that come and go.
std::uint64_t World3DView::changeCount() const {
  std::uint64_t count = m_impl->robotsChanged;
  for (const auto& scene : m_impl->robots) {
    for (const auto& view : scene->linkViews()) count += view->changeCount();
    for (const auto& view : scene->controllerViews()) count += view->changeCount();
  }
  return count;
}

boost::shared_ptr<World> World3DView::world() const { return m_impl->world; }
Ogre::Root* World3DView::getOgreRoot() const { return m_impl->engine ? m_impl->engine->root() : nullptr; }
Ogre::SceneManager* World3DView::getOgreSceneManager() const { return m_impl->sceneManager; }

}  // namespace VX::NextGenView
