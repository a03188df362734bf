#include "robot_scene.h"

#include <algorithm>
#include <exception>
#include <sstream>
#include <vector>

#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <ku/log.h>
#include <world_model/joint_controller.h>
#include <world_model/robot.h>

#include "link_geometry.h"
#include "ogre_conversions.h"
#include "ring_sizing.h"
#include "scene_assets.h"
#include "scene_view/joint_controller_3d_view.h"
#include "scene_view/link_3d_view.h"
#include "scene_view/query_flags.h"

namespace VX::NextGenView {
namespace {

const char* const a_category = "rdr.scene";
// Rings sharing a joint centre nest, each this much larger than the last.
const float a_nestedRingGrowth = 0.2f;
const float a_sameCentre = 1e-3f;

void warn(const char* function, const std::string& text) {
  ku::log::LogStream(ku::log::Warning, function, a_category, __FILE__, __LINE__) << text << std::endl;
}

}  // namespace

RobotScene::RobotScene(boost::shared_ptr<Robot> robot, Ogre::SceneManager* sceneManager, Ogre::SceneNode* parent)
    : m_robot(std::move(robot)), m_sceneManager(sceneManager) {
  for (const boost::shared_ptr<Link>& link : m_robot->links()) {
    if (link) m_links.push_back(boost::shared_ptr<Link3DView>(new Link3DView(link, parent->createChildSceneNode())));
  }
  for (const boost::shared_ptr<JointController>& controller : m_robot->jointControllers()) {
    if (!controller) continue;
    m_controllers.push_back(boost::shared_ptr<JointController3DView>(
        new JointController3DView(controller, parent->createChildSceneNode())));
  }
  refresh();
}

RobotScene::~RobotScene() { destroy(); }

void RobotScene::build(SceneAssets& assets) {
  m_built = true;
  int renamed = 0;
  m_visualMeshes.assign(m_links.size(), Ogre::MeshPtr());
  m_collisionMeshes.assign(m_links.size(), Ogre::MeshPtr());
  m_visualMeshesMade.assign(m_links.size(), false);
  m_collisionMeshesMade.assign(m_links.size(), false);
  for (std::size_t i = 0; i < m_links.size(); ++i) renamed += buildLink(i, assets) ? 1 : 0;
  const float robotExtent = robotExtentOfLinks();
  std::vector<float> radii;  // of the rings built so far, in controller order
  for (const auto& view : m_controllers) {
    const float own = RingSizing::radius(robotExtent, linkExtent(m_robot->turnedLink(view->jointController())));
    // Rings around the same centre (a shoulder's pitch and roll) nest: each
    // is a fifth of its own size larger than the largest one inside it.
    const Eigen::Vector3f centre = view->jointController()->rotationCenter();
    int nested = 0;
    float inner = 0.0f;
    for (std::size_t i = 0; i < radii.size(); ++i) {
      if ((m_controllers[i]->jointController()->rotationCenter() - centre).norm() >= a_sameCentre) continue;
      ++nested;
      inner = std::max(inner, radii[i]);
    }
    const float radius = std::max(own * (1.0f + a_nestedRingGrowth * nested), inner + a_nestedRingGrowth * own);
    radii.push_back(radius);
    renamed += buildRing(*view, radius, assets) ? 1 : 0;
  }
  if (renamed > 0) {
    // Entity names are unique in OGRE: a second robot of the same model gets suffixed names.
    std::ostringstream text;
    text << "Robot " << m_robot->name() << " shares " << renamed
         << " link or joint names with a robot already shown; its entities are named <name>#<n>";
    warn("build", text.str());
  }
  refresh();
}

// The mesh of the link's visuals, or of its collision geometry while that
// is shown; made once.
Ogre::MeshPtr RobotScene::linkMesh(std::size_t index, SceneAssets& assets) {
  std::vector<Ogre::MeshPtr>& meshes = m_collisionsShown ? m_collisionMeshes : m_visualMeshes;
  std::vector<bool>& made = m_collisionsShown ? m_collisionMeshesMade : m_visualMeshesMade;
  if (made[index]) return meshes[index];
  made[index] = true;
  const Link& link = *m_links[index]->link();
  std::vector<std::string> problems;
  std::vector<std::string> notes;
  const MeshAssembly geometry =
      m_collisionsShown
          ? LinkGeometry::assembleCollisions(link, assets.materials().collision(), assets.meshFiles(), problems)
          : LinkGeometry::assemble(link, assets.materials(), assets.meshFiles(), problems, notes);
  for (const std::string& problem : problems) {
    warn("buildLink", (m_collisionsShown ? "Collision not shown: " : "Visual not shown: ") + problem);
  }
  for (const std::string& note : notes) warn("buildLink", "Look not shown: " + note);
  if (geometry.empty()) {
    if (!m_collisionsShown) warn("buildLink", "Link " + link.name() + " has nothing to show; it gets no entity");
    return meshes[index];
  }
  meshes[index] = geometry.create(assets.uniqueMeshName(link.name()), assets.group());
  return meshes[index];
}

bool RobotScene::buildLink(std::size_t index, SceneAssets& assets) {
  Link3DView& view = *m_links[index];
  const Link& link = *view.link();
  try {
    if (Ogre::Entity* old = view.entity()) {
      view.attachEntity(nullptr, {});
      m_sceneManager->destroyEntity(old);
    }
    const Ogre::MeshPtr mesh = linkMesh(index, assets);
    if (!mesh) return false;
    const std::string name = assets.freeEntityName(link.name());
    Ogre::Entity* entity = m_sceneManager->createEntity(name, mesh->getName(), assets.group());
    entity->setQueryFlags(a_pickableQueryFlag);
    view.sceneNode()->attachObject(entity);
    view.attachEntity(entity, assets.materials().highlight());
    return name != link.name();
  } catch (const std::exception& exception) {
    ku::log::LogStream(ku::log::Error, "buildLink", a_category, __FILE__, __LINE__)
        << "Cannot build link " << link.name() << ": " << exception.what() << std::endl;
  }
  return false;
}

void RobotScene::setCollisionGeometryShown(bool shown, SceneAssets* assets) {
  if (shown == m_collisionsShown) return;
  m_collisionsShown = shown;
  if (!m_built || !assets) return;
  for (std::size_t i = 0; i < m_links.size(); ++i) buildLink(i, *assets);
  refresh();
}

void RobotScene::setRingsShown(bool shown) {
  m_ringsShown = shown;
  for (const auto& view : m_controllers) view->setShownByScene(shown);
}

bool RobotScene::buildRing(JointController3DView& view, float radius, SceneAssets& assets) {
  const std::string& controllerName = view.jointController()->name();
  try {
    MaterialLibrary& materials = assets.materials();
    const std::string name = assets.freeEntityName(controllerName);
    Ogre::Entity* ring = m_sceneManager->createEntity(name, assets.ringMesh(radius)->getName(), assets.group());
    ring->setQueryFlags(a_pickableQueryFlag);
    view.sceneNode()->attachObject(ring);

    Ogre::Entity* marker = m_sceneManager->createEntity(assets.freeEntityName(controllerName + "/CommandTarget"),
                                                        assets.commandMarkerMesh(radius)->getName(), assets.group());
    marker->setQueryFlags(a_decorativeQueryFlags);
    Ogre::SceneNode* markerNode = view.sceneNode()->createChildSceneNode();
    markerNode->attachObject(marker);

    view.attachEntity(ring, materials.highlight());
    view.attachCommandMarker(markerNode, marker, radius, materials.ring(), materials.ringCommanded());
    return name != controllerName;
  } catch (const std::exception& exception) {
    ku::log::LogStream(ku::log::Error, "buildRing", a_category, __FILE__, __LINE__)
        << "Cannot build the ring of " << controllerName << ": " << exception.what() << std::endl;
  }
  return false;
}

namespace {

float largestSide(const Ogre::AxisAlignedBox& bounds) {
  if (!bounds.isFinite()) return 0.0f;
  const Ogre::Vector3 size = bounds.getSize();
  return std::max({size.x, size.y, size.z});
}

}  // namespace

// The largest extent of the robot's link meshes, posed as the model stands.
float RobotScene::robotExtentOfLinks() const {
  Ogre::AxisAlignedBox bounds;
  for (const auto& view : m_links) {
    if (!view->entity()) continue;
    Ogre::AxisAlignedBox linkBounds = view->entity()->getMesh()->getBounds();
    linkBounds.transform(toOgreMatrix(view->link()->globalTransform()));
    bounds.merge(linkBounds);
  }
  return largestSide(bounds);
}

// The largest side of a link's own mesh; 0 when it has none.
float RobotScene::linkExtent(const boost::shared_ptr<Link>& link) const {
  for (const auto& view : m_links) {
    if (view->link() == link && view->entity()) return largestSide(view->entity()->getMesh()->getBounds());
  }
  return 0.0f;
}

void RobotScene::refresh() {
  for (const auto& view : m_links) view->refresh();
  for (const auto& view : m_controllers) view->refresh();
}

void RobotScene::destroy() {
  auto release = [this](Object3DView& view) {
    Ogre::SceneNode* node = view.sceneNode();
    view.detachFromScene();
    if (!node) return;
    // The node's objects (entity, command marker) and children go with it.
    auto children = node->getChildren();
    for (Ogre::Node* child : children) {
      auto* childNode = static_cast<Ogre::SceneNode*>(child);
      while (childNode->numAttachedObjects() > 0) m_sceneManager->destroyMovableObject(childNode->detachObject(static_cast<unsigned short>(0)));
    }
    while (node->numAttachedObjects() > 0) m_sceneManager->destroyMovableObject(node->detachObject(static_cast<unsigned short>(0)));
    node->removeAndDestroyAllChildren();
    m_sceneManager->destroySceneNode(node);
  };
  try {
    for (const auto& view : m_links) release(*view);
    for (const auto& view : m_controllers) release(*view);
  } catch (const std::exception& exception) {
    ku::log::LogStream(ku::log::Error, "~RobotScene", a_category, __FILE__, __LINE__)
        << "Cannot release the scene of a robot: " << exception.what() << std::endl;
  }
}

}  // namespace VX::NextGenView
