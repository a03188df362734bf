// Creating a 3D view: of a link with several kinds of visuals, and with a
// missing engine, root or world.
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <OgreAxisAlignedBox.h>
#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>

#include <ku/path.h>
#include <render_engine/ogre_engine.h>
#include <scene_view/link_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include <ku/record_capture.h>
#include "temporary_folder.h"

namespace VX::NextGenView {
namespace {

using LogCapture = ku::log::RecordCapture;

TEST(World3DView, MergesEveryVisualOfALinkIntoOneEntity) {
  testing::TemporaryFolder folder;
  const auto engine = boost::make_shared<OgreEngine>(ku::path::findConf("balterconix", "ogre"),
                                                     (folder.path() / "ogre.log").string());
  ASSERT_NE(engine->root(), nullptr);
  const RobotLoadResult loaded = Robot::loadFromUrdfString(R"(
    <robot name="shapes">
      <material name="red"><color rgba="1 0 0 1"/></material>
      <link name="base">
        <visual><geometry><box size="0.1 0.1 0.1"/></geometry><material name="red"/></visual>
        <visual>
          <origin xyz="0 0 0.2"/>
          <geometry><mesh filename="cube.stl" scale="0.05 0.05 0.05"/></geometry>
        </visual>
        <visual><geometry><mesh filename="triangle_mm_zup.dae"/></geometry></visual>
        <visual><origin xyz="0 0 -0.2"/><geometry><sphere radius="0.02"/></geometry><material name="red"/></visual>
      </link>
    </robot>)",
                                                           SCENE_VIEW_TEST_DATA);
  ASSERT_TRUE(loaded.robot) << loaded.error;
  const auto world = boost::make_shared<World>();
  world->addRobot(loaded.robot);
  auto view = World3DView::createWorld3DView(engine, world);
  ASSERT_TRUE(view);
  engine->root()->initialise(false);
  engine->root()->createRenderWindow("visuals", 64, 64, false);
  view->update();

  ASSERT_EQ(view->linkViews().size(), 1u);
  const Ogre::Entity* entity = view->linkViews().front()->entity();
  ASSERT_NE(entity, nullptr);
  EXPECT_EQ(entity->getName(), "base");
  // Red (box and sphere together), the default grey of the uncoloured cube,
  // and the COLLADA file's own green.
  EXPECT_EQ(entity->getNumSubEntities(), 3u);
  const Ogre::AxisAlignedBox bounds = entity->getMesh()->getBounds();
  EXPECT_TRUE(bounds.getMinimum().positionEquals(Ogre::Vector3(-0.05f, -0.05f, -0.22f), 1e-4f)) << bounds;
  EXPECT_TRUE(bounds.getMaximum().positionEquals(Ogre::Vector3(0.05f, 0.05f, 0.25f), 1e-4f)) << bounds;
  view.reset();
}

TEST(World3DView, MissingEngineWorldOrRootGivesNoView) {
  LogCapture capture;
  const auto world = boost::make_shared<World>();
  EXPECT_FALSE(World3DView::createWorld3DView(boost::shared_ptr<OgreEngine>(), world));
  testing::TemporaryFolder folder;
  const auto rootless = boost::make_shared<OgreEngine>((folder.path() / "absent").string(),
                                                       (folder.path() / "ogre.log").string());
  ASSERT_EQ(rootless->root(), nullptr);
  EXPECT_FALSE(World3DView::createWorld3DView(rootless, world));
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.scene"), 2);

  const auto engine = boost::make_shared<OgreEngine>(ku::path::findConf("balterconix", "ogre"),
                                                     (folder.path() / "ogre2.log").string());
  ASSERT_NE(engine->root(), nullptr);
  EXPECT_FALSE(World3DView::createWorld3DView(engine, boost::shared_ptr<World>()));
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.scene"), 3);
}

}  // namespace
}  // namespace VX::NextGenView
