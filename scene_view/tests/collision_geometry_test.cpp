// The collision-geometry switch: each link's <collision> shapes instead of
// its visuals, see-through; a link with only collision geometry is then
// seen and picked like any link, and not before.
#include <gtest/gtest.h>

#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreSubEntity.h>
#include <OgreRay.h>
#include <OgreSceneQuery.h>

#include <scene_view/link_3d_view.h>
#include <scene_view/query_flags.h>

#include "looks_fixture.h"

namespace VX::NextGenView {
namespace {

using testing::sameColour;

class CollisionGeometry : public testing::LooksFixture {
 protected:
  void SetUp() override {
    LooksFixture::SetUp();
    show("collisions.urdf", 0.1f);
  }

  boost::shared_ptr<Link3DView> linkView(const std::string& name) const {
    for (const auto& link : view->linkViews()) {
      if (link->link()->name() == name) return link;
    }
    return {};
  }

  // The first visible, pickable entity a ray from the camera through (0, y, z) meets.
  std::string pickAt(float y, float z) {
    Ogre::RaySceneQuery* query = engine->sceneManager()->createRayQuery(
        Ogre::Ray(Ogre::Vector3(2.0f, y, z), Ogre::Vector3::NEGATIVE_UNIT_X), a_pickableQueryFlag);
    query->setSortByDistance(true);
    std::string name;
    for (const Ogre::RaySceneQueryResultEntry& entry : query->execute()) {
      if (entry.movable && entry.movable->isVisible()) {
        name = entry.movable->getName();
        break;
      }
    }
    engine->sceneManager()->destroyQuery(query);
    return name;
  }
};

TEST_F(CollisionGeometry, OffByDefaultTheVisualsShowAndACollisionOnlyLinkDoesNot) {
  EXPECT_FALSE(view->collisionGeometryShown());
  const Ogre::Image picture = render("collisions_off.png");
  EXPECT_TRUE(sameColour(at(picture, 0.0f, -0.04f), Ogre::ColourValue(1, 0, 0)));
  EXPECT_TRUE(sameColour(at(picture, 0.2f, 0.0f), Ogre::ColourValue::Black));
  EXPECT_EQ(linkView("collision_only")->entity(), nullptr);
  EXPECT_EQ(pickAt(0.2f, 0.0f), "");
}

TEST_F(CollisionGeometry, OnTheCollisionShapesReplaceTheVisualsSeeThrough) {
  view->setCollisionGeometryShown(true);
  EXPECT_TRUE(view->collisionGeometryShown());
  const Ogre::Image onBlack = render("collisions_on.png");
  const Ogre::Image onWhite = render("collisions_on_white.png", Ogre::ColourValue::White);

  // The red visual box is gone: below the smaller, raised collision box the background shows.
  EXPECT_TRUE(sameColour(at(onBlack, 0.0f, -0.04f), Ogre::ColourValue::Black));
  const Ogre::ColourValue base = at(onBlack, 0.0f, 0.02f);
  EXPECT_GT(base.r + base.g + base.b, 0.3f) << "the collision box shows";
  EXPECT_FALSE(sameColour(base, Ogre::ColourValue(1, 0, 0)));

  // The collision-only link is seen, over black and over white alike, and the background shows through it.
  const Ogre::ColourValue overBlack = at(onBlack, 0.2f, 0.0f);
  const Ogre::ColourValue overWhite = at(onWhite, 0.2f, 0.0f);
  EXPECT_FALSE(sameColour(overBlack, Ogre::ColourValue::Black));
  EXPECT_FALSE(sameColour(overWhite, Ogre::ColourValue::White));
  EXPECT_GT(overWhite.r + overWhite.g + overWhite.b, overBlack.r + overBlack.g + overBlack.b + 0.5f)
      << "semi-transparent";

  ASSERT_NE(linkView("collision_only")->entity(), nullptr);
  EXPECT_EQ(linkView("collision_only")->entity()->getName(), "collision_only");
  EXPECT_EQ(pickAt(0.2f, 0.0f), "collision_only");
  EXPECT_EQ(pickAt(0.0f, 0.02f), "base");
}

TEST_F(CollisionGeometry, OffAgainTheVisualsReturn) {
  view->setCollisionGeometryShown(true);
  render("collisions_on.png");
  view->setCollisionGeometryShown(false);
  const Ogre::Image picture = render("collisions_off_again.png");
  EXPECT_TRUE(sameColour(at(picture, 0.0f, -0.04f), Ogre::ColourValue(1, 0, 0)));
  EXPECT_TRUE(sameColour(at(picture, 0.2f, 0.0f), Ogre::ColourValue::Black));
  EXPECT_EQ(linkView("collision_only")->entity(), nullptr);
  EXPECT_EQ(pickAt(0.2f, 0.0f), "");
  EXPECT_EQ(pickAt(0.0f, -0.04f), "base");
}

TEST_F(CollisionGeometry, ASelectedLinkKeepsItsHighlightAcrossTheSwitch) {
  const auto base = linkView("base");
  base->m_selected = base->m_highlighted = base->m_changed = true;
  view->update();
  ASSERT_TRUE(base->showsHighlight());
  const Ogre::Entity* visual = base->entity();
  ASSERT_NE(visual, nullptr);
  const std::string highlight = visual->getSubEntity(0)->getMaterialName();
  const std::string visualMesh = visual->getMesh()->getName();

  view->setCollisionGeometryShown(true);
  const Ogre::Entity* collision = base->entity();
  ASSERT_NE(collision, nullptr);
  ASSERT_NE(collision->getMesh()->getName(), visualMesh) << "the collision shapes are a mesh of their own";
  ASSERT_GT(collision->getNumSubEntities(), 0u);
  for (unsigned i = 0; i < collision->getNumSubEntities(); ++i) {
    EXPECT_EQ(collision->getSubEntity(i)->getMaterialName(), highlight) << "sub-entity " << i;
  }
}

}  // namespace
}  // namespace VX::NextGenView
