// The picker on purpose-built OGRE scenes: which entity a pixel's ray finds,
// and where it strikes.
#include "selection.h"

#include <gtest/gtest.h>

#include <QMouseEvent>
#include <QSignalSpy>

#include <OgreManualObject.h>

#include "support/meta_object_table.h"
#include "support/pick_scene.h"

using testing_support::buildMesh;
using testing_support::lShape;
using testing_support::MeshPart;
using testing_support::pixelOf;
using testing_support::PickScene;
using testing_support::square;

namespace {

using Picking = PickScene;

TEST(SelectionMeta, OneSignalAndOneSlot) {
  EXPECT_STREQ(VX::NextGenView::Selection::staticMetaObject.className(), "VX::NextGenView::Selection");
  expectMethods(VX::NextGenView::Selection::staticMetaObject,
                {
                    {QMetaMethod::Signal, QMetaMethod::Public, "objectSelected(QString,bool)", {"", "multiSelect"}},
                    {QMetaMethod::Slot, QMetaMethod::Public, "onMousePressEvent(QMouseEvent*,QWidget*)",
                     {"event", "sender"}},
                });
}

QPoint pixelAt(const Ogre::Camera& camera, const QWidget& surface, float x, float y, float z = 0.0f) {
  return pixelOf(camera, surface, Ogre::Vector3(x, y, z));
}

TEST_F(Picking, CentreRayHitsTheSquareAtItsCentre) {
  place("Square", buildMesh("square", {square(1.0f)}), Ogre::Vector3::ZERO);
  EXPECT_EQ(pickAt(160, 120), "Square");
  EXPECT_TRUE(selection->pickPoint->positionEquals(Ogre::Vector3::ZERO, 1e-4f)) << *selection->pickPoint;
}

TEST_F(Picking, HitPointIsStoredAsPickAndDragPoint) {
  place("Square", buildMesh("square", {square(4.0f)}), Ogre::Vector3(0, 0, -2));
  const QPoint pixel(100, 80);
  const Ogre::Ray ray = rayAt(pixel.x(), pixel.y());
  const auto onPlane = Ogre::Math::intersects(ray, Ogre::Plane(Ogre::Vector3::UNIT_Z, Ogre::Vector3(0, 0, -2)));
  ASSERT_TRUE(onPlane.first);
  const Ogre::Vector3 expected = ray.getOrigin() + ray.getDirection() * onPlane.second;

  std::string name = "unchanged";
  ASSERT_TRUE(selection->pick(pixel.x(), pixel.y(), &surface, name));
  EXPECT_EQ(name, "Square");
  EXPECT_TRUE(selection->pickPoint->positionEquals(expected, 1e-4f)) << *selection->pickPoint << " vs " << expected;
  EXPECT_EQ(*selection->dragPoint, *selection->pickPoint);

  // A miss leaves the name alone.
  name = "unchanged";
  EXPECT_FALSE(selection->pick(2, 2, &surface, name));
  EXPECT_EQ(name, "unchanged");
}

TEST_F(Picking, SixteenAndThirtyTwoBitIndicesGiveTheSameHits) {
  // The wide mesh's indices all lie above 65535.
  const Ogre::MeshPtr narrow = buildMesh("narrow", {lShape(false)});
  const Ogre::MeshPtr wide = buildMesh("wide", {lShape(true, 70000)});
  auto scan = [this](const std::string& expectedName) {
    std::vector<Ogre::Vector3> hits;
    for (int y = 60; y <= 180; y += 10) {
      for (int x = 100; x <= 220; x += 10) {
        const std::string name = pickAt(x, y);
        EXPECT_TRUE(name.empty() || name == expectedName) << name;
        hits.push_back(name.empty() ? Ogre::Vector3(-99, -99, -99) : *selection->pickPoint);
      }
    }
    return hits;
  };
  Ogre::Entity* first = place("Narrow", narrow, Ogre::Vector3::ZERO);
  const std::vector<Ogre::Vector3> narrowHits = scan("Narrow");
  first->detachFromParent();
  place("Wide", wide, Ogre::Vector3::ZERO);
  const std::vector<Ogre::Vector3> wideHits = scan("Wide");

  ASSERT_EQ(narrowHits.size(), wideHits.size());
  int hits = 0;
  for (std::size_t i = 0; i < narrowHits.size(); ++i) {
    EXPECT_TRUE(narrowHits[i].positionEquals(wideHits[i], 1e-5f)) << i;
    hits += narrowHits[i].x > -99;
  }
  EXPECT_GT(hits, 10);
  EXPECT_LT(hits, int(narrowHits.size()) - 10) << "the scan covers misses too";
}

TEST_F(Picking, RayThroughTheBoundingBoxBetweenTrianglesMissesAndAFartherEntityIsHit) {
  place("Ell", buildMesh("ell", {lShape(false)}), Ogre::Vector3(0, 0, 1));
  const QPoint notch = pixelAt(*camera, surface, 0.5f, 0.5f, 1.0f);
  const QPoint arm = pixelAt(*camera, surface, -0.5f, 0.5f, 1.0f);
  EXPECT_EQ(pickAt(notch.x(), notch.y()), "") << "inside the box, outside every triangle";
  EXPECT_EQ(pickAt(arm.x(), arm.y()), "Ell");

  place("Wall", buildMesh("wall", {square(3.0f)}), Ogre::Vector3::ZERO);
  EXPECT_EQ(pickAt(notch.x(), notch.y()), "Wall");
  EXPECT_NEAR(selection->pickPoint->z, 0.0f, 1e-4f);
  EXPECT_EQ(pickAt(arm.x(), arm.y()), "Ell");
  EXPECT_NEAR(selection->pickPoint->z, 1.0f, 1e-4f);
}

TEST_F(Picking, BackFacesAreNotHit) {
  place("Away", buildMesh("away", {square(1.0f, 0.0f, false)}), Ogre::Vector3(0, 0, 1));
  EXPECT_EQ(pickAt(160, 120), "");
  // A front face turned away by its node is a back face too.
  Ogre::Entity* turned = place("Turned", buildMesh("turned", {square(1.0f)}), Ogre::Vector3(0, 0, 0.5f));
  turned->getParentSceneNode()->yaw(Ogre::Degree(180));
  EXPECT_EQ(pickAt(160, 120), "");

  place("Behind", buildMesh("behind", {square(1.0f)}), Ogre::Vector3::ZERO);
  EXPECT_EQ(pickAt(160, 120), "Behind");
}

TEST_F(Picking, TheNodesOwnScaleCountsAnAncestorsScaleDoesNot) {
  const Ogre::MeshPtr mesh = buildMesh("unit", {square(1.0f)});
  const QPoint outer = pixelAt(*camera, surface, 2.0f, 0.0f);
  const QPoint inner = pixelAt(*camera, surface, 0.5f, 0.0f);

  Ogre::Entity* own = place("Own", mesh, Ogre::Vector3::ZERO);
  own->getParentSceneNode()->setScale(3, 3, 3);
  EXPECT_EQ(pickAt(outer.x(), outer.y()), "Own");
  own->detachFromParent();

  // Drawn three times as large, picked at its unscaled size.
  Ogre::SceneNode* ancestor = scene->getRootSceneNode()->createChildSceneNode();
  ancestor->setScale(3, 3, 3);
  place("Inherited", mesh, Ogre::Vector3::ZERO, ancestor);
  EXPECT_EQ(pickAt(outer.x(), outer.y()), "");
  EXPECT_EQ(pickAt(inner.x(), inner.y()), "Inherited");
}

TEST_F(Picking, EqualDistancesKeepTheEarlierEntry) {
  const Ogre::MeshPtr mesh = buildMesh("twin", {square(1.0f)});
  place("Alpha", mesh, Ogre::Vector3::ZERO);
  place("Beta", mesh, Ogre::Vector3::ZERO);
  // The order the scene's own sorted query gives them.
  scene->getRootSceneNode()->_update(true, false);
  Ogre::RaySceneQuery* query = scene->createRayQuery(rayAt(160, 120), 1);
  query->setSortByDistance(true);
  std::vector<Ogre::RaySceneQueryResultEntry> results;
  for (const auto& entry : query->execute())
    if (entry.movable && entry.movable->getMovableType() == "Entity") results.push_back(entry);
  ASSERT_EQ(results.size(), 2u);
  EXPECT_EQ(results[0].distance, results[1].distance);
  const std::string earlier = results[0].movable->getName();
  scene->destroyQuery(query);

  EXPECT_EQ(pickAt(160, 120), earlier);
}

TEST_F(Picking, InvisibleEntityInFrontIsSkipped) {
  Ogre::Entity* front = place("Front", buildMesh("front", {square(1.0f)}), Ogre::Vector3(0, 0, 1));
  front->setVisible(false);
  EXPECT_EQ(pickAt(160, 120), "");
  place("Back", buildMesh("back", {square(1.0f)}), Ogre::Vector3::ZERO);
  EXPECT_EQ(pickAt(160, 120), "Back");
  front->setVisible(true);
  EXPECT_EQ(pickAt(160, 120), "Front");
}

TEST_F(Picking, OnlyEntitiesWithQueryFlagOneAreCandidates) {
  place("Decor", buildMesh("decor", {square(1.0f)}), Ogre::Vector3(0, 0, 2), nullptr, 2u);
  Ogre::ManualObject* manual = scene->createManualObject("Manual");
  manual->begin("BaseWhite");
  for (const Ogre::Vector3& p : square(1.0f, 1.0f).vertices) manual->position(p);
  manual->quad(0, 1, 2, 3);
  manual->end();
  manual->setQueryFlags(1);
  scene->getRootSceneNode()->createChildSceneNode()->attachObject(manual);
  place("Target", buildMesh("target", {square(1.0f)}), Ogre::Vector3::ZERO, nullptr, 3u);
  EXPECT_EQ(pickAt(160, 120), "Target") << "flag 2 is not queried; a manual object is no entity";
}

TEST_F(Picking, StopsAtTheFirstBoxBeyondTheNearestHit) {
  // "Far": drawn flat at z = 0 under a ten-fold ancestor scale, but picked at
  // its unscaled size around its derived position (0, 0, 1): at z = 0.9.
  Ogre::SceneNode* ancestor = scene->getRootSceneNode()->createChildSceneNode();
  ancestor->setScale(10, 10, 10);
  place("Far", buildMesh("far", {square(1.0f, -0.1f)}), Ogre::Vector3(0, 0, 0.1f), ancestor);
  ASSERT_EQ(pickAt(160, 120), "Far");
  EXPECT_NEAR(selection->pickPoint->z, 0.9f, 1e-4f);

  // "Near" is struck at z = 0.5, before Far's box begins: the walk stops there.
  place("Near", buildMesh("near", {square(1.0f)}), Ogre::Vector3(0, 0, 0.5f));
  EXPECT_EQ(pickAt(160, 120), "Near");
  EXPECT_NEAR(selection->pickPoint->z, 0.5f, 1e-4f);
}

TEST_F(Picking, ClickBeforeAnyFrameSeesTheNodesWhereTheyAreNow) {
  Ogre::Entity* entity = place("Moved", buildMesh("moved", {square(1.0f)}), Ogre::Vector3(50, 0, 0));
  scene->getRootSceneNode()->_update(true, false);  // as a frame would
  EXPECT_EQ(pickAt(160, 120), "");
  entity->getParentSceneNode()->setPosition(Ogre::Vector3::ZERO);
  EXPECT_EQ(pickAt(160, 120), "Moved") << "no frame since the move";
}

TEST_F(Picking, LeftPressEmitsTheNameOrANullOneWithCtrlAsMultiSelect) {
  place("Square", buildMesh("square", {square(1.0f)}), Ogre::Vector3::ZERO);
  QSignalSpy selected(selection.get(), &VX::NextGenView::Selection::objectSelected);
  auto press = [this](Qt::MouseButton button, const QPoint& at, Qt::KeyboardModifiers modifiers) {
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(at), button, button, modifiers);
    selection->onMousePressEvent(&event, &surface);
  };
  press(Qt::RightButton, QPoint(160, 120), Qt::NoModifier);
  press(Qt::MiddleButton, QPoint(160, 120), Qt::ControlModifier);
  EXPECT_EQ(selected.count(), 0) << "right and middle buttons are not picks";

  press(Qt::LeftButton, QPoint(160, 120), Qt::NoModifier);
  press(Qt::LeftButton, QPoint(5, 5), Qt::ControlModifier);
  press(Qt::LeftButton, QPoint(5, 5), Qt::NoModifier);
  press(Qt::LeftButton, QPoint(160, 120), Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_EQ(selected.count(), 4);
  EXPECT_EQ(selected[0][0].toString(), "Square");
  EXPECT_FALSE(selected[0][1].toBool());
  EXPECT_TRUE(selected[1][0].toString().isNull()) << "the sky gives a null name";
  EXPECT_TRUE(selected[1][1].toBool());
  EXPECT_TRUE(selected[2][0].toString().isNull());
  EXPECT_FALSE(selected[2][1].toBool());
  EXPECT_EQ(selected[3][0].toString(), "Square");
  EXPECT_TRUE(selected[3][1].toBool());
}

}  // namespace
