// The 3D view of the bundled robot: its nodes, entities and names, picking,
// poses from the world model, the looks the selection marks and pending
// commands give, visibility, and robots coming and going.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreRay.h>
#include <OgreSceneNode.h>
#include <OgreSceneQuery.h>
#include <OgreSubEntity.h>

#include <world_model/actuator.h>
#include <world_model/joint_controller.h>

#include <ku/record_capture.h>
#include "ogre_conversions.h"
#include "scene_fixture.h"
#include "scene_view/query_flags.h"

namespace VX::NextGenView {
namespace {

using LogCapture = ku::log::RecordCapture;
using testing::SceneFixture;

std::vector<std::string> materialsOf(const Ogre::Entity* entity) {
  std::vector<std::string> names;
  for (unsigned i = 0; i < entity->getNumSubEntities(); ++i) names.push_back(entity->getSubEntity(i)->getMaterialName());
  return names;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

using World3DViewTest = SceneFixture;

TEST_F(World3DViewTest, NodesComeAtOnceAndEntitiesWithTheRenderWindow) {
  ASSERT_EQ(view->linkViews().size(), robot->links().size());
  ASSERT_EQ(view->jointControllerViews().size(), robot->jointControllers().size());
  ASSERT_GT(robot->jointControllers().size(), 0u);
  for (const auto& object : view->allObjects()) {
    EXPECT_NE(object->sceneNode(), nullptr);
    EXPECT_EQ(object->entity(), nullptr) << "no entity before the render system is ready";
  }
  view->update();  // still no window: nothing to build yet, and no harm
  EXPECT_EQ(view->linkViews().front()->entity(), nullptr);

  openWindow();
  EXPECT_TRUE(engine->resourcesInitialised()) << "update() initialised the resources";
  for (const auto& linkView : view->linkViews()) {
    const std::string& name = linkView->link()->name();
    ASSERT_NE(linkView->entity(), nullptr) << name;
    EXPECT_EQ(linkView->entity()->getName(), name);
    EXPECT_EQ(sceneManager()->getEntity(name), linkView->entity());
    EXPECT_EQ(linkView->entity()->getParentSceneNode(), linkView->sceneNode());
    EXPECT_TRUE(linkView->entity()->getQueryFlags() & a_pickableQueryFlag) << name;
    EXPECT_EQ(linkView->frame()->name(), name);
  }
  for (const auto& ringView : view->jointControllerViews()) {
    const std::string& name = ringView->jointController()->name();
    ASSERT_NE(ringView->entity(), nullptr) << name;
    EXPECT_EQ(ringView->entity()->getName(), name);
    EXPECT_EQ(ringView->frame()->name(), name);
    EXPECT_TRUE(ringView->entity()->getQueryFlags() & a_pickableQueryFlag) << name;
    EXPECT_GE(ringView->ringRadius(), 0.02f);
    EXPECT_LE(ringView->ringRadius(), 0.08f);
  }
  // Every pickable entity is a link or a ring.
  int pickable = 0;
  for (const auto& entry : sceneManager()->getMovableObjects("Entity")) {
    if (entry.second->getQueryFlags() & a_pickableQueryFlag) ++pickable;
  }
  EXPECT_EQ(pickable, static_cast<int>(robot->links().size() + robot->jointControllers().size()));
}

TEST_F(World3DViewTest, ListsViewsInTheModelsOrder) {
  const auto links = view->linkViews();
  const auto rings = view->jointControllerViews();
  for (std::size_t i = 0; i < links.size(); ++i) EXPECT_EQ(links[i]->link(), robot->links()[i]);
  for (std::size_t i = 0; i < rings.size(); ++i) EXPECT_EQ(rings[i]->jointController(), robot->jointControllers()[i]);
  const auto all = view->allObjects();
  ASSERT_EQ(all.size(), links.size() + rings.size());
  for (std::size_t i = 0; i < links.size(); ++i) EXPECT_EQ(all[i], links[i]);
  for (std::size_t i = 0; i < rings.size(); ++i) EXPECT_EQ(all[links.size() + i], rings[i]);
  EXPECT_EQ(view->world(), world);
  EXPECT_EQ(view->getOgreRoot(), engine->root());
  EXPECT_EQ(view->getOgreSceneManager(), engine->sceneManager());
}

TEST_F(World3DViewTest, RayFromTheFrontHitsTheTorso) {
  openWindow();
  const Ogre::Vector3 torso = toOgrePosition(robot->link("TorsoLink")->globalTransform());
  // The robot faces +X: look back at it from one metre in front, at torso height.
  const Ogre::Ray ray(Ogre::Vector3(torso.x + 1.0f, torso.y, torso.z), Ogre::Vector3::NEGATIVE_UNIT_X);
  Ogre::RaySceneQuery* query = sceneManager()->createRayQuery(ray, a_pickableQueryFlag);
  query->setSortByDistance(true);
  const Ogre::RaySceneQueryResult& hits = query->execute();
  ASSERT_FALSE(hits.empty());
  EXPECT_EQ(hits.front().movable->getName(), "TorsoLink");
  for (const auto& hit : hits) {
    EXPECT_TRUE(hit.movable->getQueryFlags() & a_pickableQueryFlag) << hit.movable->getName();
  }
  sceneManager()->destroyQuery(query);

  // Nothing pickable answers to other bits.
  Ogre::RaySceneQuery* other = sceneManager()->createRayQuery(ray, 2u);
  EXPECT_TRUE(other->execute().empty());
  sceneManager()->destroyQuery(other);
}

TEST_F(World3DViewTest, UpdateFollowsForwardKinematicsAndTheBasePose) {
  openWindow();
  const auto forearm = robot->link("LForeArmLink");
  ASSERT_TRUE(forearm);
  auto viewOf = [&](const boost::shared_ptr<Link>& link) {
    for (const auto& linkView : view->linkViews()) {
      if (linkView->link() == link) return linkView;
    }
    return boost::shared_ptr<Link3DView>();
  };
  Ogre::SceneNode* node = viewOf(forearm)->sceneNode();
  const Ogre::Vector3 before = node->_getDerivedPosition();

  ASSERT_TRUE(robot->actuator("LShoulderPitch"));
  robot->actuator("LShoulderPitch")->setCommand(-1.0f);
  runKinematics(20);
  view->update();
  const Ogre::Vector3 after = node->_getDerivedPosition();
  EXPECT_GT(before.distance(after), 0.02f) << before << " -> " << after;
  EXPECT_TRUE(after.positionEquals(toOgrePosition(forearm->globalTransform()), 1e-5f));
  EXPECT_TRUE(node->_getDerivedOrientation().equals(toOgreOrientation(forearm->globalTransform()),
                                                    Ogre::Degree(0.01f)));

  // The base pose is in the global transforms the nodes follow.
  const auto torso = robot->link("TorsoLink");
  const Ogre::Vector3 torsoBefore = viewOf(torso)->sceneNode()->_getDerivedPosition();
  MK::Math::Position3D base = robot->basePosition();
  base.x += 1.0f;
  base.y += 2.0f;
  robot->setBasePosition(base);
  runKinematics(1);
  view->update();
  const Ogre::Vector3 moved = viewOf(torso)->sceneNode()->_getDerivedPosition() - torsoBefore;
  EXPECT_TRUE(moved.positionEquals(Ogre::Vector3(1.0f, 2.0f, 0.0f), 1e-4f)) << moved;

  // Rings sit at their joints, around their axes.
  for (const auto& ringView : view->jointControllerViews()) {
    const auto& controller = ringView->jointController();
    EXPECT_TRUE(ringView->sceneNode()->_getDerivedPosition().positionEquals(
        toOgreVector(controller->rotationCenter()), 1e-4f));
    const Ogre::Vector3 ringAxis = ringView->sceneNode()->_getDerivedOrientation() * Ogre::Vector3::UNIT_Z;
    EXPECT_NEAR(std::fabs(ringAxis.dotProduct(toOgreVector(controller->rotationAxis()))), 1.0f, 1e-4f)
        << controller->name();
  }
}

TEST_F(World3DViewTest, SelectionMarksSwitchTheLookWhenChanged) {
  openWindow();
  for (const boost::shared_ptr<Object3DView>& object :
       {boost::shared_ptr<Object3DView>(view->linkViews().front()),
        boost::shared_ptr<Object3DView>(view->jointControllerViews().front())}) {
    const std::vector<std::string> normal = materialsOf(object->entity());
    EXPECT_FALSE(object->showsHighlight());

    // Marks without m_changed wait.
    object->m_selected = true;
    view->update();
    EXPECT_EQ(materialsOf(object->entity()), normal);

    // What the widget writes when it selects the object.
    object->m_selected = object->m_highlighted = object->m_changed = true;
    view->update();
    EXPECT_FALSE(object->m_changed);
    EXPECT_TRUE(object->showsHighlight());
    for (const std::string& material : materialsOf(object->entity())) EXPECT_TRUE(endsWith(material, "/Highlight"));

    // And when it clears it.
    object->m_selected = false;
    object->m_highlighted = false;
    object->m_changed = true;
    view->update();
    EXPECT_FALSE(object->m_changed);
    EXPECT_FALSE(object->showsHighlight());
    EXPECT_EQ(materialsOf(object->entity()), normal);
  }
  // A highlight alone also shows.
  const auto link = view->linkViews().back();
  link->m_highlighted = link->m_changed = true;
  view->update();
  EXPECT_TRUE(link->showsHighlight());
}

TEST_F(World3DViewTest, RingShowsAPendingCommand) {
  openWindow();
  const auto ring = view->jointControllerViews().front();
  const auto controller = ring->jointController();
  const std::vector<std::string> rest = materialsOf(ring->entity());
  ASSERT_NE(ring->commandMarkerNode(), nullptr);
  auto marker = [&] {
    return static_cast<Ogre::Entity*>(ring->commandMarkerNode()->getAttachedObject(0));
  };
  EXPECT_FALSE(ring->showsCommand());
  EXPECT_FALSE(marker()->isVisible());
  EXPECT_EQ(marker()->getQueryFlags(), a_decorativeQueryFlags);

  controller->addRelativeCommand(0.5f);
  ASSERT_TRUE(controller->hasCommand());
  view->update();
  EXPECT_TRUE(ring->showsCommand());
  EXPECT_TRUE(marker()->isVisible());
  EXPECT_NE(materialsOf(ring->entity()), rest);
  for (const std::string& material : materialsOf(ring->entity())) EXPECT_TRUE(endsWith(material, "/RingCommanded"));
  // The marker lies on the ring, turned by target minus present position.
  const Ogre::Vector3 where = ring->commandMarkerNode()->getPosition();
  const float expected = controller->commandTarget() - controller->actuator()->m_value;
  EXPECT_NEAR(std::atan2(where.y, where.x), expected, 1e-4f);
  EXPECT_NEAR(where.length(), ring->ringRadius(), 1e-5f);

  // Selection wins over the command colour, and gives it back afterwards.
  ring->m_selected = ring->m_highlighted = ring->m_changed = true;
  view->update();
  EXPECT_TRUE(ring->showsHighlight());
  ring->m_selected = ring->m_highlighted = false;
  ring->m_changed = true;
  view->update();
  for (const std::string& material : materialsOf(ring->entity())) EXPECT_TRUE(endsWith(material, "/RingCommanded"));

  controller->resetCommand();
  view->update();
  EXPECT_FALSE(ring->showsCommand());
  EXPECT_FALSE(marker()->isVisible());
  EXPECT_EQ(materialsOf(ring->entity()), rest);
}

TEST_F(World3DViewTest, VisibilityAndShowingJointControllersAgain) {
  openWindow();
  const auto link = view->linkViews().front();
  link->setVisible(false);
  EXPECT_FALSE(link->isVisible());
  EXPECT_FALSE(link->entity()->isVisible());
  link->setVisible(true);
  EXPECT_TRUE(link->entity()->isVisible());

  const auto rings = view->jointControllerViews();
  for (std::size_t i = 0; i < rings.size(); i += 2) rings[i]->setVisible(false);
  EXPECT_FALSE(rings.front()->entity()->isVisible());
  view->showJointControllers();
  for (const auto& ring : rings) {
    EXPECT_TRUE(ring->isVisible());
    EXPECT_TRUE(ring->entity()->isVisible());
  }
  // A hidden ring hides its command marker too.
  rings.front()->jointController()->addRelativeCommand(0.3f);
  view->update();
  rings.front()->setVisible(false);
  auto* marker = rings.front()->commandMarkerNode()->getAttachedObject(0);
  EXPECT_FALSE(marker->isVisible());
  rings.front()->setVisible(true);
  EXPECT_TRUE(marker->isVisible());
}

TEST_F(World3DViewTest, HiddenJointRingsStayHiddenAndOutOfQueries) {
  EXPECT_TRUE(view->jointControllersShown()) << "shown by default";
  view->setJointControllersShown(false);  // before the entities exist: it holds for them
  openWindow();
  const auto rings = view->jointControllerViews();
  ASSERT_FALSE(rings.empty());
  rings.front()->jointController()->addRelativeCommand(0.3f);
  view->showJointControllers();
  rings.front()->setVisible(true);
  view->update();
  for (const auto& ring : rings) {
    EXPECT_FALSE(ring->entity()->isVisible()) << ring->frame()->name();
    EXPECT_EQ(ring->entity()->getQueryFlags() & a_pickableQueryFlag, 0u) << ring->frame()->name();
  }
  EXPECT_FALSE(rings.front()->commandMarkerNode()->getAttachedObject(0)->isVisible());
  for (const auto& link : view->linkViews()) EXPECT_TRUE(link->entity()->isVisible()) << "links are not rings";

  view->setJointControllersShown(true);
  for (const auto& ring : rings) {
    EXPECT_TRUE(ring->entity()->isVisible()) << ring->frame()->name();
    EXPECT_EQ(ring->entity()->getQueryFlags(), a_pickableQueryFlag) << ring->frame()->name();
  }
  EXPECT_TRUE(rings.front()->commandMarkerNode()->getAttachedObject(0)->isVisible());
  // A ring hidden on its own stays so when the switch shows the others again.
  view->setJointControllersShown(false);
  rings.back()->setVisible(false);
  view->setJointControllersShown(true);
  EXPECT_FALSE(rings.back()->entity()->isVisible());
}

TEST_F(World3DViewTest, VisibilitySetBeforeTheWindowHolds) {
  view->linkViews().front()->setVisible(false);
  openWindow();
  EXPECT_FALSE(view->linkViews().front()->entity()->isVisible());
}

TEST_F(World3DViewTest, FollowsRobotsAddedToAndRemovedFromTheWorld) {
  openWindow();
  const std::size_t links = view->linkViews().size();
  const RobotLoadResult second = Robot::loadFromUrdfFile(testing::bundledRobotPath());
  ASSERT_TRUE(second.robot);
  LogCapture capture;
  world->addRobot(second.robot);
  view->update();
  ASSERT_EQ(view->linkViews().size(), 2 * links);
  std::set<std::string> names;
  for (const auto& linkView : view->linkViews()) {
    ASSERT_NE(linkView->entity(), nullptr);
    names.insert(linkView->entity()->getName());
  }
  EXPECT_EQ(names.size(), 2 * links) << "entity names stay unique";
  EXPECT_TRUE(names.count("TorsoLink"));
  EXPECT_EQ(capture.count(ku::log::Warning, "rdr.scene", "its entities are named <name>#<n>"), 1);

  world->removeRobot(second.robot);
  view->update();
  EXPECT_EQ(view->linkViews().size(), links);
  EXPECT_TRUE(sceneManager()->hasEntity("TorsoLink"));
  EXPECT_EQ(view->linkViews().front()->link()->name(), robot->links().front()->name());
}

TEST_F(World3DViewTest, DestroyingTheViewClearsItsScene) {
  openWindow();
  const auto link = view->linkViews().front();
  view.reset();
  EXPECT_FALSE(sceneManager()->hasEntity("TorsoLink"));
  EXPECT_EQ(link->entity(), nullptr);
  EXPECT_EQ(link->sceneNode(), nullptr);
  link->setVisible(false);  // a view kept by someone stays harmless
  // A new view of the same world builds again.
  view = World3DView::createWorld3DView(engine, world);
  ASSERT_TRUE(view);
  view->update();
  EXPECT_TRUE(sceneManager()->hasEntity("TorsoLink"));
}

}  // namespace
}  // namespace VX::NextGenView
