#include "robot_scene.h"

#include <algorithm>
#include <exception>
#include <sstream>

#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <ku/log.h>
#include <world_model/joint_controller.h>
#include <world_model/robot.h>

#include "link_geometry.h"
#include "ogre_conversions.h"
#include "scene_assets.h"
#include "scene_view/joint_controller_3d_view.h"
#include "scene_view/link_3d_view.h"
#include "scene_view/query_flags.h"

namespace VX::NextGenView {
namespace {

const char* const a_category = "rdr.scene";
// Rings are this fraction of the robot's size: about 4 cm on a 55 cm robot.
const float a_ringToRobotSize = 0.07f;
const float a_defaultRingRadius = 0.04f;
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
  for (const auto& view : m_links) renamed += buildLink(*view, assets) ? 1 : 0;
  const float radius = ringRadius();
  for (const auto& view : m_controllers) {
    // Count the rings already around the same centre (a shoulder's pitch and roll).
    const Eigen::Vector3f centre = view->jointController()->rotationCenter();
    int nested = 0;
    for (const auto& other : m_controllers) {
      if (other == view) break;
      if ((other->jointController()->rotationCenter() - centre).norm() < a_sameCentre) ++nested;
    }
    renamed += buildRing(*view, radius * (1.0f + a_nestedRingGrowth * nested), assets) ? 1 : 0;
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

bool RobotScene::buildLink(Link3DView& view, SceneAssets& assets) {
  const Link& link = *view.link();
  try {
    std::vector<std::string> problems;
    const MeshAssembly geometry = LinkGeometry::assemble(link, assets.materials(), assets.meshFiles(), problems);
    for (const std::string& problem : problems) warn("buildLink", "Visual not shown: " + problem);
    if (geometry.empty()) {
      warn("buildLink", "Link " + link.name() + " has nothing to show; it gets no entity");
      return false;
    }
    const Ogre::MeshPtr mesh = geometry.create(assets.uniqueMeshName(link.name()), assets.group());
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

// The largest extent of the robot's link meshes, posed as the model stands.
float RobotScene::ringRadius() const {
  Ogre::AxisAlignedBox bounds;
  for (const auto& view : m_links) {
    if (!view->entity()) continue;
    Ogre::AxisAlignedBox linkBounds = view->entity()->getMesh()->getBounds();
    linkBounds.transform(toOgreMatrix(view->link()->globalTransform()));
    bounds.merge(linkBounds);
  }
  if (!bounds.isFinite() || bounds.isNull()) return a_defaultRingRadius;
  const Ogre::Vector3 size = bounds.getSize();
  const float extent = std::max({size.x, size.y, size.z});
  return extent > 0.0f ? std::clamp(extent * a_ringToRobotSize, 0.005f, 1.0f) : a_defaultRingRadius;
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
